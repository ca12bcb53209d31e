#include "host_operations.h"

#include <cstdlib>
#include <cstring>
#include <utility>

#include "actor/icon.h"

namespace NStandIn {

using NActor::HostCallbacks;
using NActor::HostContext;
using NActor::HostWord;
using NActor::HostZero;
using NActor::IconRecord;

namespace {

// All 0. Null if there is no memory.
void* TakeBlock(std::uint32_t size)
{
    auto& spareBlocks = Accounts().mSpareBlocks;
    const auto spare = spareBlocks.find(size);
    if (spare == spareBlocks.end()) return std::calloc(1, size);
    void* const block = spare->second.release();
    spareBlocks.erase(spare);
    return std::memset(block, 0, size);
}

void* AllocateBlock(std::uint32_t size, std::uint8_t flags)
{
    const OperationScope scope(kAllocateBlock, size);
    Demand(flags == 1, "AllocateBlock: the flags aren't 1");
    if (scope.Fails()) return nullptr;
    void* const block = TakeBlock(size);
    if (block != nullptr) Accounts().mBlocks.emplace(block, size);
    return block;
}

void ReleaseBlock(void* block)
{
    auto& blocks = Accounts().mBlocks;
    const auto found = blocks.find(block);
    const OperationScope scope(kReleaseBlock, found != blocks.end() ? found->second : 0);
    const auto stillThere = blocks.find(block);
    if (stillThere == blocks.end()) {
        Blame("ReleaseBlock: not a block");
        return;
    }
    SpareBlock spare(block);
    if (Host().mReusesBlocks) {
        Accounts().mSpareBlocks.emplace(stillThere->second, std::move(spare));
    }
    blocks.erase(stillThere);
}

void ReportAssertion(const char* text, const char* displayName, std::int32_t line)
{
    const OperationScope scope(kReportAssertion, text);
    Accounts().mAssertions.push_back({text, displayName, line});
}

void LoadIconRecord(void* host, HostZero zero, IconRecord* outIcon)
{
    const OperationScope scope(kLoadIconRecord, host);
    Demand(zero == 0, "LoadIconRecord: an argument isn't 0");
    Accounts().mIcon = outIcon;
    if (scope.Fails()) return;
    outIcon->mLoaded = 1;
    outIcon->mFirstExtent = 48;
    outIcon->mSecondExtent = 32;
}

void DrawIconRecord(void* host, std::uint8_t state, HostWord place, IconRecord* icon)
{
    const OperationScope scope(kDrawIconRecord, host, int{state}, place);
    Demand(icon == Accounts().mIcon, "DrawIconRecord: another icon");
}

// The slots that the actor must not use hold garbage.
std::unique_ptr<HostCallbacks> MakeTable()
{
    auto table = std::make_unique<HostCallbacks>();
    FillWithGarbage(*table);
    AddPropertyOperations(*table);
    AddTextOperations(*table);
    table->AllocateBlock = AllocateBlock;
    table->ReleaseBlock = ReleaseBlock;
    table->ReportAssertion = ReportAssertion;
    table->LoadIconRecord = LoadIconRecord;
    table->DrawIconRecord = DrawIconRecord;
    return table;
}

}  // namespace

void Blame(const std::string& fault)
{
    Accounts().mViolations.push_back(fault);
}

void Blame(const char* operation, const char* fault)
{
    Blame(std::string(operation) + ": " + fault);
}

ContextRecords::ContextRecords() : mTable(MakeTable()), mContext(std::make_unique<HostContext>())
{
    FillWithGarbage(*mContext);
    mContext->mCallbacks = mTable.get();
}

}  // namespace NStandIn

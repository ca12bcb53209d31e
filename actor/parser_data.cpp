#include "parser_data.h"

#include <limits>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "checks.h"

namespace NActor {

namespace {

constexpr std::uint8_t kBlockFlags = 1;

}  // namespace

void ReleaseParseString(const HostContext* context, ParserData& ioData)
{
    ioData.mParseStringSize = 0;
    if (unsigned char* const block = std::exchange(ioData.mParseString, nullptr)) {
        context->mCallbacks->ReleaseBlock(block);
    }
}

HostBlock AllocateParseString(const HostContext* context, std::uint32_t size)
{
    // With its NUL the largest size needs one byte more than a block can have.
    void* block = nullptr;
    if (size != std::numeric_limits<std::uint32_t>::max()) {
        block = context->mCallbacks->AllocateBlock(size + 1, kBlockFlags);
    }
    Check(context, block != nullptr, "info->mParseString != nil", __LINE__);
    return HostBlock(static_cast<unsigned char*>(block), BlockReleaser{context});
}

bool StoreParseString(ActorInfo* info, HostBlock block, std::uint32_t size)
{
    if (!IsAlive(info)) return false;
    ParserData& data = *info->mActorDataPtr;
    data.mPattern.Clear();
    data.mParseStringSize = block != nullptr ? size : 0;
    // What is there already was stored from inside the host's allocation.
    unsigned char* const stored = std::exchange(data.mParseString, block.release());
    HostBlock(stored, block.get_deleter()).reset();
    return IsAlive(info) && info->mActorDataPtr->mParseString != nullptr;
}

void CompileParseString(ParserData& ioData)
{
    // First of all, so that the pattern is empty also when the string below can't be made.
    ioData.mPattern.Clear();
    if (ioData.mParseString == nullptr) return;
    ioData.mPattern.SetPatternString(
        std::string(reinterpret_cast<const char*>(ioData.mParseString), ioData.mParseStringSize));
}

void CreateCallback(HostContext* context, ActorInfo* ioActorInfo) noexcept
{
    ioActorInfo->mActorDataPtr = nullptr;
    void* const block = context->mCallbacks->AllocateBlock(sizeof(ParserData), kBlockFlags);
    if (!Check(context, block != nullptr, "info != nil", __LINE__)) return;
    auto* const data = new (block) ParserData;
    data->mActorInfo = ioActorInfo;
    ioActorInfo->mActorDataPtr = data;
}

void DisposeCallback(HostContext* context, ActorInfo* ioActorInfo) noexcept
{
    ParserData* const data = ioActorInfo->mActorDataPtr;
    if (!Check(context, data != nullptr, "info != nil", __LINE__)) return;
    // cppcheck-suppress nullPointerRedundantCheck  // two looks at a field that the host can change
    ReleaseParseString(context, *data);
    // A host that disposed of the instance from inside that release has left nothing to do.
    if (!Check(context, ioActorInfo->mActorDataPtr != nullptr, "ioActorInfo->mActorDataPtr != nil",
               __LINE__)) {
        return;
    }
    // It may have restored a state there, too.
    const HostBlock restored(data->mParseString, BlockReleaser{context});
    ioActorInfo->mActorDataPtr = nullptr;
    std::destroy_at(data);
    context->mCallbacks->ReleaseBlock(data);
}

}  // namespace NActor

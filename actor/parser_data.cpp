#include "parser_data.h"

#include <limits>
#include <new>
#include <string>
#include <utility>

#include "checks.h"

namespace NActor {

namespace {

constexpr std::uint8_t kBlockFlags = 1;

}  // namespace

StringBlock AllocateParseString(const HostContext* context, std::uint32_t size)
{
    // With its NUL the largest size needs one byte more than a block can have.
    void* block = nullptr;
    if (size != std::numeric_limits<std::uint32_t>::max()) {
        block = context->mCallbacks->AllocateBlock(size + 1, kBlockFlags);
    }
    Check(context, block != nullptr, "info->mParseString != nil", __LINE__);
    return {static_cast<unsigned char*>(block), BlockReleaser{context}};
}

void StoreParseString(const HostContext* context, ParserData& ioData, StringBlock block,
                      std::uint32_t size)
{
    // The record has its new string when the host is called.
    const StringBlock former(std::exchange(ioData.mParseString, block.release()),
                             BlockReleaser{context});
    ioData.mParseStringSize = size;
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
    const RecordWatch watch(ioActorInfo);
    StoreParseString(context, *data, nullptr, 0);
    // A host that disposed of the instance from inside that release has left nothing to do.
    if (!Check(context, watch.Record() != nullptr, "ioActorInfo->mActorDataPtr != nil", __LINE__)) {
        return;
    }
    // From here on nothing finds the record, and what was stored from inside the release goes too.
    ioActorInfo->mActorDataPtr = nullptr;
    RecordWatch::EndAll(*data);
    StoreParseString(context, *data, nullptr, 0);
    std::destroy_at(data);
    context->mCallbacks->ReleaseBlock(data);
}

}  // namespace NActor

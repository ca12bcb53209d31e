#include "persistent_state.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "checks.h"
#include "dynamic_outputs.h"

namespace NActor {

bool InstallParseString(const HostContext* context, const ActorInfo* info, StringBlock block,
                        std::uint32_t size)
{
    const RecordWatch watch(info);
    const bool kept = block != nullptr;
    StoreParseString(context, *watch.Record(), std::move(block), kept ? size : 0);
    if (watch.Record() == nullptr) return false;
    CompileParseString(*watch.Record());
    return kept && RebuildOutputs(context, info);
}

void SetStateCallback(HostContext* context, ActorInfo* info, const void* bytes,
                      std::uint32_t size) noexcept
{
    const RecordWatch watch(info);
    if (watch.Record() == nullptr) return;
    StoreParseString(context, *watch.Record(), nullptr, 0);
    StringBlock block = AllocateParseString(context, size);
    if (watch.Record() == nullptr) return;
    if (size != 0 && block != nullptr) std::memcpy(block.get(), bytes, size);
    RunGuarded(context, __LINE__,
               [&] { InstallParseString(context, info, std::move(block), size); });
}

std::uint32_t StateSizeCallback(HostContext* /*context*/, ActorInfo* info) noexcept
{
    const ParserData* const data = info->mActorDataPtr;
    return data != nullptr ? data->mParseStringSize : 0;
}

std::uint32_t GetStateCallback(HostContext* /*context*/, ActorInfo* info, std::uint32_t capacity,
                               void* outBytes) noexcept
{
    const ParserData* const data = info->mActorDataPtr;
    if (data == nullptr) return 0;
    const std::uint32_t size = std::min(capacity, data->mParseStringSize);
    if (size != 0) std::memcpy(outBytes, data->mParseString, size);
    return size;
}

void DefaultStateCallback(HostContext* context, ActorInfo* info) noexcept
{
    SetStateCallback(context, info, "", 0);
}

}  // namespace NActor

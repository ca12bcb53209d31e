#include "persistent_state.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "checks.h"
#include "dynamic_outputs.h"
#include "parser_data.h"

namespace NActor {

void SetStateCallback(HostContext* context, ActorInfo* info, const void* bytes,
                      std::uint32_t size) noexcept
{
    if (!IsAlive(info)) return;
    ReleaseParseString(context, *info->mActorDataPtr);
    HostBlock block = AllocateParseString(context, size);
    if (block != nullptr && size != 0) std::memcpy(block.get(), bytes, size);
    if (!StoreParseString(info, std::move(block), size)) return;
    RunGuarded(context, __LINE__, [&] {
        CompileParseString(*info->mActorDataPtr);
        RebuildOutputs(context, info);
    });
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
    SetStateCallback(context, info, nullptr, 0);
}

}  // namespace NActor

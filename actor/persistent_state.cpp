#include "persistent_state.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "dynamic_outputs.h"

namespace NActor {

bool InstallParseString(const HostCall& call, const RecordWatch& watch, ParseString parseString)
{
    const bool hasBytes = parseString.mBytes != nullptr;
    StoreParseString(call, *watch.Record(), std::move(parseString));
    if (watch.Record() == nullptr) return false;
    CompileParseString(*watch.Record());
    return hasBytes && RebuildOutputs(call, *watch.Record());
}

void SetState(const HostCall& call, const void* bytes, std::uint32_t size)
{
    const RecordWatch watch(call.Record());
    DropParseString(call, *watch.Record());
    ParseString parseString = AllocateParseString(call, size);
    if (watch.Record() == nullptr) return;
    if (parseString.mSize != 0) std::memcpy(parseString.mBytes.get(), bytes, parseString.mSize);
    InstallParseString(call, watch, std::move(parseString));
}

std::uint32_t CopyState(const ParserData& record, std::uint32_t capacity, void* outBytes)
{
    const std::uint32_t size = std::min(capacity, record.mParseStringSize);
    if (size != 0) std::memcpy(outBytes, record.mParseString, size);
    return size;
}

}  // namespace NActor

#include "parse_string.h"

#include <limits>
#include <string>
#include <utility>

namespace NActor {

ParseString NoParseString(const Host& host) noexcept
{
    return {{nullptr, BlockReleaser{host}}, 0};
}

ParseString AllocateParseString(const Host& host, std::uint32_t size) noexcept
{
    // With its NUL the largest size needs one byte more than a block can have.
    void* block = nullptr;
    if (size != std::numeric_limits<std::uint32_t>::max()) block = host.AllocateBlock(size + 1);
    const bool has = host.Check(block != nullptr, "info->mParseString != nil", __LINE__);
    return {{static_cast<unsigned char*>(block), BlockReleaser{host}}, has ? size : 0};
}

void StoreParseString(const Host& host, ParserData& ioRecord, ParseString parseString) noexcept
{
    // The record has its new string before the host is called, which may look at it.
    const ParseString former = {{ioRecord.mParseString, BlockReleaser{host}},
                                ioRecord.mParseStringSize};
    ioRecord.mParseString = parseString.mBytes.release();
    ioRecord.mParseStringSize = parseString.mSize;
}

void DropParseString(const Host& host, ParserData& ioRecord) noexcept
{
    StoreParseString(host, ioRecord, NoParseString(host));
}

void CompileParseString(ParserData& ioRecord)
{
    // First of all, so that the pattern is empty also if the string below can't be made.
    ioRecord.mPattern.Clear();
    if (ioRecord.mParseString == nullptr) return;
    ioRecord.mPattern.SetPatternString(std::string(
        reinterpret_cast<const char*>(ioRecord.mParseString), ioRecord.mParseStringSize));
}

}  // namespace NActor

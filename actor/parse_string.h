// The parsing string of an instance, in its block of the host.

#pragma once

#include <cstdint>
#include <memory>

#include "host_call.h"
#include "parser_data.h"

namespace NActor {

struct BlockReleaser {
    Host mHost;
    void operator()(unsigned char* block) const noexcept { mHost.ReleaseBlock(block); }
};

// A parsing string on its way into a record; given back to the host unless a record takes it.
struct ParseString {
    std::unique_ptr<unsigned char[], BlockReleaser> mBytes;  // mSize bytes and one NUL, or null
    std::uint32_t mSize;                                     // 0 if mBytes is null
};

// A string without bytes.
ParseString NoParseString(const Host& host) noexcept;

// Room for a string of size bytes, all 0. Without bytes, after a report, if the host has no memory
// for it.
ParseString AllocateParseString(const Host& host, std::uint32_t size) noexcept;

// Puts the string into the record, and gives the one before back to the host if there is one.
void StoreParseString(const Host& host, ParserData& ioRecord, ParseString parseString) noexcept;

// Leaves the record without a string, and gives the one that it has back to the host.
void DropParseString(const Host& host, ParserData& ioRecord) noexcept;

// Compiles the stored string, if there is one, into mPattern. Throws what the engine throws, and
// std::bad_alloc; the pattern is then empty.
void CompileParseString(ParserData& ioRecord);

}  // namespace NActor

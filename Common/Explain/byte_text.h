// Bytes as a person reads them.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace NExplain {

// Returns the length in bytes of the UTF-8 character at position, 0 if the bytes there are none.
// position: less than the size of text.
std::size_t Utf8Length(std::string_view text, std::size_t position);

bool IsUtf8(std::string_view text);

// True if text is better shown as bytes: it is not UTF-8, or has control characters that no line of
// text has.
bool IsBinary(std::string_view text);

// Returns text with \n, \r and \t for those bytes, and \xNN for other control characters and for
// bytes that are not UTF-8.
std::string Escaped(std::string_view text);

// As Escaped; in double quotes, with \" and \\ inside, if it would be hard to read without them.
std::string Quoted(std::string_view text);

// As Quoted, but always in quotes: in single quotes if only double ones are in text.
std::string AlwaysQuoted(std::string_view text);

// Returns text between single quotes, as it is.
std::string InQuotes(std::string_view text);

// Returns two hexadecimal digits for each byte, without anything between them.
std::string HexOf(std::string_view bytes);

// Returns the name of a byte in a sentence: 'x', space, line feed, byte 0A.
std::string NameOfByte(unsigned char byte);

// Returns "1 byte", "5 bytes" and the like.
std::string CountOf(std::uint64_t count, const std::string& unit);

// Returns the number of columns that text takes on a terminal that reads UTF-8.
std::size_t ColumnsOf(std::string_view text);

}  // namespace NExplain

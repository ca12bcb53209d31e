// Bytes as a person reads them in a terminal.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "standin/stand_in_host.h"

namespace NSift {

// The length in bytes of the UTF-8 character at position, 0 if the bytes there are none.
std::size_t Utf8Length(std::string_view text, std::size_t position);

bool IsUtf8(std::string_view text);

// Whether text is better shown as bytes: it isn't UTF-8, or has control characters that no line of
// text has.
bool IsBinary(std::string_view text);

// text with \n, \r and \t for those, and \xNN for other control characters and for bytes that
// aren't UTF-8.
std::string Escaped(std::string_view text);

// As Escaped; in double quotes, with \" and \\ inside, where it would be hard to read without.
std::string Quoted(std::string_view text);

// As Quoted, but always in quotes.
std::string AlwaysQuoted(std::string_view text);

// Two hexadecimal digits for each byte, with nothing between.
std::string HexOf(std::string_view bytes);

// As many columns as text takes on a terminal that reads UTF-8.
std::size_t ColumnsOf(std::string_view text);

// A value of an output: a string as Quoted gives it; the shortest number that reads back as the
// same.
std::string TextOf(const NStandIn::Value& value);

}  // namespace NSift

// Bytes and values as text for a terminal.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "standin/stand_in_host.h"

namespace NSift {

// Returns the length in bytes of the UTF-8 character at position; 0 if there is no valid one.
// position: less than the size of text.
std::size_t Utf8Length(std::string_view text, std::size_t position);

// Returns true if text is valid UTF-8.
bool IsUtf8(std::string_view text);

// Returns true if text is better shown as bytes: it isn't valid UTF-8, or contains a control
// character other than tab, carriage return and line feed.
bool IsBinary(std::string_view text);

// Writes line feed, carriage return and tab as \n, \r and \t, and other control characters and
// bytes that aren't UTF-8 as \xNN.
std::string Escaped(std::string_view text);

// As Escaped. A text that is empty, binary or contains white space, a quote or a backslash is put
// in double quotes, with \" and \\ inside.
std::string Quoted(std::string_view text);

// As Quoted, but with quotes around every text.
std::string AlwaysQuoted(std::string_view text);

// Returns two hexadecimal digits for each byte, without separators.
std::string HexOf(std::string_view bytes);

// Returns the number of columns that text takes on a UTF-8 terminal, one for each character.
std::size_t ColumnsOf(std::string_view text);

// Returns the value of an output: a string as by Quoted, a number in the shortest form that reads
// back as the same number.
std::string TextOf(const NStandIn::Value& value);

}  // namespace NSift

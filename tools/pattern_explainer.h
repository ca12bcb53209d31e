// What a parsing string means, in plain words.

#pragma once

#include <ostream>
#include <string>

#include "pattern_pieces.h"
#include "tools/output/palette.h"

namespace NSift {

// What a piece takes of a message: "one or more characters out of A to Z". Fits behind "takes" and
// behind "wants".
std::string WantsOf(const Piece& piece);

// How a byte is named in a sentence: 'x', blank, line feed, byte 0A.
std::string NameOfByte(unsigned char byte);

// "1 byte", "5 bytes" and the like.
std::string CountOf(std::size_t count, const std::string& unit);

// What about a piece is most likely not as it was meant, though it compiles; empty where nothing
// is.
std::string CautionFor(const Pieces& pieces, std::size_t index);

// Writes the pieces one by one: what each takes, what it captures, and where white space is
// skipped.
void PrintExplanation(std::ostream& stream, const Pieces& pieces, const Palette& palette);

}  // namespace NSift

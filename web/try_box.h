// What the try-it box of the help page shows: the engine and its explanations behind one C
// interface with JSON, which the browser calls and the tests call natively.

#pragma once

#include <cstddef>
#include <cstdint>

extern "C" {

// Matches messages with a parsing string. Returns JSON that ends with a NUL, valid until the next
// call of any function of this file; null if memory runs out.
//
// pattern: the parsing string, patternSize bytes.
// deliveries: what the host delivers, one after the other, deliveriesSize bytes in all. Each begins
// with its size as 32 bits, the least significant byte first. Each end-of-message character ends a
// message, and so does the end of a delivery.
// eomChar: the end-of-message character, 0 to 255; 0: only the end of a delivery ends a message.
// firstRow, mostRows: which messages, or which misses if onlyMisses isn't 0, are reported in
// "rows".
//
// The members of the object:
//   "fault"     if the string doesn't compile: "error", "start", "length", "hints", "needs";
//   nothing
//               else is then present
//   "pieces"    of each piece: "start" and "length" in the string, "takes", "skips_space",
//               "captures" with "name" and "value" in plain words, "first_output"
//   "outputs"   of each output: "name" and "value" (its type)
//   "cautions"  about the string: "piece" and "caution"
//   "messages", "matched"  counts, of all messages
//   "rows"      what sift --json prints of a message, with "values" as an array, one for each
//   output
// Pieces are numbered from 1, bytes from 0. Text that isn't UTF-8 is an object with "hex".
const char* WordSifterTry(const char* pattern, std::size_t patternSize, const char* deliveries,
                          std::size_t deliveriesSize, std::uint32_t eomChar, std::size_t firstRow,
                          std::size_t mostRows, std::uint32_t onlyMisses);

// Suggests parsing strings for messages. Arguments and result as above. The members of the object:
//   "suggestions"  of each: "pattern", "matched" (a count) and "notes", the best one first
//   "messages"     that were matched against the suggestions
//   "unmatched"    by any of them
const char* WordSifterSuggest(const char* deliveries, std::size_t deliveriesSize,
                              std::uint32_t eomChar);
}

// Bytes read and copied a machine word at a time.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace NPattern {

// Reads a word at any alignment, in the byte order of the machine.
template <typename Word, typename Character>
Word ReadWord(const Character* bytes)
{
    Word word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

constexpr std::uint64_t SwapBytes(std::uint64_t word)
{
    word = (word & 0x00FF00FF00FF00FF) << 8 | (word >> 8 & 0x00FF00FF00FF00FF);
    word = (word & 0x0000FFFF0000FFFF) << 16 | (word >> 16 & 0x0000FFFF0000FFFF);
    return word << 32 | word >> 32;
}

// Copies size bytes, from one word to two words of them: two words that may overlap.
template <typename Word>
void CopyEnds(char* target, const char* source, std::size_t size)
{
    const std::size_t last = size - sizeof(Word);
    const auto firstWord = ReadWord<Word>(source);
    const auto lastWord = ReadWord<Word>(source + last);
    std::memcpy(target, &firstWord, sizeof(Word));
    std::memcpy(target + last, &lastWord, sizeof(Word));
}

// Assigns size bytes, at least one, to outText. Throws std::bad_alloc.
inline void AssignBytes(std::string& outText, const char* bytes, std::size_t size)
{
    // Common case: the same length as last time. Most texts are short; those are overwritten in
    // place without a call.
    char* const target = outText.data();
    if (outText.size() != size || size > 16) {
        outText.assign(bytes, size);
    } else if (size >= 8) {
        CopyEnds<std::uint64_t>(target, bytes, size);
    } else if (size >= 4) {
        CopyEnds<std::uint32_t>(target, bytes, size);
    } else if (size >= 2) {
        CopyEnds<std::uint16_t>(target, bytes, size);
    } else {
        *target = *bytes;
    }
}

}  // namespace NPattern

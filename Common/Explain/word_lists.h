// The words of the language, from the tables of the engine.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace NExplain {

using Words = std::vector<std::string_view>;

// The words of a table of the engine for whose rows wanted returns true.
template <typename Table, typename Predicate>
Words WordsOf(const Table& table, Predicate wanted)
{
    Words words;
    for (const auto& row : table) {
        if (wanted(row)) words.push_back(row.mWord);
    }
    return words;
}

template <typename Table>
Words WordsOf(const Table& table)
{
    return WordsOf(table, [](const auto& /*row*/) { return true; });
}

// Every word that can start a piece.
Words PieceWords();

// True for a word of a number or of a class, before which a count can be written.
bool IsCountable(std::string_view word);

// The words with the separator between them.
std::string Joined(const Words& words, std::string_view separator);

// The word that was most likely meant, or an empty one.
std::string_view Nearest(const Words& words, std::string_view word);

}  // namespace NExplain

#include "word_lists.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "Common/Pattern/pattern_byteset_element.h"
#include "Common/Pattern/pattern_eol_element.h"
#include "Common/Pattern/pattern_number_element.h"

namespace NExplain {

using NPattern::EqualsIgnoringCase;

namespace {

bool IsSameLetter(char a, char b)
{
    return EqualsIgnoringCase({&a, 1}, {&b, 1});
}

// The number of letters to insert, delete or replace, and of neighbors to swap, to turn one word
// into the other.
std::size_t Distance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    std::vector<std::size_t> rowBefore;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::vector<std::size_t> next(b.size() + 1, i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = row[j - 1] + (IsSameLetter(a[i - 1], b[j - 1]) ? 0 : 1);
            next[j] = std::min({row[j] + 1, next[j - 1] + 1, replaced});
            const bool isSwap = i > 1 && j > 1 && IsSameLetter(a[i - 1], b[j - 2]) &&
                                IsSameLetter(a[i - 2], b[j - 1]);
            if (isSwap) next[j] = std::min(next[j], rowBefore[j - 2] + 1);
        }
        rowBefore = std::exchange(row, std::move(next));
    }
    return row.back();
}

}  // namespace

Words PieceWords()
{
    Words words = WordsOf(NPattern::kNumberWords);
    const Words classes = WordsOf(NPattern::kByteClasses);
    words.insert(words.end(), classes.begin(), classes.end());
    words.emplace_back(NPattern::kEolWord);
    return words;
}

bool IsCountable(std::string_view word)
{
    return NPattern::FindNumberKind(word) != NPattern::kNumberNone ||
           NPattern::FindByteClass(word) != NPattern::kClassNone;
}

std::string Joined(const Words& words, std::string_view separator)
{
    std::string text;
    for (const std::string_view word : words) {
        if (!text.empty()) text += separator;
        text += word;
    }
    return text;
}

std::string_view Nearest(const Words& words, std::string_view word)
{
    std::string_view nearest;
    std::size_t least = 3;
    for (const std::string_view row : words) {
        const std::size_t distance = Distance(row, word);
        // Short words resemble everything.
        if (2 * distance >= row.size() || distance >= least) continue;
        nearest = row;
        least = distance;
    }
    return nearest;
}

}  // namespace NExplain

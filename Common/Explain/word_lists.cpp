#include "word_lists.h"

#include <algorithm>
#include <numeric>

#include "Common/Pattern/pattern_byteset_element.h"
#include "Common/Pattern/pattern_eol_element.h"
#include "Common/Pattern/pattern_number_element.h"

namespace NExplain {

using NPattern::EqualsIgnoringCase;

namespace {

// The number of letters to insert, delete or replace to turn one word into the other.
std::size_t Distance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced =
                diagonal + (EqualsIgnoringCase(a.substr(i - 1, 1), b.substr(j - 1, 1)) ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row.back();
}

}  // namespace

Words PieceWords()
{
    Words words = WordsOf(NPattern::kKindWords);
    const Words classes = WordsOf(NPattern::kByteClasses);
    words.insert(words.end(), classes.begin(), classes.end());
    words.emplace_back(NPattern::kEolWord);
    return words;
}

bool IsCountable(std::string_view word)
{
    return NPattern::FindKindWord(word) != NPattern::kKindNone ||
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
    std::size_t least = 3;  // short words resemble everything
    for (const std::string_view row : words) {
        const std::size_t distance = Distance(row, word);
        if (row.size() < 3 || distance >= least) continue;
        nearest = row;
        least = distance;
    }
    return nearest;
}

}  // namespace NExplain

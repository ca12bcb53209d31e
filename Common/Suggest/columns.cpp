#include "columns.h"

#include <algorithm>

#include "Common/Pattern/pattern_bytes.h"

namespace NSuggest {

namespace {

constexpr std::string_view kSeparators = ",;|=:*\"\t";

// Marks that are separators if each message has as many of them.
constexpr std::string_view kRareSeparators = "/#!&@^~";

bool IsSeparator(const MessageToken& token, std::string_view separators)
{
    return token.mKind == TokenKind::kMark &&
           separators.find(token.mText.front()) != std::string_view::npos;
}

class ColumnSplitter {
  public:
    explicit ColumnSplitter(Sameness sameness) : mSameness(sameness) {}

    std::vector<Column> Take() { return std::move(mColumns); }

    void AddColumn(Column column) { mColumns.push_back(std::move(column)); }

    // segment: values that may be empty, with white space around them.
    void AddSegment(const Column& segment)
    {
        std::vector<std::vector<std::string_view>> words;
        std::size_t least = std::string_view::npos;
        bool areAsMany = true;
        for (const std::string_view value : segment) {
            words.push_back(WordsIn(value));
            least = std::min(least, words.back().size());
            areAsMany = areAsMany && words.back().size() == words.front().size();
        }
        std::vector<Column> columns(least);
        for (std::size_t w = 0; w < least; ++w) {
            for (const auto& ofValue : words) columns[w].push_back(ofValue[w]);
        }
        // If the numbers of words differ, the words after the last one that is no text are a text.
        while (!areAsMany && !columns.empty() && IsText(columns.back())) columns.pop_back();
        for (const Column& column : columns) AddWord(column);
        if (columns.size() == least) return;
        Column rest;
        for (std::size_t v = 0; v < segment.size(); ++v) {
            const char* const start = words[v][columns.size()].data();
            const std::string_view last = words[v].back();
            rest.emplace_back(start, static_cast<std::size_t>(last.data() + last.size() - start));
        }
        AddColumn(std::move(rest));
    }

  private:
    // words: without white space.
    bool IsText(const Column& words) const
    {
        ColumnSplitter splitter(mSameness);
        splitter.AddWord(words);
        return std::any_of(splitter.mColumns.begin(), splitter.mColumns.end(),
                           [this](const Column& c) {
                               const ValueKind kind = ValuesOf(c, mSameness).mKind;
                               return kind != ValueKind::kFixed && !IsTyped(kind);
                           });
    }

    // words: without white space.
    void AddWord(const Column& words)
    {
        const bool isFixed =
            AreEqual(words) && mSameness == Sameness::kText && !HasClock(words.front());
        if (isFixed || (!AddTokens(words, Grain::kCoarse) && !AddTokens(words, Grain::kFine))) {
            AddColumn(words);
        }
    }

    static bool HasClock(std::string_view word)
    {
        const MessageTokens tokens = Tokenize(word);
        return std::any_of(tokens.begin(), tokens.end(), [](const MessageToken& token) {
            return IsClock(token.mKind) || IsMonth(token.mText);
        });
    }

    // Adds a column for each token of the words, unless the words are better left whole.
    bool AddTokens(const Column& words, Grain grain)
    {
        std::vector<MessageTokens> tokens;
        for (const std::string_view word : words) {
            tokens.push_back(Tokenize(word, grain));
            if (tokens.back().size() != tokens.front().size()) return false;
        }
        std::vector<Column> columns(tokens.front().size());
        for (std::size_t t = 0; t < columns.size(); ++t) {
            for (const MessageTokens& ofWord : tokens) columns[t].push_back(ofWord[t].mText);
        }
        for (std::size_t t = 0; t < columns.size(); ++t) {
            const bool isHex = t != 0 && tokens.front()[t - 1].mKind == TokenKind::kPrefix;
            if (!isHex && !StandsAlone(columns, t)) return false;
        }
        for (Column& column : columns) AddColumn(std::move(column));
        return true;
    }

    // A text that varies is part of a longer one, as pump-3, unless it is a unit: 23.5C.
    bool StandsAlone(const std::vector<Column>& columns, std::size_t t) const
    {
        const ValueKind kind = ValuesOf(columns[t], mSameness).mKind;
        if (kind == ValueKind::kFixed || IsTyped(kind)) return true;
        const bool follows = t != 0 && IsTyped(ValuesOf(columns[t - 1], mSameness).mKind);
        return kind == ValueKind::kLetters && follows && t + 1 == columns.size();
    }

    Sameness mSameness;
    std::vector<Column> mColumns;
};

}  // namespace

std::string SeparatorsOf(const Column& messages)
{
    std::string separators(kSeparators);
    for (const char rare : kRareSeparators) {
        std::size_t count = 0;
        const auto hasAsMany = [&](std::string_view message) {
            const std::size_t other = SegmentsOf(message, {{rare}}).mSeparators.size();
            if (count == 0) count = other;
            return other == count;
        };
        if (std::all_of(messages.begin(), messages.end(), hasAsMany) && count != 0)
            separators += rare;
    }
    return separators;
}

Segments SegmentsOf(std::string_view message, const Cuts& cuts)
{
    Segments segments;
    std::size_t start = 0;
    std::size_t end = 0;
    for (const MessageToken& token : Tokenize(message)) {
        const bool isLast = segments.mSeparators.size() == cuts.mMost;
        if (!isLast && IsSeparator(token, cuts.mSeparators)) {
            segments.mSeparators += token.mText;
            segments.mTexts.push_back(message.substr(start, end - start));
            start = end + 1;
        }
        end += token.mText.size();
    }
    segments.mTexts.push_back(message.substr(start));
    return segments;
}

std::vector<std::string_view> WordsIn(std::string_view text)
{
    std::vector<std::string_view> words;
    for (text = TrimmedLeft(text); !text.empty(); text = TrimmedLeft(text)) {
        const auto end = std::find_if(text.begin(), text.end(), [](char c) {
            return NPattern::IsSpace(static_cast<NPattern::Byte>(c));
        });
        words.push_back(text.substr(0, static_cast<std::size_t>(end - text.begin())));
        text.remove_prefix(words.back().size());
    }
    return words;
}

std::vector<Column> SplitAtSeparators(const Column& messages, const Cuts& cuts,
                                      const std::optional<MergedSegments>& merged,
                                      Sameness sameness)
{
    std::vector<Segments> all;
    for (const std::string_view message : messages) all.push_back(SegmentsOf(message, cuts));
    ColumnSplitter splitter(sameness);
    // The bytes of each message from the start of one segment to the end of another.
    const auto columnOf = [&](std::size_t first, std::size_t last) {
        Column column;
        for (std::size_t m = 0; m < messages.size(); ++m) {
            const auto offsetOf = [&](std::size_t s) {
                return static_cast<std::size_t>(all[m].mTexts[s].data() - messages[m].data());
            };
            const std::size_t end = offsetOf(last) + all[m].mTexts[last].size();
            column.push_back(messages[m].substr(offsetOf(first), end - offsetOf(first)));
        }
        return column;
    };
    const auto separatorsAfter = [&](std::size_t s) {
        Column column;
        for (const Segments& segments : all) {
            column.emplace_back(segments.mTexts[s].data() + segments.mTexts[s].size(), 1);
        }
        return column;
    };
    const std::size_t count = all.front().mTexts.size();
    // Two hexadecimal digits after a * at the end.
    const auto isChecksum = [&](std::size_t s) {
        if (s == 0 || s + 1 < count || all.front().mSeparators[s - 1] != '*') return false;
        const Column column = columnOf(s, s);
        return AreHexDigits(column) && std::all_of(column.begin(), column.end(),
                                                   [](auto value) { return value.size() == 2; });
    };
    for (std::size_t s = 0; s < count; ++s) {
        if (merged && s == merged->mFirst) {
            s = merged->mLast;
            splitter.AddColumn(columnOf(merged->mFirst, s));
        } else if (isChecksum(s)) {
            splitter.AddColumn(columnOf(s, s));
        } else {
            splitter.AddSegment(columnOf(s, s));
        }
        if (s + 1 < count) splitter.AddColumn(separatorsAfter(s));
    }
    return splitter.Take();
}

}  // namespace NSuggest

#include "kinds.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <utility>

#include "Common/Explain/byte_text.h"
#include "Common/Pattern/pattern_bytes.h"
#include "message_token.h"

namespace NSuggest {

namespace {

// More marked beginnings than this are values, such as the numbers of sensors.
constexpr std::size_t kMostMarkedKinds = 24;
constexpr std::size_t kMostWordKinds = 8;    // of messages that are only words
constexpr std::size_t kMostStructures = 6;   // of messages with the same beginning
constexpr std::size_t kMostEmptinesses = 4;  // of messages with the same separators

// Messages by what they have in common, in the order of their first messages.
template <typename Key>
class Groups {
  public:
    void Add(const Key& key, std::string_view message)
    {
        const auto [entry, isNew] = mIndex.emplace(key, mGroups.size());
        if (isNew) mGroups.push_back({key, {}});
        mGroups[entry->second].second.push_back(message);
    }

    // The largest first.
    std::vector<std::pair<Key, Column>> Take()
    {
        std::stable_sort(mGroups.begin(), mGroups.end(), [](const auto& a, const auto& b) {
            return a.second.size() > b.second.size();
        });
        return std::move(mGroups);
    }

  private:
    std::map<Key, std::size_t> mIndex;
    std::vector<std::pair<Key, Column>> mGroups;
};

template <typename KeyOf>
auto GroupsBy(const Column& messages, KeyOf keyOf)
{
    Groups<decltype(keyOf(messages.front()))> groups;
    for (const std::string_view message : messages) groups.Add(keyOf(message), message);
    return groups.Take();
}

enum class Beginning {
    kNumber,  // or anything else but a word; with or without marks before it
    kWord,    // a word that may be a value
    kMarked,  // a word that names the kind of message: $GPGGA, T=, +CSQ:
};

using BeginningKey = std::pair<Beginning, std::string>;

std::string_view LettersOf(std::string_view word)
{
    return Tokenize(word, Grain::kFine).front().mText;
}

BeginningKey BeginningOf(std::string_view message)
{
    const MessageTokens tokens = Tokenize(message);
    std::string marks;
    std::size_t t = 0;
    const auto isMark = [&](std::size_t i) {
        return i < tokens.size() &&
               (tokens[i].mKind == TokenKind::kMark || tokens[i].mKind == TokenKind::kOther);
    };
    if (tokens[t].mKind == TokenKind::kSpace) {
        marks = " ";
        ++t;
    }
    for (; isMark(t); ++t) marks += tokens[t].mText;
    if (t == tokens.size()) return {Beginning::kMarked, marks};
    const MessageToken& first = tokens[t];
    const bool isWord =
        first.mKind == TokenKind::kWord && !IsMonth(first.mText) && !IsWeekday(first.mText);
    const bool isKey = first.mKind == TokenKind::kQuoted && marks != "\"";
    if (!isWord && !isKey) return {Beginning::kNumber, marks};
    const std::string_view next = isMark(t + 1) ? tokens[t + 1].mText : "";
    const bool isMarked =
        next == "=" || next == ":" || (marks.find_first_not_of(" \"") != std::string::npos);
    if (!isMarked) return {Beginning::kWord, marks + std::string(LettersOf(first.mText))};
    return {Beginning::kMarked, marks + std::string(LettersOf(first.mText))};
}

// Messages of the same structure have the same separators, or, without any, as many words.
std::string StructureOf(std::string_view message, const Cuts& cuts)
{
    const std::string space = NPattern::IsSpace(static_cast<NPattern::Byte>(message[0])) ? " " : "";
    const Segments segments = SegmentsOf(message, cuts);
    if (!segments.mSeparators.empty()) return space + segments.mSeparators;
    return space + std::to_string(WordsIn(message).size());
}

bool HasNumber(std::string_view message)
{
    const MessageTokens tokens = Tokenize(message);
    return std::any_of(tokens.begin(), tokens.end(), [](const MessageToken& token) {
        return token.mKind != TokenKind::kWord && token.mKind != TokenKind::kSpace &&
               token.mKind != TokenKind::kMark;
    });
}

// The structure, and whether there is more than words.
std::string ShapeOf(std::string_view message, const Cuts& cuts)
{
    return StructureOf(message, cuts) + (HasNumber(message) ? "\n1" : "\n0");
}

// True for messages of words without separators.
bool IsOnlyWords(const std::string& shape)
{
    const std::size_t end = shape.find('\n');
    return NPattern::IsDigit(static_cast<NPattern::Byte>(shape[end - 1])) && shape.back() == '0';
}

using Emptiness = std::vector<int>;  // for each segment: 1 if it is empty

Emptiness EmptinessOf(std::string_view message, const Cuts& cuts)
{
    Emptiness emptiness;
    for (const std::string_view text : SegmentsOf(message, cuts).mTexts) {
        emptiness.push_back(Trimmed(text).empty() ? 1 : 0);
    }
    return emptiness;
}

bool IsControl(char c)
{
    const auto b = static_cast<unsigned char>(c);
    return (b < ' ' && !NPattern::IsSpace(b)) || b == 0x7F;
}

std::string ControlsOf(std::string_view message)
{
    std::string controls;
    std::copy_if(message.begin(), message.end(), std::back_inserter(controls), IsControl);
    return controls;
}

// A text may be framed by one control character at each end, and some of its characters may be
// of an encoding other than UTF-8. marks: control characters that a text has in this order.
bool IsRaw(std::string_view message, const std::string& marks)
{
    constexpr std::size_t kMostMarks = 4;
    const bool isMarked = marks.size() <= kMostMarks && marks.size() * 4 <= message.size() &&
                          ControlsOf(message) == marks;
    if (isMarked && NExplain::IsUtf8(message)) return false;
    if (message.size() < 3) return std::any_of(message.begin(), message.end(), IsControl);
    const std::string_view inner = message.substr(1, message.size() - 2);
    const auto high = std::count_if(message.begin(), message.end(),
                                    [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    return std::any_of(inner.begin(), inner.end(), IsControl) ||
           (!NExplain::IsUtf8(message) && high * 4 > static_cast<std::ptrdiff_t>(message.size()));
}

class KindFinder {
  public:
    std::vector<Kind> Find(const Column& messages)
    {
        Column texts;
        Column raws;
        for (auto& [first, group] : GroupsBy(messages, [](std::string_view m) { return m[0]; })) {
            const std::string marks = ControlsOf(group.front());
            const auto raw =
                std::count_if(group.begin(), group.end(),
                              [&marks](std::string_view m) { return IsRaw(m, marks); });
            const bool isRaw = raw * 5 > static_cast<std::ptrdiff_t>(group.size());
            (isRaw ? raws : texts).insert((isRaw ? raws : texts).end(), group.begin(), group.end());
        }
        AddTexts(InOrderOf(messages, texts));
        AddRaws(InOrderOf(messages, raws));
        return std::move(mKinds);
    }

  private:
    // Returns the messages that are among chosen, in the order of arrival.
    static Column InOrderOf(const Column& messages, Column chosen)
    {
        const auto byAddress = [](std::string_view a, std::string_view b) {
            return std::less<>()(a.data(), b.data());
        };
        std::sort(chosen.begin(), chosen.end(), byAddress);
        Column ordered;
        std::copy_if(messages.begin(), messages.end(), std::back_inserter(ordered),
                     [&](std::string_view message) {
                         return std::binary_search(chosen.begin(), chosen.end(), message,
                                                   byAddress);
                     });
        return ordered;
    }

    void AddRaws(const Column& messages)
    {
        auto groups = GroupsBy(messages, [](std::string_view m) { return m[0]; });
        // Many first bytes are a value.
        if (groups.size() > kMostWordKinds) groups = {{char(), messages}};
        for (auto& [first, group] : groups) {
            const auto lengths = GroupsBy(group, [](std::string_view m) { return m.size(); });
            if (!AddMain(lengths, group.size(), kMostStructures, [this](const Column& same) {
                    mKinds.push_back({same, true, {}, std::nullopt});
                })) {
                mKinds.push_back({std::move(group), true, {}, std::nullopt});
            }
        }
    }

    void AddTexts(Column messages)
    {
        for (std::string_view& message : messages) message = TrimmedRight(message);
        mCuts = {SeparatorsOf(messages)};
        auto groups = GroupsBy(messages, BeginningOf);
        const auto marked = static_cast<std::size_t>(std::count_if(
            groups.begin(), groups.end(),
            [](const auto& group) { return group.first.first == Beginning::kMarked; }));
        Column manyMarked;
        std::vector<std::pair<std::string, Column>> words;
        for (auto& [beginning, group] : groups) {
            if (beginning.first == Beginning::kWord) {
                words.emplace_back(beginning.second, std::move(group));
            } else if (beginning.first == Beginning::kMarked && marked > kMostMarkedKinds) {
                manyMarked.insert(manyMarked.end(), group.begin(), group.end());
            } else {
                AddGroup(group);
            }
        }
        if (!manyMarked.empty()) AddGroup(InOrderOf(messages, manyMarked));
        if (words.size() > kMostWordKinds) {
            Column all;
            for (const auto& [word, group] : words)
                all.insert(all.end(), group.begin(), group.end());
            words = {{"", InOrderOf(messages, all)}};
        }
        AddWords(messages, words);
    }

    // A first word that is followed by the same structure as others is a value.
    void AddWords(const Column& messages, std::vector<std::pair<std::string, Column>>& groups)
    {
        std::map<std::string, Column> byShape;
        const auto mainShapeOf = [this](const Column& group) {
            const auto shapeOf = [this](std::string_view m) { return ShapeOf(m, mCuts); };
            return GroupsBy(group, shapeOf).front().first;
        };
        for (const auto& [word, group] : groups) {
            Column& all = byShape[mainShapeOf(group)];
            all.insert(all.end(), group.begin(), group.end());
        }
        for (const auto& [word, group] : groups) {
            const std::string shape = mainShapeOf(group);
            Column& all = byShape[shape];
            if (all.empty()) continue;
            if (IsOnlyWords(shape) && all.size() < messages.size()) {
                AddGroup(group);
            } else {
                AddGroup(InOrderOf(messages, std::exchange(all, {})));
            }
        }
    }

    // Passes to add the groups of which there is more than one message, if they are few and hold
    // most of the messages. Otherwise returns false.
    template <typename Key, typename AddOne>
    static bool AddMain(const std::vector<std::pair<Key, Column>>& groups, std::size_t messages,
                        std::size_t most, AddOne add)
    {
        if (groups.size() == 1) {
            add(groups.front().second);
            return true;
        }
        const std::size_t least = std::max<std::size_t>(2, messages / 50);
        std::size_t covered = 0;
        std::size_t count = 0;
        for (; count < groups.size() && groups[count].second.size() >= least; ++count) {
            covered += groups[count].second.size();
        }
        if (count > most || covered * 5 < messages * 3) return false;
        for (std::size_t g = 0; g < count; ++g) add(groups[g].second);
        return true;
    }

    // group: messages with the same beginning. Those of the same structure are a kind, unless they
    // differ only in a text at their end.
    void AddGroup(const Column& group)
    {
        mCuts = {SeparatorsOf(group)};
        const auto structureOf = [this](std::string_view m) { return StructureOf(m, mCuts); };
        std::vector<Column> same;
        const bool isSplit =
            AddMain(GroupsBy(group, structureOf), group.size(), kMostStructures,
                    [&same](const Column& structure) { same.push_back(structure); });
        if (same.size() == 1) return AddStructure(same[0]);
        const Cuts cuts = std::exchange(mCuts, CommonCutsOf(group));
        const std::size_t numbers = NumbersIn(group);
        const bool isText =
            numbers >= MostNumbersIn(same, cuts) && (numbers != 0 || same.size() > 2);
        if (!isSplit || isText) return AddStructure(group);
        mCuts = cuts;
        for (const Column& structure : same) AddStructure(structure);
    }

    // Returns the cuts at the separators with which all messages begin.
    Cuts CommonCutsOf(const Column& messages) const
    {
        std::string common = SegmentsOf(messages.front(), mCuts).mSeparators;
        for (const std::string_view message : messages) {
            const std::string other = SegmentsOf(message, mCuts).mSeparators;
            const auto end =
                std::mismatch(common.begin(), common.end(), other.begin(), other.end());
            common.erase(end.first, common.end());
        }
        return {mCuts.mSeparators, common.size()};
    }

    std::size_t NumbersIn(const Column& messages) const
    {
        const std::vector<Column> columns =
            SplitAtSeparators(messages, mCuts, std::nullopt, Sameness::kText);
        return static_cast<std::size_t>(std::count_if(
            columns.begin(), columns.end(),
            [](const Column& column) { return IsTyped(ValuesOf(column, Sameness::kText).mKind); }));
    }

    std::size_t MostNumbersIn(const std::vector<Column>& groups, const Cuts& cuts)
    {
        const Cuts before = std::exchange(mCuts, cuts);
        std::size_t most = 0;
        for (const Column& group : groups) most = std::max(most, NumbersIn(group));
        mCuts = before;
        return most;
    }

    // group: messages with the same separators.
    void AddStructure(const Column& group)
    {
        const auto emptinessOf = [this](std::string_view m) { return EmptinessOf(m, mCuts); };
        const auto groups = GroupsBy(group, emptinessOf);
        const bool isSplit =
            AddMain(groups, group.size(), kMostEmptinesses, [this](const Column& same) {
                mKinds.push_back({same, false, mCuts, std::nullopt});
            });
        if (!isSplit) mKinds.push_back({group, false, mCuts, MergedOf(groups)});
    }

    // Merges all segments that are sometimes empty and those between them, up to a separator that
    // is in none of them.
    MergedSegments MergedOf(const std::vector<std::pair<Emptiness, Column>>& groups) const
    {
        const Emptiness& model = groups.front().first;
        std::size_t first = model.size();
        std::size_t last = 0;
        for (const auto& [emptiness, messages] : groups) {
            for (std::size_t s = 0; s < model.size(); ++s) {
                if (emptiness[s] == model[s]) continue;
                first = std::min(first, s);
                last = std::max(last, s);
            }
        }
        const std::string separators = SegmentsOf(groups.front().second.front(), mCuts).mSeparators;
        // One segment alone may be empty, but not together with a separator.
        if (first == last && last == separators.size()) --first;
        while (last < separators.size() &&
               (first == last || separators.substr(first, last - first).find(separators[last]) !=
                                     std::string::npos)) {
            ++last;
        }
        return {first, last};
    }

    Cuts mCuts;  // of the messages that are looked at
    std::vector<Kind> mKinds;
};

}  // namespace

std::vector<Kind> FindKinds(const Column& messages)
{
    return KindFinder().Find(messages);
}

}  // namespace NSuggest

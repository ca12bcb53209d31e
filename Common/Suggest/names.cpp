#include "names.h"

#include <algorithm>
#include <map>

#include "Common/Pattern/pattern_bytes.h"
#include "message_token.h"

namespace NSuggest {

using NPattern::Byte;
using NPattern::IsAlnum;
using NPattern::IsAlpha;

namespace {

constexpr std::size_t kLongestName = 32;
constexpr std::string_view kBetweenKeyAndValue = "=: \t\"'([{<";
constexpr std::string_view kInsideKey = "_.-/%";

bool IsKeyByte(char c)
{
    return IsAlnum(static_cast<Byte>(c)) || kInsideKey.find(c) != std::string_view::npos;
}

// Returns the key at the end of the text before a value, or an empty one.
std::string KeyIn(const NameClue& clue, std::string_view text)
{
    const std::string_view whole = text;
    for (const std::string_view prefix : {"0x", "0X"}) {
        if (text.ends_with(prefix)) text.remove_suffix(2);
    }
    text = text.substr(0, text.find_last_not_of(kBetweenKeyAndValue) + 1);
    const std::string_view between = whole.substr(text.size());
    const auto start = std::find_if_not(text.rbegin(), text.rend(), IsKeyByte).base();
    const auto key = text.substr(static_cast<std::size_t>(start - text.begin()));
    if (key.empty() || !IsAlpha(static_cast<Byte>(key.front()))) return "";
    const bool isMarked = between.find_first_of("=:") != std::string_view::npos;
    const bool isWord = key.find_first_of("./%") == std::string_view::npos;
    // In id=A17, the A is part of the value.
    const std::string_view before = text.substr(0, text.size() - key.size());
    if (between.empty() && (before.ends_with('=') || before.ends_with(':'))) {
        return KeyIn(clue, before);
    }
    if (!isMarked && (!isWord || IsOfClock(clue.mKind))) return "";
    // Without a mark, a word after a field is its unit, and a letter before a text is another
    // text.
    const bool isWhole = key.size() == text.size();
    const bool isUnit = !clue.mIsFirst && isWhole && clue.mIsAttached;
    const bool isLetter = key.size() == 1 && !IsTyped(clue.mKind);
    if (!isMarked && (isUnit || isLetter)) return "";
    return NameFrom(key);
}

std::string_view DefaultName(const NameClue& clue)
{
    const bool isChecksum = clue.mIsLast && clue.mIsShort && clue.mTextBefore.ends_with('*');
    if (isChecksum) return "checksum";
    switch (clue.mKind) {
        case ValueKind::kDate: return "date";
        case ValueKind::kTime: return "time";
        case ValueKind::kMonth: return "month";
        case ValueKind::kWeekday: return "weekday";
        case ValueKind::kHex: return "hex";
        case ValueKind::kInteger: return clue.mFollowsMonth ? "day" : "value";
        case ValueKind::kLetters:
            return clue.mFollowsNumber && clue.mTextBefore.empty() && clue.mIsShort ? "unit"
                                                                                    : "text";
        case ValueKind::kDotted: return "address";
        case ValueKind::kDigits: return "number";
        case ValueKind::kFixed:
        case ValueKind::kVisible:
        case ValueKind::kText: return clue.mIsLast && !clue.mIsFirst ? "rest" : "text";
        default: return "value";
    }
}

bool IsList(const std::string& textBefore)
{
    return textBefore == "," || textBefore == ";" || textBefore == "/" || textBefore == ", ";
}

}  // namespace

std::string NameFrom(std::string_view text)
{
    std::string name;
    for (const char c : text) {
        if (IsAlnum(static_cast<Byte>(c))) {
            name += c;
        } else if (!name.empty() && name.back() != '_') {
            name += '_';
        }
        if (name.size() == kLongestName) break;
    }
    if (name.ends_with('_')) name.pop_back();
    return name;
}

std::vector<std::string> NamesOf(const std::vector<NameClue>& clues, std::size_t kept)
{
    std::vector<std::string> names;
    std::string key;  // of the list that a field is in
    for (const NameClue& clue : clues) {
        std::string name = clue.mGivenName;
        if (name.empty()) {
            const bool isListed = IsList(clue.mTextBefore) && clue.mFollowsNumber &&
                                  clue.mKind <= ValueKind::kExponent;
            if (!isListed) key = KeyIn(clue, clue.mTextBefore);
            name = key.empty() ? std::string(DefaultName(clue)) : key;
        }
        names.push_back(std::move(name));
    }
    MakeUnique(names, kept);
    return names;
}

void MakeUnique(std::vector<std::string>& ioNames, std::size_t kept)
{
    std::map<std::string, std::size_t> counts;
    for (const std::string& name : ioNames) ++counts[name];
    std::map<std::string, std::size_t> numbers;
    for (std::size_t n = 0; n < ioNames.size(); ++n) {
        std::string& name = ioNames[n];
        if (counts[name] == 1) continue;
        const bool isKept = n < kept && numbers.emplace(name, 1).second;
        if (isKept) continue;
        const std::string base = name;
        do {
            name = base + std::to_string(++numbers[base]);
        } while (counts.count(name) != 0);
    }
}

}  // namespace NSuggest

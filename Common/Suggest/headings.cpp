#include "headings.h"

#include <algorithm>
#include <string>

#include "Common/Pattern/pattern_bytes.h"
#include "columns.h"
#include "message_token.h"
#include "names.h"

namespace NSuggest {

namespace {

constexpr std::string_view kTableSeparators = ",;\t|";

using Fields = std::vector<std::string_view>;

// The names of the fields after the identifier of a sentence, which follows two letters.
struct Sentence {
    std::string_view mIdentifier;
    std::string_view mNames;
};

constexpr Sentence kSentences[] = {
    {"GGA", "time,lat,ns,lon,ew,quality,sats,hdop,alt,,geoid,,age,station"},
    {"GLL", "lat,ns,lon,ew,time,status,mode"},
    {"GSA", "mode,fix"},
    {"GSV", "count,number,sats"},
    {"HDT", "heading"},
    {"RMC", "time,status,lat,ns,lon,ew,speed,course,date,variation,,mode"},
    {"VTG", "course,,magnetic,,knots,,kmh,,mode"},
    {"ZDA", "time,day,month,year"},
};

// separator: space stands for white space.
Fields FieldsOf(std::string_view message, char separator)
{
    if (separator == ' ') return WordsIn(message);
    Fields fields;
    for (std::size_t start = 0;;) {
        const std::size_t end = message.find(separator, start);
        fields.push_back(Trimmed(message.substr(start, end - start)));
        if (end == std::string_view::npos) return fields;
        start = end + 1;
    }
}

std::string_view IdentifierOf(std::string_view message)
{
    const bool isSentence = message.starts_with('$') && message.find(',') == 6;
    return isSentence ? message.substr(3, 3) : "";
}

// True for numbers, dates and times, which may be quoted.
bool IsNumber(std::string_view field)
{
    if (field.starts_with('"')) field = field.substr(1, std::max<std::size_t>(field.size(), 2) - 2);
    const MessageTokens tokens = Tokenize(field);
    if (tokens.size() != 1) return false;
    const TokenKind kind = tokens[0].mKind;
    return kind == TokenKind::kNumber || kind == TokenKind::kExponent || IsClock(kind);
}

bool IsHeading(std::string_view field)
{
    const std::size_t start = field.find_first_not_of("\"'#");
    return start != std::string_view::npos &&
           NPattern::IsAlpha(static_cast<NPattern::Byte>(field[start])) &&
           field.find_first_of("=:") == std::string_view::npos;
}

// True if most messages have as many fields as the header line and numbers in one of them, or in
// all but one that white space separates. A field that repeats its heading isn't one of a table.
bool IsTable(const Column& messages, std::size_t count, char separator)
{
    const Fields headings = FieldsOf(TrimmedRight(messages[0]), separator);
    std::vector<std::size_t> numbers(count);
    std::size_t alike = 0;
    for (std::size_t m = 1; m < messages.size(); ++m) {
        const Fields fields = FieldsOf(messages[m], separator);
        if (fields.size() != count) continue;
        ++alike;
        for (std::size_t f = 0; f < count; ++f) {
            if (fields[f] == headings[f]) return false;
            numbers[f] += IsNumber(fields[f]) ? 1 : 0;
        }
    }
    const auto columns = static_cast<std::size_t>(std::count_if(
        numbers.begin(), numbers.end(), [alike](std::size_t n) { return n * 10 >= alike * 9; }));
    const std::size_t least = separator == ' ' ? count - 1 : 1;
    return alike * 2 > messages.size() - 1 && columns >= least;
}

}  // namespace

std::optional<KnownNames> HeadingsIn(const Column& messages)
{
    if (messages.empty()) return std::nullopt;
    std::string_view first = TrimmedRight(messages.front());
    for (const char separator : std::string(kTableSeparators) + ' ') {
        const Fields fields = FieldsOf(first, separator);
        if (fields.size() < (separator == ' ' ? 3U : 2U)) continue;
        if (!std::all_of(fields.begin(), fields.end(), IsHeading)) return std::nullopt;
        if (!IsTable(messages, fields.size(), separator)) return std::nullopt;
        KnownNames known;
        known.mSeparator = separator;
        for (const std::string_view field : fields) known.mHeadings.push_back(NameFrom(field));
        return known;
    }
    return std::nullopt;
}

KnownNames SentenceNames(std::string_view message)
{
    KnownNames known;
    known.mSeparator = ',';
    known.mHasClockDigits = true;
    const std::string_view identifier = IdentifierOf(message);
    for (const Sentence& sentence : kSentences) {
        if (sentence.mIdentifier != identifier) continue;
        known.mHeadings.emplace_back();
        for (const std::string_view name : FieldsOf(sentence.mNames, ',')) {
            known.mHeadings.emplace_back(name);
        }
    }
    return known;
}

}  // namespace NSuggest

#include "message_token.h"

#include <algorithm>
#include <iterator>

#include "Common/Pattern/pattern_bytes.h"

namespace NSuggest {

using NPattern::Byte;
using NPattern::IsAlnum;
using NPattern::IsAlpha;
using NPattern::IsDigit;
using NPattern::IsHexDigit;
using NPattern::IsPrint;
using NPattern::IsSpace;

namespace {

struct ClockForm {
    std::string_view mForm;  // d stands for a digit, a for a letter
    TokenKind mKind;
};

// The longer of two forms with the same beginning is first.
constexpr ClockForm kClockForms[] = {
    {"dddd-dd-dd", TokenKind::kDate},  {"dddd/dd/dd", TokenKind::kDate},
    {"dddd.dd.dd", TokenKind::kDate},  {"dd.dd.dddd", TokenKind::kDate},
    {"dd/dd/dddd", TokenKind::kDate},  {"dd-dd-dddd", TokenKind::kDate},
    {"dd/aaa/dddd", TokenKind::kDate}, {"dd-aaa-dddd", TokenKind::kDate},
    {"dd/dd/dd", TokenKind::kDate},    {"dd-dd-dd", TokenKind::kDate},
    {"dd.dd.dd", TokenKind::kDate},    {"dd:dd:dd", TokenKind::kTime},
    {"d:dd:dd", TokenKind::kTime},     {"dd:dd", TokenKind::kTime},
};

constexpr std::string_view kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::string_view kWeekdays[] = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};

Byte ByteAt(std::string_view text, std::size_t position)
{
    return position < text.size() ? static_cast<Byte>(text[position]) : Byte{0};
}

template <typename Predicate>
std::size_t RunOf(std::string_view text, Predicate isMember)
{
    const auto end = std::find_if_not(
        text.begin(), text.end(), [isMember](char c) { return isMember(static_cast<Byte>(c)); });
    return static_cast<std::size_t>(end - text.begin());
}

bool IsWordByte(Byte b)
{
    return IsAlnum(b) || b == '_';
}

bool HasForm(std::string_view text, std::string_view form)
{
    return text.size() >= form.size() &&
           std::equal(form.begin(), form.end(), text.begin(), [](char f, char c) {
               const auto b = static_cast<Byte>(c);
               return f == 'd' ? IsDigit(b) : f == 'a' ? IsAlpha(b) : f == c;
           });
}

class Splitter {
  public:
    Splitter(std::string_view message, Grain grain) : mMessage(message), mGrain(grain) {}

    MessageTokens Run()
    {
        while (mStart != mMessage.size()) TakeNext();
        return std::move(mTokens);
    }

  private:
    std::string_view Rest() const { return mMessage.substr(mStart); }

    void Take(TokenKind kind, std::size_t length)
    {
        mTokens.push_back({kind, mMessage.substr(mStart, length)});
        mStart += length;
    }

    bool StartsWord() const
    {
        return mStart == 0 || !IsWordByte(static_cast<Byte>(mMessage[mStart - 1])) || FollowsDate();
    }

    // After the T of 2026-11-22T14:05:09.
    bool FollowsDate() const
    {
        return mTokens.size() > 1 && mTokens.back().mText == "T" &&
               mTokens[mTokens.size() - 2].mKind == TokenKind::kDate;
    }

    void TakeNext()
    {
        const Byte first = static_cast<Byte>(mMessage[mStart]);
        if (first == '\t') {
            Take(TokenKind::kMark, 1);
        } else if (IsSpace(first)) {
            Take(TokenKind::kSpace, RunOf(Rest(), [](Byte b) { return IsSpace(b) && b != '\t'; }));
        } else if (first == '"' && TakeQuoted()) {
        } else if (TakeClock() || TakeNumber()) {
        } else if (IsWordByte(first)) {
            const bool isDate = !mTokens.empty() && mTokens.back().mKind == TokenKind::kDate;
            const bool isFine = mGrain == Grain::kFine || (isDate && first == 'T');
            Take(TokenKind::kWord, RunOf(Rest(), [isFine](Byte b) {
                     return isFine ? IsAlpha(b) || b == '_' : IsWordByte(b);
                 }));
        } else if (IsPrint(first)) {
            Take(TokenKind::kMark, 1);
        } else {
            Take(TokenKind::kOther, 1);
        }
    }

    bool TakeQuoted()
    {
        const std::size_t end = mMessage.find('"', mStart + 1);
        if (!StartsWord() || end == std::string_view::npos) return false;
        Take(TokenKind::kMark, 1);
        if (mStart != end) Take(TokenKind::kQuoted, end - mStart);
        Take(TokenKind::kMark, 1);
        return true;
    }

    bool TakeClock()
    {
        if (!StartsWord()) return false;
        for (const ClockForm& form : kClockForms) {
            if (!HasForm(Rest(), form.mForm)) continue;
            std::size_t length = form.mForm.size();
            const bool isTime = form.mKind == TokenKind::kTime;
            if (isTime && ByteAt(Rest(), length) == '.') {
                length += 1 + RunOf(Rest().substr(length + 1), IsDigit);
            }
            const Byte next = ByteAt(Rest(), length);
            const Byte separator = static_cast<Byte>(form.mForm[form.mForm.size() - 3]);
            // 12:34:56:78 is no time, but in 14:05:09: x the colon ends one.
            const bool goesOn =
                (next == separator || next == '.') && IsAlnum(ByteAt(Rest(), length + 1));
            if (goesOn || (IsAlnum(next) && next != 'T' && next != 'Z')) continue;
            Take(form.mKind, length);
            return true;
        }
        return false;
    }

    // Returns the length of a number without exponent at the start of text; 0: there is none.
    static std::size_t NumberLength(std::string_view text, bool mayHaveSign)
    {
        const Byte first = ByteAt(text, 0);
        const std::size_t sign = mayHaveSign && (first == '+' || first == '-') ? 1 : 0;
        const std::size_t whole = RunOf(text.substr(sign), IsDigit);
        std::size_t length = sign + whole;
        if (ByteAt(text, length) == '.') {
            const std::size_t fraction = RunOf(text.substr(length + 1), IsDigit);
            if (fraction != 0) return length + 1 + fraction;
        }
        return whole == 0 ? 0 : length;
    }

    static std::size_t ExponentLength(std::string_view text)
    {
        if ((ByteAt(text, 0) | NPattern::kCaseBit) != 'e') return 0;
        const Byte sign = ByteAt(text, 1);
        const std::size_t start = sign == '+' || sign == '-' ? 2 : 1;
        const std::size_t digits = RunOf(text.substr(std::min(start, text.size())), IsDigit);
        const bool isEnd = start == 2 || !IsWordByte(ByteAt(text, start + digits));
        return digits != 0 && isEnd ? start + digits : 0;
    }

    bool TakeNumber()
    {
        const std::string_view rest = Rest();
        const std::size_t length = NumberLength(rest, StartsWord() && !FollowsClosing());
        if (length == 0) return false;
        const std::string_view number = rest.substr(0, length);
        const bool isPlain = RunOf(number, IsDigit) == length;
        const std::size_t dotted = RunOf(rest, [](Byte b) { return IsDigit(b) || b == '.'; });
        const std::size_t exponent = ExponentLength(rest.substr(length));
        if (dotted > length && IsDigit(ByteAt(rest, dotted - 1))) {
            Take(TokenKind::kDotted, dotted);
        } else if (exponent != 0 && (!isPlain || !IsAlnum(ByteAt(rest, length + 1)))) {
            Take(TokenKind::kExponent, length + exponent);
        } else if (isPlain && mGrain == Grain::kCoarse && TakeMixed(length)) {
        } else {
            Take(TokenKind::kNumber, length);
        }
        return true;
    }

    // After a closing bracket or a quote, as after a word, a sign is a separator.
    bool FollowsClosing() const
    {
        const Byte previous = mStart == 0 ? Byte{0} : static_cast<Byte>(mMessage[mStart - 1]);
        return previous == ')' || previous == ']' || previous == '"';
    }

    // digits: at the start of the rest.
    bool TakeMixed(std::size_t digits)
    {
        const std::string_view run = Rest().substr(0, RunOf(Rest(), IsWordByte));
        if (run.size() == digits) return false;
        if (run.size() > 2 && run[0] == '0' && (run[1] | NPattern::kCaseBit) == 'x' &&
            RunOf(run.substr(2), IsHexDigit) == run.size() - 2) {
            Take(TokenKind::kPrefix, 2);
            return true;
        }
        if (RunOf(run, IsHexDigit) != run.size()) return false;
        Take(TokenKind::kMixed, run.size());
        return true;
    }

    std::string_view mMessage;
    Grain mGrain;
    std::size_t mStart = 0;  // of the next token
    MessageTokens mTokens;
};

}  // namespace

MessageTokens Tokenize(std::string_view message, Grain grain)
{
    return Splitter(message, grain).Run();
}

bool IsToken(std::string_view text, TokenKind kind)
{
    const MessageTokens tokens = Tokenize(text);
    return tokens.size() == 1 && tokens[0].mKind == kind;
}

bool IsClock(TokenKind kind)
{
    return kind == TokenKind::kDate || kind == TokenKind::kTime;
}

bool IsMonth(std::string_view word)
{
    return std::find(std::begin(kMonths), std::end(kMonths), word) != std::end(kMonths);
}

bool IsWeekday(std::string_view word)
{
    return std::find(std::begin(kWeekdays), std::end(kWeekdays), word) != std::end(kWeekdays);
}

std::string_view TrimmedLeft(std::string_view text)
{
    return text.substr(RunOf(text, IsSpace));
}

std::string_view TrimmedRight(std::string_view text)
{
    while (!text.empty() && IsSpace(static_cast<Byte>(text.back()))) text.remove_suffix(1);
    return text;
}

std::string_view Trimmed(std::string_view text)
{
    return TrimmedLeft(TrimmedRight(text));
}

}  // namespace NSuggest

// Holds the engine against the reference on every parsing string of up to PIECES pieces, and on
// every message of up to BYTES bytes for those that compile. Prints what it counted, and each
// difference. Exits with 0 if there is none.
// Usage: exhaustive PIECES BYTES

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "Common/Explain/byte_text.h"
#include "comparison.h"

namespace {

// Most pieces are one token. What takes several tokens before it means anything is one piece, so
// that four pieces reach each form with a declaration, a count or a neighbour. Words that mean the
// same are left out. A doubled bracket is also two single ones, so a few strings come twice.
constexpr std::string_view kPieces[] = {
    // Declarations, one for each type, and what remains of a broken one. Also the name of a bit
    // range, and its byte order.
    "n:s=", "n:f=", "n:i=", "n:b=", "n=", ":", ":L",
    // Text: both kinds, a wildcard, and a quote that opens or closes.
    "\"e\"", "'e'", "\"E?\"", "'",
    // Counts, also members. The middle one is also a hexadecimal byte.
    "0", "31", "2",
    // A range of bytes 00 to 31, of characters 0 to 3, or of 32 bits; and one across two bytes.
    "00-31", "3-12",
    // Kinds of numbers, classes of bytes, and the end of a line; the words are also members.
    "#", ".", "x", "?", "a", "c", "eol",
    // Sets, single and doubled, with their operators and what an escape or a blank does in them.
    "[", "]", "[[", "]]", "{", "}", "{{", "}}", "^", "-", "\\", " ",
    // Bit fields.
    "(", ")", ","};

// Two digits; what makes a radix or an exponent of them, in both cases; signs and the point; white
// space; and the ends of the range.
constexpr std::string_view kBytes("10xeE+-. \n\0\xff", 12);

class Exhaustive {
  public:
    // length: of the longest messages.
    explicit Exhaustive(long length) { AddMessages("", length); }

    // Tries all parsing strings that start with the given one and have up to count more pieces.
    void Try(const std::string& parseString, long count)
    {
        TryOne(parseString);
        if (count == 0) return;
        for (const std::string_view piece : kPieces) Try(Joined(parseString, piece), count - 1);
    }

    bool Agree() const { return mDifferences == 0; }

    void Print() const
    {
        std::printf(
            "%llu parsing strings, of which %llu compile, with %zu messages each: %llu pairs, of "
            "which %llu match; %llu differences\n",
            mStrings, mCompiled, mMessages.size(), mCompiled * mMessages.size(), mMatches,
            mDifferences);
    }

  private:
    using Count = unsigned long long;

    void AddMessages(const std::string& message, long more)
    {
        mMessages.emplace_back(message);
        if (more == 0) return;
        for (const char byte : kBytes) AddMessages(message + byte, more - 1);
    }

    // With a blank between two pieces that would be one token otherwise.
    static std::string Joined(const std::string& parseString, std::string_view piece)
    {
        const auto last = static_cast<unsigned char>(parseString.empty() ? 0 : parseString.back());
        const auto first = static_cast<unsigned char>(piece.front());
        const bool merge = (std::isalpha(last) != 0 && std::isalnum(first) != 0) ||
                           (std::isdigit(last) != 0 && std::isdigit(first) != 0);
        return parseString + (merge ? " " : "") + std::string(piece);
    }

    void TryOne(const std::string& parseString)
    {
        Comparison comparison(parseString);
        ++mStrings;
        Report(comparison.Difference(), parseString, "");
        if (!comparison.Compiles()) return;
        ++mCompiled;
        for (const HeapMessage& message : mMessages) {
            const char* const difference = comparison.MatchDifference(message);
            if (difference != nullptr) {
                Report(difference, parseString, message.From(message.Data()));
            }
        }
        mMatches += comparison.MatchCount();
    }

    void Report(const char* difference, const std::string& parseString, const std::string& message)
    {
        if (difference == nullptr) return;
        ++mDifferences;
        std::printf("Parsing string %s, message %s: they differ in %s\n",
                    NExplain::AlwaysQuoted(parseString).c_str(),
                    NExplain::AlwaysQuoted(message).c_str(), difference);
    }

    std::vector<HeapMessage> mMessages;
    Count mStrings = 0;
    Count mCompiled = 0;
    Count mMatches = 0;
    Count mDifferences = 0;
};

}  // namespace

int main(int argc, char** argv)
{
    const long pieces = argc == 3 ? std::strtol(argv[1], nullptr, 10) : 0;
    const long bytes = argc == 3 ? std::strtol(argv[2], nullptr, 10) : 0;
    if (pieces <= 0 || bytes <= 0) {
        std::fprintf(stderr, "Usage: exhaustive PIECES BYTES\n");
        return 2;
    }
    Exhaustive exhaustive(bytes);
    exhaustive.Try("", pieces);
    exhaustive.Print();
    return exhaustive.Agree() ? 0 : 1;
}

// What a parsing string means, and where a message stops and why.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "Common/Explain/byte_text.h"
#include "Common/Explain/meaning.h"
#include "Common/Explain/miss.h"
#include "Common/Explain/trace.h"
#include "Common/Pattern/pattern.h"
#include "Common/Pattern/pattern_elements.h"

using namespace NExplain;
using namespace std::string_literals;

namespace {

struct MeaningRow {
    const char* mPiece;
    std::string mMeaning;  // what it takes, then " | name: value" for each capture
};

TEST(Explain, SaysWhatEachPieceMeans)
{
    const MeaningRow rows[] = {
        {"'a?b'", R"(the text "a?b", and the case must match; each ? is any one byte)"},
        {"\"\xC3\xA4\\x\"", "the text \"\xC3\xA4x\", in uppercase or lowercase"},
        {"n:s='a'", "the text \"a\", and the case must match | n: a string"},
        {R"('","')", R"(the text '","')"},
        {"3#", "a whole number, with or without a sign, at most 3 digits"},
        {"n:i=.#", "a number, with or without a sign and a decimal point | n: an integer"},
        {"1.2#",
         "a number, with or without a sign and a decimal point, at most 1 digit before the point, "
         "at most 2 digits after the point"},
        {"n:f=2x", "a hexadecimal number without a sign, at most 2 digits | n: a float"},
        {"?", "exactly 1 byte of any value"},
        {"n:i=2 bytes",
         "exactly 2 bytes of any value | n: an integer, least significant byte first"},
        {"n:b=2 ?", "exactly 2 bytes of any value | n: an integer, most significant byte first"},
        {"n:f=3 bytes",
         "exactly 3 bytes of any value | n: a float of the bytes as a whole number, least "
         "significant byte first"},
        {"n:s=c", "one or more visible characters (no spaces) | n: a string"},
        {"2 letters", "exactly 2 letters A to Z or a to z"},
        {"[0-9ab]", "one or more of the characters '0' to '9', 'a', 'b'"},
        {"[[+]]", "the character '+', once"},
        {"[ ]", "the character space, once or more"},
        {"{{AA}}", "the byte AA, once"},
        {"[[NS]]", "exactly one of the characters 'N', 'S'"},
        {"[^,\\t]", "one or more characters except tab, ','"},
        {"[^\\]]", "one or more characters except ']'"},
        {"{0D 41-5A}", "one or more of the bytes 0D, 41 to 5A"},
        {"{{00-FF}}", "exactly one byte of any value"},
        {"{^00-FF}", "nothing: the set excludes every byte"},
        {"'a\\?b?'", R"(the text "a?b?", and the case must match; each ? without a )"
                     "backslash before it is any one byte"},
        {"{00-80}", "one or more bytes except 81 to FF"},
        {"n:i={00-FE}",
         "one or more bytes except FF | n: an integer, least significant byte first"},
        {"(a=0-3, 7-7)",
         "a block of 1 byte, divided into groups of bits | a: an integer, bits 0 to 3 | : an "
         "integer, bit 7"},
        {"(a=0-15)",
         "a block of 2 bytes, divided into groups of bits; the first byte is the most significant "
         "| a: an integer, bits 0 to 15"},
        {"(a=9-8):L",
         "a block of 2 bytes, divided into groups of bits; the first byte is the least significant "
         "| a: an integer, bits 8 to 9"},
        {"n:s=eol", "the rest of the line, with the line ends after it | n: a string"},
    };
    for (const MeaningRow& row : rows) {
        const Pieces pieces = TakeApart(row.mPiece);
        ASSERT_EQ(pieces.size(), 1U) << row.mPiece;
        const Meaning meaning = MeaningOf(pieces[0]);
        std::string shown = meaning.mTakes;
        for (const CaptureMeaning& capture : meaning.mCaptures) {
            shown.append(" | ").append(capture.mName).append(": ").append(capture.mValue);
        }
        EXPECT_EQ(shown, row.mMeaning) << row.mPiece;
    }
}

TEST(Explain, TakesAParsingStringApart)
{
    const Pieces pieces = TakeApart(" 'a'  n:s=[a b]\n(x=0-3, y=4-7) :L # .# \t");
    std::string shown;
    for (const Piece& piece : pieces) {
        shown += std::to_string(piece.mStart) + piece.mSource +
                 (piece.mSkipsSpace ? " skips" : "") + ' ' + std::to_string(piece.mFirstCapture) +
                 '+' + std::to_string(piece.mCaptures.size()) + '|';
    }
    EXPECT_EQ(shown, "1'a' 0+0|6n:s=[a b] 0+1|16(x=0-3, y=4-7) :L 1+2|34# 3+0|36.# skips 3+0|");
    EXPECT_TRUE(TakeApart(" ").empty());
    EXPECT_THROW(TakeApart("'a' wrong"), NPattern::PatternSyntaxException);
}

struct MissRow {
    const char* mPattern;
    std::string mMessage;
    std::string mFound;  // and after " at " the byte where it stopped, or " before " the piece
    std::string mHints;  // the beginning of each, with '|' after it
    bool mIsCut = false;
};

TEST(Explain, SaysWhyAMessageDoesNotMatch)
{
    const MissRow rows[] = {
        {"'a'", "", "nothing", ""},
        {"'a' eol", "a", "nothing before 2", "each piece needs at least one character, even eol|"},
        {"'Ab'", "aB", "\"aB\" at 0", "only uppercase and lowercase differ|"},
        {"# 'H='", "5 H:4", "\"H:4\", which differs at byte 3: ':' instead of '=' at 2", ""},
        {"'abc'", "ab", "\"ab\", where the message ends at 0", ""},
        {"#", " \t5", "space at 0",
         "white space at the start of a message is not skipped; if every message begins with it, "
         "begin the parsing string with a piece that takes it: [ \\t]|"},
        {"#", "\v 5", "byte 0B at 0",
         "white space at the start of a message is not skipped; if every message begins with it, "
         "begin the parsing string with a piece that takes it: {20 0B}|"},
        {"#", "\n5", "line feed at 0", "the message begins with a line feed|"},
        {"' x'", " y", "\" y\", which differs at byte 1: 'y' instead of 'x' at 0", ""},
        {"# #", "12", "nothing before 2", "piece 1 took \"12\"|"},
        {"2 bytes #", "ab 5", "space at 2",
         "white space is skipped only between two pieces that read text, and piece 1 reads bytes|"},
        {"# [[ ,]]", "5\t", "tab at 1", "this set takes spaces, but no other white space|"},
        {"# 'C'", "5.2C", "\".2C\" at 1", "write a number that may have|this text comes later|"},
        {"# 'V'", "5e3", "\"e3\" at 1", "name:float=[-+.0-9Ee] reads a number with an exponent|"},
        {"x ';'", "0x1F", "\"x1F\" at 1", "a prefix 0x is not part of a number|"},
        {"x", "-1", "'-' at 0", "a hexadecimal number has no sign|"},
        {"# 'V'", "5e", "\"e\" at 1", ""},
        {"# 'V'", "5 e3", "\"e3\" at 2", ""},
        {"# 'V'", "5 .5", "\".5\" at 2", ""},
        {"'?a?'", "ba\0"s,
         "\"ba\\x00\", which differs at byte 2: byte 00 instead of any other byte at 0", ""},
        {"'b'", "aab", "\"aab\" at 0", "this text comes later, after \"aa\"|"},
        {"n:s=chars ';'", "abc;", "nothing before 2", "piece 1 takes ';' too|"},
        {"n:s=chars 'V'", "5V", "nothing before 2", "piece 1 took \"5V\"|"},
        {"[^,] 'x'", "ab", "nothing before 2", "piece 1 takes everything|"},
        {"letters #", "ab", "nothing before 2", "piece 1 took \"ab\"|"},
        {"letters #", "a", "nothing before 2", ""},
        {"# '5'", "15", "nothing before 2", "piece 1 took \"15\"|"},
        {"4 bytes 'x'", "abcd", "nothing before 2", ""},
        {"'aXb' 'X'", "aXbY", "\"Y\" at 3", ""},
        {"eol 'x'", "ab\n", "nothing before 2", "piece 1 took \"ab\\n\"|"},
        {"'x'", std::string(21, 'a'), "\"aaaaaaaaaaaaaaaaaaaa\" ... at 0", ""},
        {"3 letters", "ab1", "only 2 of them, then '1' at 0", ""},
        {"3 letters", "ab", "only 2 of them, then the message ends at 0", ""},
        {"(0-15)", "a", "only 1 byte at 0", ""},
        {"'a' (0-15)", "a ", "only 1 byte at 1", ""},
        {"2 bytes", " ", "only 1 of them, then the message ends at 0", ""},
        {"#", "\x01", "byte 01 at 0", ""},
        {"'a' #", "a", "nothing before 2", "the message goes on with a byte 00|", true},
        {"'a' #", "a", "nothing before 2", ""},
        {"'OK'", "\r", "\"\\r\" at 0", "this is an empty line|"},
        {"'T' #", "T is 5", "'i' at 2", "the number comes later, after \"is \"|"},
        {"'5?C'",
         "5\xC2\xB0"
         "C",
         "\"5\xC2\xB0"
         "C\", which differs at byte 2: byte B0 instead of 'C' at 0",
         "each ? is one byte, and \"\xC2\xB0\" is 2 bytes: use ??|"},
    };
    for (const MissRow& row : rows) {
        const Pieces pieces = TakeApart(row.mPattern);
        const Trace trace = TraceMatch(pieces, row.mMessage);
        ASSERT_TRUE(trace.mRefusedBy.has_value()) << row.mPattern;
        const Miss miss = ExplainMiss(pieces, row.mMessage, trace, row.mIsCut);
        const std::string piece = std::to_string(*trace.mRefusedBy + 1);
        std::string found = miss.mFound;
        std::string verdict = "the message is empty";
        if (miss.mVerdict.find(" at ") != std::string::npos) {
            found += " at " + std::to_string(trace.mStoppedAt);
            verdict =
                "piece " + piece + " does not match at byte " + std::to_string(trace.mStoppedAt);
        } else if (miss.mVerdict.find(" before ") != std::string::npos) {
            found += " before " + piece;
            verdict = "the message ends before piece " + piece;
        }
        EXPECT_EQ(miss.mVerdict, verdict) << row.mPattern;
        EXPECT_EQ(found, row.mFound) << row.mPattern;
        EXPECT_EQ(miss.mWanted, MeaningOf(pieces[*trace.mRefusedBy]).mTakes);
        std::string_view hints = row.mHints;
        for (const std::string& hint : miss.mHints) {
            const std::string_view start = hints.substr(0, hints.find('|'));
            EXPECT_FALSE(start.empty()) << hint;
            EXPECT_EQ(hint.substr(0, start.size()), start) << row.mPattern;
            hints.remove_prefix(std::min(start.size() + 1, hints.size()));
        }
        EXPECT_EQ(hints, "") << row.mPattern;
    }
}

// Over every beginning of every example message: a trace ends where the match ends, and its takes
// cover the message up to there without a gap.
TEST(Explain, TracesWhatTheEngineMatches)
{
    namespace fs = std::filesystem;
    const auto read = [](const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    int matches = 0;
    int misses = 0;
    for (const auto& entry : fs::directory_iterator(WORD_SIFTER_EXAMPLES)) {
        if (entry.path().extension() != ".pattern") continue;
        const std::string pattern = read(entry.path());
        const Pieces pieces = TakeApart(pattern);
        NPattern::Pattern compiled;
        compiled.SetPatternString(pattern);
        const std::string input = read(fs::path(entry.path()).replace_extension(".input"));
        for (std::size_t start = 0; start < input.size(); start = input.find('\n', start) + 1) {
            const std::size_t end = std::min(input.find('\n', start), input.size());
            for (std::size_t n = start; n <= end; ++n) {
                const std::string message = input.substr(start, n - start);
                const auto* const data = reinterpret_cast<const NPattern::Byte*>(message.data());
                const auto* const rest =
                    compiled.Match(data, static_cast<std::uint32_t>(message.size()));
                const Trace trace = TraceMatch(pieces, message);
                ASSERT_EQ(trace.mRefusedBy.has_value(), rest == nullptr) << message;
                (rest != nullptr ? matches : misses)++;
                if (rest != nullptr) {
                    EXPECT_EQ(data + trace.mStoppedAt, rest);
                }
                std::size_t covered = 0;
                for (const Take& take : trace.mTakes) {
                    EXPECT_EQ(take.mSpan.mStart, covered);
                    EXPECT_GT(take.mSpan.mEnd, covered);
                    covered = take.mSpan.mEnd;
                }
                EXPECT_EQ(covered, trace.mStoppedAt);
                if (rest == nullptr) ExplainMiss(pieces, message, trace, false);
            }
            if (end == input.size()) break;
        }
    }
    EXPECT_GT(matches, 100);
    EXPECT_GT(misses, 100);
}

TEST(Explain, ShowsBytesAsText)
{
    EXPECT_EQ(Escaped("a\n\r\t\x01\x7F\xC2\x85\xC3\xA4\xFF"),
              "a\\n\\r\\t\\x01\\x7F\\xC2\\x85\xC3\xA4\\xFF");
    EXPECT_EQ(Escaped("\xC2\x9F\xC2\xA0"), "\\xC2\\x9F\xC2\xA0");
    EXPECT_EQ(Quoted("a\"b"), "\"a\\\"b\"");
    EXPECT_EQ(Quoted("ab"), "ab");
    EXPECT_EQ(Quoted(""), "\"\"");
    EXPECT_EQ(HexOf("\0\xAF"s), "00AF");
    EXPECT_EQ(ColumnsOf("\xC3\xA4\xC3\xA5\n\x7F"), 4U);
    for (const char* const line : {"", "a\t", "\t", "\r", "\n"}) EXPECT_FALSE(IsBinary(line));
    for (const char* const bytes : {"\x01", "\xFF", "a\x7F"}) EXPECT_TRUE(IsBinary(bytes));
    for (const char* const text : {"\x80", "\xE2\x82", "\xE2\x82\x41", "\xF0\x90\x80\x41"}) {
        EXPECT_FALSE(IsUtf8(text)) << HexOf(text);
    }
}

TEST(Explain, KnowsEveryCodePoint)
{
    constexpr unsigned kFirstOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
    for (unsigned lead = 0xC0; lead <= 0xFF; ++lead) {
        for (unsigned second = 0; second <= 0xFF; ++second) {
            const unsigned length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
            std::string text = {static_cast<char>(lead), static_cast<char>(second)};
            text.resize(length, '\x80');
            const unsigned bits = (lead & (0x7FU >> length)) << 6 | (second & 0x3F);
            const unsigned codePoint = bits << 6 * (length - 2);
            const bool isOne = lead < 0xF8 && second >> 6 == 2 &&
                               codePoint >= kFirstOfLength[length] && codePoint <= 0x10FFFF &&
                               (codePoint < 0xD800 || codePoint > 0xDFFF);
            EXPECT_EQ(IsUtf8(text), isOne) << HexOf(text);
        }
    }
}

}  // namespace

// Fuzzes the explanations. An input is one of the fuzzer of the engine or the choices of an
// InputMaker.

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "Common/Explain/byte_survey.h"
#include "Common/Explain/byte_text.h"
#include "Common/Explain/cautions.h"
#include "Common/Explain/fault.h"
#include "Common/Explain/first_bytes.h"
#include "Common/Explain/meaning.h"
#include "Common/Explain/miss.h"
#include "Common/Explain/value_cautions.h"
#include "Common/Pattern/pattern.h"
#include "fuzzer.h"
#include "input_maker.h"
#include "tests/pattern/engine_support.h"

using namespace NExplain;
using NPattern::Parameter;
using NPattern::PatternSyntaxException;

namespace {

// The elements that a string compiles to, or an empty text.
std::string DumpOrNothing(const std::string& parseString)
{
    try {
        return WholeDump(NPattern::CompileElements(parseString));
    } catch (const PatternSyntaxException&) {
        return "";
    }
}

// A parsing string that an explanation proposes, and the words around it.
struct Proposal {
    std::string_view mBefore;  // its last character is the first of the parsing string
    std::string_view mAfter;   // its first character is the last of the parsing string
};

constexpr Proposal kProposals[] = {
    {"in quotes: '", "'"},
    {"as in [", "], or as"},
    {"that takes it: [", "]"},
    {"reads bytes; [", "] takes it"},
    {"; in its place, [", "] stops before it"},
};

// Bytes of the input are in double quotes, and may look like a proposal.
std::string ProposalIn(std::string_view words, const Proposal& proposal)
{
    const std::size_t before = words.find(proposal.mBefore);
    if (before == words.npos || words.find('"') != words.npos) return "";
    const std::size_t start = before + proposal.mBefore.size() - 1;
    const std::size_t end = words.find(proposal.mAfter, start + 1);
    Expect(end != words.npos, "a proposal has an end");
    return std::string(words.substr(start, end + 1 - start));
}

void ExpectOf(const std::string& text, bool held, const char* what)
{
    if (!held) std::fprintf(stderr, "The text is %s\n", AlwaysQuoted(text).c_str());
    Expect(held, what);
}

void CheckText(const std::string& text)
{
    ExpectOf(text, !text.empty(), "an explanation is not empty");
    ExpectOf(text, !IsBinary(text), "an explanation is UTF-8 text without control characters");
}

void CheckWords(const std::string& words)
{
    CheckText(words);
    for (const Proposal& row : kProposals) {
        const std::string proposal = ProposalIn(words, row);
        ExpectOf(words, proposal.empty() || !DumpOrNothing(proposal).empty(),
                 "a proposal compiles");
    }
}

void CheckAllWords(const std::vector<std::string>& list)
{
    for (const std::string& words : list) CheckWords(words);
}

void CheckFault(const Fault& fault, const std::string& parseString)
{
    Expect(fault.mStart <= parseString.size() && fault.mLength <= parseString.size() - fault.mStart,
           "a fault is in its string");
    Expect(fault.mLength != 0 || fault.mStart == parseString.size(), "a place that is known");
    CheckAllWords(fault.mHints);
    CheckAllWords(fault.mNeeds);
}

void CheckPieces(const Pieces& pieces, const std::string& parseString)
{
    std::string sources;
    std::size_t end = 0;
    std::size_t captures = 0;
    for (const Piece& piece : pieces) {
        Expect(piece.mStart >= end, "the pieces are in order");
        end = piece.mStart + piece.mSource.size();
        Expect(parseString.compare(piece.mStart, piece.mSource.size(), piece.mSource) == 0,
               "the source of a piece is as written");
        Expect(piece.mFirstCapture == captures, "the captures are in order");
        captures += piece.mCaptures.size();
        sources += piece.mSource + ' ';

        const Meaning meaning = MeaningOf(piece);
        CheckWords(meaning.mTakes);
        Expect(meaning.mCaptures.size() == piece.mCaptures.size(), "each capture has a meaning");
        for (const CaptureMeaning& capture : meaning.mCaptures) CheckWords(capture.mValue);
    }
    Expect(DumpOrNothing(sources) == DumpOrNothing(parseString), "nothing is outside the pieces");
}

void CheckCautions(const std::vector<Caution>& cautions, const Pieces& pieces)
{
    for (const Caution& caution : cautions) {
        Expect(caution.mPiece < pieces.size(), "the piece of a caution exists");
        CheckWords(caution.mText);
        const std::string set =
            ProposalIn(caution.mText, {"; in its place, [", "] stops before it"});
        Expect(set.empty() ||
                   (FirstBytes(TakeApart(set)[0]) & FirstBytes(pieces[caution.mPiece])).none(),
               "a set that is said to stop before a piece does so");
    }
}

bool IsBlank(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return NPattern::IsSpace(static_cast<NPattern::Byte>(c)); });
}

void CheckTakes(const Pieces& pieces, std::string_view message, const Trace& trace)
{
    std::size_t end = 0;
    std::size_t piece = 0;
    for (const Take& take : trace.mTakes) {
        Expect(take.mSpan.mStart == end && take.mSpan.mEnd > end, "the takes leave no gap");
        end = take.mSpan.mEnd;
        if (take.mPiece.has_value()) {
            Expect(*take.mPiece == piece++, "each piece takes once");
        } else {
            Expect(piece < pieces.size() && pieces[piece].mSkipsSpace &&
                       IsBlank(take.mSpan.Of(message)),
                   "only white space before a piece that allows it is skipped");
        }
    }
    Expect(end == trace.mStoppedAt && end <= message.size(), "a trace stops after its last take");
    Expect(piece == trace.mRefusedBy.value_or(pieces.size()), "each piece before the stop takes");
    Expect((piece < pieces.size()) == trace.mRefusedBy.has_value(),
           "the piece that refused exists");
}

void CheckMiss(const Pieces& pieces, std::string_view message, const Trace& trace)
{
    const std::string name = "piece " + std::to_string(*trace.mRefusedBy + 1);
    for (const bool isCut : {false, true}) {
        const Miss miss = ExplainMiss(pieces, message, trace, isCut);
        CheckWords(miss.mVerdict);
        Expect(message.empty() || miss.mVerdict.find(name) != std::string::npos,
               "the verdict names the piece that refused");
        CheckWords(miss.mWanted);
        CheckWords(miss.mFound);
        CheckAllWords(miss.mHints);
    }
}

void CheckValues(const Pieces& pieces, std::string_view message, const Trace& trace,
                 const std::vector<Parameter>& values)
{
    const std::vector<ValueRisk> risks = FindValueRisks(pieces);
    const std::vector<Caution> cautions = FindValueCautions(pieces, risks, message, trace);
    CheckCautions(cautions, pieces);
    for (const Caution& caution : cautions) {
        const Piece& piece = pieces[caution.mPiece];
        Expect(MayBeTrue({caution.mKind, caution.mPiece}, piece, message), "what is true may be");
        const Parameter& value = values[piece.mFirstCapture];
        const double number = value.IsInteger() ? value.mIntValue : value.mFloatValue;
        Expect(caution.mKind != kCautionNoDigit || number == 0, "without a digit, the value is 0");
        Expect(
            caution.mKind != kCautionClamped || number == 2147483647.0 || number == -2147483648.0,
            "a number that is too large is the nearest integer");
    }
}

// The host passes only messages without NUL.
void CheckCautionsOfMatch(const std::vector<Caution>& cautions, const Trace& trace)
{
    for (const Caution& caution : cautions) {
        Expect(!PreventsMatch(caution.mKind), "a string that never matches does not match");
        if (caution.mKind != kCautionOnlyAfterSpace) continue;
        const auto take = std::find_if(trace.mTakes.begin(), trace.mTakes.end(),
                                       [&](const Take& t) { return t.mPiece == caution.mPiece; });
        Expect(!(take - 1)->mPiece.has_value(), "a piece that needs white space before it has it");
    }
}

void CheckMessage(const Pieces& pieces, const std::string& parseString, const HeapMessage& message,
                  const std::vector<Caution>& cautions)
{
    const std::string_view text(reinterpret_cast<const char*>(message.Data()), message.Length());
    NPattern::Pattern pattern;
    pattern.SetPatternString(parseString);
    const NPattern::Byte* const rest = pattern.Match(message.Data(), message.Length());
    const Trace trace = TraceMatch(pieces, text);
    CheckTakes(pieces, text, trace);
    Expect(trace.mRefusedBy.has_value() == (rest == nullptr), "a trace agrees with a match");
    if (rest == nullptr) return CheckMiss(pieces, text, trace);

    Expect(message.Data() + trace.mStoppedAt == rest, "a trace ends where the match ends");
    std::vector<Parameter> wanted;
    pattern.CollectParameters(wanted);
    std::vector<Parameter> values;
    for (const Piece& piece : pieces) piece.mElement->CollectParameters(values);
    Expect(std::equal(values.begin(), values.end(), wanted.begin(), wanted.end(), SameParameter),
           "a trace captures what the match captures");
    CheckValues(pieces, text, trace, values);
    if (text.find('\0') == text.npos) CheckCautionsOfMatch(cautions, trace);
}

// Adds the bytes in parts of this size, with a pause after each.
Survey SurveyOf(std::string_view bytes, std::size_t size, bool hasPauses)
{
    ByteSurvey survey;
    for (std::size_t start = 0; start < bytes.size(); start += size) {
        survey.Add(bytes.substr(start, size));
        if (hasPauses) survey.AddPause();
    }
    return survey.Result();
}

// The first message is not measured.
void CheckLengths(std::string_view bytes, const Survey& survey)
{
    const char last = survey.mEnd.back();
    std::size_t shortest = bytes.size();
    std::size_t longest = 0;
    std::size_t start = bytes.find(last) + 1;
    for (std::size_t end = 0; (end = bytes.find(last, start)) != bytes.npos; start = end + 1) {
        const std::size_t length = end + 1 - start;
        shortest = std::min(shortest, length);
        longest = std::max(longest, length);
    }
    Expect(survey.mShortest + survey.mEnd.size() == shortest, "a survey has the shortest message");
    Expect(survey.mLongest + survey.mEnd.size() == longest, "a survey has the longest message");
}

void CheckSurvey(std::string_view bytes, std::size_t size, bool hasPauses)
{
    const Survey survey = SurveyOf(bytes, size, hasPauses);
    const auto count = [bytes](auto wanted) {
        return static_cast<std::uint64_t>(std::count_if(bytes.begin(), bytes.end(), wanted));
    };
    const auto countOf = [count](char byte) { return count([=](char c) { return c == byte; }); };
    Expect(survey.mBytes == bytes.size(), "a survey counts each byte");
    Expect(survey.mHighBytes == count([](char c) { return static_cast<NPattern::Byte>(c) > 127; }),
           "a survey counts the bytes above 127");
    Expect(survey.mNuls == countOf('\0'), "a survey counts the NUL bytes");
    Expect(survey.mMessages == (survey.mEnd.empty() ? survey.mPauses : countOf(survey.mEnd.back())),
           "a survey counts the ends of messages");
    Expect(survey.mShortest <= survey.mLongest && survey.mLongest <= bytes.size(),
           "no message is longer than all bytes");
    if (!survey.mEnd.empty() && survey.mMessages > 1) CheckLengths(bytes, survey);
    CheckAllWords(Findings(survey));
    if (hasPauses) return;
    Expect(Findings(survey) == Findings(SurveyOf(bytes, 1, false)),
           "a survey doesn't depend on how the bytes arrive");
}

void CheckTexts(const std::string& text)
{
    CheckText(Quoted(text));
    CheckText(AlwaysQuoted(text));
    Expect(!IsBinary(Escaped(text)), "an escaped text is text");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const EngineInput input = InputOf({reinterpret_cast<const char*>(data), size});
    const std::string& parseString = input.mParseString;
    CheckTexts(input.mMessage);
    const std::size_t part = 1 + input.mMessage.size() / 5;
    CheckSurvey(input.mMessage, part, false);
    CheckSurvey(input.mMessage, part, true);

    const std::optional<Fault> fault = FindFault(parseString);
    try {
        const Pieces pieces = TakeApart(parseString);
        Expect(!fault.has_value(), "a string that compiles has no fault");
        CheckPieces(pieces, parseString);
        const std::vector<Caution> cautions = FindCautions(pieces);
        CheckCautions(cautions, pieces);
        if (pieces.empty()) return 0;
        CheckMessage(pieces, parseString, HeapMessage(input.mMessage), cautions);
    } catch (const PatternSyntaxException& error) {
        Expect(fault.has_value(), "a string that doesn't compile has a fault");
        Expect(fault->mCode == error.mCode && fault->mMessage == error.mMessage,
               "a fault is the error of the compile");
        CheckFault(*fault, parseString);
    }
    return 0;
}

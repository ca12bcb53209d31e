#include "byte_survey.h"

#include <algorithm>
#include <utility>

#include "Common/Pattern/pattern_bytes.h"
#include "byte_text.h"

namespace NExplain {

namespace {

constexpr std::uint64_t kFewPauses = 3;
constexpr std::uint64_t kLongestMessage = 2048;
constexpr std::uint64_t kFewLines = 3;
constexpr std::uint64_t kLongestLine = 256;  // among bytes that are no text

// The bytes that end the messages of most devices that send text, the likeliest first.
constexpr unsigned char kUsualEnds[] = {'\n', '\r', 0x03, 0x04, 0x1E, 0x00};

std::string NameOfEnd(const std::string& end)
{
    constexpr std::pair<std::string_view, const char*> kNames[] = {
        {"\r\n", "CR LF"}, {"\n", "LF"}, {"\r", "CR"}, {"\x03", "ETX"}, {{"\0", 1}, "a byte 00"}};
    for (const auto& [bytes, name] : kNames) {
        if (end == bytes) return name;
    }
    return NameOfByte(static_cast<unsigned char>(end[0]));
}

std::string EndWords(const Survey& survey)
{
    if (!survey.mEnd.empty()) {
        return "each message seems to end with " + NameOfEnd(survey.mEnd) + "; use -e " +
               std::to_string(static_cast<unsigned char>(survey.mEnd.back()));
    }
    std::string words = "no character seems to end each message";
    if (survey.mPauses >= kFewPauses)
        words += "; with -e 0, a message ends where the device pauses";
    return words;
}

std::string LengthWords(const Survey& survey)
{
    std::string words = CountOf(survey.mMessages, "message") + " of ";
    if (survey.mShortest != survey.mLongest) words += std::to_string(survey.mShortest) + " to ";
    return words + CountOf(survey.mLongest, "byte") +
           (survey.mEnd.empty() ? "" : ", without its end");
}

bool IsOfText(unsigned char byte)
{
    return NPattern::IsPrint(byte) || NPattern::IsSpace(byte);
}

}  // namespace

void ByteSurvey::Add(std::string_view bytes)
{
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        ++mBytes;
        if (byte == '\n') AddLineFeed();
        AddToCharacter(byte);
        mByByte[byte].End(mBytes);
        mLast = byte;
    }
}

// The first line may begin between CR and LF.
void ByteSurvey::AddLineFeed()
{
    if (mLast == '\r') {
        ++mCrLfs;
    } else if (mByByte['\n'].mCount != 0) {
        mHasLoneLineFeed = true;
    }
}

void ByteSurvey::AddToCharacter(unsigned char byte)
{
    const bool continues = (byte & 0xC0) == 0x80;
    if (!continues) {
        mUtf8Length = byte < 0xC2 ? 0 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : byte < 0xF5 ? 4 : 0;
        mUtf8Seen = 1;
    } else if (++mUtf8Seen == mUtf8Length) {
        mUtf8Bytes += mUtf8Length;
    }
}

void ByteSurvey::AddPause()
{
    if (mBytes == mByPause.mLastEnd) return;
    ++mBeforePauses[mLast];
    mByPause.End(mBytes);
}

Survey ByteSurvey::Result() const
{
    const std::string end = FindEnd();
    const Messages& messages =
        end.empty() ? mByPause : mByByte[static_cast<unsigned char>(end.back())];
    return {mBytes,
            TotalOf([](unsigned char byte) { return byte > 127; }),
            mByByte[0].mCount,
            mByPause.mCount,
            IsText(),
            end,
            messages.mCount,
            messages.mShortest - end.size(),
            messages.mLongest - end.size()};
}

void ByteSurvey::Messages::End(std::uint64_t position)
{
    const std::uint64_t length = position - std::exchange(mLastEnd, position);
    if (++mCount == 1) return;
    mShortest = mCount == 2 ? length : std::min(mShortest, length);
    mLongest = std::max(mLongest, length);
}

template <typename Predicate>
std::uint64_t ByteSurvey::TotalOf(Predicate wanted) const
{
    std::uint64_t count = 0;
    for (unsigned byte = 0; byte < mByByte.size(); ++byte) {
        if (wanted(static_cast<unsigned char>(byte))) count += mByByte[byte].mCount;
    }
    return count;
}

bool ByteSurvey::IsText() const
{
    const std::uint64_t starts = mByByte[0x02].mCount;
    const std::uint64_t ends = mByByte[0x03].mCount;
    const bool isFramed = starts <= ends + 1 && ends <= starts + 1;
    const std::uint64_t text = TotalOf(IsOfText) + mUtf8Bytes + (isFramed ? starts + ends : 0);
    const std::uint64_t controls =
        TotalOf([](unsigned char byte) { return !IsOfText(byte) && byte < 0xA0; });
    // Short texts may have a sign of an 8-bit encoding in each.
    return text * 10 >= mBytes * 7 || (controls == 0 && text * 2 >= mBytes);
}

// True if CR LF ends short pieces, whatever they hold.
bool ByteSurvey::HasLines() const
{
    return mCrLfs >= kFewLines && !mHasLoneLineFeed && mByByte['\n'].mLongest <= kLongestLine;
}

std::string ByteSurvey::FindEnd() const
{
    if (HasLines()) return "\r\n";
    const bool isText = IsText();
    std::optional<unsigned char> end = isText ? UsualEnd() : std::nullopt;
    // In binary messages of one length, the last byte is often the same by accident.
    const bool hasOneLength = !isText && mByPause.mShortest == mByPause.mLongest;
    if (!end && !hasOneLength) end = EndBeforePauses();
    const bool hasLine = mByByte['\n'].mCount + mByByte['\r'].mCount != 0;
    if (!end && isText && !hasLine && mByPause.mCount < kFewPauses && mByByte[';'].mCount > 1) {
        end = ';';
    }
    if (!end) return "";
    if (end == '\n' && !mHasLoneLineFeed) return "\r\n";
    return std::string(1, static_cast<char>(*end));
}

std::optional<unsigned char> ByteSurvey::UsualEnd() const
{
    const std::uint64_t least = std::max<std::uint64_t>(2, mByPause.mCount * 4 / 5);
    const bool isMoreReturns = mByByte['\r'].mCount > 2 * mByByte['\n'].mCount;
    for (const unsigned char end : kUsualEnds) {
        const Messages& messages = mByByte[end];
        if (end == '\n' && isMoreReturns) continue;
        if (messages.mCount >= least && messages.mLongest <= kLongestMessage) return end;
    }
    return std::nullopt;
}

// A byte that comes before most pauses, and seldom elsewhere.
std::optional<unsigned char> ByteSurvey::EndBeforePauses() const
{
    const std::uint64_t pauses = mByPause.mCount;
    const auto most = std::max_element(mBeforePauses.begin(), mBeforePauses.end());
    const auto end = static_cast<unsigned char>(most - mBeforePauses.begin());
    const bool isEnd = pauses >= kFewPauses && *most * 5 >= pauses * 4 && !NPattern::IsAlnum(end) &&
                       mByByte[end].mCount * 4 <= pauses * 5;
    return isEnd ? std::optional(end) : std::nullopt;
}

std::vector<std::string> Findings(const Survey& survey)
{
    if (survey.mBytes == 0) {
        return {
            "nothing came: is the device on and connected? Are the baud rate and the line "
            "right? Some devices send only when they are asked"};
    }
    std::vector<std::string> findings = {EndWords(survey)};
    if (survey.mMessages > 1) findings.push_back(LengthWords(survey));
    findings.push_back(CountOf(survey.mBytes, "byte") + ", " + std::to_string(survey.mHighBytes) +
                       " of them above 127, " + std::to_string(survey.mNuls) + " of them 00");
    if (survey.mHighBytes != 0) {
        findings.emplace_back(
            "bytes above 127 are numbers, letters or signs such as a degree sign, "
            "or come from a wrong baud rate");
    }
    if (survey.mNuls != 0 && survey.mEnd != std::string(1, '\0')) {
        findings.emplace_back(
            "the host's text ends at a byte 00, so a message that contains one is cut "
            "there or lost");
    }
    return findings;
}

}  // namespace NExplain

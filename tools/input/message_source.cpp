#include "tools/input/message_source.h"

#include <algorithm>
#include <utility>

#include "Common/Explain/byte_text.h"
#include "Common/Pattern/pattern_bytes.h"
#include "tools/input/piece_cutter.h"

namespace NSift {

namespace {

// The actor cuts a message after 2048 bytes and drops the next byte. Splitting the input at the
// same place loses nothing more.
constexpr std::size_t kLongestDelivery = 2048 + 1;

// What may stand between bytes in hexadecimal digits.
bool IsSeparator(char c)
{
    return NPattern::IsSpace(static_cast<NPattern::Byte>(c)) || c == ',' || c == ':' || c == '-';
}

bool IsHexPrefix(std::string_view text)
{
    return text.size() > 1 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

constexpr const char* kWarnings[] = {
    "the input has bytes 00, where the host's text ends: such a message is cut or lost",
    "a message is longer than 2048 bytes and is cut there; is the end-of-message character right?",
    "the input has carriage returns and no line feed, which would end a message; try -e '\\r'",
    "the input has line feeds and no carriage return, which would end a message; try -e '\\n'",
};

}  // namespace

MessageSource::MessageSource(std::uint8_t eomChar, InputForm form, const ReadOptions& reading,
                             Listeners listeners)
    : mEomChar(eomChar),
      mForm(form),
      mListeners(std::move(listeners)),
      mReader(reading),
      mSeeksEnd(form == InputForm::kRaw && (eomChar == '\n' || eomChar == '\r'))
{
}

Ending MessageSource::ReadFile(const std::string& path)
{
    const bool isRaw = mForm == InputForm::kRaw;
    mPath = path;
    mLine = 1;
    PieceCutter cutter = isRaw ? PieceCutter(static_cast<char>(mEomChar), kLongestDelivery)
                               : PieceCutter('\n', std::string::npos);
    auto kind = NSystem::InputKind::kRegular;
    const auto take = [&](std::string_view piece) {
        isRaw ? Deliver(piece) : TakeHexLine(piece);
        if (!isRaw || piece.back() == static_cast<char>(mEomChar)) ++mLine;
    };
    BlockReader::Listeners listeners;
    listeners.mOpened = [&](NSystem::InputKind opened) { kind = opened; };
    listeners.mTake = [&](std::string_view block) {
        mMayHaveNul = mMayHaveNul || !isRaw || block.find('\0') != block.npos;
        if (mSeeksEnd) LookForOtherEnd(block, 3);
        cutter.Cut(block, take);
        return mListeners.mGoesOn(kind != NSystem::InputKind::kRegular);
    };
    if (isRaw && mEomChar == 0) {
        listeners.mPause = [&] {
            if (kind != NSystem::InputKind::kDevice) return;
            cutter.Finish(take);
            mListeners.mGoesOn(true);
        };
    }
    const Ending ending = mReader.Read(path, listeners);
    const bool isComplete = ending == Ending::kEndOfFile || ending == Ending::kFailed;
    if (isComplete && kind != NSystem::InputKind::kDevice) cutter.Finish(take);
    if (mSeeksEnd) LookForOtherEnd({}, 2);
    if (ending == Ending::kFailed) mListeners.mComplain(mReader.Error());
    return ending;
}

void MessageSource::TakeHexLine(std::string_view line)
{
    const auto complain = [&](const std::string& fault) {
        mListeners.mComplain(mPath + " line " + std::to_string(mLine) + ": " + fault);
    };
    mBytes.clear();
    unsigned high = 16;  // the first digit of a byte; 16 if there is none
    for (; !line.empty(); line.remove_prefix(1)) {
        const char c = line.front();
        if (IsSeparator(c)) continue;
        if (high > 15 && IsHexPrefix(line)) {
            line.remove_prefix(1);
            continue;
        }
        const unsigned digit = NPattern::HexDigitValue(static_cast<NPattern::Byte>(c));
        if (digit > 15) return complain(NExplain::Quoted({&c, 1}) + " isn't a hexadecimal digit");
        if (high > 15) {
            high = digit;
        } else {
            mBytes.push_back(static_cast<char>(high * 16 + digit));
            high = 16;
        }
    }
    if (high <= 15) return complain("an odd number of hexadecimal digits");
    if (mBytes.size() % kLongestDelivery != 0) mBytes.push_back(static_cast<char>(mEomChar));
    for (std::string_view rest = mBytes; !rest.empty();) {
        const std::string_view delivery = rest.substr(0, kLongestDelivery);
        Deliver(delivery);
        rest.remove_prefix(delivery.size());
    }
}

// The last byte of the delivery ends the message, or is the one that the actor drops.
void MessageSource::Deliver(std::string_view delivery)
{
    const std::string_view text = delivery.substr(0, delivery.size() - 1);
    const bool isTooLong =
        text.size() == kLongestDelivery - 1 && delivery.back() != static_cast<char>(mEomChar);
    if (isTooLong) Warn(kTooLong);
    const std::size_t nul = mMayHaveNul ? text.find('\0') : text.npos;
    const bool isCut = nul != text.npos;
    if (isCut) Warn(kNulLost);
    const bool isLost = isCut && mEomChar != 0;
    mListeners.mDeliver(
        {delivery, isLost ? text : text.substr(0, nul), isLost, isCut && !isLost, mLine});
}

// Looks for carriage returns without any line feed, or the other way around.
void MessageSource::LookForOtherEnd(std::string_view block, std::ptrdiff_t many)
{
    const bool isLineFeed = mEomChar == '\n';
    if (block.find(static_cast<char>(mEomChar)) != block.npos) mSeeksEnd = false;
    mOtherEnds += std::count(block.begin(), block.end(), isLineFeed ? '\r' : '\n');
    if (mSeeksEnd && mOtherEnds >= many) Warn(isLineFeed ? kOnlyCarriageReturns : kOnlyLineFeeds);
}

void MessageSource::Warn(Warning warning)
{
    if (std::exchange(mIsWarned[warning], true)) return;
    mListeners.mWarn(kWarnings[warning]);
}

}  // namespace NSift

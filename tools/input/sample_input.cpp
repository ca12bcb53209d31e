#include "tools/input/sample_input.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "Common/Suggest/end_of_message.h"
#include "tools/input/piece_cutter.h"
#include "tools/system/interruption.h"

namespace NSift {

using NSystem::InputKind;

namespace {

constexpr std::size_t kMostKept = std::size_t{16} << 20;     // bytes
constexpr std::size_t kEnoughOfFile = std::size_t{1} << 16;  // bytes to find the character in
constexpr std::size_t kEnoughMessages = 200;                 // of a device
constexpr std::size_t kLongestDelivery = 2048 + 1;           // with the byte that ends it

void Complain(const std::string& text)
{
    std::cerr << "sift: " << text << '\n';
}

}  // namespace

SampleInput::SampleInput(std::vector<std::string> files, std::optional<std::uint8_t> eomChar,
                         InputForm form, const ReadOptions& reading)
    : mFiles(std::move(files)),
      mEomChar(eomChar),
      mForm(form),
      mReading(reading),
      mIsLive(std::find(mFiles.begin(), mFiles.end(), "-") != mFiles.end())
{
}

bool SampleInput::Read()
{
    if (mForm == InputForm::kHexLines) {
        ReadMessages([this](std::string_view message) { Keep(message); }, true);
        return !mHasTrouble;
    }
    BlockReader reader(mReading);
    for (const std::string& file : mFiles) {
        if (NSystem::Interruption() == 0) ReadBytes(file, reader);
    }
    if (!mEomChar) mEomChar = NSuggest::FindEndOfMessage(mBytes, mPauses);
    if (!mEomChar && mPauses.size() > 1) mEomChar = 0;
    mIsOpen = !mEomChar && !NSuggest::IsText(mBytes);
    if (mIsLive && !mIsOpen) CutBytes();
    mBytes.clear();
    return !mHasTrouble;
}

bool SampleInput::IsInterrupted() const
{
    return !mIsLive && NSystem::Interruption() != 0;
}

void SampleInput::ForEach(const std::function<void(std::string_view)>& take)
{
    if (mIsOpen) return;
    if (mIsLive) {
        std::for_each(mKept.begin(), mKept.end(), take);
    } else {
        ReadMessages(take, false);
    }
}

void SampleInput::ReadBytes(const std::string& path, BlockReader& reader)
{
    auto kind = InputKind::kRegular;
    BlockReader::Listeners listeners;
    listeners.mOpened = [&](InputKind opened) {
        kind = opened;
        mIsLive = mIsLive || kind != InputKind::kRegular;
        mIsDevice = mIsDevice || kind == InputKind::kDevice;
    };
    listeners.mTake = [&](std::string_view block) {
        mBytes += block.substr(0, kMostKept - mBytes.size());
        return !IsEnough(kind);
    };
    listeners.mPause = [&] {
        if (kind == InputKind::kDevice) mPauses.push_back(mBytes.size());
    };
    if (reader.Read(path, listeners) != Ending::kFailed) return;
    Complain(reader.Error());
    mHasTrouble = true;
}

bool SampleInput::IsEnough(InputKind kind)
{
    if (kind == InputKind::kRegular && !mIsLive && mFiles.size() == 1)
        return mBytes.size() >= kEnoughOfFile;
    mIsPart = mBytes.size() == kMostKept;
    if (mIsPart || kind != InputKind::kDevice || mReading.mDuration || mBytes.size() < mEnough) {
        return mIsPart;
    }
    mEnough = mBytes.size() + mBytes.size() / 8;  // in all, the search takes linear time
    const auto end = mEomChar ? mEomChar : NSuggest::FindEndOfMessage(mBytes, mPauses);
    const auto ends = end ? std::count(mBytes.begin(), mBytes.end(), static_cast<char>(*end)) : 0;
    return std::max(static_cast<std::size_t>(ends), mPauses.size()) > kEnoughMessages;
}

// Most devices are connected while they send, so their first message isn't complete; nor is the
// last. With the character NUL, messages end at pauses too.
void SampleInput::CutBytes()
{
    const auto keep = [this](std::string_view delivery) {
        const std::string_view message = delivery.substr(0, delivery.size() - 1);
        const bool isLost = EomChar() != 0 && message.find('\0') != message.npos;
        mLost += isLost ? 1 : 0;
        if (!isLost) Keep(message);
    };
    std::string_view bytes = mBytes;
    const char eomChar = static_cast<char>(EomChar());
    PieceCutter cutter(eomChar, kLongestDelivery);
    if (mIsDevice && eomChar == 0 && !mPauses.empty()) {
        for (std::size_t p = 1; p < mPauses.size(); ++p) {
            cutter.Cut(bytes.substr(mPauses[p - 1], mPauses[p] - mPauses[p - 1]), keep);
            cutter.Finish(keep);
        }
        return;
    }
    if (mIsDevice) bytes.remove_prefix(std::min(bytes.find(eomChar), bytes.size() - 1) + 1);
    cutter.Cut(bytes, keep);
    if (!mIsDevice) cutter.Finish(keep);
}

void SampleInput::ReadMessages(const std::function<void(std::string_view)>& take, bool isFirst)
{
    mLost = mIsLive ? mLost : 0;
    MessageSource::Listeners listeners;
    listeners.mDeliver = [&](const InputMessage& message) {
        if (message.mIsLost) {
            ++mLost;
        } else {
            take(message.mText);
        }
    };
    listeners.mComplain = [&](const std::string& error) {
        mHasTrouble = true;
        if (isFirst) Complain(error);
    };
    listeners.mWarn = [](const std::string& /*warning*/) {};
    listeners.mGoesOn = [&](bool isLive) {
        mIsLive = mIsLive || isLive;
        return !isLive || !mIsPart;
    };
    MessageSource source(EomChar(), mForm, mReading, std::move(listeners));
    for (const std::string& file : mFiles) {
        if (source.ReadFile(file) == Ending::kStopped) break;
    }
}

void SampleInput::Keep(std::string_view message)
{
    const bool isFull = mKeptBytes + message.size() > kMostKept;
    mIsPart = mIsPart || isFull;
    if (isFull) return;
    mKeptBytes += message.size();
    mKept.emplace_back(message);
}

}  // namespace NSift

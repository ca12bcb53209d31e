#include "tools/input/message_source.h"

#include <system_error>
#include <utility>

#include "Common/Explain/byte_text.h"
#include "Common/Pattern/pattern_bytes.h"
#include "tools/input/piece_cutter.h"
#include "tools/input/progress.h"
#include "tools/system/input_file.h"

namespace NSift {

namespace {

// The actor cuts a message after 2048 bytes and drops the next byte. Splitting the input at the
// same place loses nothing more.
constexpr std::size_t kLongestDelivery = 2048 + 1;

constexpr std::size_t kBlockSize = std::size_t{64} << 10;

bool IsBlank(char c)
{
    return NPattern::IsSpace(static_cast<NPattern::Byte>(c));
}

}  // namespace

MessageSource::MessageSource(std::uint8_t eomChar, InputForm form, Listeners listeners)
    : mEomChar(eomChar), mForm(form), mListeners(std::move(listeners)), mBlock(kBlockSize)
{
}

void MessageSource::ReadFile(const std::string& path)
{
    const NSystem::InputFile file = NSystem::OpenInputFile(path);
    const auto size = NSystem::RegularFileSize(file.get());
    Progress progress(path, size);
    const bool isRaw = mForm == InputForm::kRaw;
    PieceCutter cutter = isRaw ? PieceCutter(static_cast<char>(mEomChar), kLongestDelivery)
                               : PieceCutter('\n', std::string::npos);
    std::size_t line = 0;
    const auto take = [&](std::string_view piece) {
        if (isRaw) {
            Deliver(piece);
        } else {
            TakeHexLine(piece, path, ++line);
        }
    };
    std::error_code error;
    while (const std::size_t read = NSystem::ReadSome(file.get(), mBlock, error)) {
        progress.Advance(read);
        const std::string_view block(mBlock.data(), read);
        mMayHaveNul = mMayHaveNul || !isRaw || block.find('\0') != block.npos;
        cutter.Cut(block, take);
        if (!size) mListeners.mBeforeWait();
    }
    cutter.Finish(take);
    if (error) throw std::system_error(error, path);
}

void MessageSource::TakeHexLine(std::string_view line, const std::string& path, std::size_t number)
{
    const auto complain = [&](const std::string& fault) {
        mListeners.mComplain(path + " line " + std::to_string(number) + ": " + fault);
    };
    mBytes.clear();
    unsigned high = 16;  // the first digit of a byte; 16 if there is none
    for (const char c : line) {
        if (IsBlank(c) || c == ',') continue;
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
    const std::size_t nul = mMayHaveNul ? text.find('\0') : text.npos;
    const bool isCut = nul != text.npos;
    mHasLostText = mHasLostText || isCut;
    const bool isLost = isCut && mEomChar != 0;
    mListeners.mDeliver({delivery, isLost ? text : text.substr(0, nul), isLost, isCut && !isLost});
}

}  // namespace NSift

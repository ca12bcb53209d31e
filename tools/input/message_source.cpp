#include "tools/input/message_source.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include "Common/Explain/byte_text.h"
#include "Common/Pattern/pattern_bytes.h"
#include "tools/input/progress.h"
#include "tools/system/input_file.h"

namespace NSift {

namespace {

// The actor cuts a message after 2048 bytes and drops the next byte. Splitting the input at the
// same place loses nothing more.
constexpr std::size_t kLongestDelivery = 2048 + 1;

bool IsBlank(char c)
{
    return NPattern::IsSpace(static_cast<NPattern::Byte>(c));
}

}  // namespace

MessageSource::MessageSource(std::uint8_t eomChar, InputForm form,
                             std::function<void(const InputMessage&)> deliver,
                             std::function<void(const std::string&)> complain)
    : mEomChar(eomChar), mForm(form), mDeliver(std::move(deliver)), mComplain(std::move(complain))
{
}

void MessageSource::ReadFile(const std::string& path)
{
    const NSystem::InputFile file = NSystem::OpenInputFile(path);
    const auto size = NSystem::RegularFileSize(file.get());
    mIsLive = !size;
    Progress progress(path, size);
    if (mForm == InputForm::kRaw) {
        ReadRaw(file.get(), progress);
    } else {
        ReadHexLines(file.get(), path, progress);
    }
    if (std::ferror(file.get()) != 0) throw std::system_error(errno, std::generic_category(), path);
}

// getc returns what a live source has sent without waiting for a full buffer.
void MessageSource::ReadRaw(std::FILE* file, Progress& progress)
{
    for (int byte = std::getc(file); byte != EOF; byte = std::getc(file)) {
        progress.Advance();
        if (byte == mEomChar) {
            EndMessage();
        } else {
            Add(byte);
        }
    }
    if (!mBuffer.empty()) EndMessage();
}

void MessageSource::ReadHexLines(std::FILE* file, const std::string& path, Progress& progress)
{
    std::string line;
    std::size_t number = 1;
    for (int byte = std::getc(file); byte != EOF; byte = std::getc(file)) {
        progress.Advance();
        if (byte != '\n') {
            line.push_back(static_cast<char>(byte));
            continue;
        }
        TakeHexLine(line, path + " line " + std::to_string(number++));
        line.clear();
    }
    TakeHexLine(line, path + " line " + std::to_string(number));
}

void MessageSource::TakeHexLine(const std::string& line, const std::string& place)
{
    std::string bytes;
    unsigned high = 16;  // the first digit of a byte; 16 if there is none
    for (const char c : line) {
        if (IsBlank(c) || c == ',') continue;
        const unsigned digit = NPattern::HexDigitValue(static_cast<NPattern::Byte>(c));
        if (digit > 15)
            return mComplain(place + ": " + NExplain::Quoted({&c, 1}) +
                             " isn't a hexadecimal digit");
        if (high > 15) {
            high = digit;
        } else {
            bytes.push_back(static_cast<char>(high * 16 + digit));
            high = 16;
        }
    }
    if (high <= 15) return mComplain(place + ": an odd number of hexadecimal digits");
    for (const char byte : bytes) Add(static_cast<unsigned char>(byte));
    if (!mBuffer.empty()) EndMessage();
}

void MessageSource::Add(int byte)
{
    mBuffer.push_back(static_cast<char>(byte));
    if (mBuffer.size() == kLongestDelivery) Deliver();
}

void MessageSource::EndMessage()
{
    mBuffer.push_back(static_cast<char>(mEomChar));
    Deliver();
}

// The last byte of the delivery ends the message, or is the one that the actor drops.
void MessageSource::Deliver()
{
    const std::string_view delivery = mBuffer;
    const std::string_view text = delivery.substr(0, delivery.size() - 1);
    const std::size_t nul = text.find('\0');
    const bool isCut = nul != std::string_view::npos;
    mHasLostText = mHasLostText || isCut;
    const bool isLost = isCut && mEomChar != 0;
    mDeliver({delivery, isLost ? text : text.substr(0, nul), isLost, isCut && !isLost});
    mBuffer.clear();
}

}  // namespace NSift

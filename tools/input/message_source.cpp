#include "tools/input/message_source.h"

#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

#include "Common/Pattern/pattern_ltoken.h"
#include "tools/input/progress.h"
#include "tools/output/text_forms.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace NSift {

namespace {

// What a message can hold, and the character behind it that is lost with the cut: cutting there
// loses nothing that the actor wouldn't.
constexpr std::size_t kPieceLimit = 2048 + 1;

struct FileCloser {
    void operator()(std::FILE* file) const
    {
        if (file != stdin) std::fclose(file);
    }
};

std::unique_ptr<std::FILE, FileCloser> OpenFile(const std::string& path)
{
    std::FILE* const file = path == "-" ? stdin : std::fopen(path.c_str(), "rb");
    if (file == nullptr) throw std::system_error(errno, std::generic_category(), path);
#ifdef _WIN32
    _setmode(_fileno(file), _O_BINARY);
#endif
    return std::unique_ptr<std::FILE, FileCloser>(file);
}

bool IsBlank(char c)
{
    return NPattern::IsSpace(static_cast<NPattern::Byte>(c));
}

}  // namespace

MessageSource::MessageSource(std::uint8_t eomChar, InputForm form,
                             std::function<void(const Message&)> deliver,
                             std::function<void(const std::string&)> complain)
    : mEomChar(eomChar), mForm(form), mDeliver(std::move(deliver)), mComplain(std::move(complain))
{
}

void MessageSource::ReadFile(const std::string& path)
{
    const auto file = OpenFile(path);
    const auto size = RegularSize(file.get());
    mIsLive = !size;
    Progress progress(path, size);
    if (mForm == InputForm::kRaw) {
        ReadRaw(file.get(), progress);
    } else {
        ReadHexLines(file.get(), path, progress);
    }
    if (std::ferror(file.get()) != 0) throw std::system_error(errno, std::generic_category(), path);
}

// Byte by byte from the buffer of the C library, which hands on what a live source has delivered
// without waiting for more.
void MessageSource::ReadRaw(std::FILE* file, Progress& progress)
{
    for (int byte = std::getc(file); byte != EOF; byte = std::getc(file)) {
        progress.Count();
        if (byte == mEomChar) {
            EndMessage();
        } else {
            Add(byte);
        }
    }
    if (!mPiece.empty()) EndMessage();
}

void MessageSource::ReadHexLines(std::FILE* file, const std::string& path, Progress& progress)
{
    std::string line;
    std::size_t number = 1;
    for (int byte = std::getc(file); byte != EOF; byte = std::getc(file)) {
        progress.Count();
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
    unsigned high = 16;  // the first digit of a byte, until the second has come
    for (const char c : line) {
        if (IsBlank(c) || c == ',') continue;
        const unsigned digit = NPattern::HexDigitValue(static_cast<NPattern::Byte>(c));
        if (digit > 15)
            return mComplain(place + ": " + Quoted({&c, 1}) + " is no hexadecimal digit");
        if (high > 15) {
            high = digit;
        } else {
            bytes.push_back(static_cast<char>(high * 16 + digit));
            high = 16;
        }
    }
    if (high <= 15) return mComplain(place + ": an odd number of hexadecimal digits");
    for (const char byte : bytes) Add(static_cast<unsigned char>(byte));
    if (!mPiece.empty()) EndMessage();
}

void MessageSource::Add(int byte)
{
    mPiece.push_back(static_cast<char>(byte));
    if (mPiece.size() == kPieceLimit) DeliverPiece();
}

void MessageSource::EndMessage()
{
    mPiece.push_back(static_cast<char>(mEomChar));
    DeliverPiece();
}

// The last byte of a piece ends the message, or is lost with the cut.
void MessageSource::DeliverPiece()
{
    const std::string_view delivery = mPiece;
    const std::string_view text = delivery.substr(0, delivery.size() - 1);
    const std::size_t nul = text.find('\0');
    const bool isCut = nul != std::string_view::npos;
    mHasLostText = mHasLostText || isCut;
    const bool isLost = isCut && mEomChar != 0;
    mDeliver({delivery, isLost ? text : text.substr(0, nul), isLost, isCut && !isLost});
    mPiece.clear();
}

}  // namespace NSift

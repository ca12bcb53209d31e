#include "message_source.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>
#include <utility>

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

}  // namespace

MessageSource::MessageSource(std::uint8_t eomChar, std::function<void(const std::string&)> deliver)
    : mEomChar(eomChar), mDeliver(std::move(deliver))
{
}

// Byte by byte from the buffer of the C library, which hands on what a live source has delivered
// without waiting for more.
void MessageSource::ReadFile(const std::string& path)
{
    const auto file = OpenFile(path);
    for (int byte = std::getc(file.get()); byte != EOF; byte = std::getc(file.get())) Take(byte);
    if (std::ferror(file.get()) != 0) throw std::system_error(errno, std::generic_category(), path);
    if (!mPiece.empty()) {
        mPiece.push_back(static_cast<char>(mEomChar));
        DeliverPiece();
    }
}

void MessageSource::Take(int byte)
{
    mPiece.push_back(static_cast<char>(byte));
    if (byte == 0 && mEomChar != 0) mHasLostText = true;
    if (byte == mEomChar || mPiece.size() == kPieceLimit) DeliverPiece();
}

void MessageSource::DeliverPiece()
{
    mDeliver(mPiece);
    mPiece.clear();
}

}  // namespace NSift

#include "pattern_error.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <string_view>

namespace NPattern {

namespace {

constexpr std::size_t kErrorTextLimit = 2048;

// What printf would write, NUL bytes included, cut at kErrorTextLimit. Held in a buffer of its own
// until va_end has run: constructing the string can throw.
class FormattedText {
  public:
    FormattedText(const char* format, std::va_list arguments) noexcept
    {
        const int length = std::vsnprintf(mBuffer, sizeof mBuffer,
                                          format != nullptr ? format : "Unknown error", arguments);
        // Negative for a text whose length does not fit an int.
        mLength = std::min(static_cast<std::size_t>(std::max(length, 0)), kErrorTextLimit);
    }
    std::string_view Text() const { return {mBuffer, mLength}; }

  private:
    char mBuffer[kErrorTextLimit + 1];
    std::size_t mLength;
};

}  // namespace

PatternException::PatternException(const char* file, int line)
    : mFile(file != nullptr ? file : "<unknown>"), mLine(line)
{
}

PatternException::PatternException(const char* file, int line, const char* format, ...)
    : PatternException(file, line)
{
    std::va_list arguments;
    va_start(arguments, format);
    const FormattedText text(format, arguments);
    va_end(arguments);
    mMessage = text.Text();
}

PatternException::~PatternException() = default;

std::string PatternException::Message() const
{
    return mMessage;
}

PatternSyntaxException::PatternSyntaxException(const char* file, int line,
                                               const std::string& parseString, std::size_t cursor,
                                               std::int32_t positionOffset, const char* format, ...)
    : PatternException(file, line),
      mPosition(static_cast<std::int32_t>(static_cast<std::uint32_t>(cursor) +
                                          static_cast<std::uint32_t>(positionOffset))),
      mOffendingText(1, cursor < parseString.size() ? parseString[cursor] : '\0')
{
    std::va_list arguments;
    va_start(arguments, format);
    const FormattedText text(format, arguments);
    va_end(arguments);
    mMessage = text.Text();
}

PatternSyntaxException::PatternSyntaxException(const char* file, int line, std::int32_t position,
                                               const std::string& offendingText, const char* format,
                                               ...)
    : PatternException(file, line), mPosition(position), mOffendingText(offendingText)
{
    std::va_list arguments;
    va_start(arguments, format);
    const FormattedText text(format, arguments);
    va_end(arguments);
    mMessage = text.Text();
}

std::string PatternSyntaxException::Message() const
{
    return PatternException(nullptr, 0, "Syntax error at character %i (%s): %s.", mPosition,
                            mOffendingText.c_str(), mMessage.c_str())
        .mMessage;
}

}  // namespace NPattern

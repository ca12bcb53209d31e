// The errors of the engine.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace NPattern {

// Identifies an error, so that nobody reads its text to find out which one it is.
enum PatternErrorCode : std::int32_t {
    kErrorUnspecified,
    // Of the lexer. Each is a PatternSyntaxException.
    kErrorUnclosedSet,          // the string ends between brackets or braces
    kErrorUnfinishedEscape,     // the string ends after a backslash in a character set
    kErrorUnexpectedCharacter,  // no token starts with this byte
    kErrorInvalidByteValue,     // a byte in braces does not have two hexadecimal digits
    kErrorUnmatchedQuote,       // the string ends inside a quoted string
    kErrorEmptyQuotes,          // nothing between two quotes
    // Of the elements. Only the first leaves a compile, as a PatternSyntaxException.
    kErrorSyntax,           // no form of element starts at this token
    kErrorWrongForm,        // the tokens are those of another form
    kErrorInvalidType,      // the type word of a declaration names no type
    kErrorInvalidSet,       // the body of a character set or a byte set
    kErrorInvalidBitfield,  // the ranges or the byte order of a bit field
};

// It has no standard exception as its base, so a handler for those alone misses it. Thrown by
// value, caught by reference.
class PatternException {
  public:
    // file: bare name of the source file of the throw; null means "<unknown>".
    // format: as for printf; null means "Unknown error". The text is cut at 2048 bytes.
    PatternException(const char* file, int line, const char* format, ...);
    PatternException(const PatternException&) = default;
    PatternException& operator=(const PatternException&) = default;
    virtual ~PatternException();

    // The full text, to be shown to a person.
    virtual std::string Message() const;

    std::string mMessage;  // the formatted text, without any position
    std::string mFile;
    std::int32_t mLine;
    PatternErrorCode mCode = kErrorUnspecified;

  protected:
    PatternException(const char* file, int line);
};

// An error at a place in the parsing string.
class PatternSyntaxException : public PatternException {
  public:
    // An error at a cursor: the place is cursor + positionOffset, in 32 bits, and the offending
    // text is the one byte under the cursor, NUL at the end of the string.
    PatternSyntaxException(const char* file, int line, const std::string& parseString,
                           std::size_t cursor, std::int32_t positionOffset, const char* format,
                           ...);

    // An error at a token, with the given place and text.
    PatternSyntaxException(const char* file, int line, std::int32_t position,
                           const std::string& offendingText, const char* format, ...);

    // "Syntax error at character 3 (!): ...", cut at 2048 bytes.
    std::string Message() const override;

    std::int32_t mPosition;  // byte offset in the parsing string, or -1
    std::string mOffendingText;
};

// Returns the error with its code set, ready to be thrown.
template <typename Error>
Error WithCode(PatternErrorCode code, Error error)
{
    error.mCode = code;
    return error;
}

}  // namespace NPattern

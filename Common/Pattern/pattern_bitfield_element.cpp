#include "pattern_bitfield_element.h"

#include <algorithm>

namespace NPattern {

namespace {

constexpr char kSourceFile[] = "pattern_bitfield_element.cpp";

// The width of a value that is handed out, and so of the widest range.
constexpr std::int32_t kMostBits = 32;

// Bytes in a 64-bit number.
constexpr std::int32_t kMostNumberBytes = 8;

[[noreturn]] void ThrowInvalid(int line)
{
    throw WithCode(kErrorInvalidBitfield,
                   PatternException(kSourceFile, line, "Invalid bitfield token"));
}

const LToken& RequireToken(const std::vector<LToken>& tokens, TokenCursor& ioCursor,
                           LTokenType wantedType, const char* wantedText)
{
    const LToken* token = nullptr;
    if (!ExpectToken(tokens, ioCursor, token, wantedType, wantedText)) ThrowInvalid(__LINE__);
    return *token;
}

BitfieldField ParseField(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    BitfieldField field;
    field.mType = kTypeLInteger;
    const LToken* name = nullptr;
    const LToken* equals = nullptr;
    // A name without its '=' is dropped, and the range has no name.
    if (ExpectToken(tokens, ioCursor, name, kIdentifier, nullptr) &&
        ExpectToken(tokens, ioCursor, equals, kSymbol, "=")) {
        field.mName = name->mText;
    }
    const std::int32_t one = RequireToken(tokens, ioCursor, kNumber, nullptr).mValue;
    RequireToken(tokens, ioCursor, kSymbol, "-");
    const std::int32_t other = RequireToken(tokens, ioCursor, kNumber, nullptr).mValue;
    field.mStartBit = std::min(one, other);
    field.mEndBit = std::max(one, other);
    if (field.mEndBit - field.mStartBit >= kMostBits) ThrowInvalid(__LINE__);
    return field;
}

bool ParseBigEndian(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    const LToken* token = nullptr;
    if (!ExpectToken(tokens, ioCursor, token, kSymbol, ":")) return true;
    if (ExpectToken(tokens, ioCursor, token, kIdentifier, "L")) return false;
    if (ExpectToken(tokens, ioCursor, token, kIdentifier, "B")) return true;
    ThrowInvalid(__LINE__);
}

// Returns the number that count bytes make, at most kMostNumberBytes.
std::uint64_t ReadNumber(const Byte* bytes, std::int32_t count, bool bigEndian)
{
    std::uint64_t number = 0;
    if (bigEndian) {
        for (std::int32_t i = 0; i < count; ++i) number = number << 8 | bytes[i];
    } else {
        for (std::int32_t i = count; i > 0; --i) number = number << 8 | bytes[i - 1];
    }
    return number;
}

}  // namespace

bool BitfieldElement::CanStart(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    const LToken& token = TokenAt(tokens, cursor);
    return token.mType == kSymbol && token.mChar == '(';
}

BitfieldElement::BitfieldElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    RequireToken(tokens, ioCursor, kSymbol, "(");
    std::int64_t highestBit = 0;
    const LToken* comma = nullptr;
    do {
        mFields.push_back(ParseField(tokens, ioCursor));
        highestBit = std::max<std::int64_t>(highestBit, mFields.back().mEndBit);
    } while (ExpectToken(tokens, ioCursor, comma, kSymbol, ","));
    RequireToken(tokens, ioCursor, kSymbol, ")");
    mBigEndian = ParseBigEndian(tokens, ioCursor);
    mByteCount = static_cast<std::int32_t>((highestBit + 8) / 8);
    PlaceFields();
}

void BitfieldElement::Dump(std::FILE* stream) const
{
    std::fprintf(stream, "%c ", BinaryMark());
    std::fprintf(stream, "BITFIELD   %s-endian %i-bytes\n", mBigEndian ? "big" : "little",
                 mByteCount);
    for (const BitfieldField& field : mFields) {
        std::fprintf(stream, "              (%i - %i) '%s'\n", field.mStartBit, field.mEndBit,
                     field.TypedName().c_str());
    }
}

const Byte* BitfieldElement::Match(const Byte* data, std::uint32_t length)
{
    if (length < static_cast<std::uint32_t>(mByteCount)) return nullptr;
    const bool isOneNumber = mByteCount <= kMostNumberBytes;
    const std::uint64_t block = isOneNumber ? ReadNumber(data, mByteCount, mBigEndian) : 0;
    for (BitfieldField& field : mFields) {
        // Common case: the block is one number, read once for all fields.
        const std::uint64_t bits =
            isOneNumber ? block : ReadNumber(data + field.mFirstByte, field.mByteSpan, mBigEndian);
        field.SetIntegerValue(static_cast<std::uint32_t>(bits >> field.mShift & field.mMask));
    }
    return data + mByteCount;
}

// In a larger block the 32 bits of a field lie in at most five bytes, wherever they start.
void BitfieldElement::PlaceFields()
{
    for (BitfieldField& field : mFields) {
        field.mMask = (std::uint64_t{1} << (field.mEndBit - field.mStartBit + 1)) - 1;
        if (mByteCount <= kMostNumberBytes) {
            field.mByteSpan = mByteCount;
            field.mShift = field.mStartBit;
        } else {
            const std::int32_t lowByte = field.mStartBit / 8;
            const std::int32_t highByte = field.mEndBit / 8;
            field.mFirstByte = mBigEndian ? mByteCount - 1 - highByte : lowByte;
            field.mByteSpan = highByte - lowByte + 1;
            field.mShift = field.mStartBit % 8;
        }
    }
}

void BitfieldElement::CollectParameters(std::vector<Parameter>& ioList) const
{
    for (const BitfieldField& field : mFields) ioList.push_back(field);
}

void BitfieldElement::Emit(Program& ioProgram)
{
    ioProgram.AddElement(*this);
    for (const BitfieldField& field : mFields) ioProgram.AddCapture(field);
}

}  // namespace NPattern

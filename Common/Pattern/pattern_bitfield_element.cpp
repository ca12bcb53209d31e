#include "pattern_bitfield_element.h"

#include <algorithm>
#include <bit>

#include "pattern_memory.h"

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

// The same for count bytes, of which kMostNumberBytes may be read. In little-endian order the
// number has more bits than the bytes.
template <bool kBigEndian>
std::uint64_t ReadNumberAtOnce(const Byte* bytes, std::int32_t count)
{
    const auto word = ReadWord<std::uint64_t>(bytes);
    constexpr bool kIsSwapped = kBigEndian != (std::endian::native == std::endian::big);
    const std::uint64_t number = kIsSwapped ? SwapBytes(word) : word;
    return kBigEndian ? number >> (kMostNumberBytes - count) * 8 : number;
}

std::int32_t BitsAt(const BitPlace& place, std::uint64_t number)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(number >> place.mShift) &
                                     place.mMask);
}

struct BlockOperands {
    const BitPlace* mPlaces;
    std::int32_t mByteCount;
    std::uint32_t mFirstValue;
    std::uint32_t mValueCount;
};

// A block of at most kMostNumberBytes: one number, read once for all values.
template <bool kBigEndian>
const Byte* RunSmallBlock(const Step* step, const Byte* current, const Byte* end, Parameter* values)
{
    const auto& operands = step->Get<BlockOperands>();
    const std::ptrdiff_t left = end - current;
    if (left < operands.mByteCount) return nullptr;
    const std::uint64_t number = left >= kMostNumberBytes
                                     ? ReadNumberAtOnce<kBigEndian>(current, operands.mByteCount)
                                     : ReadNumber(current, operands.mByteCount, kBigEndian);
    Parameter* value = values + operands.mFirstValue;
    const BitPlace* const placesEnd = operands.mPlaces + operands.mValueCount;
    for (const BitPlace* place = operands.mPlaces; place != placesEnd; ++place, ++value) {
        value->mIntValue = BitsAt(*place, number);
    }
    return RunNextStep(step, current + operands.mByteCount, end, values);
}

template <bool kBigEndian>
const Byte* RunLargeBlock(const Step* step, const Byte* current, const Byte* end, Parameter* values)
{
    const auto& operands = step->Get<BlockOperands>();
    if (end - current < operands.mByteCount) return nullptr;
    for (std::uint32_t i = 0; i < operands.mValueCount; ++i) {
        const BitPlace& place = operands.mPlaces[i];
        const std::uint64_t number =
            ReadNumber(current + place.mFirstByte, place.mByteSpan, kBigEndian);
        values[operands.mFirstValue + i].mIntValue = BitsAt(place, number);
    }
    return RunNextStep(step, current + operands.mByteCount, end, values);
}

// White space before a block is never skipped, but the message may be used up, and a block is never
// empty: so one function serves both places of a pair.
template <StepFunction kRun>
constexpr StepFunction kBlockSteps[2] = {kRun, kRun};

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
    for (std::size_t i = 0; i < mFields.size(); ++i) {
        const BitPlace& place = mPlaces[i];
        const std::uint64_t number =
            ReadNumber(data + place.mFirstByte, place.mByteSpan, mBigEndian);
        mFields[i].SetIntegerValue(static_cast<std::uint32_t>(BitsAt(place, number)));
    }
    return data + mByteCount;
}

// In a larger block the 32 bits of a field lie in at most five bytes, wherever they start.
void BitfieldElement::PlaceFields()
{
    for (const BitfieldField& field : mFields) {
        BitPlace& place = mPlaces.emplace_back();
        place.mMask = 0xFFFFFFFFU >> (kMostBits - 1 - (field.mEndBit - field.mStartBit));
        if (mByteCount <= kMostNumberBytes) {
            place.mByteSpan = mByteCount;
            place.mShift = field.mStartBit;
        } else {
            const std::int32_t lowByte = field.mStartBit / 8;
            const std::int32_t highByte = field.mEndBit / 8;
            place.mFirstByte = mBigEndian ? mByteCount - 1 - highByte : lowByte;
            place.mByteSpan = highByte - lowByte + 1;
            place.mShift = field.mStartBit % 8;
        }
    }
}

void BitfieldElement::CollectParameters(std::vector<Parameter>& ioList) const
{
    for (const BitfieldField& field : mFields) ioList.push_back(field);
}

void BitfieldElement::Emit(Program& ioProgram)
{
    const std::uint32_t firstValue = ioProgram.AddCapture(mFields[0]);
    for (std::size_t i = 1; i < mFields.size(); ++i) ioProgram.AddCapture(mFields[i]);
    const BlockOperands operands{mPlaces.data(), mByteCount, firstValue,
                                 static_cast<std::uint32_t>(mFields.size())};
    if (mByteCount > kMostNumberBytes) {
        ioProgram.AddStep(
            mBigEndian ? kBlockSteps<RunLargeBlock<true>> : kBlockSteps<RunLargeBlock<false>>,
            operands);
    } else {
        ioProgram.AddStep(
            mBigEndian ? kBlockSteps<RunSmallBlock<true>> : kBlockSteps<RunSmallBlock<false>>,
            operands);
    }
}

}  // namespace NPattern

#include "pattern_number_element.h"

#include <algorithm>
#include <iterator>

#include "pattern_memory.h"
#include "pattern_numbers.h"

namespace NPattern {

namespace {

constexpr char kSourceFile[] = "pattern_number_element.cpp";

[[noreturn]] void ThrowNoNumber(int line)
{
    throw WithCode(kErrorWrongForm, PatternException(kSourceFile, line, "Not a NumberElement"));
}

NumberKind ClassifyNumberWord(const LToken& token)
{
    const NumberKind kind = FindNumberKind(token.mText);
    if (kind == kNumberNone) ThrowNoNumber(__LINE__);
    return kind;
}

std::int32_t TakeOptionalNumber(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    const LToken* token = nullptr;
    return ExpectToken(tokens, ioCursor, token, kNumber, nullptr) ? token->mValue : 0;
}

NumberKind TakeNumberWord(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    const LToken* token = nullptr;
    if (!ExpectToken(tokens, ioCursor, token, kIdentifier, nullptr) &&
        !ExpectToken(tokens, ioCursor, token, kSymbol, nullptr)) {
        ThrowNoNumber(__LINE__);
    }
    return ClassifyNumberWord(*token);
}

// A run of digits, converted to a number while it is scanned.
struct DigitRun {
    const Byte* mEnd;      // just past the run
    std::uint64_t mValue;  // the number; without meaning if there are too many digits to fit
};

// Any number of at most this many digits fits 64 bits.
constexpr std::ptrdiff_t kMostQuickDigits = 19;
constexpr std::ptrdiff_t kMostQuickHexDigits = 16;

// limit: the most digits taken; 0: no limit. value: the number that the digits before the run make.
template <unsigned kRadix>
DigitRun TakeDigits(const Byte* data, const Byte* end, std::int32_t limit, std::uint64_t value)
{
    if (limit != 0 && end - data > limit) end = data + limit;
    for (; data != end; ++data) {
        const unsigned digit = kRadix == 10 ? *data - unsigned{'0'} : HexDigitValue(*data);
        if (digit >= kRadix) break;
        value = value * kRadix + digit;
    }
    return {data, value};
}

// A double holds any whole number up to this one exactly, so its quotient by a power of ten of the
// table is rounded once: to the double that atof returns.
constexpr std::uint64_t kLargestExact = std::uint64_t{1} << 53;

// A decimal number as it is scanned.
struct DecimalRun {
    const Byte* mEnd;  // just past the number; its start if there is none
    bool mNegative;
    std::ptrdiff_t mWholeDigits;
    std::ptrdiff_t mFractionDigits;
    std::uint64_t mWhole;  // the digits before the point as a number; if they are few enough
    std::uint64_t mAll;    // all digits as a number; if they are few enough
};

// data: not end.
template <bool kHasPoint>
DecimalRun TakeDecimal(const Byte* data, const Byte* end, std::int32_t integerDigits,
                       std::int32_t fractionDigits)
{
    const bool negative = *data == '-';
    const Byte* const digits = negative || *data == '+' ? data + 1 : data;
    const DigitRun whole = TakeDigits<10>(digits, end, integerDigits, 0);
    DecimalRun run{whole.mEnd, negative, whole.mEnd - digits, 0, whole.mValue, whole.mValue};
    if (kHasPoint && whole.mEnd != end && *whole.mEnd == '.') {
        const Byte* const fraction = whole.mEnd + 1;
        const DigitRun all = TakeDigits<10>(fraction, end, fractionDigits, whole.mValue);
        run.mEnd = all.mEnd;
        run.mFractionDigits = all.mEnd - fraction;
        run.mAll = all.mValue;
    }
    return run;
}

struct NumberOperands {
    const NumberElement* mElement;
    std::int32_t mIntegerDigits;
    std::int32_t mFractionDigits;
    std::uint32_t mValue;
};

// Captures the number by the setter of Parameter. The steps below jump here for what is rare, so
// that the common case calls nothing.
const Byte* RunByText(const Step* step, const Byte* current, const Byte* end, Parameter* values)
{
    const auto& operands = step->Get<NumberOperands>();
    const Byte* const rest = operands.mElement->EndOfNumber(current, end);
    values[operands.mValue].SetTextValue(current, static_cast<std::uint32_t>(rest - current),
                                         operands.mElement->IsHex());
    return RunNextStep(step, rest, end, values);
}

// Stores what Parameter::SetTextValue would, or returns false. data: the start of the number.
template <ValueKind kValue>
bool StoreDecimal(const Byte* data, const DecimalRun& run, Parameter& outParameter)
{
    if (kValue == kStringValue) {
        AssignBytes(outParameter.mStringValue, reinterpret_cast<const char*>(data),
                    static_cast<std::size_t>(run.mEnd - data));
        return true;
    }
    if (kValue == kIntegerValue) {
        if (run.mWholeDigits > kMostQuickDigits) return false;
        outParameter.mIntValue = ClampedInteger(run.mWhole, run.mNegative);
        return true;
    }
    const std::ptrdiff_t digits = run.mWholeDigits + run.mFractionDigits;
    if (digits > kMostQuickDigits || run.mAll > kLargestExact) return false;
    const double value = static_cast<double>(static_cast<std::int64_t>(run.mAll)) /
                         kPowersOfTen[static_cast<std::size_t>(run.mFractionDigits)];
    // Without a digit there is no number, so no negative zero either.
    outParameter.mFloatValue = run.mNegative && digits != 0 ? -value : value;
    return true;
}

template <bool kSkipsSpace, bool kHasPoint, ValueKind kValue>
const Byte* RunDecimal(const Step* step, const Byte* current, const Byte* end, Parameter* values)
{
    if (!BeginStep<kSkipsSpace>(current, end)) return nullptr;
    const auto& operands = step->Get<NumberOperands>();
    const DecimalRun run =
        TakeDecimal<kHasPoint>(current, end, operands.mIntegerDigits, operands.mFractionDigits);
    if (run.mEnd == current) return nullptr;
    if constexpr (kValue != kNoValue) {
        if (!StoreDecimal<kValue>(current, run, values[operands.mValue])) {
            return RunByText(step, current, end, values);
        }
    }
    return RunNextStep(step, run.mEnd, end, values);
}

template <bool kSkipsSpace, ValueKind kValue>
const Byte* RunHex(const Step* step, const Byte* current, const Byte* end, Parameter* values)
{
    if (!BeginStep<kSkipsSpace>(current, end)) return nullptr;
    const auto& operands = step->Get<NumberOperands>();
    const DigitRun run = TakeDigits<16>(current, end, operands.mIntegerDigits, 0);
    const std::ptrdiff_t digits = run.mEnd - current;
    if (digits == 0) return nullptr;
    if constexpr (kValue == kIntegerValue) {
        if (digits > kMostQuickHexDigits) return RunByText(step, current, end, values);
        values[operands.mValue].mIntValue = ClampedInteger(run.mValue, false);
    } else if constexpr (kValue != kNoValue) {
        return RunByText(step, current, end, values);
    }
    return RunNextStep(step, run.mEnd, end, values);
}

using StepFunctionPair = StepFunction[2];

// Indexed by ValueKind.
template <bool kHasPoint>
constexpr StepFunctionPair kDecimalSteps[kValueKindCount] = {
    {RunDecimal<false, kHasPoint, kNoValue>, RunDecimal<true, kHasPoint, kNoValue>},
    {RunDecimal<false, kHasPoint, kStringValue>, RunDecimal<true, kHasPoint, kStringValue>},
    {RunDecimal<false, kHasPoint, kFloatValue>, RunDecimal<true, kHasPoint, kFloatValue>},
    {RunDecimal<false, kHasPoint, kIntegerValue>, RunDecimal<true, kHasPoint, kIntegerValue>},
};
constexpr StepFunctionPair kHexSteps[kValueKindCount] = {
    {RunHex<false, kNoValue>, RunHex<true, kNoValue>},
    {RunHex<false, kStringValue>, RunHex<true, kStringValue>},
    {RunHex<false, kFloatValue>, RunHex<true, kFloatValue>},
    {RunHex<false, kIntegerValue>, RunHex<true, kIntegerValue>},
};

}  // namespace

NumberKind FindNumberKind(std::string_view word)
{
    const auto* const row =
        std::find_if(std::begin(kNumberWords), std::end(kNumberWords),
                     [word](const NumberWord& r) { return EqualsIgnoringCase(r.mWord, word); });
    return row != std::end(kNumberWords) ? row->mKind : kNumberNone;
}

bool NumberElement::CanStart(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    cursor = SkipDeclaration(tokens, cursor);
    if (TokenAt(tokens, cursor).mType == kNumber) ++cursor;
    return FindNumberKind(TokenAt(tokens, cursor).mText) != kNumberNone;
}

NumberElement::NumberElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    ParseDeclaration(tokens, ioCursor);
    mIntegerDigits = TakeOptionalNumber(tokens, ioCursor);
    const NumberKind kind = TakeNumberWord(tokens, ioCursor);
    mDecimalPoint = kind == kNumberPoint;
    mHex = kind == kNumberHex;
    mFractionDigits = mDecimalPoint ? TakeOptionalNumber(tokens, ioCursor) : 0;
    if (mDecimalPoint && TakeNumberWord(tokens, ioCursor) != kNumberDecimal) {
        ThrowNoNumber(__LINE__);
    }
}

void NumberElement::Dump(std::FILE* stream) const
{
    std::fprintf(stream, "%c ", BinaryMark());
    std::fprintf(stream, "NUMBER     %i.%i decimal_point=%s hex=%s %s\n", mIntegerDigits,
                 mFractionDigits, mDecimalPoint ? "true" : "false", mHex ? "true" : "false",
                 mParameter.TypedName().c_str());
}

const Byte* NumberElement::Match(const Byte* data, std::uint32_t length)
{
    if (length == 0) return nullptr;
    const Byte* const rest = EndOfNumber(data, data + length);
    return rest != data ? CaptureText(data, rest, mHex) : nullptr;
}

const Byte* NumberElement::EndOfNumber(const Byte* data, const Byte* end) const
{
    if (mHex) return TakeDigits<16>(data, end, mIntegerDigits, 0).mEnd;
    return mDecimalPoint ? TakeDecimal<true>(data, end, mIntegerDigits, mFractionDigits).mEnd
                         : TakeDecimal<false>(data, end, mIntegerDigits, 0).mEnd;
}

void NumberElement::Emit(Program& ioProgram)
{
    const ValueKind value = ValueKindOf(mParameter.mType);
    NumberOperands operands{this, mIntegerDigits, mFractionDigits, 0};
    if (value != kNoValue) operands.mValue = ioProgram.AddCapture(mParameter);
    const auto& steps = mHex            ? kHexSteps
                        : mDecimalPoint ? kDecimalSteps<true>
                                        : kDecimalSteps<false>;
    ioProgram.AddStep(steps[value], operands);
}

}  // namespace NPattern

#include "pattern_element.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>
#include <limits>
#include <string_view>
#include <system_error>
#include <utility>

#include "pattern_bitfield_element.h"
#include "pattern_byteset_element.h"
#include "pattern_eol_element.h"
#include "pattern_number_element.h"
#include "pattern_string_element.h"

namespace NPattern {

namespace {

constexpr char kSourceFile[] = "pattern_element.cpp";

struct TypeWord {
    std::string_view mWord;
    ParameterType mType;
};

// In the order of search: any beginning of a word names its type.
constexpr TypeWord kTypeWords[] = {
    {"string", kTypeString},     {"float", kTypeFloat},       {"integer", kTypeLInteger},
    {"linteger", kTypeLInteger}, {"binteger", kTypeBInteger},
};

// Indexed by ParameterType.
constexpr const char* kTypeSuffixes[] = {":STRING", ":FLOAT", ":LINTEGER", ":BINTEGER"};

// Over the bytes that the string holds already, as long as there are as many: that is what message
// after message brings, and cheaper than an assignment.
void AssignBytes(std::string& outText, const char* bytes, std::size_t size)
{
    if (outText.size() == size) {
        std::copy_n(bytes, size, outText.data());
    } else {
        outText.assign(bytes, size);
    }
}

template <typename Character>
const Character* SkipSpace(const Character* text, const Character* end)
{
    while (text != end && IsSpace(static_cast<Byte>(*text))) ++text;
    return text;
}

// Moves the text behind a sign, and tells whether it was a minus.
bool TakeSign(const char*& ioText, const char* end)
{
    if (ioText == end || (*ioText != '-' && *ioText != '+')) return false;
    return *ioText++ == '-';
}

bool HasDigitAt(const char* text, const char* end, unsigned radix)
{
    return text < end && HexDigitValue(static_cast<Byte>(*text)) < radix;
}

bool HasHexPrefix(const char* text, const char* end)
{
    return end - text > 2 && text[0] == '0' && ToLower(static_cast<Byte>(text[1])) == 'x';
}

// As strtol, but in 32 bits whatever the width of long.
std::int32_t IntegerOf(const char* text, const char* end, unsigned radix)
{
    constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
    text = SkipSpace(text, end);
    const bool negative = TakeSign(text, end);
    if (radix == 16 && HasHexPrefix(text, end)) text += 2;

    const std::int64_t limit = negative ? kLargest + 1 : kLargest;
    std::int64_t value = 0;
    for (; HasDigitAt(text, end, radix); ++text) {
        value = std::min(value * radix + HexDigitValue(static_cast<Byte>(*text)), limit);
    }
    return static_cast<std::int32_t>(negative ? -value : value);
}

// Whether a number that lies outside the doubles is too large, rather than too near to 0: told by
// the place of its first significant digit.
bool IsTooLarge(const char* text, const char* end, unsigned radix)
{
    constexpr std::int64_t kSaturated = std::int64_t{1} << 40;  // more than any text is long
    std::int64_t power = 0;
    bool pointSeen = false;
    bool significant = false;
    for (; text != end && (*text == '.' || HasDigitAt(text, end, radix)); ++text) {
        if (*text == '.') {
            pointSeen = true;
            continue;
        }
        significant = significant || *text != '0';
        if (significant && !pointSeen) ++power;
        if (!significant && pointSeen) --power;
    }
    if (radix == 16) power *= 4;
    if (text == end) return power > 0;

    ++text;  // the 'e' or 'p'
    const bool negative = TakeSign(text, end);
    std::int64_t exponent = 0;
    for (; HasDigitAt(text, end, 10); ++text) {
        exponent = std::min(exponent * 10 + (*text - '0'), kSaturated);
    }
    return power + (negative ? -exponent : exponent) > 0;
}

// As atof in the "C" locale, but for what a nan carries in parentheses.
double FloatOf(const char* text, const char* end)
{
    text = SkipSpace(text, end);
    const bool negative = TakeSign(text, end);
    if (text != end && (*text == '-' || *text == '+')) return 0.0;

    unsigned radix = 10;
    if (HasHexPrefix(text, end) &&
        (HasDigitAt(text + 2, end, 16) || (text[2] == '.' && HasDigitAt(text + 3, end, 16)))) {
        radix = 16;
        text += 2;
    }
    double value = 0.0;
    const auto [rest, error] = std::from_chars(
        text, end, value, radix == 16 ? std::chars_format::hex : std::chars_format::general);
    if (error == std::errc::invalid_argument) return 0.0;
    if (error == std::errc::result_out_of_range) {
        value = IsTooLarge(text, rest, radix) ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return negative ? -value : value;
}

template <typename Word>
bool IsSameWord(const char* a, const char* b)
{
    Word x;
    Word y;
    std::memcpy(&x, a, sizeof x);
    std::memcpy(&y, b, sizeof y);
    return x == y;
}

// Two words that overlap hold all of a text of size bytes.
template <typename Word>
bool AreSameEnds(const char* a, const char* b, std::size_t size)
{
    const std::size_t last = size - sizeof(Word);
    return IsSameWord<Word>(a, b) && IsSameWord<Word>(a + last, b + last);
}

// Names are short, and this spares a call for each capture.
bool IsSameName(const std::string& one, const std::string& other)
{
    const std::size_t size = one.size();
    if (size != other.size()) return false;
    if (size > 16) return one == other;
    const char* const a = one.data();
    const char* const b = other.data();
    if (size >= 8) return AreSameEnds<std::uint64_t>(a, b, size);
    if (size >= 4) return AreSameEnds<std::uint32_t>(a, b, size);
    if (size >= 2) return AreSameEnds<std::uint16_t>(a, b, size);
    return *a == *b;
}

// Message after message the entry is of the same capture, and only its value is new.
void Overwrite(Parameter& ioEntry, const Parameter& parameter)
{
    if (ioEntry.mType != parameter.mType || !IsSameName(ioEntry.mName, parameter.mName)) {
        ioEntry = parameter;
        return;
    }
    ioEntry.mIntValue = parameter.mIntValue;
    ioEntry.mFloatValue = parameter.mFloatValue;
    if (parameter.mType == kTypeString) {
        AssignBytes(ioEntry.mStringValue, parameter.mStringValue.data(),
                    parameter.mStringValue.size());
    }
}

template <typename Form>
std::unique_ptr<Element> MakeElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    return std::make_unique<Form>(tokens, ioCursor);
}

struct ElementForm {
    // False only where the constructor would refuse the tokens: it spares the throw.
    bool (*mCanStart)(const std::vector<LToken>& tokens, TokenCursor cursor);
    std::unique_ptr<Element> (*mMake)(const std::vector<LToken>& tokens, TokenCursor& ioCursor);
};

// In the order of the attempts.
constexpr ElementForm kElementForms[] = {
    {StringElement::CanStart, MakeElement<StringElement>},
    {NumberElement::CanStart, MakeElement<NumberElement>},
    {BytesetElement::CanStart, MakeElement<BytesetElement>},
    {BitfieldElement::CanStart, MakeElement<BitfieldElement>},
    {EOLElement::CanStart, MakeElement<EOLElement>},
};

}  // namespace

void Parameter::StoreText(const Byte* text, std::uint32_t length, bool hex)
{
    const char* const begin = reinterpret_cast<const char*>(text);
    const char* const end = begin + (length != 0 ? length : std::strlen(begin));
    switch (mType) {
        case kTypeString:
            AssignBytes(mStringValue, begin, static_cast<std::size_t>(end - begin));
            break;
        case kTypeFloat: mFloatValue = hex ? IntegerOf(begin, end, 16) : FloatOf(begin, end); break;
        case kTypeLInteger:
        case kTypeBInteger: mIntValue = IntegerOf(begin, end, hex ? 16 : 10); break;
        case kTypeNone: break;
    }
}

void Parameter::StoreBytes(const Byte* data, std::uint32_t length)
{
    switch (mType) {
        case kTypeString:
            AssignBytes(mStringValue, reinterpret_cast<const char*>(data), length);
            break;
        case kTypeFloat:
            mFloatValue = 0.0;
            for (std::uint32_t i = length; i > 0; --i)
                mFloatValue = mFloatValue * 256.0 + data[i - 1];
            break;
        case kTypeLInteger: {
            std::uint32_t value = 0;
            for (std::uint32_t i = std::min(length, 4U); i > 0; --i)
                value = value << 8 | data[i - 1];
            mIntValue = static_cast<std::int32_t>(value);
            break;
        }
        case kTypeBInteger: {
            std::uint32_t value = 0;
            for (std::uint32_t i = length - std::min(length, 4U); i < length; ++i) {
                value = value << 8 | data[i];
            }
            mIntValue = static_cast<std::int32_t>(value);
            break;
        }
        case kTypeNone: break;
    }
}

void Parameter::StoreInteger(std::int32_t value)
{
    if (mType == kTypeString) {
        mStringValue = std::to_string(value);
    } else {
        mFloatValue = value;
    }
}

std::string Parameter::TypedName() const
{
    return mType == kTypeNone ? std::string() : mName + kTypeSuffixes[mType];
}

bool ExpectToken(const std::vector<LToken>& tokens, TokenCursor& ioCursor, const LToken*& outToken,
                 LTokenType wantedType, const char* wantedText)
{
    outToken = nullptr;
    if (ioCursor >= tokens.size()) return false;
    const LToken& token = tokens[ioCursor];
    if (token.mType != wantedType) return false;
    if (wantedText != nullptr) {
        if (token.mType == kSymbol && token.mEscaped) return false;
        if (!EqualsIgnoringCase(token.mText, wantedText)) return false;
    }
    outToken = &token;
    ++ioCursor;
    return true;
}

const LToken& TokenAt(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    static const LToken kEndToken;
    return cursor < tokens.size() ? tokens[cursor] : kEndToken;
}

TokenCursor SkipDeclaration(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    TokenCursor behind = cursor;
    const LToken* token = nullptr;
    const bool complete = ExpectToken(tokens, behind, token, kIdentifier, nullptr) &&
                          ExpectToken(tokens, behind, token, kSymbol, ":") &&
                          ExpectToken(tokens, behind, token, kIdentifier, nullptr) &&
                          ExpectToken(tokens, behind, token, kSymbol, "=");
    return complete ? behind : cursor;
}

Element::~Element() = default;

void Element::CollectParameters(ParameterList& ioList) const
{
    if (mParameter.mType != kTypeNone) ioList.push_back(&mParameter);
}

void Element::ParseDeclaration(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    const TokenCursor behind = SkipDeclaration(tokens, ioCursor);
    if (behind == ioCursor) return;

    mParameter.mName = tokens[ioCursor].mText;
    const std::string_view typeWord = tokens[ioCursor + 2].mText;
    const auto* const found =
        std::find_if(std::begin(kTypeWords), std::end(kTypeWords), [typeWord](const TypeWord& row) {
            return EqualsIgnoringCase(row.mWord.substr(0, typeWord.size()), typeWord);
        });
    if (found == std::end(kTypeWords)) {
        throw PatternException(kSourceFile, __LINE__, "Invalid parameter type '%s'",
                               tokens[ioCursor + 2].mText.c_str());
    }
    mParameter.mType = found->mType;
    ioCursor = behind;
}

const Byte* Element::CaptureText(const Byte* data, const Byte* end, bool hex)
{
    mParameter.SetTextValue(data, static_cast<std::uint32_t>(end - data), hex);
    return end;
}

const Byte* Element::CaptureBytes(const Byte* data, const Byte* end)
{
    mParameter.SetBinaryValue(data, static_cast<std::uint32_t>(end - data));
    return end;
}

void WhitespaceElement::Dump(std::FILE* stream) const
{
    std::fprintf(stream, "%c WHITESPACE\n", BinaryMark());
}

const Byte* WhitespaceElement::Match(const Byte* data, std::uint32_t length)
{
    return SkipSpace(data, data + length);
}

void WhitespaceElement::CollectParameters(ParameterList& /*ioList*/) const {}

std::unique_ptr<Element> CreateElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    const TokenCursor start = ioCursor;
    if (start >= tokens.size() || tokens[start].mType == kEnd) return nullptr;

    for (const ElementForm& form : kElementForms) {
        if (!form.mCanStart(tokens, start)) continue;
        try {
            return form.mMake(tokens, ioCursor);
        } catch (...) {
            // Whatever went wrong, memory that ran out included: the next form gets its turn.
            ioCursor = start;
        }
    }
    const LToken& token = tokens[start];
    throw PatternSyntaxException(kSourceFile, __LINE__, token.mPosition, token.mText,
                                 "Syntax error at '%s'", token.mText.c_str());
}

ElementList CompileElements(const std::string& parseString)
{
    std::vector<LToken> tokens;
    Tokenize(tokens, parseString);

    ElementList elements;
    TokenCursor cursor = 0;
    bool previousBinary = true;
    while (std::unique_ptr<Element> element = CreateElement(tokens, cursor)) {
        const bool binary = element->IsBinary();
        if (!previousBinary && !binary) elements.push_back(std::make_unique<WhitespaceElement>());
        previousBinary = binary;
        elements.push_back(std::move(element));
    }
    return elements;
}

void Pattern::SetPatternString(const std::string& parseString)
{
    Clear();
    ElementList elements = CompileElements(parseString);
    std::vector<Step> steps;
    ParameterList captures;
    bool skipsSpace = false;
    for (const auto& element : elements) {
        const bool isSpace = dynamic_cast<WhitespaceElement*>(element.get()) != nullptr;
        if (!isSpace) steps.push_back({element.get(), skipsSpace});
        skipsSpace = isSpace;
        element->CollectParameters(captures);
    }
    mElements = std::move(elements);
    mSteps = std::move(steps);
    mCaptures = std::move(captures);
}

const Byte* Pattern::Match(const Byte* data, std::uint32_t length)
{
    if (mSteps.empty()) return nullptr;
    const Byte* const end = data + length;
    const Byte* current = data;
    for (const Step& step : mSteps) {
        if (step.mSkipsSpace) current = SkipSpace(current, end);
        if (current == end) return nullptr;
        current = step.mElement->Match(current, static_cast<std::uint32_t>(end - current));
        if (current == nullptr) return nullptr;
    }
    return current;
}

void Pattern::CollectParameters(std::vector<Parameter>& outParameters) const
{
    outParameters.resize(mCaptures.size());
    auto entry = outParameters.begin();
    for (const Parameter* const capture : mCaptures) Overwrite(*entry++, *capture);
}

void Pattern::Clear()
{
    mCaptures.clear();
    mSteps.clear();
    mElements.clear();
}

}  // namespace NPattern

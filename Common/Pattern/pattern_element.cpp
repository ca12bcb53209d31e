#include "pattern_element.h"

#include <algorithm>
#include <bit>
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

// What tells a capital letter from its small one.
constexpr Byte kCaseBit = 0x20;

template <typename Word, typename Character>
Word ReadWord(const Character* text)
{
    Word word;
    std::memcpy(&word, text, sizeof word);
    return word;
}

// Two words that overlap hold all of a text of their size or up to twice that.
template <typename Word>
void CopyEnds(char* target, const char* source, std::size_t size)
{
    const std::size_t last = size - sizeof(Word);
    const auto firstWord = ReadWord<Word>(source);
    const auto lastWord = ReadWord<Word>(source + last);
    std::memcpy(target, &firstWord, sizeof(Word));
    std::memcpy(target + last, &lastWord, sizeof(Word));
}

// Over the bytes that the string holds already, as long as there are as many: that is what message
// after message brings. Most texts are short, and copied without a call.
void AssignBytes(std::string& outText, const char* bytes, std::size_t size)
{
    char* const target = outText.data();
    if (outText.size() != size) {
        outText.assign(bytes, size);
    } else if (size > 16) {
        std::memcpy(target, bytes, size);
    } else if (size >= 8) {
        CopyEnds<std::uint64_t>(target, bytes, size);
    } else if (size >= 4) {
        CopyEnds<std::uint32_t>(target, bytes, size);
    } else if (size >= 2) {
        CopyEnds<std::uint16_t>(target, bytes, size);
    } else if (size == 1) {
        *target = *bytes;
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
        // An exponent has one sign. No number goes on behind two, but from_chars would.
        constexpr std::string_view kTwoSigns = "+-";
        end = std::search(text, end, kTwoSigns.begin(), kTwoSigns.end());
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

void CopyValue(Parameter& outParameter, const Parameter& parameter)
{
    outParameter.mIntValue = parameter.mIntValue;
    outParameter.mFloatValue = parameter.mFloatValue;
    if (parameter.mType == kTypeString) {
        AssignBytes(outParameter.mStringValue, parameter.mStringValue.data(),
                    parameter.mStringValue.size());
    }
}

// The eight bytes from current on, with zeros behind end. Reads within begin and end.
std::uint64_t WordAt(const Byte* begin, const Byte* current, const Byte* end)
{
    constexpr std::size_t kSize = sizeof(std::uint64_t);
    const auto left = static_cast<std::size_t>(end - current);
    if (left >= kSize) return ReadWord<std::uint64_t>(current);
    if (static_cast<std::size_t>(end - begin) < kSize) {
        Byte bytes[kSize] = {};
        std::copy(current, end, bytes);
        return ReadWord<std::uint64_t>(bytes);
    }
    const auto word = ReadWord<std::uint64_t>(end - kSize);
    const std::size_t surplus = (kSize - left) * 8;
    return std::endian::native == std::endian::little ? word >> surplus : word << surplus;
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

void Parameter::SetTextValue(const Byte* text, std::uint32_t length, bool hex)
{
    if (mType == kTypeNone) return;
    const std::size_t size =
        length != 0 ? length : std::strlen(reinterpret_cast<const char*>(text));
    if (mType == kTypeString) {
        AssignBytes(mStringValue, reinterpret_cast<const char*>(text), size);
    } else {
        StoreNumber(text, size, hex);
    }
}

void Parameter::SetBinaryValue(const Byte* data, std::uint32_t length)
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

void Parameter::StoreNumber(const Byte* text, std::size_t length, bool hex)
{
    const char* const begin = reinterpret_cast<const char*>(text);
    const char* const end = begin + length;
    if (IsInteger()) {
        mIntValue = IntegerOf(begin, end, hex ? 16 : 10);
    } else {
        mFloatValue = hex ? IntegerOf(begin, end, 16) : FloatOf(begin, end);
    }
}

void Parameter::StoreInteger(std::int32_t value)
{
    if (mType == kTypeString) {
        mStringValue = std::to_string(value);
    } else if (mType == kTypeFloat) {
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

TextPiece::TextPiece(std::string_view text, bool caseSensitive)
    : mSize(static_cast<std::uint32_t>(text.size()))
{
    Byte bytes[kMostBytes] = {};
    Byte fold[kMostBytes] = {};
    Byte mask[kMostBytes] = {};
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto b = static_cast<Byte>(text[i]);
        fold[i] = !caseSensitive && IsAlpha(b) ? kCaseBit : 0;
        bytes[i] = b | fold[i];
        mask[i] = 0xFF;
    }
    std::memcpy(&mText, bytes, kMostBytes);
    std::memcpy(&mFold, fold, kMostBytes);
    std::memcpy(&mMask, mask, kMostBytes);
}

Element::~Element() = default;

void Element::CollectParameters(ParameterList& ioList) const
{
    if (mParameter.mType != kTypeNone) ioList.push_back(&mParameter);
}

void Element::CollectText(TextPieceList& /*ioPieces*/) const {}

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
    Pattern compiled;
    ParameterList captures;
    compiled.mElements = CompileElements(parseString);
    bool skipsSpace = false;
    for (const auto& element : compiled.mElements) {
        const bool isSpace = dynamic_cast<WhitespaceElement*>(element.get()) != nullptr;
        if (!isSpace) compiled.AppendSteps(*element, skipsSpace);
        skipsSpace = isSpace;
        element->CollectParameters(captures);
    }
    compiled.mCaptures = std::make_shared<const ParameterList>(std::move(captures));
    *this = std::move(compiled);
}

void Pattern::AppendSteps(Element& element, bool skipsSpace)
{
    TextPieceList pieces;
    element.CollectText(pieces);
    if (pieces.empty()) mSteps.push_back({skipsSpace, &element});
    for (const TextPiece& piece : pieces) {
        mSteps.push_back({skipsSpace, nullptr, piece});
        skipsSpace = false;
    }
}

const Byte* Pattern::Match(const Byte* data, std::uint32_t length)
{
    if (mSteps.empty()) return nullptr;
    const Byte* const end = data + length;
    const Byte* current = data;
    for (const Step& step : mSteps) {
        if (current == end) return nullptr;
        while (step.mSkipsSpace && IsSpace(*current)) {
            if (++current == end) return nullptr;
        }
        if (step.mElement == nullptr) {
            if (!step.mText.IsIn(WordAt(data, current, end))) return nullptr;
            current += step.mText.mSize;
        } else {
            current = step.mElement->Match(current, static_cast<std::uint32_t>(end - current));
            if (current == nullptr) return nullptr;
        }
    }
    return current;
}

void Pattern::CollectParameters(std::vector<Parameter>& outParameters) const
{
    outParameters.resize(mCaptures != nullptr ? mCaptures->size() : 0);
    if (mCaptures == nullptr) return;
    auto entry = outParameters.begin();
    for (const Parameter* const capture : *mCaptures) *entry++ = *capture;
}

void Pattern::CollectParameters(CapturedParameters& ioParameters) const
{
    if (ioParameters.mCaptures != mCaptures) {
        std::vector<Parameter> entries;
        CollectParameters(entries);
        ioParameters.mEntries = std::move(entries);
        ioParameters.mCaptures = mCaptures;
    } else if (mCaptures != nullptr) {
        auto entry = ioParameters.mEntries.begin();
        for (const Parameter* const capture : *mCaptures) CopyValue(*entry++, *capture);
    }
}

void Pattern::Clear()
{
    mCaptures.reset();
    mSteps.clear();
    mElements.clear();
}

}  // namespace NPattern

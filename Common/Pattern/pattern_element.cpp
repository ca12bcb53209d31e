#include "pattern_element.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "pattern_elements.h"

namespace NPattern {

namespace {

constexpr char kSourceFile[] = "pattern_element.cpp";

template <typename Form>
std::unique_ptr<Element> MakeElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    return std::make_unique<Form>(tokens, ioCursor);
}

struct ElementForm {
    // False only if the constructor would refuse the tokens: it saves the throw.
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
// Every class of element but WhitespaceElement has a form.
static_assert(std::size(kElementForms) + 1 == std::variant_size_v<ElementPointer>);

struct ElementOperands {
    Element* mElement;
    std::uint32_t mFirstValue;
};

// Out of line, so that the vector does not stand in the way of the tail call.
const Byte* MatchElement(const ElementOperands& operands, const Byte* current, const Byte* end,
                         Parameter* values)
{
    Element& element = *operands.mElement;
    const Byte* const rest = element.Match(current, static_cast<std::uint32_t>(end - current));
    if (rest == nullptr) return nullptr;
    std::vector<Parameter> captures;
    element.CollectParameters(captures);
    std::move(captures.begin(), captures.end(), values + operands.mFirstValue);
    return rest;
}

template <bool kSkipsSpace>
const Byte* RunElement(const Step* step, const Byte* current, const Byte* end, Parameter* values)
{
    if (!BeginStep<kSkipsSpace>(current, end)) return nullptr;
    current = MatchElement(step->Get<ElementOperands>(), current, end, values);
    if (current == nullptr) return nullptr;
    return RunNextStep(step, current, end, values);
}

}  // namespace

bool ExpectToken(const std::vector<LToken>& tokens, TokenCursor& ioCursor, const LToken*& outToken,
                 LTokenType wantedType, const char* wantedText)
{
    outToken = nullptr;
    const LToken& token = TokenAt(tokens, ioCursor);
    if (token.mType != wantedType) return false;
    if (wantedText != nullptr) {
        if (token.mEscaped) return false;
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
    TokenCursor after = cursor;
    const LToken* token = nullptr;
    const bool complete = ExpectToken(tokens, after, token, kIdentifier, nullptr) &&
                          ExpectToken(tokens, after, token, kSymbol, ":") &&
                          ExpectToken(tokens, after, token, kIdentifier, nullptr) &&
                          ExpectToken(tokens, after, token, kSymbol, "=");
    return complete ? after : cursor;
}

Element::~Element() = default;

void Element::CollectParameters(std::vector<Parameter>& ioList) const
{
    if (mParameter.mType != kTypeNone) ioList.push_back(mParameter);
}

void Element::Emit(Program& ioProgram)
{
    std::vector<Parameter> captures;
    CollectParameters(captures);
    const auto firstValue = static_cast<std::uint32_t>(ioProgram.Captures().size());
    for (const Parameter& capture : captures) ioProgram.AddCapture(capture);
    const ElementOperands operands{this, firstValue};
    ioProgram.AddStep({RunElement<false>, RunElement<true>}, operands);
}

void Element::ParseDeclaration(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    const TokenCursor after = SkipDeclaration(tokens, ioCursor);
    if (after == ioCursor) return;

    const std::string& typeWord = tokens[ioCursor + 2].mText;
    const ParameterType type = FindType(typeWord);
    if (type == kTypeNone) {
        throw WithCode(kErrorInvalidType,
                       PatternException(kSourceFile, __LINE__, "Invalid parameter type '%s'",
                                        typeWord.c_str()));
    }
    mParameter.mName = tokens[ioCursor].mText;
    mParameter.mType = type;
    ioCursor = after;
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

std::unique_ptr<Element> CreateElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    const LToken& token = TokenAt(tokens, ioCursor);
    if (token.mType == kEnd) return nullptr;

    for (const ElementForm& form : kElementForms) {
        if (!form.mCanStart(tokens, ioCursor)) continue;
        try {
            TokenCursor cursor = ioCursor;
            std::unique_ptr<Element> element = form.mMake(tokens, cursor);
            ioCursor = cursor;
            return element;
        } catch (...) {
            // Whatever went wrong, memory that ran out included: the next form gets its turn.
        }
    }
    throw WithCode(kErrorSyntax,
                   PatternSyntaxException(kSourceFile, __LINE__, token.mPosition, token.mText,
                                          "Syntax error at '%s'", token.mText.c_str()));
}

bool SkipsSpaceBetween(const Element& first, const Element& second)
{
    return !first.IsBinary() && !second.IsBinary();
}

ElementList CompileElements(const std::string& parseString)
{
    std::vector<LToken> tokens;
    Tokenize(tokens, parseString);

    ElementList elements;
    TokenCursor cursor = 0;
    const Element* previous = nullptr;
    while (std::unique_ptr<Element> element = CreateElement(tokens, cursor)) {
        if (previous != nullptr && SkipsSpaceBetween(*previous, *element)) {
            elements.push_back(std::make_unique<WhitespaceElement>());
        }
        previous = element.get();
        elements.push_back(std::move(element));
    }
    return elements;
}

}  // namespace NPattern

#include "pattern_byteset_element.h"

#include <algorithm>
#include <iterator>

#include "pattern_byteset_steps.h"

namespace NPattern {

namespace {

constexpr char kSourceFile[] = "pattern_byteset_element.cpp";

[[noreturn]] void ThrowNoSet(int line)
{
    throw WithCode(kErrorWrongForm, PatternException(kSourceFile, line, "Not a BytesetElement"));
}

bool IsInClass(Byte b, ByteClassKind kind)
{
    switch (kind) {
        case kClassAnyByte: return true;
        case kClassLetter: return IsAlpha(b);
        case kClassCharacter: return IsPrint(b) && !IsSpace(b);
        case kClassNone: break;
    }
    return false;
}

// The classes of a token in a set body: the columns of the tables below.
enum TokenClass { kNegation, kRange, kClosing, kMember, kTokenClassCount };

// The states of a set body: the rows of the tables. Entering a negative one ends the body.
enum SetState {
    kDone = -2,
    kInvalid = -1,
    kStart = 0,
    kAfterNegation,
    kAfterMember,
    kAfterMemberAndRange,
    kAfterRange,
    kSetStateCount
};

using SetTable = SetState[kSetStateCount][kTokenClassCount];

// clang-format off
// Out of place, a '^' or '-' is a plain member, also as the upper bound of a range.
constexpr SetTable kCharacterSetTable = {
    // '^'           '-'                   ']'       other
    {kAfterNegation, kAfterMember,         kInvalid, kAfterMember},  // start
    {kAfterMember,   kAfterMember,         kInvalid, kAfterMember},  // after ^
    {kAfterMember,   kAfterMemberAndRange, kDone,    kAfterMember},  // member
    {kAfterRange,    kAfterRange,          kInvalid, kAfterRange},   // and -
    {kAfterMember,   kAfterMember,         kDone,    kAfterMember},  // range
};

// Out of place, a '^' or '-' is an error.
constexpr SetTable kByteSetTable = {
    // '^'           '-'                   '}'       other
    {kAfterNegation, kInvalid,             kInvalid, kAfterMember},  // start
    {kInvalid,       kInvalid,             kInvalid, kAfterMember},  // after ^
    {kInvalid,       kAfterMemberAndRange, kDone,    kAfterMember},  // member
    {kInvalid,       kInvalid,             kInvalid, kAfterRange},   // and -
    {kInvalid,       kInvalid,             kDone,    kAfterMember},  // range
};
// clang-format on

// A member is the first byte of the text, whatever the type of the token: after a bracket that
// changed the mode of the lexer, the body goes on in words and numbers.
Byte CharacterSetValue(const LToken& token)
{
    const auto first = static_cast<Byte>(token.mText[0]);  // NUL without a text
    return token.mEscaped ? TranslateEscape(first) : first;
}

Byte ByteSetValue(const LToken& token)
{
    return static_cast<Byte>(token.mValue);
}

// No token of a byte set is escaped, so the test of mEscaped serves both kinds of set. The end of
// all tokens closes a set too; the bracket is missed later.
TokenClass ClassOf(const LToken& token, std::string_view closing)
{
    if (token.mEscaped) return kMember;
    if (token.mText == "^") return kNegation;
    if (token.mText == "-") return kRange;
    return token.mText == closing || token.mType == kEnd ? kClosing : kMember;
}

}  // namespace

// How the bodies of the two kinds of set differ.
struct BytesetElement::SetSyntax {
    const SetTable& mTable;
    std::string_view mClosing;
    Byte (*mValueOf)(const LToken& token);
    const char* mError;
};

constexpr BytesetElement::SetSyntax BytesetElement::kCharacterSetSyntax{
    kCharacterSetTable, "]", CharacterSetValue, "Invalid character set"};
constexpr BytesetElement::SetSyntax BytesetElement::kByteSetSyntax{kByteSetTable, "}", ByteSetValue,
                                                                   "Invalid byte set"};

ByteClassKind FindByteClass(std::string_view word)
{
    const auto* const row =
        std::find_if(std::begin(kByteClasses), std::end(kByteClasses),
                     [word](const ByteClassRow& r) { return EqualsIgnoringCase(r.mWord, word); });
    return row != std::end(kByteClasses) ? row->mKind : kClassNone;
}

bool BytesetElement::CanStart(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    cursor = SkipDeclaration(tokens, cursor);
    if (TokenAt(tokens, cursor).mType == kNumber) ++cursor;
    const LToken& token = TokenAt(tokens, cursor);
    return token.mText == "[" || token.mText == "{" || FindByteClass(token.mText) != kClassNone;
}

BytesetElement::BytesetElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    ParseDeclaration(tokens, ioCursor);
    if (ParseNamedClass(tokens, ioCursor)) return;
    mForm = ParseOpenBrackets(tokens, ioCursor);
    if (IsInBraces()) {
        ParseByteSet(tokens, ioCursor);
    } else {
        ParseCharacterSet(tokens, ioCursor);
    }
    ParseCloseBrackets(tokens, ioCursor, mForm);
}

bool BytesetElement::ParseNamedClass(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    TokenCursor cursor = ioCursor;
    const LToken* token = nullptr;
    if (ExpectToken(tokens, cursor, token, kNumber, nullptr)) {
        mLength = token->mValue;
        if (mLength < 1) return false;
    }
    if (!ExpectToken(tokens, cursor, token, kIdentifier, nullptr) &&
        !ExpectToken(tokens, cursor, token, kSymbol, nullptr)) {
        return false;
    }
    const ByteClassKind kind = FindByteClass(token->mText);
    if (kind == kClassNone) return false;

    for (unsigned b = 0; b < mMembers.size(); ++b) {
        mMembers[b] = IsInClass(static_cast<Byte>(b), kind) ? 1 : 0;
    }
    mBinary = kind == kClassAnyByte;
    mClass = kind;
    // Without a count, any byte means one byte: a run of them would take all that is left.
    if (mLength == 0 && mBinary) mLength = 1;
    ioCursor = cursor;
    return true;
}

BytesetElement::BracketForm BytesetElement::ParseOpenBrackets(const std::vector<LToken>& tokens,
                                                              TokenCursor& ioCursor)
{
    const LToken* token = nullptr;
    BracketForm form = kSingleBracket;
    if (ExpectToken(tokens, ioCursor, token, kSymbol, "[")) {
        form = ExpectToken(tokens, ioCursor, token, kSymbol, "[") ? kDoubleBracket : kSingleBracket;
    } else if (ExpectToken(tokens, ioCursor, token, kSymbol, "{")) {
        form = ExpectToken(tokens, ioCursor, token, kSymbol, "{") ? kDoubleBrace : kSingleBrace;
    } else {
        ThrowNoSet(__LINE__);
    }
    mLength = form == kDoubleBracket || form == kDoubleBrace ? 1 : 0;
    return form;
}

void BytesetElement::ParseCharacterSet(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    ParseSetBody(tokens, ioCursor, kCharacterSetSyntax);
    mBinary = HasSpace();
}

void BytesetElement::ParseByteSet(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    ParseSetBody(tokens, ioCursor, kByteSetSyntax);
    mBinary = true;
}

void BytesetElement::ParseSetBody(const std::vector<LToken>& tokens, TokenCursor& ioCursor,
                                  const SetSyntax& syntax)
{
    bool negate = false;
    Byte previous = 0;
    SetState state = kStart;
    for (;; ++ioCursor) {
        const LToken& token = TokenAt(tokens, ioCursor);
        state = syntax.mTable[state][ClassOf(token, syntax.mClosing)];
        if (state < kStart) break;
        const Byte value = syntax.mValueOf(token);
        switch (state) {
            case kAfterNegation: negate = true; break;
            case kAfterMember:
                mMembers[value] = 1;
                previous = value;
                break;
            case kAfterRange: {
                const auto [low, high] = std::minmax(previous, value);
                std::fill(mMembers.begin() + low, mMembers.begin() + high + 1, 1U);
                break;
            }
            default: break;
        }
    }
    if (state != kDone) {
        throw WithCode(kErrorInvalidSet,
                       PatternException(kSourceFile, __LINE__, "%s", syntax.mError));
    }
    if (negate) {
        for (std::uint32_t& member : mMembers) member = member == 0 ? 1 : 0;
    }
}

bool BytesetElement::HasSpace() const
{
    for (unsigned b = 0; b < mMembers.size(); ++b) {
        if (mMembers[b] != 0 && IsSpace(static_cast<Byte>(b))) return true;
    }
    return false;
}

void BytesetElement::ParseCloseBrackets(const std::vector<LToken>& tokens, TokenCursor& ioCursor,
                                        BracketForm form)
{
    const char* const closing = form == kSingleBracket || form == kDoubleBracket ? "]" : "}";
    const LToken* token = nullptr;
    const bool isDouble = form == kDoubleBracket || form == kDoubleBrace;
    for (int count = isDouble ? 2 : 1; count > 0; --count) {
        if (!ExpectToken(tokens, ioCursor, token, kSymbol, closing)) {
            ThrowNoSet(__LINE__);
        }
    }
}

void BytesetElement::Dump(std::FILE* stream) const
{
    std::fprintf(stream, "%c ", BinaryMark());
    std::fprintf(stream, "BYTESET    length=%i %s\n", mLength, mParameter.TypedName().c_str());
    for (unsigned row = 0; row < 16; ++row) {
        std::fprintf(stream, "           { ");
        for (unsigned b = row * 16; b < row * 16 + 16; ++b) {
            if (mMembers[b] != 0) {
                std::fprintf(stream, "%02X ", b);
            } else {
                std::fprintf(stream, "-- ");
            }
        }
        std::fprintf(stream, "}\n");
    }
}

const Byte* BytesetElement::Match(const Byte* data, std::uint32_t length)
{
    const std::uint32_t run =
        RunLengthOf(mMembers.data(), static_cast<std::uint32_t>(mLength), data, length);
    if (run == 0) return nullptr;
    const Byte* const end = data + run;
    return mBinary ? CaptureBytes(data, end) : CaptureText(data, end, false);
}

void BytesetElement::Emit(Program& ioProgram)
{
    const bool captures = mParameter.mType != kTypeNone;
    if (!captures && mLength == 1 && EmitAsText(ioProgram)) return;
    SetOperands operands{mMembers.data(), static_cast<std::uint32_t>(mLength), 0, mBinary,
                         mClass == kClassAnyByte};
    if (captures) operands.mValue = ioProgram.AddCapture(mParameter);
    AddSetStep(operands, mParameter.mType, ioProgram);
}

bool BytesetElement::EmitAsText(Program& ioProgram) const
{
    const auto isMember = [](std::uint32_t member) { return member != 0; };
    if (std::count_if(mMembers.begin(), mMembers.end(), isMember) != 1) return false;
    const auto member = std::find_if(mMembers.begin(), mMembers.end(), isMember);
    const char text = static_cast<char>(member - mMembers.begin());
    ioProgram.AddText(std::string_view(&text, 1), true);
    return true;
}

}  // namespace NPattern

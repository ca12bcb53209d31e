#include "pattern_byteset_element.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace NPattern {

namespace {

constexpr char kSourceFile[] = "pattern_byteset_element.cpp";

constexpr std::int32_t kNoCount = -1;

enum ByteClassKind { kClassNone, kClassAnyByte, kClassLetter, kClassCharacter };

struct ByteClassRow {
    std::string_view mWord;
    ByteClassKind mKind;
};

constexpr ByteClassRow kByteClasses[] = {
    {"?", kClassAnyByte},           {"byte", kClassAnyByte},         {"bytes", kClassAnyByte},
    {"c", kClassCharacter},         {"char", kClassCharacter},       {"chars", kClassCharacter},
    {"character", kClassCharacter}, {"characters", kClassCharacter}, {"a", kClassLetter},
    {"letter", kClassLetter},       {"letters", kClassLetter},
};

ByteClassKind FindByteClass(const LToken& token)
{
    const auto* const row = std::find_if(
        std::begin(kByteClasses), std::end(kByteClasses),
        [&](const ByteClassRow& r) { return EqualsIgnoringCase(r.mWord, token.mText); });
    return row == std::end(kByteClasses) ? kClassNone : row->mKind;
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

// What a token of a set body can be to the tables below.
enum TokenClass { kNegation, kRange, kClosing, kMember, kEndOfTokens, kTokenClassCount };

// States of a set body. Entering a negative one ends it: kDone well, any below that in an error.
enum SetState {
    kDone = -1,
    kStart = 0,
    kBehindNegation,
    kBehindMember,
    kBehindMemberAndRange,
    kBehindRange,
    kSetStateCount
};

using SetTable = int[kSetStateCount][kTokenClassCount];

// Out of place, a '^' or '-' is a plain member here, as the upper bound of a range too.
constexpr SetTable kCharacterSetTable = {
    //   ^   -   ]  other end
    {1, 2, -2, 2, -2},  // kStart
    {2, 2, -2, 2, -2},  // kBehindNegation
    {2, 3, -1, 2, -2},  // kBehindMember
    {4, 4, -3, 4, -3},  // kBehindMemberAndRange
    {2, 2, -1, 2, -2},  // kBehindRange
};

// Out of place, a '^' or '-' is an error here.
constexpr SetTable kByteSetTable = {
    //   ^   -   }  other end
    {1, -3, -2, 2, -2},   // kStart
    {-3, -3, -2, 2, -2},  // kBehindNegation
    {-3, 3, -1, 2, -2},   // kBehindMember
    {-3, -3, -4, 4, -2},  // kBehindMemberAndRange
    {-3, -3, -1, 2, -2},  // kBehindRange
};

// A member is the first byte of the text whatever kind of token it is: behind a bracket that
// switched the lexer's mode, the body goes on in words and numbers.
Byte CharacterSetValue(const LToken& token)
{
    const Byte first = token.mText.empty() ? Byte{0} : static_cast<Byte>(token.mText.front());
    return token.mEscaped ? TranslateEscape(first) : first;
}

Byte ByteSetValue(const LToken& token)
{
    return static_cast<Byte>(token.mValue);
}

// In a byte set no token is escaped, so that the test of mEscaped serves both kinds of set.
TokenClass ClassOf(const std::vector<LToken>& tokens, TokenCursor cursor, std::string_view closing)
{
    if (cursor >= tokens.size()) return kEndOfTokens;
    const LToken& token = tokens[cursor];
    if (token.mEscaped) return kMember;
    if (token.mText == "^") return kNegation;
    if (token.mText == "-") return kRange;
    return token.mText == closing ? kClosing : kMember;
}

}  // namespace

// What tells the two kinds of set apart while their bodies are read.
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

bool BytesetElement::CanStart(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    cursor = SkipDeclaration(tokens, cursor);
    if (TokenAt(tokens, cursor).mType == kNumber) ++cursor;
    const LToken& token = TokenAt(tokens, cursor);
    if (token.mType != kIdentifier && token.mType != kSymbol) return false;
    return token.mText == "[" || token.mText == "{" || FindByteClass(token) != kClassNone;
}

BytesetElement::BytesetElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    ParseDeclaration(tokens, ioCursor);
    if (ParseNamedClass(tokens, ioCursor)) return;
    const BracketForm form = ParseOpenBrackets(tokens, ioCursor);
    if (form == kSingleBracket || form == kDoubleBracket) {
        ParseCharacterSet(tokens, ioCursor);
    } else {
        ParseByteSet(tokens, ioCursor);
    }
    ParseCloseBrackets(tokens, ioCursor, form);
}

bool BytesetElement::ParseNamedClass(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    TokenCursor cursor = ioCursor;
    const LToken* token = nullptr;
    mLength = kNoCount;
    if (ExpectToken(tokens, cursor, token, kNumber, nullptr)) {
        mLength = token->mValue;
        if (mLength < 1) return false;
    }
    if (!ExpectToken(tokens, cursor, token, kIdentifier, nullptr) &&
        !ExpectToken(tokens, cursor, token, kSymbol, nullptr)) {
        return false;
    }
    const ByteClassKind kind = FindByteClass(*token);
    if (kind == kClassNone) return false;

    for (unsigned b = 0; b < mMembers.size(); ++b) {
        mMembers[b] = IsInClass(static_cast<Byte>(b), kind) ? 1 : 0;
    }
    mBinary = kind == kClassAnyByte;
    // Without a count a class of any byte is one byte: a run of them would take all that is left.
    if (mLength == kNoCount) mLength = kind == kClassAnyByte ? 1 : 0;
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
        throw PatternException(kSourceFile, __LINE__, "Not a BytesetElement");
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
    mMembers.fill(0);
    bool negate = false;
    Byte previous = 0;
    int state = kStart;
    while ((state = syntax.mTable[state][ClassOf(tokens, ioCursor, syntax.mClosing)]) > kDone) {
        const Byte value = syntax.mValueOf(tokens[ioCursor]);
        switch (state) {
            case kBehindNegation: negate = true; break;
            case kBehindMember:
                mMembers[value] = 1;
                previous = value;
                break;
            case kBehindRange: {
                const auto [low, high] = std::minmax(previous, value);
                std::fill(mMembers.begin() + low, mMembers.begin() + high + 1, 1U);
                break;
            }
            default: break;
        }
        ++ioCursor;
    }
    if (state != kDone) throw PatternException(kSourceFile, __LINE__, "%s", syntax.mError);
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
            throw PatternException(kSourceFile, __LINE__, "Not a BytesetElement");
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
    const auto wanted = static_cast<std::uint32_t>(mLength);
    if (length == 0 || length < wanted || mMembers[*data] == 0) return nullptr;
    const std::uint32_t most = wanted != 0 ? wanted : length;
    std::uint32_t run = 1;
    while (run < most && mMembers[data[run]] != 0) ++run;
    if (run < wanted) return nullptr;

    const Byte* const end = data + run;
    if (mParameter.mType == kTypeNone) return end;
    return mBinary ? CaptureBytes(data, end) : CaptureText(data, end, false);
}

void BytesetElement::CollectText(TextPieceList& ioPieces) const
{
    const auto isMember = [](std::uint32_t member) { return member != 0; };
    if (mLength != 1 || mParameter.mType != kTypeNone ||
        std::count_if(mMembers.begin(), mMembers.end(), isMember) != 1) {
        return;
    }
    const auto member = std::find_if(mMembers.begin(), mMembers.end(), isMember);
    const char text = static_cast<char>(member - mMembers.begin());
    ioPieces.emplace_back(std::string_view(&text, 1), true);
}

}  // namespace NPattern

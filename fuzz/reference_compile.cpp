// From tokens to elements. A form that isn't at the cursor is no error here: its function returns
// nothing, and the next form is tried from the same token.

#include <algorithm>
#include <cctype>

#include "reference.h"

namespace NReference {

namespace {

std::string Lower(std::string text)
{
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

bool EqualIgnoringCase(const std::string& a, const std::string& b)
{
    return Lower(a) == Lower(b);
}

// The tokens and a position among them.
class Reader {
  public:
    explicit Reader(std::vector<Token> tokens) : mTokens(std::move(tokens)) {}

    std::size_t Cursor() const { return mCursor; }
    void Return(std::size_t cursor) { mCursor = cursor; }
    void Step() { ++mCursor; }

    // The token some places after the cursor, or null past the last one.
    const Token* Look(std::size_t places = 0) const
    {
        return mCursor + places < mTokens.size() ? &mTokens[mCursor + places] : nullptr;
    }

    // Steps over the token at the cursor and returns it if it is of the type, with any text.
    const Token* Expect(TokenType type)
    {
        const Token* const token = Look();
        if (token == nullptr || token->mType != type) return nullptr;
        Step();
        return token;
    }

    // The same with a text, case ignored; a symbol after a backslash doesn't fit.
    const Token* Expect(TokenType type, const std::string& text)
    {
        const Token* const token = Look();
        if (token == nullptr || token->mType != type) return nullptr;
        if (type == kSymbol && token->mEscaped) return nullptr;
        if (!EqualIgnoringCase(token->mText, text)) return nullptr;
        Step();
        return token;
    }

    const Token* ExpectWord()
    {
        const Token* const token = Expect(kIdentifier);
        return token != nullptr ? token : Expect(kSymbol);
    }

  private:
    std::vector<Token> mTokens;
    std::size_t mCursor = 0;
};

std::optional<ValueType> FindType(const std::string& word)
{
    struct Row {
        const char* mWord;
        ValueType mType;
    };
    for (const Row& row : {Row{"string", kString}, Row{"float", kFloat}, Row{"integer", kLInteger},
                           Row{"linteger", kLInteger}, Row{"binteger", kBInteger}}) {
        if (EqualIgnoringCase(std::string(row.mWord).substr(0, word.size()), word)) {
            return row.mType;
        }
    }
    return std::nullopt;
}

// Reads name:type= if it is at the cursor. Returns false if its type is none.
bool ReadDeclaration(Reader& reader, Value& value)
{
    const auto isSymbol = [](const Token* token, const char* text) {
        return token != nullptr && token->mType == kSymbol && !token->mEscaped &&
               token->mText == text;
    };
    const auto isIdentifier = [](const Token* token) {
        return token != nullptr && token->mType == kIdentifier;
    };
    if (!isIdentifier(reader.Look(0)) || !isSymbol(reader.Look(1), ":") ||
        !isIdentifier(reader.Look(2)) || !isSymbol(reader.Look(3), "=")) {
        return true;
    }
    const std::optional<ValueType> type = FindType(reader.Look(2)->mText);
    if (!type.has_value()) return false;
    value.mName = reader.Look(0)->mText;
    value.mType = *type;
    for (int i = 0; i < 4; ++i) reader.Step();
    return true;
}

std::optional<Element> ReadText(Reader& reader)
{
    Text text;
    if (!ReadDeclaration(reader, text.mValue)) return std::nullopt;
    const Token* token = reader.Expect(kDoubleQuoted);
    if (token == nullptr) token = reader.Expect(kSingleQuoted);
    if (token == nullptr) return std::nullopt;
    text.mText = token->mText;
    text.mCaseSensitive = token->mType == kSingleQuoted;
    return text;
}

std::optional<Element> ReadLine(Reader& reader)
{
    Line line;
    if (!ReadDeclaration(reader, line.mValue)) return std::nullopt;
    if (reader.Expect(kIdentifier, "eol") == nullptr) return std::nullopt;
    return line;
}

enum NumberKind { kNoKind, kDigitKind, kHexKind, kPointKind };

NumberKind ClassifyKindWord(const Token* token)
{
    if (token == nullptr) return kNoKind;
    const std::string word = Lower(token->mText);
    if (word == "x" || word == "hex") return kHexKind;
    if (word == "#" || word == "digit" || word == "digits") return kDigitKind;
    if (word == ".") return kPointKind;
    return kNoKind;
}

std::optional<Element> ReadNumber(Reader& reader)
{
    Number number;
    if (!ReadDeclaration(reader, number.mValue)) return std::nullopt;
    const Token* const integerDigits = reader.Expect(kNumber);
    const NumberKind kind = ClassifyKindWord(reader.ExpectWord());
    if (kind == kNoKind) return std::nullopt;
    number.mDecimalPoint = kind == kPointKind;
    number.mHex = kind == kHexKind;
    const Token* fractionDigits = nullptr;
    if (kind == kPointKind) {
        fractionDigits = reader.Expect(kNumber);
        if (ClassifyKindWord(reader.ExpectWord()) != kDigitKind) return std::nullopt;
    }
    if (integerDigits != nullptr) number.mIntegerDigits = integerDigits->mValue;
    if (fractionDigits != nullptr) number.mFractionDigits = fractionDigits->mValue;
    return number;
}

bool IsWord(const std::string& word, const std::vector<std::string>& words)
{
    return std::find(words.begin(), words.end(), Lower(word)) != words.end();
}

// An optional count and the word of a class of bytes. Leaves the cursor if it returns false.
bool ReadNamedClass(Reader& reader, Byteset& set)
{
    Reader copy = reader;
    const Token* const count = copy.Expect(kNumber);
    if (count != nullptr && count->mValue < 1) return false;
    const Token* const word = copy.ExpectWord();
    if (word == nullptr) return false;

    const auto fill = [&set](auto isMember) {
        for (int byte = 0; byte < 256; ++byte) set.mMembers[std::size_t(byte)] = isMember(byte);
    };
    if (IsWord(word->mText, {"?", "byte", "bytes"})) {
        fill([](int) { return true; });
        set.mBinary = true;
        set.mLength = 1;
    } else if (IsWord(word->mText, {"c", "char", "chars", "character", "characters"})) {
        fill([](int byte) { return std::isprint(byte) != 0 && std::isspace(byte) == 0; });
    } else if (IsWord(word->mText, {"a", "letter", "letters"})) {
        fill([](int byte) { return std::isalpha(byte) != 0; });
    } else {
        return false;
    }
    if (count != nullptr) set.mLength = count->mValue;
    reader.Return(copy.Cursor());
    return true;
}

// What differs between the bodies of a character set and of a byte set: how a token counts, and the
// state that it leads to from each state. A negative state ends the body, -1 a good one.
struct Body {
    bool mEscapes;  // a token after a backslash is no operator
    const char* mClosing;
    int mTable[5][5];  // by state: "^", "-", the closing bracket, any other token, the end
};

constexpr Body kCharacterSet = {true,
                                "]",
                                {{1, 2, -2, 2, -2},
                                 {2, 2, -2, 2, -2},
                                 {2, 3, -1, 2, -2},
                                 {4, 4, -3, 4, -3},
                                 {2, 2, -1, 2, -2}}};
constexpr Body kByteSet = {false,
                           "}",
                           {{1, -3, -2, 2, -2},
                            {-3, -3, -2, 2, -2},
                            {-3, 3, -1, 2, -2},
                            {-3, -3, -4, 4, -2},
                            {-3, -3, -1, 2, -2}}};

int ClassOf(const Token* token, const Body& body)
{
    if (token == nullptr) return 4;
    if (body.mEscapes && token->mEscaped) return 3;
    if (token->mText == "^") return 0;
    if (token->mText == "-") return 1;
    if (token->mText == body.mClosing) return 2;
    return 3;
}

unsigned char MemberOf(const Token& token, const Body& body)
{
    if (!body.mEscapes) return static_cast<unsigned char>(token.mValue);
    if (token.mEscaped && token.mText == "n") return '\n';
    if (token.mEscaped && token.mText == "r") return '\r';
    if (token.mEscaped && token.mText == "t") return '\t';
    return static_cast<unsigned char>(token.mText.c_str()[0]);
}

// Returns false at a body that is no set, and leaves the cursor at the closing bracket otherwise.
bool ReadBody(Reader& reader, const Body& body, Byteset& set)
{
    int state = 0;
    bool negate = false;
    unsigned char previous = 0;
    while (true) {
        const Token* const token = reader.Look();
        state = body.mTable[state][ClassOf(token, body)];
        if (state < -1) return false;
        if (state == -1) break;
        if (state == 1) negate = true;
        if (state == 2) {
            previous = MemberOf(*token, body);
            set.mMembers[previous] = true;
        }
        if (state == 4) {
            const unsigned char value = MemberOf(*token, body);
            const std::size_t highest = std::max(previous, value);
            for (std::size_t b = std::min(previous, value); b <= highest; ++b) {
                set.mMembers[b] = true;
            }
        }
        reader.Step();
    }
    if (negate) {
        for (bool& member : set.mMembers) member = !member;
    }
    return true;
}

bool HoldsSpace(const Byteset& set)
{
    for (std::size_t byte = 0; byte < 256; ++byte) {
        if (set.mMembers[byte] && std::isspace(static_cast<int>(byte)) != 0) return true;
    }
    return false;
}

// A set in brackets or braces, single or doubled.
bool ReadSet(Reader& reader, const std::string& opening, const Body& body, Byteset& set)
{
    if (reader.Expect(kSymbol, opening) == nullptr) return false;
    const bool isDouble = reader.Expect(kSymbol, opening) != nullptr;
    set.mLength = isDouble ? 1 : 0;
    if (!ReadBody(reader, body, set)) return false;
    set.mBinary = &body == &kByteSet || HoldsSpace(set);
    if (reader.Expect(kSymbol, body.mClosing) == nullptr) return false;
    return !isDouble || reader.Expect(kSymbol, body.mClosing) != nullptr;
}

std::optional<Element> ReadByteset(Reader& reader)
{
    Byteset set;
    if (!ReadDeclaration(reader, set.mValue)) return std::nullopt;
    const Token* const token = reader.Look();
    const bool isByteSet = token != nullptr && token->mType == kSymbol && token->mText == "{";
    const bool isRead =
        ReadNamedClass(reader, set) || (isByteSet ? ReadSet(reader, "{", kByteSet, set)
                                                  : ReadSet(reader, "[", kCharacterSet, set));
    if (!isRead) return std::nullopt;
    return set;
}

// A range of more than 32 bits is refused.
bool ReadBitRange(Reader& reader, Bitfield& bitfield)
{
    BitRange range;
    const Token* const name = reader.Expect(kIdentifier);
    if (name != nullptr && reader.Expect(kSymbol, "=") != nullptr) range.mValue.mName = name->mText;
    range.mValue.mType = kLInteger;
    const Token* const first = reader.Expect(kNumber);
    if (first == nullptr || reader.Expect(kSymbol, "-") == nullptr) return false;
    const Token* const second = reader.Expect(kNumber);
    if (second == nullptr) return false;
    range.mStartBit = std::min(first->mValue, second->mValue);
    range.mEndBit = std::max(first->mValue, second->mValue);
    if (range.mEndBit - range.mStartBit >= 32) return false;
    bitfield.mRanges.push_back(range);
    return true;
}

std::optional<Element> ReadBitfield(Reader& reader)
{
    Bitfield bitfield;
    if (reader.Expect(kSymbol, "(") == nullptr) return std::nullopt;
    do {
        if (!ReadBitRange(reader, bitfield)) return std::nullopt;
    } while (reader.Expect(kSymbol, ",") != nullptr);
    if (reader.Expect(kSymbol, ")") == nullptr) return std::nullopt;
    if (reader.Expect(kSymbol, ":") != nullptr) {
        const Token* const order = reader.Expect(kIdentifier);
        if (order == nullptr || !IsWord(order->mText, {"l", "b"})) return std::nullopt;
        bitfield.mBigEndian = IsWord(order->mText, {"b"});
    }
    std::int64_t highestBit = 0;
    for (const BitRange& range : bitfield.mRanges) {
        highestBit = std::max<std::int64_t>(highestBit, range.mEndBit);
    }
    bitfield.mByteCount = static_cast<std::int32_t>((highestBit + 8) / 8);
    return bitfield;
}

// Returns nothing when no tokens are left.
std::optional<Element> ReadElement(Reader& reader)
{
    const std::size_t start = reader.Cursor();
    const Token* const token = reader.Look();
    if (token == nullptr || token->mType == kEnd) return std::nullopt;
    for (const auto read : {ReadText, ReadNumber, ReadByteset, ReadBitfield, ReadLine}) {
        std::optional<Element> element = read(reader);
        if (element.has_value()) return element;
        reader.Return(start);
    }
    const std::string message = "Syntax error at '" + UpToNul(token->mText) + "'";
    throw Error{message.substr(0, 2048), token->mPosition, token->mText};
}

}  // namespace

Elements Compile(const std::string& parseString)
{
    Reader reader(Tokenize(parseString));
    Elements elements;
    bool previousIsBinary = true;
    while (std::optional<Element> element = ReadElement(reader)) {
        if (!previousIsBinary && !IsBinary(*element)) elements.emplace_back(Space());
        previousIsBinary = IsBinary(*element);
        elements.push_back(*element);
    }
    return elements;
}

}  // namespace NReference

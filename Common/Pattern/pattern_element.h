// The frame of the engine: Pattern, the compiled form of a parsing string; Element, the base of
// its steps; Parameter, a captured value. The shell needs nothing of the engine but Pattern,
// Parameter and the two exception classes.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "pattern_ltoken.h"

namespace NPattern {

enum ParameterType : std::int32_t {
    kTypeString,    // mStringValue
    kTypeFloat,     // mFloatValue
    kTypeLInteger,  // mIntValue; raw bytes are read with the least significant first
    kTypeBInteger,  // mIntValue; raw bytes are read with the most significant first
    kTypeNone       // nothing is captured
};

// A captured value: a plain record, handed out by copy. Only the value field that belongs to
// mType is ever written.
struct Parameter {
    std::string mName;  // as written in the declaration header
    ParameterType mType = kTypeNone;
    std::int32_t mIntValue = 0;
    double mFloatValue = 0.0;
    std::string mStringValue;  // bytes, NUL among them

    // Stores a text, converted as strtol and atof do in the "C" locale.
    // length: in bytes; 0 means that the text ends at its NUL, which must then be there. A NUL
    // before that ends a number, but not a string.
    // hex: numbers have radix 16, for kTypeFloat too. Integers are clamped to 32 bits.
    void SetTextValue(const Byte* text, std::uint32_t length, bool hex);

    // Stores raw bytes: a string of just these, or an unsigned number in the byte order of mType
    // (little-endian for kTypeFloat). An integer takes the four least significant bytes.
    void SetBinaryValue(const Byte* data, std::uint32_t length);

    // Stores 32 bits that are a number already; as float or string they count as a signed one.
    void SetIntegerValue(std::uint32_t value)
    {
        if (IsInteger()) {
            mIntValue = static_cast<std::int32_t>(value);
        } else {
            StoreInteger(static_cast<std::int32_t>(value));
        }
    }

    // Whether mIntValue is the value.
    bool IsInteger() const { return mType == kTypeLInteger || mType == kTypeBInteger; }

    // "name:FLOAT" and the like; empty for kTypeNone.
    std::string TypedName() const;

  private:
    void StoreNumber(const Byte* text, std::size_t length, bool hex);
    void StoreInteger(std::int32_t value);
};

// A position in a token vector, 0 to its size.
using TokenCursor = std::size_t;

// If the token at ioCursor is of the wanted type, and its whole text equals wantedText (ASCII case
// ignored; null: any text), points outToken at it, moves the cursor on and gives true. Otherwise
// sets outToken to null, leaves the cursor and gives false. A symbol behind a backslash has no
// wanted text.
bool ExpectToken(const std::vector<LToken>& tokens, TokenCursor& ioCursor, const LToken*& outToken,
                 LTokenType wantedType, const char* wantedText);

// The token at the cursor, or one of kEnd behind the last.
const LToken& TokenAt(const std::vector<LToken>& tokens, TokenCursor cursor);

// The cursor behind the declaration header name:type= at cursor, or cursor where none stands.
// The type word is not looked at.
TokenCursor SkipDeclaration(const std::vector<LToken>& tokens, TokenCursor cursor);

// Where the captures of a pattern lie, in its elements. Asked for once, so that collecting them
// after each match costs no work for elements that capture nothing.
using ParameterList = std::vector<const Parameter*>;

// Up to eight bytes of plain text, to be found in one comparison. Bytes as they lie in memory.
struct TextPiece {
    static constexpr std::size_t kMostBytes = sizeof(std::uint64_t);

    TextPiece() = default;
    // text: 1 to kMostBytes bytes. A NUL must be alone in it: behind other bytes it would be found
    // in the zeros behind a message.
    TextPiece(std::string_view text, bool caseSensitive);

    // word: eight bytes of a message, with zeros behind its end.
    bool IsIn(std::uint64_t word) const { return (((word | mFold) ^ mText) & mMask) == 0; }

    std::uint64_t mText = 0;
    std::uint64_t mFold = 0;  // what tells capital letters from small ones, where case is ignored
    std::uint64_t mMask = 0;  // the bytes that count
    std::uint32_t mSize = 0;  // how many these are, 1 to kMostBytes
};
using TextPieceList = std::vector<TextPiece>;

// One step of a compiled pattern. Owns the value that it captures; one caller at a time.
class Element {
  public:
    Element() = default;
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;
    virtual ~Element();

    // Writes what was compiled, for a developer to read.
    virtual void Dump(std::FILE* stream) const = 0;

    // Gives the address just past what was taken of the length bytes at data, or null for no
    // match, which leaves the captured value alone. length: may be 0, and data then null. Throws
    // std::bad_alloc if a captured string finds no memory.
    virtual const Byte* Match(const Byte* data, std::uint32_t length) = 0;

    // Whether the element reads raw bytes: white space next to it is never skipped.
    virtual bool IsBinary() const = 0;

    // Appends what the element captures: mParameter, unless it is of kTypeNone. The element still
    // owns it, and writes its value at each match.
    virtual void CollectParameters(ParameterList& ioList) const;

    // If the element takes one plain text and no other, and captures nothing, appends the pieces
    // of that text in their order: to find them one after the other is then to match the element.
    virtual void CollectText(TextPieceList& ioPieces) const;

  protected:
    // Reads the header name:type= into mParameter, if one is there, and moves the cursor behind
    // it. Throws PatternException for a type word that begins no type.
    void ParseDeclaration(const std::vector<LToken>& tokens, TokenCursor& ioCursor);

    // Store what lies from data up to end, which must not be empty, and give end: with them a match
    // ends in a call that needs nothing kept, which is a third of the cost of a short one.
    const Byte* CaptureText(const Byte* data, const Byte* end, bool hex);
    const Byte* CaptureBytes(const Byte* data, const Byte* end);

    // The column with which every dump starts.
    char BinaryMark() const { return IsBinary() ? 'B' : 'T'; }

    Parameter mParameter;
};

// Skips white space, if there is any, between two elements that read text. Has no form of its own
// in the language, and captures nothing.
class WhitespaceElement final : public Element {
  public:
    void Dump(std::FILE* stream) const override;
    const Byte* Match(const Byte* data, std::uint32_t length) override;
    bool IsBinary() const override { return true; }
    void CollectParameters(ParameterList& ioList) const override;
};

// The element whose form stands at ioCursor, with the cursor moved behind it, or null when no
// tokens are left. Throws PatternSyntaxException, with the cursor left, at a token where no form
// can start, also because memory ran out for each that was tried.
std::unique_ptr<Element> CreateElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor);

using ElementList = std::vector<std::unique_ptr<Element>>;

// The elements of a parsing string in the order of matching. Throws PatternSyntaxException.
ElementList CompileElements(const std::string& parseString);

// The captured values of one match after another, for a caller who keeps it from message to
// message. Only Pattern writes to it: so it knows whether names and types are those of its captures
// already, and then writes nothing but values, in a third of the time. May outlive the pattern.
class CapturedParameters {
  public:
    CapturedParameters() = default;
    CapturedParameters(const CapturedParameters&) = delete;
    CapturedParameters& operator=(const CapturedParameters&) = delete;

    // One entry for each capture, in the order of the parsing string.
    const std::vector<Parameter>& Entries() const { return mEntries; }

  private:
    friend class Pattern;

    std::vector<Parameter> mEntries;
    // The captures that mEntries are named and typed after, compared by address only. Held, so that
    // no other list can come to lie there.
    std::shared_ptr<const ParameterList> mCaptures;
};

// A compiled parsing string: it owns its elements and keeps no copy of the string. Either empty or
// compiled; empty, it matches nothing. Match writes the captured values, so that one Pattern
// serves one caller at a time.
class Pattern {
  public:
    // Compiles a string. The old elements are gone first, so that after a throw of
    // PatternSyntaxException (or std::bad_alloc) the pattern is empty.
    void SetPatternString(const std::string& parseString);

    // Matches from data on: the address just past the match, or null. Bytes left behind the last
    // element do no harm; a message that is used up before it does not match, nor does one of
    // length 0. Throws nothing but std::bad_alloc, and only for a captured string that is longer
    // than any before.
    const Byte* Match(const Byte* data, std::uint32_t length);

    // Puts one entry for each capture into outParameters, in the order of the parsing string, in
    // place of what it holds. To be called after a match, for the values, or after a compile, for
    // names and types. Throws nothing but std::bad_alloc.
    void CollectParameters(std::vector<Parameter>& outParameters) const;
    // The same for each of many messages. What ioParameters holds may be of another pattern; it
    // stays if memory runs out for what takes its place.
    void CollectParameters(CapturedParameters& ioParameters) const;

    void Clear();

  private:
    // What Match runs over. Most elements are white space or plain texts; to take these in place of
    // a call for each saves a fifth of the time of a match.
    struct Step {
        bool mSkipsSpace;   // a WhitespaceElement stands before it
        Element* mElement;  // null: the step is a text
        TextPiece mText{};  // what is then to be found
    };

    void AppendSteps(Element& element, bool skipsSpace);

    ElementList mElements;
    std::vector<Step> mSteps;  // refer to mElements
    // What CollectParameters copies, all of it in mElements. Null: nothing is compiled. Shared with
    // the CapturedParameters that follow it.
    std::shared_ptr<const ParameterList> mCaptures;
};

}  // namespace NPattern

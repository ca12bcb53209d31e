// Elements, the steps of a parsing string, and how they are built from its tokens.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "pattern_bytes.h"
#include "pattern_ltoken.h"
#include "pattern_parameter.h"
#include "pattern_program.h"

namespace NPattern {

class BitfieldElement;
class BytesetElement;
class EOLElement;
class NumberElement;
class StringElement;
class WhitespaceElement;

// An element by its class, for whoever explains or checks it. std::visit with a function for each
// class does not compile if a class is missing.
using ElementPointer =
    std::variant<const StringElement*, const NumberElement*, const BytesetElement*,
                 const BitfieldElement*, const EOLElement*, const WhitespaceElement*>;

// A position in a token vector, 0 to its size.
using TokenCursor = std::size_t;

// If the token at ioCursor is of the wanted type, and its whole text equals wantedText (ASCII case
// ignored; null: any text), points outToken at it, moves the cursor on and returns true. Otherwise
// sets outToken to null, leaves the cursor and returns false. A symbol after a backslash equals no
// wanted text.
bool ExpectToken(const std::vector<LToken>& tokens, TokenCursor& ioCursor, const LToken*& outToken,
                 LTokenType wantedType, const char* wantedText);

// Returns the token at the cursor, or one of kEnd past the last token.
const LToken& TokenAt(const std::vector<LToken>& tokens, TokenCursor cursor);

// Returns the cursor after the declaration header name:type= at cursor, or cursor if none is there.
// Does not look at the type word.
TokenCursor SkipDeclaration(const std::vector<LToken>& tokens, TokenCursor cursor);

// One step of a compiled parsing string. Owns the value that it captures; one caller at a time.
class Element {
  public:
    Element() = default;
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;
    virtual ~Element();

    // Writes what was compiled, for a developer to read.
    virtual void Dump(std::FILE* stream) const = 0;

    // Returns the address just past what was taken of the length bytes at data, or null for no
    // match, which leaves the captured value alone. length: may be 0, and data then null. Throws
    // std::bad_alloc if a captured string finds no memory.
    virtual const Byte* Match(const Byte* data, std::uint32_t length) = 0;

    // True if the element reads raw bytes: white space next to it is never skipped.
    virtual bool IsBinary() const = 0;

    // Appends copies of what the element captures: of mParameter, unless it is of kTypeNone.
    virtual void CollectParameters(std::vector<Parameter>& ioList) const;

    // Appends the steps and the captures of the element to a program, which does the same as Match
    // and CollectParameters, but faster. By default adds a step that calls these two.
    virtual void Emit(Program& ioProgram);

    virtual ElementPointer Pointer() const = 0;

  protected:
    // Reads the header name:type= into mParameter, if one is there, and moves the cursor past it.
    // Throws PatternException if the type word does not begin a type.
    void ParseDeclaration(const std::vector<LToken>& tokens, TokenCursor& ioCursor);

    // Store the bytes from data up to end, at least one, and return end: Match ends in a tail call
    // with them, which is a third of the cost of a short one.
    const Byte* CaptureText(const Byte* data, const Byte* end, bool hex);
    const Byte* CaptureBytes(const Byte* data, const Byte* end);

    // The column with which every dump starts.
    char BinaryMark() const { return IsBinary() ? 'B' : 'T'; }

    Parameter mParameter;
};

// Returns the element whose form is at ioCursor and moves the cursor past it, or null when no
// tokens are left. Throws PatternSyntaxException, with the cursor unchanged, at a token where no
// form can start, or if memory ran out for each form that was tried.
std::unique_ptr<Element> CreateElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor);

// True if white space between two neighbours is skipped: a WhitespaceElement is then between them.
bool SkipsSpaceBetween(const Element& first, const Element& second);

using ElementList = std::vector<std::unique_ptr<Element>>;

// Returns the elements of a parsing string in the order of matching. Throws PatternSyntaxException.
ElementList CompileElements(const std::string& parseString);

}  // namespace NPattern

#pragma once

#include <array>
#include <string_view>

#include "pattern_element.h"

namespace NPattern {

enum ByteClassKind { kClassNone, kClassAnyByte, kClassLetter, kClassCharacter };

// A word of the language for a class of bytes.
struct ByteClassRow {
    std::string_view mWord;
    ByteClassKind mKind;
};

inline constexpr ByteClassRow kByteClasses[] = {
    {"?", kClassAnyByte},           {"byte", kClassAnyByte},         {"bytes", kClassAnyByte},
    {"c", kClassCharacter},         {"char", kClassCharacter},       {"chars", kClassCharacter},
    {"character", kClassCharacter}, {"characters", kClassCharacter}, {"a", kClassLetter},
    {"letter", kClassLetter},       {"letters", kClassLetter},
};

// Returns the class that a word names, case ignored, or kClassNone.
ByteClassKind FindByteClass(std::string_view word);

// A run of bytes of a set: a named class (4 bytes, letters), a character set [a-z] or a byte set
// {41-5A}. All three compile to one table of members, so a byte costs one indexed read.
class BytesetElement final : public Element {
  public:
    static bool CanStart(const std::vector<LToken>& tokens, TokenCursor cursor);

    // Throws PatternException if no set is at the cursor, or an invalid one.
    BytesetElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor);

    void Dump(std::FILE* stream) const override;
    // Takes at least one byte; exactly mLength bytes unless that is 0.
    const Byte* Match(const Byte* data, std::uint32_t length) override;
    bool IsBinary() const override { return mBinary; }
    void Emit(Program& ioProgram) override;
    ElementPointer Pointer() const override { return this; }

    bool Has(Byte b) const { return mMembers[b] != 0; }
    std::int32_t Length() const { return mLength; }  // 0: a run of any length
    // kClassNone for a set in brackets or braces.
    ByteClassKind Class() const { return mClass; }
    bool IsInBraces() const { return mForm == kSingleBrace || mForm == kDoubleBrace; }

  private:
    enum BracketForm { kSingleBracket, kDoubleBracket, kSingleBrace, kDoubleBrace };
    struct SetSyntax;
    static const SetSyntax kCharacterSetSyntax;
    static const SetSyntax kByteSetSyntax;

    // Each reads from the cursor on and moves it past what it took. ParseNamedClass returns false,
    // with the cursor unchanged, if no class is there; the others throw PatternException.
    bool ParseNamedClass(const std::vector<LToken>& tokens, TokenCursor& ioCursor);
    BracketForm ParseOpenBrackets(const std::vector<LToken>& tokens, TokenCursor& ioCursor);
    void ParseCharacterSet(const std::vector<LToken>& tokens, TokenCursor& ioCursor);
    void ParseByteSet(const std::vector<LToken>& tokens, TokenCursor& ioCursor);
    void ParseCloseBrackets(const std::vector<LToken>& tokens, TokenCursor& ioCursor,
                            BracketForm form);

    void ParseSetBody(const std::vector<LToken>& tokens, TokenCursor& ioCursor,
                      const SetSyntax& syntax);
    bool HasSpace() const;

    // For one byte that is not captured: emits a text and returns true if the set has one member.
    bool EmitAsText(Program& ioProgram) const;

    std::array<std::uint32_t, 256> mMembers{};  // by byte value; not 0: a member
    std::int32_t mLength = 0;                   // exactly this many bytes; 0: a run of any length
    bool mBinary = false;                       // captures go through SetBinaryValue
    ByteClassKind mClass = kClassNone;          // of a named class
    BracketForm mForm = kSingleBracket;         // of any other set
};

}  // namespace NPattern

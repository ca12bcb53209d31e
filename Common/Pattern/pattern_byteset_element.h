#pragma once

#include <array>

#include "pattern_element.h"

namespace NPattern {

// A run of bytes out of a set: a named class (4 bytes, letters), a character set [a-z] or a byte
// set {41-5A}. All three compile to one table of members, so that a byte costs one indexed read.
class BytesetElement final : public Element {
  public:
    static bool CanStart(const std::vector<LToken>& tokens, TokenCursor cursor);

    // Throws PatternException where no set stands, or an invalid one.
    BytesetElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor);

    void Dump(std::FILE* stream) const override;
    // At least one byte; exactly mLength bytes unless that is 0.
    const Byte* Match(const Byte* data, std::uint32_t length) override;
    bool IsBinary() const override { return mBinary; }
    // One byte out of a set of one.
    void CollectText(TextPieceList& ioPieces) const override;

  private:
    enum BracketForm { kSingleBracket, kDoubleBracket, kSingleBrace, kDoubleBrace };
    struct SetSyntax;
    static const SetSyntax kCharacterSetSyntax;
    static const SetSyntax kByteSetSyntax;

    // Each reads from the cursor on and moves it behind what it took. ParseNamedClass gives false,
    // with the cursor left, where no class stands; the others throw PatternException.
    bool ParseNamedClass(const std::vector<LToken>& tokens, TokenCursor& ioCursor);
    BracketForm ParseOpenBrackets(const std::vector<LToken>& tokens, TokenCursor& ioCursor);
    void ParseCharacterSet(const std::vector<LToken>& tokens, TokenCursor& ioCursor);
    void ParseByteSet(const std::vector<LToken>& tokens, TokenCursor& ioCursor);
    void ParseCloseBrackets(const std::vector<LToken>& tokens, TokenCursor& ioCursor,
                            BracketForm form);

    void ParseSetBody(const std::vector<LToken>& tokens, TokenCursor& ioCursor,
                      const SetSyntax& syntax);
    bool HasSpace() const;

    std::array<std::uint32_t, 256> mMembers{};  // by byte value; not 0: a member
    std::int32_t mLength = 0;                   // exactly so many bytes; 0: a run of any length
    bool mBinary = false;                       // captures go through SetBinaryValue
};

}  // namespace NPattern

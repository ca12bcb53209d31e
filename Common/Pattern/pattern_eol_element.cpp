#include "pattern_eol_element.h"

#include <algorithm>

namespace NPattern {

namespace {

constexpr char kSourceFile[] = "pattern_eol_element.cpp";

constexpr bool IsLineEnd(Byte b)
{
    return b == '\r' || b == '\n';
}

}  // namespace

bool EOLElement::CanStart(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    const LToken& word = tokens[SkipDeclaration(tokens, cursor)];
    return word.mType == kIdentifier && EqualsIgnoringCase(word.mText, "eol");
}

EOLElement::EOLElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    ParseDeclaration(tokens, ioCursor);
    const LToken* token = nullptr;
    if (!ExpectToken(tokens, ioCursor, token, kIdentifier, "eol")) {
        throw PatternException(kSourceFile, __LINE__, "Not an EOLElement");
    }
}

void EOLElement::Dump(std::FILE* stream) const
{
    std::fprintf(stream, "%c ", BinaryMark());
    std::fprintf(stream, "EOL        %s\n", mParameter.TypedName().c_str());
}

const Byte* EOLElement::Match(const Byte* data, std::uint32_t length)
{
    if (length == 0) return nullptr;
    const Byte* const end = data + length;
    const Byte* const rest = std::find_if_not(std::find_if(data, end, IsLineEnd), end, IsLineEnd);
    // A capture that starts with a NUL has length 0, and is then a text that ends at that NUL.
    const auto textLength = static_cast<std::uint32_t>(std::find(data, rest, Byte{0}) - data);
    mParameter.SetTextValue(data, textLength, false);
    return rest;
}

}  // namespace NPattern

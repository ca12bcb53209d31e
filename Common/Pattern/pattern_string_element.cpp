#include "pattern_string_element.h"

namespace NPattern {

namespace {

constexpr char kSourceFile[] = "pattern_string_element.cpp";

}  // namespace

bool StringElement::CanStart(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    const LTokenType type = tokens[SkipDeclaration(tokens, cursor)].mType;
    return type == kDoubleQuoted || type == kSingleQuoted;
}

StringElement::StringElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    ParseDeclaration(tokens, ioCursor);
    const LToken* token = nullptr;
    if (!ExpectToken(tokens, ioCursor, token, kDoubleQuoted, nullptr) &&
        !ExpectToken(tokens, ioCursor, token, kSingleQuoted, nullptr)) {
        throw PatternException(kSourceFile, __LINE__, "Not a StringElement");
    }
    mMatchText = token->mText;
    mCaseSensitive = token->mType == kSingleQuoted;
}

void StringElement::Dump(std::FILE* stream) const
{
    std::fprintf(stream, "%c ", BinaryMark());
    std::fprintf(stream, "STRING     \"%s\" case-sensitive=%s %s\n", mMatchText.c_str(),
                 mCaseSensitive ? "true" : "false", mParameter.TypedName().c_str());
}

const Byte* StringElement::Match(const Byte* data, std::uint32_t length)
{
    if (length < mMatchText.size()) return nullptr;
    const auto textLength = static_cast<std::uint32_t>(mMatchText.size());
    for (std::uint32_t i = 0; i < textLength; ++i) {
        const Byte found = data[i];
        const auto wanted = static_cast<Byte>(mMatchText[i]);
        if (found == 0 && wanted == 0) break;
        if (found == 0 || wanted == 0) return nullptr;
        const bool equal = mCaseSensitive ? found == wanted : ToLower(found) == ToLower(wanted);
        if (!equal && wanted != kWildcardByte) return nullptr;
    }
    mParameter.SetTextValue(data, textLength, false);
    return data + textLength;
}

}  // namespace NPattern

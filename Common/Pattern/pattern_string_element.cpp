#include "pattern_string_element.h"

#include <algorithm>
#include <cstring>

namespace NPattern {

namespace {

constexpr char kSourceFile[] = "pattern_string_element.cpp";

// What tells a capital letter from its small one.
constexpr Byte kCaseBit = 0x20;

}  // namespace

bool StringElement::CanStart(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    const LTokenType type = TokenAt(tokens, SkipDeclaration(tokens, cursor)).mType;
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
    PrepareHead();
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
    std::uint64_t word = 0;
    if (length < sizeof word) return MatchBytes(data, 0);
    std::memcpy(&word, data, sizeof word);
    if ((((word | mHeadFold) ^ mHead) & mHeadMask) != 0) return nullptr;
    return mHeadIsAll ? data + mMatchText.size() : MatchBytes(data, mHeadLength);
}

void StringElement::PrepareHead()
{
    const bool isPlain = std::none_of(mMatchText.begin(), mMatchText.end(),
                                      [](char c) { return c == '\0' || c == kWildcardByte; });
    if (!isPlain) return;
    constexpr std::size_t kWordSize = sizeof mHead;
    Byte head[kWordSize] = {};
    Byte fold[kWordSize] = {};
    Byte mask[kWordSize] = {};
    mHeadLength = std::min(mMatchText.size(), kWordSize);
    for (std::size_t i = 0; i < mHeadLength; ++i) {
        const auto b = static_cast<Byte>(mMatchText[i]);
        fold[i] = !mCaseSensitive && IsAlpha(b) ? kCaseBit : 0;
        head[i] = b | fold[i];
        mask[i] = 0xFF;
    }
    std::memcpy(&mHead, head, kWordSize);
    std::memcpy(&mHeadFold, fold, kWordSize);
    std::memcpy(&mHeadMask, mask, kWordSize);
    mHeadIsAll = mHeadLength == mMatchText.size() && mParameter.mType == kTypeNone;
}

// start: what stands before it in the text is known to fit.
const Byte* StringElement::MatchBytes(const Byte* data, std::size_t start)
{
    for (std::size_t i = start; i < mMatchText.size(); ++i) {
        const Byte found = data[i];
        const auto wanted = static_cast<Byte>(mMatchText[i]);
        if (found == 0 && wanted == 0) break;
        if (found == 0 || wanted == 0) return nullptr;
        const bool equal = mCaseSensitive ? found == wanted : ToLower(found) == ToLower(wanted);
        if (!equal && wanted != kWildcardByte) return nullptr;
    }
    return CaptureText(data, data + mMatchText.size(), false);
}

}  // namespace NPattern

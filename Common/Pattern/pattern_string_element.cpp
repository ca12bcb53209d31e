#include "pattern_string_element.h"

#include <algorithm>

namespace NPattern {

namespace {

constexpr char kSourceFile[] = "pattern_string_element.cpp";

struct StringOperands {
    const StringElement* mElement;
    std::uint32_t mValue;
};

template <bool kSkipsSpace, bool kCaptures>
const Byte* RunString(const Step* step, const Byte* current, const Byte* end, Parameter* values)
{
    if (!BeginStep<kSkipsSpace>(current, end)) return nullptr;
    const auto& operands = step->Get<StringOperands>();
    const std::size_t size = operands.mElement->MatchText().size();
    const auto left = static_cast<std::uint32_t>(end - current);
    if (operands.mElement->Agreement(current, left) < size) return nullptr;
    if (kCaptures) {
        values[operands.mValue].SetTextValue(current, static_cast<std::uint32_t>(size), false);
    }
    return RunNextStep(step, current + size, end, values);
}

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
        throw WithCode(kErrorWrongForm,
                       PatternException(kSourceFile, __LINE__, "Not a StringElement"));
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
    const std::size_t size = mMatchText.size();
    if (Agreement(data, length) < size) return nullptr;
    return CaptureText(data, data + size, false);
}

std::size_t StringElement::Agreement(const Byte* data, std::uint32_t length) const
{
    const std::size_t most = std::min<std::size_t>(mMatchText.size(), length);
    for (std::size_t i = 0; i < most; ++i) {
        const Byte found = data[i];
        const auto wanted = static_cast<Byte>(mMatchText[i]);
        if (found == 0 && wanted == 0) break;
        const bool equal = mCaseSensitive ? found == wanted : ToLower(found) == ToLower(wanted);
        if (!equal && (found == 0 || wanted != kWildcardByte)) return i;
    }
    return most;
}

// A text with a wildcard or a NUL needs the comparison of Agreement.
void StringElement::Emit(Program& ioProgram)
{
    const bool captures = mParameter.mType != kTypeNone;
    const bool isPlain = std::none_of(mMatchText.begin(), mMatchText.end(),
                                      [](char c) { return c == '\0' || c == kWildcardByte; });
    if (isPlain && !captures) {
        ioProgram.AddText(mMatchText, mCaseSensitive);
    } else if (captures) {
        ioProgram.AddStep({RunString<false, true>, RunString<true, true>},
                          StringOperands{this, ioProgram.AddCapture(mParameter)});
    } else {
        ioProgram.AddStep({RunString<false, false>, RunString<true, false>},
                          StringOperands{this, 0});
    }
}

}  // namespace NPattern

#include "pattern_eol_element.h"

#include <algorithm>
#include <cstring>

namespace NPattern {

namespace {

constexpr char kSourceFile[] = "pattern_eol_element.cpp";

constexpr bool IsLineEnd(Byte b)
{
    return b == '\r' || b == '\n';
}

const Byte* FindByte(const Byte* data, const Byte* end, Byte wanted)
{
    const void* const found = std::memchr(data, wanted, static_cast<std::size_t>(end - data));
    return found != nullptr ? static_cast<const Byte*>(found) : end;
}

// The first line end, or end. Searched in blocks: memchr reads many bytes at a time, but it would
// read all of a long message for a line feed if carriage returns end the lines.
const Byte* FindLineEnd(const Byte* data, const Byte* end)
{
    constexpr std::ptrdiff_t kBlockSize = 256;
    while (data != end) {
        const Byte* const blockEnd = end - data > kBlockSize ? data + kBlockSize : end;
        const Byte* const lineFeed = FindByte(data, blockEnd, '\n');
        const Byte* const lineEnd = FindByte(data, lineFeed, '\r');
        if (lineEnd != blockEnd) return lineEnd;
        data = blockEnd;
    }
    return end;
}

const Byte* SkipLineEnds(const Byte* data, const Byte* end)
{
    return std::find_if_not(FindLineEnd(data, end), end, IsLineEnd);
}

// A capture that starts with a NUL has length 0, which means a text that ends at that NUL.
void CaptureLine(const Byte* data, const Byte* rest, Parameter& outParameter)
{
    const auto length = static_cast<std::uint32_t>(FindByte(data, rest, 0) - data);
    outParameter.SetTextValue(data, length, false);
}

struct LineOperands {
    std::uint32_t mValue;
};

template <bool kSkipsSpace, bool kCaptures>
const Byte* RunLine(const Step* step, const Byte* current, const Byte* end, Parameter* values)
{
    if (!BeginStep<kSkipsSpace>(current, end)) return nullptr;
    const Byte* const rest = SkipLineEnds(current, end);
    if (kCaptures) CaptureLine(current, rest, values[step->Get<LineOperands>().mValue]);
    return RunNextStep(step, rest, end, values);
}

}  // namespace

bool EOLElement::CanStart(const std::vector<LToken>& tokens, TokenCursor cursor)
{
    const LToken& word = TokenAt(tokens, SkipDeclaration(tokens, cursor));
    return EqualsIgnoringCase(word.mText, kEolWord);
}

EOLElement::EOLElement(const std::vector<LToken>& tokens, TokenCursor& ioCursor)
{
    ParseDeclaration(tokens, ioCursor);
    const LToken* token = nullptr;
    if (!ExpectToken(tokens, ioCursor, token, kIdentifier, kEolWord)) {
        throw WithCode(kErrorWrongForm,
                       PatternException(kSourceFile, __LINE__, "Not an EOLElement"));
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
    const Byte* const rest = SkipLineEnds(data, data + length);
    CaptureLine(data, rest, mParameter);
    return rest;
}

void EOLElement::Emit(Program& ioProgram)
{
    if (mParameter.mType == kTypeNone) {
        ioProgram.AddStep({RunLine<false, false>, RunLine<true, false>}, LineOperands{});
    } else {
        ioProgram.AddStep({RunLine<false, true>, RunLine<true, true>},
                          LineOperands{ioProgram.AddCapture(mParameter)});
    }
}

}  // namespace NPattern

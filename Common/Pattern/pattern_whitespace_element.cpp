#include "pattern_whitespace_element.h"

#include <algorithm>

namespace NPattern {

void WhitespaceElement::Dump(std::FILE* stream) const
{
    std::fprintf(stream, "%c WHITESPACE\n", BinaryMark());
}

const Byte* WhitespaceElement::Match(const Byte* data, std::uint32_t length)
{
    return std::find_if_not(data, data + length, IsSpace);
}

void WhitespaceElement::CollectParameters(std::vector<Parameter>& /*ioList*/) const {}

void WhitespaceElement::Emit(Program& ioProgram)
{
    ioProgram.AddSpace();
}

}  // namespace NPattern

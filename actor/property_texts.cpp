#include "property_texts.h"

#include <cstddef>
#include <iterator>
#include <string_view>

#include "text_buffer.h"

namespace NActor {

namespace {

constexpr char kDefinitionString[] =
    "INPROP eom_char \t\teoms\tint\t\t\tnumber,hex,char\t\t0\t255\t\t0\r"
    "INPROP text\t\t\ttext\tstring\t\ttext\t\t\t\t*\t*\t\t-text-\t*\t*\t1\r"
    "OUTPROP msg_rcv\t\tmrcv\tbool\t\ttrig\t\t\t\t0\t1\t\t0\r";
static_assert(sizeof kDefinitionString == 151 + 1);

// By position: the actor itself, its inputs, its fixed output, and one text for all dynamic
// outputs.
constexpr std::string_view kHelpTexts[] = {
    "Parses the 'text' input using a user-specified parsing string. To edit the parsing string, "
    "double-click this actor's icon and edit the values in the dialog that appears. For "
    "documentation on the parsing string format, click the \"Help\" button at the bottom of the "
    "dialog.",
    "The character that signifies the end of a line. Whenever this character is received, the data "
    "accumulated in the buffer is parsed using the parsing string, and the resulting output is "
    "provided if a match is successfully made. Use 0 to parse to the end of the input text.",
    "The text to be parsed. Each time new data is sent to this input, it will be parsed according "
    "to the user specified parsing-string.",
    "Sends a trigger when a valid message has been parsed and it matches the pattern specified by "
    "the parsing string.",
    "The output for one of the parsed values.",
};

// The number that every dynamic output asks for help with.
constexpr std::uint16_t kFirstDynamicOutput = 2;

// Empty for a position outside the table.
std::string_view HelpTextAt(std::int32_t position)
{
    const auto index = static_cast<std::size_t>(position);
    return index < std::size(kHelpTexts) ? kHelpTexts[index] : std::string_view();
}

}  // namespace

const char* DefinitionString() noexcept
{
    return kDefinitionString;
}

void WriteHelpText(const HostCall& call, PropertyKind kind, std::uint16_t number, char* outText,
                   std::uint32_t size) noexcept
{
    if (kind == kPropertyOutput && number > 1) number = kFirstDynamicOutput;
    std::int32_t position = -1;
    call.RunGuarded(__LINE__, [&] { position = call.PropertyHelpIndex(kind, number); });
    CopyText(HelpTextAt(position), outText, size);
}

}  // namespace NActor

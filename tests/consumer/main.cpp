// Compiles parsing strings, matches messages and prints the captured values.

#include <Pattern/pattern.h>

#include <cstdint>
#include <iostream>
#include <string>
#include <string_view>

// Returns false if the parsing string has an error, which is printed.
bool Compile(NPattern::Pattern& pattern, const std::string& parseString)
{
    try {
        pattern.SetPatternString(parseString);
        return true;
    } catch (const NPattern::PatternSyntaxException& error) {
        std::cout << "error " << error.mCode << " at byte " << error.mPosition << ": "
                  << error.mMessage << '\n';
        return false;
    }
}

void Print(const NPattern::Parameter& capture)
{
    std::cout << "  " << capture.mName << " = ";
    switch (capture.mType) {
        case NPattern::kTypeString: std::cout << capture.mStringValue << '\n'; break;
        case NPattern::kTypeFloat: std::cout << capture.mFloatValue << '\n'; break;
        default: std::cout << capture.mIntValue << '\n'; break;
    }
}

int main()
{
    NPattern::Pattern pattern;
    Compile(pattern, "'T=' t:float=.# oops");
    if (!Compile(pattern, "'T=' t:float=.# unit:string=letter 'H=' h:integer=#")) return 1;

    NPattern::CapturedParameters captured;  // kept from message to message
    for (const std::string_view message : {"T=23.5C H=41", "T=-3.25F H=87 ok", "T=20C"}) {
        const auto* const data = reinterpret_cast<const NPattern::Byte*>(message.data());
        const auto length = static_cast<std::uint32_t>(message.size());
        const auto* const end = pattern.Match(data, length, captured);
        if (end == nullptr) {
            std::cout << message << ": no match\n";
            continue;
        }
        std::cout << message << ": " << data + length - end << " bytes left over\n";
        for (const NPattern::Parameter& capture : captured.Entries()) Print(capture);
    }
}

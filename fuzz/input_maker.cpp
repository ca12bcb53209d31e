#include "input_maker.h"

#include <cstdio>

namespace {

constexpr const char* kCounts[] = {"", "", "", "", "", "1", "2", "3 ", "12", "004", "4294967297"};

}  // namespace

unsigned char InputMaker::Next()
{
    if (mChoices.empty()) return 0;
    const auto byte = static_cast<unsigned char>(mChoices.front());
    mChoices.remove_prefix(1);
    return byte;
}

void InputMaker::Make()
{
    while (!mChoices.empty()) {
        MakeElement();
        MakeGap();
    }
}

void InputMaker::MakeElement()
{
    if (Rarely()) return MakeStray();
    const unsigned form = Below(8);
    if (form == 0) return MakeBitfield();
    if (Below(2) == 1) MakeDeclaration();
    switch (form) {
        case 1: return MakeQuoted();
        case 2: return MakeNamedClass();
        case 3: return MakeCharacterSet();
        case 4: return MakeByteSet();
        case 5: return MakeLine();
        default: return MakeNumber();
    }
}

void InputMaker::MakeGap()
{
    mParseString += Pick({" ", " ", "", "\t", "\r\n"});
    mMessage += Pick({"", "", " ", "\v\f", "\r\n"});
    if (Rarely()) AddBytes(1);
}

void InputMaker::MakeDeclaration()
{
    AddWord({"n", "x", "a", "eol", "digits", "_1", "N9"}, {"", "1"});
    AddWord({":", ":", " :\t"}, {"", "="});
    AddWord({"s", "STRING", "f", "Float", "i", "integer", "lin", "b", "BInteger"},
            {"strings", "q", ""});
    AddWord({"=", "=", " = "}, {"", ":"});
}

void InputMaker::MakeQuoted()
{
    const char* const quote = Pick({"'", "\""});
    mParseString += quote;
    for (unsigned count = 1 + Below(5); count > 0; --count) {
        const auto byte = static_cast<char>(Next());
        char sent = byte;
        switch (Below(5)) {
            case 0: mParseString += '?'; break;
            case 1: (mParseString += '\\') += byte; break;
            case 2:  // a letter in either case
                mParseString += static_cast<char>('A' + (byte & 15));
                sent = static_cast<char>('a' + (byte & 15));
                break;
            default: mParseString += byte;
        }
        mMessage += Rarely() ? static_cast<char>(Next()) : sent;
    }
    mParseString += quote;
}

void InputMaker::MakeNumber()
{
    mParseString += Pick(kCounts);
    AddWord({"#", "digit", "DIGITS", "x", "hex", ".#", ".2#", ".0 digit", " . 1 digits"},
            {".x", ".", ".3", "..", "xx"});
    mMessage += Pick({"", "", "-", "+", "-0x", ".", " "});
    AddDigits();
    if (Below(2) == 1) {
        mMessage += Pick({".", ".", "e", "."});
        AddDigits();
    }
}

void InputMaker::MakeNamedClass()
{
    mParseString += Pick(kCounts);
    AddWord({"?", "byte", "BYTES", "c", "char", "chars", "Character", "characters", "a", "letter",
             "LETTERS"},
            {"lettera", "^"});
    if (Sometimes()) AddBytes(Below(8));
    AddMembers("azAZ~!09 \x7f\x80");
}

void InputMaker::MakeCharacterSet()
{
    const bool isDouble = Sometimes();
    mParseString += isDouble ? "[[" : "[";
    if (Sometimes()) mParseString += '^';
    std::string members;
    for (unsigned count = 1 + Below(5); count > 0; --count) MakeCharacter(members);
    AddWord({isDouble ? "]]" : "]"}, {"]", "]]", ""});
    AddMembers(members);
}

void InputMaker::MakeCharacter(std::string& ioMembers)
{
    AddWord({"", "", "\\"}, {"-", "^", "{41}", "}", "[", "}'-'", "}12 "});
    mParseString += static_cast<char>(Next());
    ioMembers += mParseString.back();
    if (!Sometimes()) return;
    mParseString += '-';
    mParseString += static_cast<char>(Next());
    ioMembers += mParseString.back();
    ioMembers += static_cast<char>(mParseString.back() - 1);
}

void InputMaker::MakeByteSet()
{
    const bool isDouble = Sometimes();
    mParseString += isDouble ? "{{" : "{";
    if (Sometimes()) mParseString += '^';
    std::string members;
    for (unsigned count = 1 + Below(5); count > 0; --count) MakeHexByte(members);
    AddWord({isDouble ? "}}" : "}"}, {"}", "}}", ""});
    AddMembers(members);
}

void InputMaker::MakeHexByte(std::string& ioMembers)
{
    char digits[16];
    const unsigned byte = Next();
    std::snprintf(digits, sizeof digits, Sometimes() ? "%02x-%02X" : "%02X", byte, Next());
    mParseString += digits;
    AddWord({" ", " ", ",", "{ "}, {"-", "", "^"});
    ioMembers += static_cast<char>(byte);
    ioMembers += static_cast<char>(byte + 1);
}

void InputMaker::MakeBitfield()
{
    const char* separator = "(";
    for (unsigned count = 1 + Below(4); count > 0; --count) {
        mParseString += separator;
        mParseString += Pick({"", "", "n=", "x =", "y "});
        const unsigned start = Below(70);
        mParseString += std::to_string(start);
        AddWord({"-", " - "}, {"", "-0-", "="});
        mParseString += std::to_string(start + Below(33));
        separator = Pick({",", " , "});
    }
    AddWord({")", "):L", ") : b"}, {"):X", ",)", ""});
    AddBytes(Below(16));
}

void InputMaker::MakeLine()
{
    AddWord({"eol", "EOL"}, {"eols"});
    AddBytes(Below(4));
    mMessage += Pick({"\n", "\r\n", "\n\r\r\n", ""});
}

void InputMaker::MakeStray()
{
    if (Sometimes()) mParseString += static_cast<char>(Next());
    mParseString +=
        Pick({"(", ")", "[", "]", "{", "}", ":", "=", "-", ",", "^", ".", "\\", "'", "12"});
    AddBytes(1);
}

void InputMaker::AddDigits()
{
    for (unsigned count = Below(24); count > 0; --count) {
        const unsigned choice = Next();
        mMessage += choice < 224 ? "0123456789"[choice % 10] : "abcdefABCDEFgx+-"[choice % 16];
    }
}

void InputMaker::AddBytes(unsigned count)
{
    for (; count > 0; --count) mMessage += static_cast<char>(Next());
}

void InputMaker::AddMembers(const std::string& members)
{
    for (unsigned count = 1 + Below(8); count > 0; --count) {
        mMessage += members[Below(static_cast<unsigned>(members.size()))];
    }
}

EngineInput InputOf(std::string_view bytes)
{
    constexpr char kMadeMark = 1;
    if (bytes.empty() || bytes.front() != kMadeMark) return EngineInput(bytes);
    const InputMaker made(bytes.substr(1));
    return {made.ParseString(), made.Message()};
}

// Makes likely parsing strings, with messages that they may match, out of the bytes of an input.

#pragma once

#include <string>
#include <string_view>

#include "engine_input.h"

// Each byte of an input chooses what comes next: a form, a word, a member, a byte of the message.
class InputMaker {
  public:
    explicit InputMaker(std::string_view choices) : mChoices(choices) { Make(); }

    const std::string& ParseString() const { return mParseString; }
    const std::string& Message() const { return mMessage; }

  private:
    // The next byte of the choices, 0 when none are left.
    unsigned char Next();
    unsigned Below(unsigned count) { return Next() % count; }
    bool Sometimes() { return Below(4) == 1; }
    bool Rarely() { return Below(24) == 1; }
    template <std::size_t size>
    const char* Pick(const char* const (&words)[size])
    {
        return words[Below(size)];
    }
    // Adds one of the good words to the parsing string, rarely one of the bad ones.
    template <std::size_t goods, std::size_t bads>
    void AddWord(const char* const (&good)[goods], const char* const (&bad)[bads])
    {
        mParseString += Rarely() ? Pick(bad) : Pick(good);
    }

    void Make();
    void MakeElement();
    void MakeGap();

    void MakeDeclaration();
    void MakeQuoted();
    void MakeNumber();
    void MakeNamedClass();
    void MakeCharacterSet();
    void MakeByteSet();
    void MakeBitfield();
    void MakeLine();
    void MakeStray();

    void MakeCharacter(std::string& ioMembers);
    void MakeHexByte(std::string& ioMembers);
    void AddDigits();
    void AddBytes(unsigned count);
    // Adds a few of the members of a set to the message.
    void AddMembers(const std::string& members);

    std::string_view mChoices;
    std::string mParseString;
    std::string mMessage;
};

// Returns what the bytes of an input stand for: the choices of an InputMaker if they start with
// byte 1, otherwise an input of the fuzzer of the engine. No token starts with byte 1.
EngineInput InputOf(std::string_view bytes);

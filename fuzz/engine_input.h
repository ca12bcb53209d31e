// Shared by the fuzzers of the engine.

#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include "Common/Pattern/pattern_element.h"
#include "fuzzer.h"

// An input of these fuzzers: the first line is a parsing string, the rest is a message.
struct EngineInput {
    EngineInput(std::string parseString, std::string message)
        : mParseString(std::move(parseString)), mMessage(std::move(message))
    {
    }
    explicit EngineInput(std::string_view input)
        : mParseString(input.substr(0, input.find('\n'))),
          mMessage(input.substr(std::min(mParseString.size() + 1, input.size())))
    {
    }

    std::string mParseString;
    std::string mMessage;
};

// Returns the dumps of all elements.
inline std::string WholeDump(const NPattern::ElementList& elements)
{
    char* text = nullptr;
    std::size_t size = 0;
    std::FILE* const stream = open_memstream(&text, &size);
    Expect(stream != nullptr, "the dump has memory");
    for (const auto& element : elements) element->Dump(stream);
    std::fclose(stream);
    std::string dump(text, size);
    std::free(text);
    return dump;
}

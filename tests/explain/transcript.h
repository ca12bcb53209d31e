// Texts that record what is said about many inputs.

#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>

// Replaces \n, \r, \t, \\ and \xNN.
inline std::string Unescaped(std::string_view text)
{
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t letter = text[i] == '\\' && i + 1 < text.size()
                                       ? std::string_view("nrt\\x").find(text[i + 1])
                                       : std::string_view::npos;
        if (letter == std::string_view::npos) {
            bytes += text[i];
        } else if (letter == 4) {
            bytes += static_cast<char>(std::stoi(std::string(text.substr(i + 2, 2)), nullptr, 16));
            i += 3;
        } else {
            bytes += "\n\r\t\\"[letter];
            ++i;
        }
    }
    return bytes;
}

// Returns the lines that are said about one input.
using Say = std::function<std::string(std::string_view word, const std::string& input)>;

// Each line of a transcript that begins with a word and a colon is an input, and the indented lines
// after it are what was said. Expects that the same is said now. If not, writes the transcript of
// now to the folder that the tests run in, to be compared and to replace the file.
inline void ExpectTranscript(const std::filesystem::path& path, const Say& say)
{
    std::ifstream file(path, std::ios::binary);
    const std::string before(std::istreambuf_iterator<char>(file), {});
    std::istringstream lines(before);
    std::string now, firstChanged;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(' ')) continue;
        now += line + '\n';
        const std::size_t colon = line.find(": ");
        if (line.starts_with('#') || colon == std::string::npos) continue;
        std::istringstream said(say(line.substr(0, colon), line.substr(colon + 2)));
        for (std::string words; std::getline(said, words);) now += "  " + words + '\n';
        if (firstChanged.empty() && !before.starts_with(now)) firstChanged = line;
    }
    ASSERT_GT(now.size(), 1000U) << path;
    if (now == before) return;
    const auto copy = std::filesystem::current_path() / path.filename();
    std::ofstream(copy, std::ios::binary) << now;
    ADD_FAILURE() << "what is said has changed, first about:\n"
                  << firstChanged << "\nCompare " << path << " with " << copy;
}

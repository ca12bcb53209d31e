#include "tools/system/editor_launch.h"

#include <cstdlib>

namespace NSystem {

namespace {

#ifdef _WIN32

constexpr char kDefaultEditor[] = "notepad";

// No path on Windows contains a quote.
std::string ShellWord(const std::string& text)
{
    return '"' + text + '"';
}

#else

constexpr char kDefaultEditor[] = "vi";

std::string ShellWord(const std::string& text)
{
    std::string word = "'";
    for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return word + '\'';
}

#endif

}  // namespace

const char* DefaultEditor()
{
    return kDefaultEditor;
}

bool RunEditor(const std::string& command, const std::filesystem::path& file)
{
    const std::string line = command + ' ' + ShellWord(file.string());
    return std::system(line.c_str()) == 0;  // NOLINT(cert-env33-c)
}

}  // namespace NSystem

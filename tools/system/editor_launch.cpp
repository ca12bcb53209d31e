#include "tools/system/editor_launch.h"

#include <cstdlib>

#include "tools/system/path_text.h"

#ifdef _WIN32
#include "tools/system/wide_text_windows.h"
#endif

namespace NSystem {

namespace {

#ifdef _WIN32

constexpr char kDefaultEditor[] = "notepad";

// No path on Windows contains a quote.
std::string ShellWord(const std::string& text)
{
    return '"' + text + '"';
}

// The shell removes the first and the last quote of a line that begins with one.
int RunInShell(const std::string& line)
{
    return _wsystem(WideText('"' + line + '"').c_str());
}

#else

constexpr char kDefaultEditor[] = "vi";

std::string ShellWord(const std::string& text)
{
    std::string word = "'";
    for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return word + '\'';
}

int RunInShell(const std::string& line)
{
    return std::system(line.c_str());  // NOLINT(cert-env33-c)
}

#endif

}  // namespace

const char* DefaultEditor()
{
    return kDefaultEditor;
}

bool RunEditor(const std::string& command, const std::filesystem::path& file)
{
    return RunInShell(command + ' ' + ShellWord(TextOf(file))) == 0;
}

}  // namespace NSystem

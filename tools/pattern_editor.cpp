#include "tools/pattern_editor.h"

#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include "tools/pattern_fault.h"
#include "tools/system/file_replacement.h"
#include "tools/system/terminal.h"

namespace NSift {

namespace fs = std::filesystem;

namespace {

#ifdef _WIN32
constexpr char kDefaultEditor[] = "notepad";
constexpr char kTerminal[] = "CONIN$";
#else
constexpr char kDefaultEditor[] = "vi";
constexpr char kTerminal[] = "/dev/tty";
#endif

// As the shell takes it for one word.
std::string ShellWord(const fs::path& path)
{
#ifdef _WIN32
    return '"' + path.string() + '"';
#else
    std::string word = "'";
    for (const char c : path.string()) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return word + '\'';
#endif
}

std::string EditorCommand()
{
    for (const char* const name : {"VISUAL", "EDITOR"}) {
        const char* const command = std::getenv(name);
        if (command != nullptr && *command != '\0') return command;
    }
    std::cerr << "sift: neither VISUAL nor EDITOR is set, so the editor is " << kDefaultEditor
              << '\n';
    return kDefaultEditor;
}

}  // namespace

bool PatternEditor::Run(NStandIn::StandInHost& host, NStandIn::Instance& instance,
                        const Palette& palette)
{
    // The host is no place for exceptions to pass through.
    std::exception_ptr failure;
    host.mDialogScript = [&](NStandIn::Dialog& dialog) {
        try {
            return EditUntilGood(dialog, palette);
        } catch (...) {
            failure = std::current_exception();
            return false;
        }
    };
    const bool accepted = instance.DoubleClick();
    host.mDialogScript = nullptr;
    if (failure) std::rethrow_exception(failure);
    return accepted;
}

bool PatternEditor::EditUntilGood(NStandIn::Dialog& dialog, const Palette& palette)
{
    mOriginal = dialog.Text();
    mFile = NSystem::UnusedPath(fs::temp_directory_path(), "sift", ".pattern");
    NSystem::WriteNewFile(mFile, mOriginal);
    for (;;) {
        RunEditor();
        ReadBack();
        dialog.SetText(mText);
        const NStandIn::Validation result = dialog.Validate();
        if (result.mGood) return true;
        std::cerr << "sift: ";
        PrintFault(std::cerr, mText, FindFault(mText, result), palette);
        if (!AskToEditAgain()) return false;
    }
}

void PatternEditor::RunEditor() const
{
    const std::string command = EditorCommand();
    // The variables hold a command for the shell, arguments and all.
    const std::string line = command + ' ' + ShellWord(mFile);
    const int status = std::system(line.c_str());  // NOLINT(cert-env33-c)
    if (status != 0) throw std::runtime_error("the editor '" + command + "' failed");
}

void PatternEditor::Discard()
{
    std::error_code ignored;
    fs::remove(mFile, ignored);
    mFile.clear();
}

void PatternEditor::GiveUp()
{
    if (mFile.empty()) return;
    ReadBack();
    if (mText == mOriginal) return Discard();
    std::cerr << "sift: your text is kept in " << mFile.string() << '\n';
}

void PatternEditor::ReadBack()
{
    std::ifstream file(mFile, std::ios::binary);
    if (!file) throw std::runtime_error("can't read back " + mFile.string());
    mText.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    // Most editors end a text with a line feed that nobody typed.
    const bool hadOne = !mOriginal.empty() && mOriginal.back() == '\n';
    if (!hadOne && !mText.empty() && mText.back() == '\n') mText.pop_back();
}

// Messages may come on standard input, so that the answer comes from the terminal itself. Without
// anybody to ask it is no.
bool PatternEditor::AskToEditAgain() const
{
    if (!NSystem::IsTerminal(stderr)) return false;
    std::cerr << "edit " << mFile.string() << " again? [Y/n] " << std::flush;
    std::ifstream terminal(kTerminal);
    std::string answer;
    if (!std::getline(terminal, answer)) return false;
    return answer.empty() || (answer[0] != 'n' && answer[0] != 'N');
}

}  // namespace NSift

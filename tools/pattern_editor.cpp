#include "tools/pattern_editor.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <stdexcept>

#include "tools/output/fault_printer.h"
#include "tools/system/editor_launch.h"
#include "tools/system/environment.h"
#include "tools/system/file_replacement.h"
#include "tools/system/path_text.h"
#include "tools/system/terminal.h"

namespace NSift {

namespace fs = std::filesystem;

namespace {

// A command for the shell, which may hold arguments.
std::string EditorCommand()
{
    for (const char* const name : {"VISUAL", "EDITOR"}) {
        std::string command = NSystem::EnvironmentVariable(name).value_or("");
        if (!command.empty()) return command;
    }
    std::cerr << "sift: neither VISUAL nor EDITOR is set; using " << NSystem::DefaultEditor()
              << '\n';
    return NSystem::DefaultEditor();
}

}  // namespace

bool PatternEditor::Run(NStandIn::StandInHost& host, NStandIn::Instance& instance,
                        const Palette& palette)
{
    // An exception must not pass through the plug-in.
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
        PrintFault(std::cerr, mText, FaultOf(mText, result), palette);
        if (!AskToEditAgain()) return false;
    }
}

void PatternEditor::RunEditor() const
{
    const std::string command = EditorCommand();
    if (!NSystem::RunEditor(command, mFile)) {
        throw std::runtime_error("the editor '" + command + "' failed");
    }
}

void PatternEditor::Discard()
{
    std::error_code ignored;
    fs::remove(mFile, ignored);
    mFile.clear();
}

void PatternEditor::Abandon()
{
    if (mFile.empty()) return;
    ReadBack();
    if (mText == mOriginal) return Discard();
    std::cerr << "sift: your text is kept in " << NSystem::TextOf(mFile) << '\n';
}

void PatternEditor::ReadBack()
{
    std::ifstream file(mFile, std::ios::binary);
    if (!file) throw std::runtime_error("can't read back " + NSystem::TextOf(mFile));
    mText.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    // Most editors end a text with a line end that the user didn't type.
    if (mOriginal.ends_with('\n') || !mText.ends_with('\n')) return;
    mText.pop_back();
    if (mText.ends_with('\r')) mText.pop_back();
}

// Reads the answer from the terminal itself, since standard input may hold messages. The answer is
// no if nobody is there.
bool PatternEditor::AskToEditAgain() const
{
    if (!NSystem::IsTerminal(stderr)) return false;
    std::cerr << "edit " << NSystem::TextOf(mFile) << " again? [Y/n] " << std::flush;
    // Not with a stream: that of some libraries waits until its buffer is full.
    const auto close = [](std::FILE* file) { std::fclose(file); };
    const std::unique_ptr<std::FILE, decltype(close)> terminal(
        std::fopen(NSystem::TerminalPath(), "r"));
    const int answer = terminal != nullptr ? std::getc(terminal.get()) : EOF;
    return answer != EOF && answer != 'n' && answer != 'N';
}

}  // namespace NSift

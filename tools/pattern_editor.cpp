#include "tools/pattern_editor.h"

#include <array>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include "tools/output/fault_printer.h"
#include "tools/system/editor_launch.h"
#include "tools/system/environment.h"
#include "tools/system/file_replacement.h"
#include "tools/system/input_file.h"
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
    const fs::path file = NSystem::UnusedPath(fs::temp_directory_path(), "sift", ".pattern");
    NSystem::WriteNewFile(file, mOriginal);
    mFile = file;
    for (;;) {
        RunEditor();
        ReadBack();
        if (mText.empty()) return false;
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

fs::path PatternEditor::Abandon()
{
    std::error_code ignored;
    if (mFile.empty() || !fs::exists(mFile, ignored)) return {};
    ReadBack();
    if (mText.empty() || mText == mOriginal) Discard();
    return mFile;
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
// no if nobody is there, and after Ctrl-C.
bool PatternEditor::AskToEditAgain() const
{
    if (!NSystem::IsTerminal(stderr)) return false;
    std::cerr << "edit " << NSystem::TextOf(mFile) << " again? [Y/n] " << std::flush;
    try {
        NSystem::InputFile terminal(NSystem::TerminalPath(), {});
        std::array<char, 1000> answer{};
        std::error_code ignored;
        const std::size_t size = terminal.Read(answer, std::nullopt, ignored);
        if (size == 0) std::cerr << '\n';
        return size != 0 && answer[0] != 'n' && answer[0] != 'N';
    } catch (const std::system_error&) {
        return false;
    }
}

}  // namespace NSift

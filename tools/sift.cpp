// sift: runs the built plug-in over messages in a terminal.

#include <filesystem>
#include <iostream>
#include <new>
#include <stdexcept>
#include <string>

#include "Common/Explain/fault.h"
#include "Common/Explain/piece.h"
#include "standin/stand_in_host.h"
#include "tools/device_view.h"
#include "tools/message_run.h"
#include "tools/options.h"
#include "tools/output/caution_report.h"
#include "tools/output/explanation_printer.h"
#include "tools/output/fault_printer.h"
#include "tools/output/result_printer.h"
#include "tools/pattern_editor.h"
#include "tools/suggestion_run.h"
#include "tools/system/environment.h"
#include "tools/system/file_replacement.h"
#include "tools/system/interruption.h"
#include "tools/system/path_text.h"
#include "tools/system/plugin_module.h"
#include "tools/system/terminal.h"

namespace NSift {

namespace {

// Has the plug-in check its own parsing string through its dialog, as the real host does.
NStandIn::Validation Validate(NStandIn::StandInHost& host, NStandIn::Instance& instance)
{
    NStandIn::Validation result{};
    host.mDialogScript = [&result](NStandIn::Dialog& dialog) {
        result = dialog.Validate();
        return false;
    };
    instance.DoubleClick();
    host.mDialogScript = nullptr;
    return result;
}

std::unique_ptr<ResultPrinter> MakePrinter(const Options& options, const NExplain::Pieces& pieces)
{
    switch (options.mFormat) {
        case Format::kJson: return MakeJsonPrinter(std::cout, pieces);
        case Format::kCsv: return MakeCsvPrinter(std::cout);
        case Format::kCount: return MakeCountPrinter(std::cout);
        case Format::kText: break;
    }
    const bool isHex = options.mInputForm == InputForm::kHexLines;
    return MakeTextPrinter(std::cout, pieces, isHex ? ViewForm::kHex : ViewForm::kText,
                           Palette(stdout));
}

// Ends a failed edit. Returns where the user's text is kept, or an empty string if the user wrote
// none.
std::string KeptText(PatternEditor& editor)
{
    const std::filesystem::path file = editor.Abandon();
    return file.empty() ? "" : "your text is kept in " + NSystem::TextOf(file);
}

// Returns true if the user accepted a text and it is stored. Whatever fails, the user's text is
// kept somewhere.
bool Edit(NStandIn::StandInHost& host, NStandIn::Instance& instance, const Options& options)
{
    PatternEditor editor;
    try {
        if (!editor.Run(host, instance, Palette(stderr))) {
            const std::string kept = KeptText(editor);
            std::cerr << "sift: edit cancelled; "
                      << (!kept.empty()              ? kept
                          : options.mPattern.empty() ? "nothing was written"
                                                     : "the parsing string is unchanged")
                      << '\n';
            return false;
        }
        if (!options.mPatternFile.empty())
            NSystem::ReplaceFile(NSystem::PathOf(options.mPatternFile), editor.Text());
    } catch (...) {
        const std::string kept = KeptText(editor);
        if (!kept.empty()) std::cerr << "sift: " << kept << '\n';
        throw;
    }
    editor.Discard();
    return true;
}

int Run(const Options& options)
{
    NSystem::CatchInterruptions();
    if (options.mTask == Task::kShow) return ShowBytes(options);
    if (options.mTask == Task::kSuggest) return SuggestPatterns(options);
    const NSystem::PluginModule plugin(options.mPlugin);
    NStandIn::StandInHost host(plugin.GetActorInfo(), NStandIn::HostMode::kPlain);
    NStandIn::Instance& instance = host.CreateInstance();

    const bool hasSamples = options.mFiles != std::vector<std::string>{"-"};
    const bool isNew = options.mEdit && options.mPattern.empty() && hasSamples;
    instance.SetState(isNew ? SuggestedPattern(options) : options.mPattern);
    host.ClearAssertions();  // a bad parsing string is reported in detail below
    if (NSystem::Interruption() != 0) return EndRun(true, false);
    if (options.mEdit && !Edit(host, instance, options)) return EndRun(true, false);

    const std::string pattern = instance.State();
    const bool isOnlyEdit = options.mEdit && options.mTask == Task::kMatch &&
                            options.mFiles == std::vector<std::string>{"-"} &&
                            NSystem::IsTerminal(stdin);
    if (isOnlyEdit || (options.mEdit && options.mPatternFile.empty()))
        (isOnlyEdit ? std::cout : std::cerr) << pattern << '\n';
    if (isOnlyEdit) return EndRun(false, true);
    if (const auto error = Validate(host, instance); !error.mGood) {
        const NExplain::Fault fault = FaultOf(pattern, error);
        std::cerr << "sift: ";
        PrintFault(std::cerr, pattern, fault, Palette(stderr));
        MakePrinter(options, {})->PrintFault(fault);
        return EndRun(true, false);
    }
    const NExplain::Pieces pieces = NExplain::TakeApart(pattern);
    const std::unique_ptr<ResultPrinter> printer = MakePrinter(options, pieces);
    if (options.mTask == Task::kExplain) {
        PrintExplanation(std::cout, pieces, Palette(stdout));
        return EndRun(false, true);
    }
    if (options.mTask == Task::kCheck) {
        printer->PrintOutputs(instance.Outputs());
        CautionReport(pieces, *printer).ReportPattern(false);
        return EndRun(false, true);
    }
    return MessageRun(options, host, instance, pieces, *printer).Run();
}

}  // namespace

}  // namespace NSift

int main(int argc, char** argv)
{
    try {
        const NSystem::OutputSetup outputSetup;
        std::ios::sync_with_stdio(false);
        int exitStatus = NSift::kExitTrouble;
        const auto options = NSift::ParseOptions(NSystem::Arguments(argc, argv), exitStatus);
        return options ? NSift::Run(*options) : NSift::EndRun(exitStatus != 0, true);
    } catch (const std::bad_alloc&) {
        std::cerr << "sift: out of memory\n";
    } catch (const NPattern::PatternException& error) {
        // The plug-in has compiled the same string.
        std::cerr << "sift: " << error.mMessage
                  << "; the plug-in accepts the parsing string: is memory short, or is it of "
                     "another version?\n";
    } catch (const std::exception& error) {
        std::cerr << "sift: " << error.what() << '\n';
    }
    return NSift::kExitTrouble;
}

// sift: runs the built plug-in over real messages in a terminal.

#include <iostream>
#include <stdexcept>

#include "standin/stand_in_host.h"
#include "tools/message_run.h"
#include "tools/options.h"
#include "tools/output/result_printer.h"
#include "tools/pattern_editor.h"
#include "tools/pattern_explainer.h"
#include "tools/pattern_fault.h"
#include "tools/system/file_replacement.h"
#include "tools/system/plugin_module.h"
#include "tools/system/terminal.h"

namespace NSift {

namespace {

// What the plug-in finds wrong with its parsing string: asked through its own dialog, as the real
// host asks it.
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

std::unique_ptr<ResultPrinter> MakePrinter(const Options& options, const Pieces& pieces)
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

// Gives whether there is a text to go on with. Until it lies where it belongs, the user's text is
// kept.
bool Edit(NStandIn::StandInHost& host, NStandIn::Instance& instance, const Options& options)
{
    PatternEditor editor;
    try {
        if (!editor.Run(host, instance, Palette(stderr))) {
            std::cerr << "sift: given up; the parsing string stays as it was\n";
            editor.GiveUp();
            return false;
        }
        if (!options.mPatternFile.empty())
            NSystem::ReplaceFile(options.mPatternFile, editor.Text());
    } catch (...) {
        editor.GiveUp();
        throw;
    }
    editor.Discard();
    return true;
}

int Run(const Options& options)
{
    const NSystem::PluginModule plugin(options.mPlugin);
    NStandIn::StandInHost host(plugin.GetActorInfo());
    NStandIn::Instance& instance = host.CreateInstance();

    instance.SetState(options.mPattern);
    host.ClearAssertions();  // of a bad parsing string, which is told better below
    if (options.mEdit && !Edit(host, instance, options)) return kExitTrouble;

    const std::string pattern = instance.State();
    if (const auto error = Validate(host, instance); !error.mGood) {
        const PatternFault fault = FindFault(pattern, error);
        std::cerr << "sift: ";
        PrintFault(std::cerr, pattern, fault, Palette(stderr));
        MakePrinter(options, {})->PrintFault(fault);
        return kExitTrouble;
    }
    const Pieces pieces = TakeApart(pattern);
    const std::unique_ptr<ResultPrinter> printer = MakePrinter(options, pieces);
    if (options.mTask == Task::kExplain) {
        PrintExplanation(std::cout, pieces, Palette(stdout));
        return kExitMatched;
    }
    if (options.mTask == Task::kCheck) {
        printer->PrintOutputs(instance.Outputs());
        for (std::size_t p = 0; p < pieces.size(); ++p) {
            const std::string caution = CautionFor(pieces, p);
            if (!caution.empty()) {
                std::cerr << "sift: careful with piece " << p + 1 << ": " << caution << '\n';
            }
        }
        return kExitMatched;
    }
    if (options.mEdit && options.mFiles.empty() && NSystem::IsTerminal(stdin)) {
        std::cout << pattern << '\n';
        return kExitMatched;
    }
    return MessageRun(options, host, instance, pieces, *printer).Run();
}

}  // namespace

}  // namespace NSift

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    try {
        int exitStatus = NSift::kExitTrouble;
        const auto options = NSift::ParseOptions(argc, argv, exitStatus);
        return options ? NSift::Run(*options) : exitStatus;
    } catch (const std::exception& error) {
        std::cerr << "sift: " << error.what() << '\n';
        return NSift::kExitTrouble;
    }
}

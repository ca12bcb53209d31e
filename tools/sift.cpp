// sift: runs the built plug-in over real messages in a terminal.

#include <cstdio>
#include <iostream>
#include <stdexcept>

#include "message_source.h"
#include "options.h"
#include "result_printer.h"
#include "standin/plugin_module.h"
#include "standin/stand_in_host.h"

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

int Run(const Options& options)
{
    const NStandIn::PluginModule plugin(options.mPlugin);
    NStandIn::StandInHost host(plugin.GetActorInfo());
    NStandIn::Instance& instance = host.CreateInstance();

    instance.SetState(options.mPattern);
    if (const auto error = Validate(host, instance); !error.mGood) {
        std::cerr << "sift: ";
        PrintPatternError(std::cerr, options.mPattern, error);
        return kExitTrouble;
    }
    instance.SetEomChar(options.mEomChar);

    bool matched = false;
    host.mOutputListener = [&matched](NStandIn::Instance& source, std::uint16_t output) {
        if (output != 1) return;
        matched = true;
        PrintValues(std::cout, source.Outputs());
        std::cout.flush();
    };
    MessageSource source(options.mEomChar,
                         [&instance](const std::string& text) { instance.Deliver(text); });
    int status = kExitMatched;
    const std::vector<std::string> standardInput = {"-"};
    for (const std::string& file : options.mFiles.empty() ? standardInput : options.mFiles) {
        try {
            source.ReadFile(file);
        } catch (const std::system_error& error) {
            std::cerr << "sift: " << error.what() << '\n';
            status = kExitTrouble;
        }
    }
    if (source.HasLostText()) {
        std::cerr << "sift: the input holds NUL bytes; the host passes text that ends at a NUL, so "
                     "the message around each is lost\n";
    }
    for (const NStandIn::Assertion& assertion : host.Assertions()) {
        std::cerr << "sift: the plug-in reports that this doesn't hold: " << assertion.mText
                  << '\n';
    }
    if (status != kExitMatched) return status;
    return matched ? kExitMatched : kExitNothingMatched;
}

}  // namespace

}  // namespace NSift

int main(int argc, char** argv)
{
    int exitStatus = NSift::kExitTrouble;
    const auto options = NSift::ParseOptions(argc, argv, exitStatus);
    if (!options) return exitStatus;
    try {
        return NSift::Run(*options);
    } catch (const std::exception& error) {
        std::cerr << "sift: " << error.what() << '\n';
        return NSift::kExitTrouble;
    }
}

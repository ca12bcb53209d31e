#include "tools/message_run.h"

#include <iostream>
#include <system_error>

#include "Common/Explain/miss.h"

namespace NSift {

namespace {

constexpr std::uint16_t kTriggerOutput = 1;

}  // namespace

MessageRun::MessageRun(const Options& options, NStandIn::StandInHost& host,
                       NStandIn::Instance& instance, const NExplain::Pieces& pieces,
                       ResultPrinter& printer)
    : mOptions(options),
      mHost(host),
      mInstance(instance),
      mPieces(pieces),
      mPrinter(printer),
      mSource(options.mEomChar, options.mInputForm,
              {[this](const InputMessage& message) { TakeMessage(message); },
               [this](const std::string& error) { Complain(error); }, [] { std::cout.flush(); }})
{
    mInstance.SetEomChar(options.mEomChar);
    mHost.mOutputListener = [this](NStandIn::Instance& source, std::uint16_t output) {
        if (&source == &mInstance && output == kTriggerOutput) mTriggered = true;
    };
}

MessageRun::~MessageRun()
{
    mHost.mOutputListener = nullptr;
}

int MessageRun::Run()
{
    if (mPieces.empty()) std::cerr << "sift: the parsing string is empty and matches nothing\n";
    mPrinter.PrintStart(mInstance.Outputs());
    const std::vector<std::string> standardInput = {"-"};
    for (const std::string& file : mOptions.mFiles.empty() ? standardInput : mOptions.mFiles) {
        ReadFile(file);
    }
    ReportTrouble();
    mPrinter.PrintEnd(mCounts);
    if (!std::cout.flush()) Complain("can't write to standard output");
    if (mHasTrouble) return kExitTrouble;
    return mCounts.mMatched != 0 ? kExitMatched : kExitNothingMatched;
}

void MessageRun::TakeMessage(const InputMessage& message)
{
    ++mCounts.mMessages;
    mTriggered = false;
    mInstance.Deliver(message.mDelivery);
    if (mTriggered) ++mCounts.mMatched;
    PrintResult(message, mTriggered);
}

void MessageRun::PrintResult(const InputMessage& message, bool matched)
{
    if (!mOptions.mTrace && !mOptions.mMisses) {
        if (matched) {
            mPrinter.PrintMatch(mCounts.mMessages, message.mText, mInstance.Outputs(), nullptr);
        }
        return;
    }
    if (message.mIsLost) {
        if (mOptions.mMisses) mPrinter.PrintLost(mCounts.mMessages, message.mText);
        return;
    }
    if (mPieces.empty()) return;
    const NExplain::Trace trace = NExplain::TraceMatch(mPieces, message.mText);
    if (matched == trace.mRefusedBy.has_value()) {
        Complain("message " + std::to_string(mCounts.mMessages) +
                 ": the plug-in and sift disagree on whether it matches; are they the same "
                 "version?");
    }
    if (matched) {
        mPrinter.PrintMatch(mCounts.mMessages, message.mText, mInstance.Outputs(),
                            mOptions.mTrace ? &trace : nullptr);
    } else if (mOptions.mMisses && trace.mRefusedBy) {
        mPrinter.PrintMiss(mCounts.mMessages, message.mText, trace,
                           NExplain::ExplainMiss(mPieces, message.mText, trace, message.mIsCut));
    }
}

void MessageRun::ReadFile(const std::string& path)
{
    try {
        mSource.ReadFile(path);
    } catch (const std::system_error& error) {
        Complain(error.what());
    }
}

void MessageRun::Complain(const std::string& error)
{
    std::cout.flush();
    std::cerr << "sift: " << error << '\n';
    mPrinter.PrintError(error);
    mHasTrouble = true;
}

void MessageRun::ReportTrouble()
{
    if (mSource.HasLostText()) {
        std::cerr << "sift: the input contains NUL bytes; the host's text ends at a NUL, so a "
                     "message that contains one is cut there or lost\n";
    }
    for (const NStandIn::Assertion& assertion : mHost.Assertions()) {
        std::cerr << "sift: the plug-in reports a failed check: " << assertion.mText << '\n';
    }
}

}  // namespace NSift

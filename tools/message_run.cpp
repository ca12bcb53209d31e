#include "tools/message_run.h"

#include <cerrno>
#include <iostream>
#include <system_error>

#include "Common/Explain/byte_text.h"
#include "Common/Explain/miss.h"
#include "tools/system/interruption.h"
#include "tools/system/terminal.h"

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
      mCautions(pieces, printer),
      mSource(options.mEomChar, options.mInputForm, options.mReading,
              {[this](const InputMessage& message) { TakeMessage(message); },
               [this](const std::string& error) { Complain(error); },
               [this](const std::string& warning) { Warn(warning); },
               [](bool isLive) {
                   if (isLive) std::cout.flush();
                   return std::cout.good();
               }})
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

int EndRun(bool hasTrouble, bool hasMatched)
{
    constexpr int kOfSignals = 128;
    if (!std::cout.flush()) {
        const std::error_code reason(errno, std::generic_category());
        std::cerr << "sift: can't write to standard output: " << reason.message() << '\n';
        hasTrouble = true;
    }
    if (NSystem::Interruption() != 0) return kOfSignals + NSystem::Interruption();
    if (hasTrouble) return kExitTrouble;
    return hasMatched ? kExitMatched : kExitNothingMatched;
}

int MessageRun::Run()
{
    if (mPieces.empty()) std::cerr << "sift: the parsing string is empty and matches nothing\n";
    mCautions.ReportPattern(!NSystem::IsTerminal(stderr));
    mPrinter.PrintStart(mInstance.Outputs());
    for (const std::string& file : mOptions.mFiles) {
        mFile = file;
        if (mSource.ReadFile(file) == Ending::kStopped) break;
    }
    ReportTrouble();
    mPrinter.PrintEnd(mCounts);
    const int status = EndRun(mHasTrouble, mCounts.mMatched != 0);
    ReportCounts();
    return status;
}

void MessageRun::TakeMessage(const InputMessage& message)
{
    ++mCounts.mMessages;
    mTriggered = false;
    mInstance.Deliver(message.mDelivery);
    if (mTriggered) ++mCounts.mMatched;
    PrintResult(message, mTriggered);
    if (mTriggered) {
        mCautions.ReportValues(mCounts.mMessages, message.mText, mInstance.Outputs());
    }
}

void MessageRun::PrintResult(const InputMessage& input, bool matched)
{
    const bool hasManyFiles = mOptions.mFiles.size() > 1;
    Message message = {mCounts.mMessages, input.mText, hasManyFiles ? mFile : std::string_view(),
                       input.mLine,       nullptr,     std::nullopt};
    if (!mOptions.mTrace && !mOptions.mMisses && !mOptions.mRest) {
        if (matched) mPrinter.PrintMatch(message, mInstance.Outputs());
        return;
    }
    if (input.mIsLost) {
        if (mOptions.mMisses) mPrinter.PrintLost(message);
        return;
    }
    if (mPieces.empty()) return;
    const NExplain::Trace trace = NExplain::TraceMatch(mPieces, input.mText);
    if (matched == trace.mRefusedBy.has_value()) {
        Complain("message " + std::to_string(mCounts.mMessages) +
                 ": the plug-in and sift disagree on whether it matches; are they the same "
                 "version?");
    }
    if (matched) {
        if (mOptions.mTrace) message.mTrace = &trace;
        if (mOptions.mRest) message.mRest = input.mText.substr(trace.mStoppedAt);
        mPrinter.PrintMatch(message, mInstance.Outputs());
    } else if (mOptions.mMisses && trace.mRefusedBy) {
        message.mTrace = &trace;
        mPrinter.PrintMiss(message,
                           NExplain::ExplainMiss(mPieces, input.mText, trace, input.mIsCut));
    }
}

void MessageRun::Complain(const std::string& error)
{
    Warn(error);
    mPrinter.PrintError(error);
    mHasTrouble = true;
}

void MessageRun::Warn(const std::string& warning) const
{
    std::cout.flush();
    std::cerr << "sift: " << warning << '\n';
}

void MessageRun::ReportTrouble()
{
    for (const NStandIn::Assertion& assertion : mHost.Assertions()) {
        Complain("the plug-in reports a failed check: " + assertion.mText);
    }
}

// Only people at a terminal need to know; a script has the exit status.
void MessageRun::ReportCounts() const
{
    if (!NSystem::IsTerminal(stderr)) return;
    const std::size_t missed = mCounts.mMessages - mCounts.mMatched;
    std::cerr << "sift: ";
    if (mCounts.mMessages == 0) {
        std::cerr << (mSource.HasRead() ? "the end of a message never came" : "nothing came")
                  << "; --show FILE shows what comes\n";
        return;
    }
    if (mCounts.mMatched == 0) {
        std::cerr << "none of " << NExplain::CountOf(missed, "message") << " matched";
    } else {
        std::cerr << NExplain::CountOf(mCounts.mMatched, "message") << " matched";
        if (missed != 0) std::cerr << ", " << missed << " missed";
    }
    std::cerr << (missed != 0 && !mOptions.mMisses ? "; --misses shows why\n" : "\n");
}

}  // namespace NSift

// Passes messages to the plug-in, and its results to a printer.

#pragma once

#include "standin/stand_in_host.h"
#include "tools/input/message_source.h"
#include "tools/options.h"
#include "tools/output/caution_report.h"
#include "tools/output/result_printer.h"

namespace NSift {

// One run over the input. Listens to the host's outputs for as long as it lives.
class MessageRun {
  public:
    // pieces: of the instance's parsing string. The options are copied; everything else must
    // outlive the run.
    MessageRun(const Options& options, NStandIn::StandInHost& host, NStandIn::Instance& instance,
               const NExplain::Pieces& pieces, ResultPrinter& printer);
    MessageRun(const MessageRun&) = delete;
    MessageRun& operator=(const MessageRun&) = delete;
    ~MessageRun();

    // Reads all files. Returns the exit status.
    int Run();

  private:
    void TakeMessage(const InputMessage& message);
    void PrintResult(const InputMessage& input, bool matched);
    void Complain(const std::string& error);
    void Warn(const std::string& warning) const;
    void ReportTrouble();
    void ReportCounts() const;

    const Options mOptions;
    NStandIn::StandInHost& mHost;
    NStandIn::Instance& mInstance;
    const NExplain::Pieces& mPieces;
    ResultPrinter& mPrinter;
    CautionReport mCautions;
    MessageSource mSource;
    Counts mCounts;
    std::string mFile;         // that is read
    bool mTriggered = false;   // by the current message
    bool mHasTrouble = false;  // an error was reported
};

// Completes the output of a run and returns its exit status; of a run that was interrupted, the one
// with which shells report the signal. If the output can't be written, reports it on standard
// error. hasTrouble: an error was reported.
int EndRun(bool hasTrouble, bool hasMatched);

}  // namespace NSift

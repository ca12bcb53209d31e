// Messages go to the plug-in, and what it makes of them to a printer.

#pragma once

#include "standin/stand_in_host.h"
#include "tools/input/message_source.h"
#include "tools/options.h"
#include "tools/output/result_printer.h"

namespace NSift {

class MessageRun {
  public:
    // All but the options must outlive the run. pieces: of the instance's parsing string.
    MessageRun(const Options& options, NStandIn::StandInHost& host, NStandIn::Instance& instance,
               const Pieces& pieces, ResultPrinter& printer);
    MessageRun(const MessageRun&) = delete;
    MessageRun& operator=(const MessageRun&) = delete;
    ~MessageRun();

    // Reads all files, and gives the exit status.
    int Run();

  private:
    void TakeMessage(const Message& message);
    void PrintResult(const Message& message, bool matched);
    void ReadFile(const std::string& path);
    void Complain(const std::string& error);
    void ReportTrouble();

    const Options mOptions;
    NStandIn::StandInHost& mHost;
    NStandIn::Instance& mInstance;
    const Pieces& mPieces;
    ResultPrinter& mPrinter;
    MessageSource mSource;
    Counts mCounts;
    bool mTriggered = false;  // by the message that is being matched
    bool mHasTrouble = false;
};

}  // namespace NSift

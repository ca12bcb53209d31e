// Prints the results of sift: one class for each output format.

#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "Common/Explain/caution.h"
#include "Common/Explain/fault.h"
#include "Common/Explain/miss.h"
#include "Common/Explain/trace.h"
#include "standin/stand_in_host.h"
#include "tools/output/message_view.h"

namespace NSift {

using Outputs = std::vector<NStandIn::Property>;  // the fixed one first

struct Counts {
    std::size_t mMessages = 0;
    std::size_t mMatched = 0;
};

struct Message {
    std::size_t mNumber;  // from 1, of all files
    std::string_view mText;
    std::string_view mFile;                 // empty if only one file is read
    std::size_t mLine;                      // in that file, from 1
    const NExplain::Trace* mTrace;          // of a match, null unless the user asked for it
    std::optional<std::string_view> mRest;  // what a match left over, if the user asked for it
};

// Called for each event, in order. A format ignores the events that it doesn't show. Errors also go
// to standard error, written by the caller.
class ResultPrinter {
  public:
    ResultPrinter() = default;
    ResultPrinter(const ResultPrinter&) = delete;
    ResultPrinter& operator=(const ResultPrinter&) = delete;
    virtual ~ResultPrinter() = default;

    // Before the first message.
    virtual void PrintStart(const Outputs& /*outputs*/) {}
    // In place of all messages, if only the outputs of the parsing string were asked for.
    virtual void PrintOutputs(const Outputs& /*outputs*/) {}
    virtual void PrintMatch(const Message& message, const Outputs& outputs) = 0;
    virtual void PrintMiss(const Message& /*message*/, const NExplain::Miss& /*miss*/) {}
    // A message that the plug-in never sees completely because it contains a NUL.
    virtual void PrintLost(const Message& /*message*/) {}
    virtual void PrintFault(const NExplain::Fault& /*fault*/) {}
    // message: number of the message with the value; 0: the caution is about the parsing string.
    virtual void PrintCaution(const NExplain::Caution& /*caution*/, std::size_t /*message*/) {}
    virtual void PrintError(const std::string& /*error*/) {}
    // After the last message.
    virtual void PrintEnd(const Counts& /*counts*/) {}
};

// Returns "string", "float" or "integer".
const char* TypeOf(const NStandIn::Property& output);

// Returns a unique name for each output except the fixed one: its name in the parsing string or, if
// that is empty or not unique, its id.
std::vector<std::string> UniqueNames(const Outputs& outputs);

// Make the printers. pieces: of the parsing string; empty if it doesn't compile. The stream and the
// pieces must outlive the printer.
std::unique_ptr<ResultPrinter> MakeTextPrinter(std::ostream& stream, const NExplain::Pieces& pieces,
                                               ViewForm view, const Palette& palette);
std::unique_ptr<ResultPrinter> MakeJsonPrinter(std::ostream& stream,
                                               const NExplain::Pieces& pieces);
std::unique_ptr<ResultPrinter> MakeCsvPrinter(std::ostream& stream);
std::unique_ptr<ResultPrinter> MakeCountPrinter(std::ostream& stream);

}  // namespace NSift

// Prints the results of sift: one class for each output format.

#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

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

// Called for each event, in order. A format ignores the events that it doesn't show. Errors also go
// to standard error, written by the caller. Messages are numbered from 1.
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
    // trace: null unless the user asked for it.
    virtual void PrintMatch(std::size_t number, std::string_view message, const Outputs& outputs,
                            const NExplain::Trace* trace) = 0;
    virtual void PrintMiss(std::size_t /*number*/, std::string_view /*message*/,
                           const NExplain::Trace& /*trace*/, const NExplain::Miss& /*miss*/)
    {
    }
    // A message that the plug-in never sees completely because it contains a NUL.
    virtual void PrintLost(std::size_t /*number*/, std::string_view /*message*/) {}
    virtual void PrintFault(const NExplain::Fault& /*fault*/) {}
    virtual void PrintError(const std::string& /*error*/) {}
    // After the last message.
    virtual void PrintEnd(const Counts& /*counts*/) {}
};

// The report of a lost message.
inline constexpr char kLostWords[] =
    "the message is lost: it contains a NUL, and the host's text ends at a NUL";

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

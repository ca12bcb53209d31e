// How sift shows what became of the messages: one class for each form of output.

#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "standin/stand_in_host.h"
#include "tools/match_tracer.h"
#include "tools/output/message_view.h"
#include "tools/pattern_fault.h"

namespace NSift {

using Outputs = std::vector<NStandIn::Property>;  // the fixed one first

struct Counts {
    std::size_t mMessages = 0;
    std::size_t mMatched = 0;
};

// Told of everything in the order in which it happens. What a form has no place for it leaves out;
// errors are told on standard error too, by whoever meets them. Messages are numbered from 1.
class ResultPrinter {
  public:
    ResultPrinter() = default;
    ResultPrinter(const ResultPrinter&) = delete;
    ResultPrinter& operator=(const ResultPrinter&) = delete;
    virtual ~ResultPrinter() = default;

    // Before the first message.
    virtual void PrintStart(const Outputs& /*outputs*/) {}
    // The parsing string is good, and this is what it makes: all that was asked for.
    virtual void PrintOutputs(const Outputs& /*outputs*/) {}
    // trace: null unless it was asked for.
    virtual void PrintMatch(std::size_t number, std::string_view message, const Outputs& outputs,
                            const Trace* trace) = 0;
    virtual void PrintMiss(std::size_t /*number*/, std::string_view /*message*/,
                           const Trace& /*trace*/)
    {
    }
    // A message that never came to its end because it holds a NUL.
    virtual void PrintLost(std::size_t /*number*/, std::string_view /*message*/) {}
    virtual void PrintFault(const PatternFault& /*fault*/) {}
    virtual void PrintError(const std::string& /*error*/) {}
    // After the last message.
    virtual void PrintEnd(const Counts& /*counts*/) {}
};

// What a lost message is told to be.
inline constexpr char kLostWords[] =
    "the message holds a NUL, and the host passes text that ends at a NUL: it is lost";

// "string", "float" or "integer".
const char* TypeOf(const NStandIn::Property& output);

// A name of its own for each captured output: the name in the parsing string; where that is empty
// or another output has it too, the id.
std::vector<std::string> UniqueNames(const Outputs& outputs);

// The makers of the forms. pieces: of the parsing string, must outlive the printer; empty where it
// doesn't compile.
std::unique_ptr<ResultPrinter> MakeTextPrinter(std::ostream& stream, const Pieces& pieces,
                                               ViewForm view, const Palette& palette);
std::unique_ptr<ResultPrinter> MakeJsonPrinter(std::ostream& stream, const Pieces& pieces);
std::unique_ptr<ResultPrinter> MakeCsvPrinter(std::ostream& stream);
std::unique_ptr<ResultPrinter> MakeCountPrinter(std::ostream& stream);

}  // namespace NSift

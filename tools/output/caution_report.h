// Warnings about a parsing string, and about the values of messages.

#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "Common/Explain/value_cautions.h"
#include "tools/output/result_printer.h"

namespace NSift {

// Warns on standard error and through a printer. The pieces and the printer must outlive it.
class CautionReport {
  public:
    CautionReport(const NExplain::Pieces& pieces, ResultPrinter& printer);

    // Warns about the parsing string. isSilent: on standard error only what makes values wrong.
    void ReportPattern(bool isSilent);

    // Warns about each piece whose value is wrong for the first time. outputs: after a match of
    // message. A parsing string without risks costs nothing.
    void ReportValues(std::size_t number, std::string_view message, const Outputs& outputs)
    {
        if (!mRisks.empty()) CheckValues(number, message, outputs);
    }

  private:
    void CheckValues(std::size_t number, std::string_view message, const Outputs& outputs);
    bool MayBeWrong(const NExplain::ValueRisk& risk, const Outputs& outputs) const;

    const NExplain::Pieces& mPieces;
    ResultPrinter& mPrinter;
    std::vector<NExplain::ValueRisk> mRisks;  // those that have not come true
};

}  // namespace NSift

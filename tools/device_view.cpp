#include "tools/device_view.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <optional>
#include <utility>

#include "Common/Explain/byte_survey.h"
#include "Common/Explain/byte_text.h"
#include "tools/input/block_reader.h"
#include "tools/message_run.h"
#include "tools/output/palette.h"

namespace NSift {

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

std::string Formatted(const char* format, double number)
{
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), format, number);
    return text.data();
}

// Prints rows of bytes in hexadecimal and as text. A row ends at the end of a line, at a pause and
// at a width that a terminal has.
class RowPrinter {
  public:
    // isLive: rows begin with times and gaps instead of the position in the file.
    explicit RowPrinter(bool isLive) : mPalette(stdout), mIsLive(isLive) {}

    void Add(std::string_view bytes)
    {
        const Clock::time_point now = Clock::now();
        for (const char c : bytes) {
            if (IsRowComplete(c)) EndRow();
            if (mRow.empty()) mBegin = now;
            mRow += c;
        }
        mLast = now;
    }

    void EndRow()
    {
        if (mRow.empty()) return;
        std::string hex;
        for (const char c : mRow) hex += NExplain::HexOf({&c, 1}) + ' ';
        hex.resize(3 * kWidth, ' ');
        std::cout << mPalette.Paint(Role::kAside, RowHead()) << "  " << hex << ' '
                  << NExplain::Escaped(mRow) << '\n';
        mPosition += mRow.size();
        mEndOfRow = mLast;
        mRow.clear();
    }

  private:
    static constexpr std::size_t kWidth = 16;  // bytes

    bool IsRowComplete(char next) const
    {
        if (mRow.empty()) return false;
        return mRow.size() == kWidth || mRow.back() == '\n' ||
               (mRow.back() == '\r' && next != '\n');
    }

    std::string RowHead() const
    {
        if (!mIsLive) return Formatted("%8.0f", static_cast<double>(mPosition));
        const Clock::duration gap = mBegin - mEndOfRow;
        return Formatted("%9.3f", Seconds(mBegin - mStart).count()) +
               (gap < BlockReader::kPause ? std::string(9, ' ')
                                          : Formatted(" %+8.3f", Seconds(gap).count()));
    }

    const Palette mPalette;
    const bool mIsLive;
    const Clock::time_point mStart = Clock::now();
    Clock::time_point mBegin;              // of the row
    Clock::time_point mLast = mStart;      // arrival of the last byte
    Clock::time_point mEndOfRow = mStart;  // arrival of the last byte of the row before
    std::size_t mPosition = 0;             // of the row in the file
    std::string mRow;
};

Ending ShowFile(BlockReader& reader, const std::string& path)
{
    NExplain::ByteSurvey survey;
    std::optional<RowPrinter> rows;
    NSystem::InputKind inputKind{};
    BlockReader::Listeners listeners;
    listeners.mOpened = [&](NSystem::InputKind kind) {
        rows.emplace(kind != NSystem::InputKind::kRegular);
        inputKind = kind;
    };
    listeners.mTake = [&](std::string_view block) {
        rows->Add(block);
        survey.Add(block);
        return std::cout.good();
    };
    listeners.mPause = [&] {
        rows->EndRow();
        survey.AddPause();
        std::cout.flush();
    };
    const Ending ending = reader.Read(path, listeners);
    if (!rows) return ending;
    rows->EndRow();
    if (survey.Result().mBytes == 0 && inputKind != NSystem::InputKind::kDevice) {
        const bool isFile = inputKind == NSystem::InputKind::kRegular;
        if (ending == Ending::kEndOfFile || (ending == Ending::kStopped && !isFile))
            std::cout << (isFile ? "the file is empty\n" : "nothing came\n");
        return ending;
    }
    std::cout << '\n';
    for (const std::string& finding : Findings(survey.Result())) std::cout << finding << '\n';
    return ending;
}

}  // namespace

int ShowBytes(const Options& options)
{
    BlockReader reader(options.mReading);
    bool hasTrouble = false;
    for (const std::string& file : options.mFiles) {
        const Ending ending = ShowFile(reader, file);
        if (ending == Ending::kFailed) {
            std::cout.flush();
            std::cerr << "sift: " << reader.Error() << '\n';
            hasTrouble = true;
        }
        if (ending == Ending::kStopped) break;
    }
    return EndRun(hasTrouble, reader.BytesRead() != 0);
}

}  // namespace NSift

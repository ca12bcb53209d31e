#include <io.h>
#include <windows.h>

#include <system_error>

#include "tools/system/serial_line.h"

namespace NSystem {

namespace {

DCB sFormer;
COMMTIMEOUTS sFormerTimeouts;
HANDLE sFile = nullptr;  // whose former settings are kept; null: none

HANDLE HandleOf(int file)
{
    return reinterpret_cast<HANDLE>(_get_osfhandle(file));
}

// BuildCommDCB switches off all flow control, but leaves the lines on.
bool ChangeState(DCB& ioState, const LineSettings& line)
{
    const std::string mode = "baud=" + std::to_string(line.mBaud) + " data=" + line.mFrame[0] +
                             " parity=" + line.mFrame[1] + " stop=" + line.mFrame[2];
    ioState.fBinary = TRUE;
    ioState.fErrorChar = TRUE;  // a NUL in place of a byte with a wrong parity
    ioState.ErrorChar = '\0';
    ioState.fNull = FALSE;
    ioState.fAbortOnError = FALSE;
    return BuildCommDCBA(mode.c_str(), &ioState) != 0;
}

// A read returns what is there.
constexpr COMMTIMEOUTS kTimeouts = {MAXDWORD, 0, 0, 0, 0};

}  // namespace

bool IsSerialLine(int file)
{
    DCB state = {};
    state.DCBlength = sizeof state;
    return GetFileType(HandleOf(file)) == FILE_TYPE_CHAR &&
           GetCommState(HandleOf(file), &state) != 0;
}

SerialLine::SerialLine(int file, const LineSettings& settings)
{
    sFormer = {};
    sFormer.DCBlength = sizeof sFormer;
    sFile = HandleOf(file);
    GetCommState(sFile, &sFormer);
    GetCommTimeouts(sFile, &sFormerTimeouts);
    DCB state = sFormer;
    COMMTIMEOUTS timeouts = kTimeouts;
    if (ChangeState(state, settings) && SetCommState(sFile, &state) != 0 &&
        SetCommTimeouts(sFile, &timeouts) != 0)
        return;
    const auto error = static_cast<int>(GetLastError());
    RestoreSerialLine();
    throw std::system_error(
        error, std::system_category(),
        "can't set " + std::to_string(settings.mBaud) + " baud, " + settings.mFrame);
}

SerialLine::~SerialLine()
{
    RestoreSerialLine();
}

void RestoreSerialLine()
{
    if (sFile == nullptr) return;
    SetCommState(sFile, &sFormer);
    SetCommTimeouts(sFile, &sFormerTimeouts);
    sFile = nullptr;
}

}  // namespace NSystem

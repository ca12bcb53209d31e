#include <io.h>
#include <windows.h>

#include <csignal>

#include "tools/system/interruption.h"

namespace NSystem {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

namespace {

volatile std::sig_atomic_t sFirst = 0;

// Runs in a thread of its own. FALSE leaves the request to the system, which ends the program.
BOOL WINAPI Remember(DWORD event)
{
    if (sFirst != 0 || (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)) return FALSE;
    sFirst = SIGINT;
    return TRUE;
}

// Returns true if a serial port or a pipe has no bytes yet; false for other files, whose reads
// wait.
bool IsEmpty(HANDLE file)
{
    DWORD errors = 0;
    COMSTAT port = {};
    if (ClearCommError(file, &errors, &port) != 0) return port.cbInQue == 0;
    DWORD count = 0;
    return PeekNamedPipe(file, nullptr, 0, nullptr, &count, nullptr) != 0 && count == 0;
}

}  // namespace

void CatchInterruptions()
{
    SetConsoleCtrlHandler(Remember, TRUE);
}

int Interruption()
{
    return sFirst;
}

bool WaitForBytes(int file, std::optional<milliseconds> timeout)
{
    constexpr DWORD kPoll = 5;  // milliseconds
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(file));
    const auto end = Clock::now() + timeout.value_or(milliseconds(0));
    while (IsEmpty(handle)) {
        if (sFirst != 0 || (timeout && Clock::now() >= end)) return false;
        Sleep(kPoll);
    }
    return true;
}

}  // namespace NSystem

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <csignal>

#include "tools/system/interruption.h"
#include "tools/system/serial_line.h"

namespace NSystem {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

namespace {

volatile std::sig_atomic_t sFirst = 0;

// The handlers call only functions that are safe in a handler.

void EndAtOnce(int signal)
{
    RestoreSerialLine();
    std::signal(signal, SIG_DFL);
    raise(signal);
}

void Remember(int signal)
{
    if (sFirst != 0) return EndAtOnce(signal);
    sFirst = signal;
}

// Without SA_RESTART, so that opening a named pipe that nobody writes to ends too.
void Catch(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) return;
    action = {};
    action.sa_handler = handler;
    sigaction(signal, &action, nullptr);
}

}  // namespace

void CatchInterruptions()
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) Catch(signal, Remember);
    for (const int signal : {SIGQUIT, SIGPIPE}) Catch(signal, EndAtOnce);
    std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is an error of the write
}

int Interruption()
{
    return sFirst;
}

bool WaitForBytes(int file, std::optional<milliseconds> timeout)
{
    // The wait also ends after this time, in case that a request comes just before it begins.
    constexpr milliseconds kLongest{200};
    const auto end = Clock::now() + timeout.value_or(milliseconds(0));
    while (sFirst == 0) {
        const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
        const auto wait = timeout ? std::clamp(left, milliseconds(0), kLongest) : kLongest;
        pollfd input = {file, POLLIN, 0};
        const int ready = poll(&input, 1, static_cast<int>(wait.count()));
        if (ready > 0 || (ready < 0 && errno != EINTR)) return true;
        if (timeout && left.count() <= 0) return false;
    }
    return false;
}

}  // namespace NSystem

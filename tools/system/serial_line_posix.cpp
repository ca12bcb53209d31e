// libserialport isn't used: it opens only the ports that the system lists, so no pseudo-terminal,
// and it doesn't restore their settings, least of all from a signal handler.
#ifdef __linux__
#include <asm/termbits.h>  // <termios.h> lacks the structure that holds any baud rate
#else
#include <termios.h>
#endif
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>

#include "tools/system/serial_line.h"

namespace NSystem {

namespace {

#if defined(TCGETS2)
using Settings = termios2;
constexpr unsigned long kGet = TCGETS2;
constexpr unsigned long kSet = TCSETS2;
#elif defined(__linux__)
using Settings = termios;
constexpr unsigned long kGet = TCGETS;
constexpr unsigned long kSet = TCSETS;
#else
using Settings = termios;
constexpr unsigned long kGet = TIOCGETA;
constexpr unsigned long kSet = TIOCSETA;
#endif

#ifdef BOTHER
constexpr tcflag_t kBaudFlags = CBAUD | (CBAUD << IBSHIFT);
constexpr tcflag_t kAnyBaud = BOTHER | (BOTHER << IBSHIFT);
#else
constexpr tcflag_t kBaudFlags = 0;
constexpr tcflag_t kAnyBaud = 0;
#endif

Settings sFormer;
volatile std::sig_atomic_t sFile = -1;  // whose former settings are in sFormer; -1: none

void MakeRaw(Settings& ioSettings, const LineSettings& line)
{
    constexpr tcflag_t kDataBits[] = {CS5, CS6, CS7, CS8};
    constexpr tcflag_t kChanged =
        kBaudFlags | CSIZE | PARENB | PARODD | CSTOPB | static_cast<tcflag_t>(CRTSCTS);
    const char parity = line.mFrame[1];
    ioSettings.c_iflag = parity == 'N' ? 0 : INPCK;
    ioSettings.c_lflag = 0;
    ioSettings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    ioSettings.c_cflag &= ~kChanged;
    ioSettings.c_cflag |= kAnyBaud | CLOCAL | CREAD | kDataBits[line.mFrame[0] - '5'];
    if (parity != 'N') ioSettings.c_cflag |= PARENB;
    if (parity == 'O') ioSettings.c_cflag |= PARODD;
    if (line.mFrame[2] == '2') ioSettings.c_cflag |= CSTOPB;
    ioSettings.c_cc[VMIN] = 1;
    ioSettings.c_cc[VTIME] = 0;
    ioSettings.c_ispeed = line.mBaud;
    ioSettings.c_ospeed = line.mBaud;
}

// The driver chooses the nearest that the device can do. Receivers accept a difference of 3 %.
bool HasBaud(const Settings& settings, std::uint32_t baud)
{
    const auto actual = static_cast<std::int64_t>(settings.c_ospeed);
    const std::int64_t difference = std::abs(actual - std::int64_t{baud});
    return difference <= std::int64_t{baud} * 3 / 100;
}

bool IsSameDevice(int one, int other)
{
    struct stat a = {};
    struct stat b = {};
    return fstat(one, &a) == 0 && fstat(other, &b) == 0 && a.st_rdev == b.st_rdev;
}

}  // namespace

bool IsSerialLine(int file)
{
    const bool isOfUser = tcgetpgrp(file) >= 0 || IsSameDevice(file, STDOUT_FILENO) ||
                          IsSameDevice(file, STDERR_FILENO);
    return isatty(file) != 0 && !isOfUser;
}

SerialLine::SerialLine(int file, const LineSettings& settings)
{
    if (ioctl(file, kGet, &sFormer) != 0) throw std::system_error(errno, std::generic_category());
    Settings raw = sFormer;
    MakeRaw(raw, settings);
    sFile = file;
    ioctl(file, TIOCEXCL);
    errno = EINVAL;
    if (ioctl(file, kSet, &raw) == 0 && ioctl(file, kGet, &raw) == 0 &&
        HasBaud(raw, settings.mBaud)) {
        return;
    }
    const int error = errno;
    RestoreSerialLine();
    throw std::system_error(
        error, std::generic_category(),
        "can't set " + std::to_string(settings.mBaud) + " baud, " + settings.mFrame);
}

SerialLine::~SerialLine()
{
    RestoreSerialLine();
}

void RestoreSerialLine()
{
    if (sFile < 0) return;
    ioctl(sFile, kSet, &sFormer);
    ioctl(sFile, TIOCNXCL);
    sFile = -1;
}

}  // namespace NSystem

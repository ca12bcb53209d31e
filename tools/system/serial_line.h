// Serial devices.

#pragma once

#include <cstdint>
#include <string>

namespace NSystem {

struct LineSettings {
    std::uint32_t mBaud = 9600;  // bits per second; not 0
    std::string mFrame = "8N1";  // data bits 5 to 8; parity N, E or O; stop bits 1 or 2
};

// Returns true for a serial device or pseudo-terminal, but false for the terminal at which the user
// sits. file: a descriptor of the C library, as below.
bool IsSerialLine(int file);

// Sets up a serial device to deliver every byte as it is sent: no echo, no translation and no flow
// control. Nobody else can open the device as long as the object lives; then the former settings
// are restored. A byte with a wrong parity is delivered as NUL. There is at most one object at a
// time.
class SerialLine {
  public:
    // file: must outlive the object. Throws std::system_error if the device can't be set up so.
    SerialLine(int file, const LineSettings& settings);
    SerialLine(const SerialLine&) = delete;
    SerialLine& operator=(const SerialLine&) = delete;
    ~SerialLine();
};

// Restores the settings of the device, if there is one that is set up. Safe in a signal handler.
void RestoreSerialLine();

}  // namespace NSystem

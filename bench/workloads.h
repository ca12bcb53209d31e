// The measured messages: six kinds that devices send, each with its parsing string.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace NBench {

// Returns the same numbers on every machine.
class Random {
  public:
    // Returns a number from 0 to bound - 1.
    unsigned Below(unsigned bound) { return static_cast<unsigned>(mEngine()) % bound; }

  private:
    std::mt19937 mEngine;
};

struct Workload {
    const char* mName;
    const char* mParsingString;
    std::string (*mMakeMessage)(Random& ioRandom);
};

// The distinct messages of each workload in a full run and in an instant one. Branch prediction
// learns a few thousand messages by heart, but not this many.
constexpr std::size_t MessageCount(bool instant)
{
    return instant ? 1000 : 200000;
}

enum WorkloadIndex { kSensor, kPosition, kHexData, kCommand, kPacket, kHeading, kWorkloadCount };
extern const std::array<Workload, kWorkloadCount> kWorkloads;

struct Message {
    const char* mText;
    std::uint32_t mLength;  // without the terminator
};

// Messages in one buffer, each followed by a terminator, as in a delivery.
struct MessageSet {
    std::string mBuffer;
    std::vector<Message> mMessages;  // in mBuffer
};

// Returns count distinct messages of a workload, the same in each call.
MessageSet MakeMessages(const Workload& workload, std::size_t count, char terminator);

}  // namespace NBench

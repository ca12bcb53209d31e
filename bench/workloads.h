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

enum WorkloadIndex { kSensor, kPosition, kHexData, kCommand, kPacket, kHeading, kWorkloadCount };
extern const std::array<Workload, kWorkloadCount> kWorkloads;

// Messages in one buffer, each followed by a terminator, as in a delivery.
struct MessageSet {
    struct Message {
        const char* mText;      // in mBuffer
        std::uint32_t mLength;  // without the terminator
    };
    std::string mBuffer;
    std::vector<Message> mMessages;
};

// Returns count distinct messages of a workload, the same in each call.
MessageSet MakeMessages(const Workload& workload, std::size_t count, char terminator);

}  // namespace NBench

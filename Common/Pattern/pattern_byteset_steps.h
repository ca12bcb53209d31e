// The steps of BytesetElement in a program.

#pragma once

#include <cstdint>

#include "pattern_bytes.h"
#include "pattern_parameter.h"
#include "pattern_program.h"

namespace NPattern {

struct SetOperands {
    const std::uint32_t* mMembers;  // by byte value; not 0: a member
    std::uint32_t mLength;          // 0: a run of any length
    std::uint32_t mValue;           // position of the capture, if there is one
    bool mIsBinary;                 // captures go through SetBinaryValue
    bool mIsAnyByte;                // all bytes are members
};

// Adds the step that matches the set and captures a value of this type.
void AddSetStep(const SetOperands& operands, ParameterType type, Program& ioProgram);

// Returns the length of the run at the start of the message, 0 for no match. wanted: exactly this
// length, or 0 for any.
inline std::uint32_t RunLengthOf(const std::uint32_t* members, std::uint32_t wanted,
                                 const Byte* data, std::uint32_t length)
{
    if (length < wanted) return 0;
    const std::uint32_t most = wanted != 0 ? wanted : length;
    std::uint32_t run = 0;
    while (run < most && members[data[run]] != 0) ++run;
    return run < wanted ? 0 : run;
}

}  // namespace NPattern

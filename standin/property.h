// The inputs and outputs of an instance, as the host keeps them.

#pragma once

#include <bit>
#include <cstdint>
#include <string>

#include "actor/host_interface.h"

namespace NStandIn {

// A value with a text of its own, so that it outlives the actor's string value.
struct Value {
    NActor::HostValue mBits;  // of a string only the tag is valid
    std::string mText;        // of a string

    std::int64_t Integer() const { return static_cast<std::int64_t>(mBits.mPayload); }
    double Float() const { return std::bit_cast<double>(mBits.mPayload); }
};

struct Property {
    std::string mName;
    std::string mId;  // four characters
    std::uint32_t mFirstFlags = 0;
    std::uint32_t mSecondFlags = 0;
    Value mMinimum;
    Value mMaximum;
    Value mInitial;
    Value mValue;
};

}  // namespace NStandIn

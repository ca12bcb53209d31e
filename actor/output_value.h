// Captured values as the host takes them.

#pragma once

#include "Common/Pattern/pattern.h"
#include "host_call.h"

namespace NActor {

// The value of an output made from a capture. Returns a string to the host when it ends, unless
// that was handed over.
class OutputValue {
  public:
    // parameter: of any type but kTypeNone. May throw what the host throws.
    OutputValue(const Host& host, const NPattern::Parameter& parameter);
    OutputValue(const OutputValue&) = delete;
    OutputValue& operator=(const OutputValue&) = delete;
    ~OutputValue()
    {
        if (mOwned) mHost.ReleaseStringValue(mValue);
    }

    const HostValue& Get() const { return mValue; }
    // The value for an operation with which a string goes over to the host.
    const HostValue& HandOver()
    {
        mOwned = false;
        return mValue;
    }

  private:
    Host mHost;
    HostValue mValue;
    bool mOwned = false;  // a string
};

}  // namespace NActor

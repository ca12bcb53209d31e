// The host's text handles, given back in every case.

#pragma once

#include <cstdint>
#include <memory>

#include "host_call.h"

namespace NActor {

struct TextHandleDisposer {
    Host mHost;
    void operator()(HostTextHandle* text) const noexcept { mHost.DisposeTextHandle(text); }
};
using TextHandle = std::unique_ptr<HostTextHandle, TextHandleDisposer>;

// A handle on size bytes, or null. May throw what the host throws.
inline TextHandle MakeTextHandle(const Host& host, std::uint32_t size)
{
    return {host.Operations().NewTextHandle(size, 0), TextHandleDisposer{host}};
}

// Keeps a text handle locked while it lives. Throws what the host throws; the handle then isn't
// locked.
class TextLock {
  public:
    TextLock(const Host& host, HostTextHandle* text)
        : mHost(host), mText(text), mBytes(host.Operations().LockTextHandle(text))
    {
    }
    TextLock(const TextLock&) = delete;
    TextLock& operator=(const TextLock&) = delete;
    ~TextLock() { mHost.UnlockTextHandle(mText); }

    // Null if the host couldn't lock the handle, which is unlocked all the same.
    unsigned char* Bytes() const { return mBytes; }

  private:
    Host mHost;
    HostTextHandle* mText;
    unsigned char* mBytes;
};

}  // namespace NActor

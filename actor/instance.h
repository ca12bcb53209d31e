// The beginning and the end of an instance.

#pragma once

#include "host_call.h"

namespace NActor {

// Makes the record of the instance. A record that can't be had is reported; the instance then has
// none and does nothing.
void CreateInstance(const HostCall& call) noexcept;

// Returns all that the instance has to the host. Reports an instance without a record, and one
// whose record or pointer to it is gone after the release of its string, because the host called
// back in. A record that still exists is released all the same.
void DisposeInstance(const HostCall& call) noexcept;

}  // namespace NActor

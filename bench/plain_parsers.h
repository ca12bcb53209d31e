// The parsers that need no pattern: one written by hand for each kind of message, and sscanf. They
// take what the parsing string of the workload takes.

#pragma once

#include "values.h"
#include "workloads.h"

namespace NBench {

// Each gives whether the message matched; a message that didn't may have changed the record.
bool ParseByHand(const MessageSet::Message& message, SensorRecord& outRecord);
bool ParseByHand(const MessageSet::Message& message, PositionRecord& outRecord);
bool ParseByHand(const MessageSet::Message& message, HexDataRecord& outRecord);
bool ParseByHand(const MessageSet::Message& message, CommandRecord& outRecord);
bool ParseByHand(const MessageSet::Message& message, PacketRecord& outRecord);
bool ParseByHand(const MessageSet::Message& message, HeadingRecord& outRecord);

// The same by sscanf, which can't read packets: they hold NULs. The message must end in a NUL.
bool ParseByScanf(const MessageSet::Message& message, SensorRecord& outRecord);
bool ParseByScanf(const MessageSet::Message& message, PositionRecord& outRecord);
bool ParseByScanf(const MessageSet::Message& message, HexDataRecord& outRecord);
bool ParseByScanf(const MessageSet::Message& message, CommandRecord& outRecord);
bool ParseByScanf(const MessageSet::Message& message, HeadingRecord& outRecord);

}  // namespace NBench

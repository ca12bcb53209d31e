// Parsers without a pattern: one written by hand for each kind of message, and one with sscanf.
// They match what the parsing string of the workload matches.

#pragma once

#include "values.h"
#include "workloads.h"

namespace NBench {

// Each returns true if the message matches. Otherwise outRecord may have changed.
bool ParseByHand(const Message& message, SensorRecord& outRecord);
bool ParseByHand(const Message& message, PositionRecord& outRecord);
bool ParseByHand(const Message& message, HexDataRecord& outRecord);
bool ParseByHand(const Message& message, CommandRecord& outRecord);
bool ParseByHand(const Message& message, PacketRecord& outRecord);
bool ParseByHand(const Message& message, HeadingRecord& outRecord);

// The same with sscanf. It can't read packets, because they contain NULs. A NUL must follow the
// message.
bool ParseByScanf(const Message& message, SensorRecord& outRecord);
bool ParseByScanf(const Message& message, PositionRecord& outRecord);
bool ParseByScanf(const Message& message, HexDataRecord& outRecord);
bool ParseByScanf(const Message& message, CommandRecord& outRecord);
bool ParseByScanf(const Message& message, HeadingRecord& outRecord);

}  // namespace NBench

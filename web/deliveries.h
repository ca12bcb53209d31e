// What the host delivers, and the messages in it.

#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "actor/message_cutter.h"

namespace NWeb {

// A message, and whether it reaches the actor whole.
struct Message {
    std::string_view mText;
    bool mIsLost;  // a NUL ends the host's text before the end of the message
    bool mIsCut;   // a NUL ends the message, and what follows it is lost
};

// Calls take with each message of a delivery. As the actor does it, but each message is delivered
// by itself: what a NUL loses is only the rest of its message.
template <typename Take>
void CutDelivery(std::string_view delivery, char eomChar, Take take)
{
    do {
        const std::size_t eom = eomChar == 0 ? delivery.npos : delivery.find(eomChar);
        const std::size_t size =
            std::min({eom, delivery.size(), std::size_t{NActor::kMessageLimit}});
        const std::string_view whole = delivery.substr(0, size);
        const std::size_t nul = whole.find('\0');
        const bool isLost = nul != whole.npos && eomChar != 0;
        take(Message{isLost ? whole : whole.substr(0, nul), isLost, nul != whole.npos && !isLost});
        delivery.remove_prefix(std::min(size + 1, delivery.size()));
    } while (!delivery.empty());
}

// Calls take with each delivery of the format that WordSifterTry describes.
template <typename Take>
void ForEachDelivery(std::string_view deliveries, Take take)
{
    constexpr std::size_t kSizeBytes = 4;
    while (deliveries.size() >= kSizeBytes) {
        std::size_t size = 0;
        for (std::size_t b = 0; b < kSizeBytes; ++b) {
            size |= std::size_t{static_cast<unsigned char>(deliveries[b])} << (8 * b);
        }
        take(deliveries.substr(kSizeBytes, size));
        deliveries.remove_prefix(std::min(kSizeBytes + size, deliveries.size()));
    }
}

// Calls take with each message of deliveries in the format that WordSifterTry describes.
template <typename Take>
void ForEachMessage(std::string_view deliveries, char eomChar, Take take)
{
    ForEachDelivery(deliveries,
                    [&](std::string_view delivery) { CutDelivery(delivery, eomChar, take); });
}

}  // namespace NWeb

#include "workloads.h"

#include <cstdio>
#include <unordered_set>

namespace NBench {

namespace {

template <typename... Values>
std::string Format(const char* format, Values... values)
{
    std::array<char, 128> text{};
    const int length = std::snprintf(text.data(), text.size(), format, values...);
    return {text.data(), static_cast<std::size_t>(length)};
}

char OneOf(Random& ioRandom, const std::string& characters)
{
    return characters[ioRandom.Below(static_cast<unsigned>(characters.size()))];
}

std::string MakeSensor(Random& ioRandom)
{
    return Format("T=%.1f H=%u P=%u", ioRandom.Below(1400) / 10.0 - 20.0, ioRandom.Below(101),
                  950 + ioRandom.Below(100));
}

std::string MakePosition(Random& ioRandom)
{
    const unsigned seconds = ioRandom.Below(86400);
    std::string text = Format("$GPGGA,%02u%02u%02u.%02u,", seconds / 3600, seconds / 60 % 60,
                              seconds % 60, ioRandom.Below(100));
    text += Format("%02u%02u.%03u,%c,", ioRandom.Below(90), ioRandom.Below(60),
                   ioRandom.Below(1000), OneOf(ioRandom, "NS"));
    text += Format("%03u%02u.%03u,%c,", ioRandom.Below(180), ioRandom.Below(60),
                   ioRandom.Below(1000), OneOf(ioRandom, "EW"));
    text +=
        Format("%u,%02u,%.1f,%.1f,M,46.9,M,,*%02X", ioRandom.Below(3), ioRandom.Below(13),
               ioRandom.Below(50) / 10.0 + 0.5, ioRandom.Below(20000) / 10.0, ioRandom.Below(256));
    return text;
}

std::string MakeHexData(Random& ioRandom)
{
    return Format("ID %X DATA %02X %02X %02X", ioRandom.Below(0x800), ioRandom.Below(256),
                  ioRandom.Below(256), ioRandom.Below(256));
}

std::string MakeCommand(Random& ioRandom)
{
    constexpr std::array<const char*, 4> kNames = {"pump", "valve_2", "Heater", "main_light_07"};
    std::string text = Format("/set \"%s\" at %.1f ", kNames.at(ioRandom.Below(kNames.size())),
                              ioRandom.Below(10000) / 10.0);
    const std::size_t length = text.size() + 60 + ioRandom.Below(141);
    text += static_cast<char>('a' + ioRandom.Below(26));
    while (text.size() < length) text += OneOf(ioRandom, "abcdefghijklmnopqrstuvwxyz0123456789   ");
    return text;
}

std::string MakePacket(Random& ioRandom)
{
    std::string packet = "\xAA\x55";
    while (packet.size() < 8) packet += static_cast<char>(ioRandom.Below(256));
    return packet;
}

// One in ten messages is a heading.
std::string MakeHeading(Random& ioRandom)
{
    switch (ioRandom.Below(10)) {
        case 0:
            return Format("$GPHDT,%.2f,T*%02X", ioRandom.Below(36000) / 100.0, ioRandom.Below(256));
        case 1:
        case 2:
            return Format("$GPVTG,%.1f,T,%.1f,M,%.1f,N,,K*%02X", ioRandom.Below(3600) / 10.0,
                          ioRandom.Below(3600) / 10.0, ioRandom.Below(300) / 10.0,
                          ioRandom.Below(256));
        case 3:
        case 4:
            return Format("$GPGSV,3,%u,11,%02u,%02u,%03u,%02u*%02X", ioRandom.Below(3) + 1,
                          ioRandom.Below(33), ioRandom.Below(90), ioRandom.Below(360),
                          ioRandom.Below(50), ioRandom.Below(256));
        case 5:
            return Format("$HCHDG,%.1f,,,%.1f,W*%02X", ioRandom.Below(3600) / 10.0,
                          ioRandom.Below(200) / 10.0, ioRandom.Below(256));
        default: return MakePosition(ioRandom);
    }
}

}  // namespace

const std::array<Workload, kWorkloadCount> kWorkloads = {{
    {"a", "'T=' t:float=.# 'H=' h:integer=# 'P=' p:integer=#", MakeSensor},
    {"b",
     "'$GPGGA,' time:string=.# ',' lat:float=.# ',' ns:string=[[NS]] ',' lon:float=.# ',' "
     "ew:string=[[EW]] ',' quality:integer=# ',' sats:integer=# ',' hdop:float=.# ',' "
     "alt:float=.# ',M,'",
     MakePosition},
    {"c", "'ID' id:integer=x 'DATA' b0:integer=2x b1:integer=2x b2:integer=2x", MakeHexData},
    {"d", R"("/set" '"' name:string=[A-Za-z0-9_] '"' "at" time:float=.# text:string=eol)",
     MakeCommand},
    {"e",
     "{{AA}} {{55}} (mode=0-2, chan=3-8, level=9-18, temp=19-29, flags=30-31) "
     "v:linteger=2 bytes",
     MakePacket},
    {"f", "'$GPHDT,' heading:float=.# ',T*' sum:integer=2x", MakeHeading},
}};

MessageSet MakeMessages(const Workload& workload, std::size_t count, char terminator)
{
    Random random;
    std::unordered_set<std::string> seen;
    MessageSet set;
    while (set.mMessages.size() < count) {
        const auto [text, isNew] = seen.insert(workload.mMakeMessage(random));
        if (!isNew) continue;
        (set.mBuffer += *text) += terminator;
        set.mMessages.push_back({nullptr, static_cast<std::uint32_t>(text->size())});
    }
    // Only now, because the buffer has moved while it grew.
    const char* next = set.mBuffer.data();
    for (Message& message : set.mMessages) {
        message.mText = next;
        next += message.mLength + 1;
    }
    return set;
}

}  // namespace NBench

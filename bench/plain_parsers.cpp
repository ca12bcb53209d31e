#include "plain_parsers.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

namespace NBench {

namespace {

using NPattern::Byte;

// Reads a message step by step. Each step moves past what it took, or returns false.
class Walker {
  public:
    explicit Walker(const Message& message)
        : mNext(message.mText), mEnd(message.mText + message.mLength)
    {
    }

    bool Literal(std::string_view text)
    {
        if (Left() < text.size() || std::memcmp(mNext, text.data(), text.size()) != 0) return false;
        mNext += text.size();
        return true;
    }

    // text: in lowercase.
    bool LiteralIgnoringCase(std::string_view text)
    {
        if (Left() < text.size()) return false;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (NPattern::ToLower(static_cast<Byte>(mNext[i])) != static_cast<Byte>(text[i])) {
                return false;
            }
        }
        mNext += text.size();
        return true;
    }

    bool Space()
    {
        while (mNext != mEnd && NPattern::IsSpace(static_cast<Byte>(*mNext))) ++mNext;
        return true;
    }

    bool Number(double& outValue) { return FromChars(outValue, mEnd, std::chars_format::fixed); }
    bool Number(std::int32_t& outValue) { return FromChars(outValue, mEnd); }

    bool HexNumber(Hex& outValue, std::size_t most)
    {
        outValue.mValue = 0;
        return mNext != mEnd && *mNext != '-' &&
               FromChars(outValue.mValue, mNext + std::min(most, Left()), 16);
    }

    // A number, kept as text.
    bool NumberText(std::string& outText)
    {
        const char* const start = mNext;
        if (mNext != mEnd && (*mNext == '-' || *mNext == '+')) ++mNext;
        Digits();
        if (mNext != mEnd && *mNext == '.') ++mNext;
        Digits();
        outText.assign(start, mNext);
        return mNext != start;
    }

    bool OneOf(char first, char second, std::string& outText)
    {
        if (mNext == mEnd || (*mNext != first && *mNext != second)) return false;
        outText.assign(mNext++, 1);
        return true;
    }

    bool Word(std::string& outText)
    {
        const char* const start = mNext;
        while (mNext != mEnd && (NPattern::IsAlnum(static_cast<Byte>(*mNext)) || *mNext == '_')) {
            ++mNext;
        }
        outText.assign(start, mNext);
        return mNext != start;
    }

    bool RestOfLine(std::string& outText)
    {
        if (mNext == mEnd) return false;
        const char* const start = mNext;
        for (const char lineEnd : {'\n', '\r'}) {
            const void* const found = std::memchr(start, lineEnd, Left());
            if (found != nullptr) mEnd = static_cast<const char*>(found);
        }
        outText.assign(start, mEnd);
        mNext = mEnd;
        return true;
    }

    bool Bytes(std::size_t count, std::string_view& outBytes)
    {
        if (Left() < count) return false;
        outBytes = {mNext, count};
        mNext += count;
        return true;
    }

  private:
    std::size_t Left() const { return static_cast<std::size_t>(mEnd - mNext); }

    void Digits()
    {
        while (mNext != mEnd && NPattern::IsDigit(static_cast<Byte>(*mNext))) ++mNext;
    }

    template <typename Value, typename... Format>
    bool FromChars(Value& outValue, const char* end, Format... format)
    {
        const char* const start = mNext != end && *mNext == '+' ? mNext + 1 : mNext;
        const auto [rest, error] = std::from_chars(start, end, outValue, format...);
        mNext = rest;
        return error == std::errc();
    }

    const char* mNext;
    const char* mEnd;
};

}  // namespace

bool ParseByHand(const Message& message, SensorRecord& outRecord)
{
    auto& [t, h, p] = outRecord;
    Walker w(message);
    return w.Literal("T=") && w.Space() && w.Number(t) && w.Space() && w.Literal("H=") &&
           w.Space() && w.Number(h) && w.Space() && w.Literal("P=") && w.Space() && w.Number(p);
}

bool ParseByHand(const Message& message, PositionRecord& outRecord)
{
    auto& [time, lat, ns, lon, ew, quality, sats, hdop, alt] = outRecord;
    Walker w(message);
    const auto comma = [&w] { return w.Space() && w.Literal(",") && w.Space(); };
    return w.Literal("$GPGGA,") && w.Space() && w.NumberText(time) && comma() && w.Number(lat) &&
           comma() && w.OneOf('N', 'S', ns) && comma() && w.Number(lon) && comma() &&
           w.OneOf('E', 'W', ew) && comma() && w.Number(quality) && comma() && w.Number(sats) &&
           comma() && w.Number(hdop) && comma() && w.Number(alt) && w.Space() && w.Literal(",M,");
}

bool ParseByHand(const Message& message, HexDataRecord& outRecord)
{
    auto& [id, b0, b1, b2] = outRecord;
    Walker w(message);
    return w.Literal("ID") && w.Space() && w.HexNumber(id, 8) && w.Space() && w.Literal("DATA") &&
           w.Space() && w.HexNumber(b0, 2) && w.Space() && w.HexNumber(b1, 2) && w.Space() &&
           w.HexNumber(b2, 2);
}

bool ParseByHand(const Message& message, CommandRecord& outRecord)
{
    auto& [name, time, text] = outRecord;
    Walker w(message);
    return w.LiteralIgnoringCase("/set") && w.Space() && w.Literal("\"") && w.Space() &&
           w.Word(name) && w.Space() && w.Literal("\"") && w.Space() &&
           w.LiteralIgnoringCase("at") && w.Space() && w.Number(time) && w.Space() &&
           w.RestOfLine(text);
}

bool ParseByHand(const Message& message, PacketRecord& outRecord)
{
    auto& [bits, value] = outRecord;
    Walker w(message);
    std::string_view bitBytes;
    std::string_view valueBytes;
    if (!w.Literal("\xAA\x55") || !w.Bytes(4, bitBytes) || !w.Bytes(2, valueBytes)) return false;
    Read(bitBytes, bits);
    Read(valueBytes, value);
    return true;
}

bool ParseByHand(const Message& message, HeadingRecord& outRecord)
{
    auto& [heading, sum] = outRecord;
    Walker w(message);
    return w.Literal("$GPHDT,") && w.Space() && w.Number(heading) && w.Space() &&
           w.Literal(",T*") && w.Space() && w.HexNumber(sum, 2);
}

bool ParseByScanf(const Message& message, SensorRecord& outRecord)
{
    auto& [t, h, p] = outRecord;
    return std::sscanf(message.mText, "T=%lf H=%d P=%d", &t, &h, &p) == 3;
}

bool ParseByScanf(const Message& message, PositionRecord& outRecord)
{
    auto& [time, lat, ns, lon, ew, quality, sats, hdop, alt] = outRecord;
    std::array<char, 32> timeText{};
    std::array<char, 2> nsText{};
    std::array<char, 2> ewText{};
    int end = 0;
    const int count = std::sscanf(
        message.mText, "$GPGGA, %31[-+.0-9] ,%lf , %1[NS] ,%lf , %1[EW] ,%d ,%d ,%lf ,%lf ,M,%n",
        timeText.data(), &lat, nsText.data(), &lon, ewText.data(), &quality, &sats, &hdop, &alt,
        &end);
    if (count != 9 || end == 0) return false;
    time = timeText.data();
    ns.assign(nsText.data(), 1);
    ew.assign(ewText.data(), 1);
    return true;
}

bool ParseByScanf(const Message& message, HexDataRecord& outRecord)
{
    std::array<unsigned, 4> values{};
    const int count = std::sscanf(message.mText, "ID%x DATA%2x%2x%2x", &values[0], &values[1],
                                  &values[2], &values[3]);
    if (count != 4) return false;
    std::apply(
        [next = values.data()](auto&... value) mutable {
            ((value.mValue = static_cast<std::int32_t>(*next++)), ...);
        },
        outRecord);
    return true;
}

bool ParseByScanf(const Message& message, CommandRecord& outRecord)
{
    auto& [name, time, text] = outRecord;
    std::array<char, 64> nameText{};
    std::array<char, 512> lineText{};
    const int count = std::sscanf(message.mText,
                                  "/%*1[sS]%*1[eE]%*1[tT] \" %63[A-Za-z0-9_] \" %*1[aA]%*1[tT]%lf "
                                  "%511[^\r\n]",
                                  nameText.data(), &time, lineText.data());
    if (count != 3) return false;
    name = nameText.data();
    text = lineText.data();
    return true;
}

bool ParseByScanf(const Message& message, HeadingRecord& outRecord)
{
    unsigned sumValue = 0;
    auto& [heading, sum] = outRecord;
    if (std::sscanf(message.mText, "$GPHDT,%lf ,T*%2x", &heading, &sumValue) != 2) return false;
    sum.mValue = static_cast<std::int32_t>(sumValue);
    return true;
}

}  // namespace NBench

#include "tools/output/value_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "Common/Explain/byte_text.h"
#include "Common/Pattern/pattern_bytes.h"

namespace NSift {

namespace {

void AppendFloat(double value, std::string& ioText)
{
    if (AppendShortFloat(value, 0, ioText)) return;
    std::array<char, 64> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    ioText.append(buffer.data(), result.ptr);
}

void AppendQuoted(std::string_view text, std::string& ioText)
{
    if (!IsPlain(text)) {
        ioText += NExplain::Quoted(text);
    } else if (text.empty() || text.find(' ') != text.npos) {
        AppendInQuotes(text, ioText);
    } else {
        ioText += text;
    }
}

}  // namespace

void AppendInQuotes(std::string_view text, std::string& ioText)
{
    ioText += '"';
    ioText += text;
    ioText += '"';
}

void AppendText(const NStandIn::Value& value, std::string& ioText)
{
    switch (value.mBits.mTag) {
        case NActor::kValueString: return AppendQuoted(value.mText, ioText);
        case NActor::kValueInteger: return AppendInteger(value.Integer(), ioText);
        default: return AppendFloat(value.Float(), ioText);
    }
}

void AppendInteger(std::int64_t value, std::string& ioText)
{
    std::array<char, 20> buffer;  // as long as the least integer
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    ioText.append(buffer.data(), result.ptr);
}

// At most 15 digits identify a float, so a decimal this short that reads back as the value is also
// the shortest one. The division is rounded as reading the decimal is.
bool AppendShortFloat(double value, int fewestDecimals, std::string& ioText)
{
    constexpr std::array<std::int32_t, 4> kScales = {1, 10, 100, 1000};
    constexpr double kLimit = 100'000;
    const double size = std::abs(value);
    if (!(size < kLimit)) return false;
    for (auto decimals = static_cast<std::size_t>(fewestDecimals); decimals < 4; ++decimals) {
        const std::int32_t scale = kScales[decimals];
        const double rounded = size * scale + 0.5;
        const auto scaled = static_cast<std::int32_t>(rounded);
        if (scaled / static_cast<double>(scale) != size) continue;
        if (std::signbit(value)) ioText += '-';
        AppendInteger(scaled / scale, ioText);
        if (decimals == 0) return true;
        const std::size_t point = ioText.size();
        AppendInteger(scaled % scale + scale, ioText);  // the digits after a 1, with their zeros
        ioText[point] = '.';
        return true;
    }
    return false;
}

bool IsPlain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) {
        return NPattern::IsPrint(static_cast<NPattern::Byte>(c)) && c != '"' && c != '\\';
    });
}

}  // namespace NSift

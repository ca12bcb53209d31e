// What elements take of a message, what they capture, and how they are dumped.

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "reference.h"

namespace NReference {

namespace {

using Taken = std::optional<std::size_t>;  // the number of bytes; nothing: no match

unsigned char At(std::string_view bytes, std::size_t i)
{
    return static_cast<unsigned char>(bytes[i]);
}

// As strtol with 32 bits.
std::int32_t ToInteger(const std::string& text, int radix)
{
    const long long value = std::strtoll(text.c_str(), nullptr, radix);
    const long long lowest = std::numeric_limits<std::int32_t>::min();
    const long long highest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(value, lowest, highest));
}

// As atof, but what "nan(1)" puts into the bits of a NaN, which C libraries disagree about, is
// dropped.
double ToFloat(const std::string& text)
{
    const double value = std::strtod(text.c_str(), nullptr);
    return std::isnan(value) ? std::copysign(std::numeric_limits<double>::quiet_NaN(), value)
                             : value;
}

Taken MatchElement(Text& element, std::string_view data)
{
    const std::string& text = element.mText;
    if (data.size() < text.size()) return std::nullopt;
    for (std::size_t i = 0; i < text.size(); ++i) {
        int a = At(data, i);
        int b = At(text, i);
        if (!element.mCaseSensitive) {
            a = std::tolower(a);
            b = std::tolower(b);
        }
        if (a == 0 && b == 0) break;
        if (a == 0) return std::nullopt;
        if (b == 0) return std::nullopt;
        if (a == b) continue;
        if (b == kWildcard) continue;
        return std::nullopt;
    }
    element.mValue.SetText(std::string(data.substr(0, text.size())), false);
    return text.size();
}

bool HasRoom(std::int32_t limit, std::size_t taken)
{
    return limit == 0 || taken < static_cast<std::size_t>(limit);
}

// Appends digits to the capture while they last and the limit has room.
template <typename IsDigit>
void TakeDigits(std::string_view data, std::int32_t limit, IsDigit isDigit, std::string& ioCapture)
{
    for (std::size_t taken = 0; ioCapture.size() < data.size() && HasRoom(limit, taken); ++taken) {
        const unsigned char next = At(data, ioCapture.size());
        if (isDigit(next) == 0) return;
        ioCapture += static_cast<char>(next);
    }
}

Taken MatchElement(Number& element, std::string_view data)
{
    const auto isDigit = [](int byte) { return std::isdigit(byte); };
    const auto isHexDigit = [](int byte) { return std::isxdigit(byte); };
    std::string capture;
    if (element.mHex) {
        TakeDigits(data, element.mIntegerDigits, isHexDigit, capture);
    } else if (!data.empty()) {
        if (data[0] == '+' || data[0] == '-') capture += data[0];
        TakeDigits(data, element.mIntegerDigits, isDigit, capture);
        if (element.mDecimalPoint && capture.size() < data.size() && data[capture.size()] == '.') {
            capture += '.';
            TakeDigits(data, element.mFractionDigits, isDigit, capture);
        }
    }
    if (capture.empty()) return std::nullopt;
    element.mValue.SetText(capture, element.mHex);
    return capture.size();
}

Taken MatchElement(Byteset& element, std::string_view data)
{
    std::size_t run = 0;
    while (run < data.size() && element.mMembers[At(data, run)] && HasRoom(element.mLength, run)) {
        ++run;
    }
    if (run == 0) return std::nullopt;
    if (element.mLength != 0 && run != static_cast<std::size_t>(element.mLength)) {
        return std::nullopt;
    }
    if (element.mBinary) {
        element.mValue.SetBytes(data.substr(0, run));
    } else {
        element.mValue.SetText(std::string(data.substr(0, run)), false);
    }
    return run;
}

std::uint32_t LowBits(std::uint32_t count)
{
    return (std::uint32_t{1} << count) - 1;
}

// data: at least the bytes of the block.
std::uint32_t BitsOf(const Bitfield& element, const BitRange& range, std::string_view data)
{
    const auto blockByte = [&](std::uint32_t k) -> std::uint32_t {
        const auto count = static_cast<std::uint32_t>(element.mByteCount);
        return At(data, element.mBigEndian ? count - 1 - k : k);
    };
    const auto start = static_cast<std::uint32_t>(range.mStartBit);
    const auto end = static_cast<std::uint32_t>(range.mEndBit);
    const std::uint32_t f = start / 8;
    const std::uint32_t a = start % 8;
    const std::uint32_t l = end / 8;
    const std::uint32_t b = end % 8;
    if (f == l) return (blockByte(f) >> a) & LowBits(b - a + 1);
    std::uint32_t value = blockByte(f) >> a;
    std::uint32_t shift = 8 - a;
    for (std::uint32_t k = f + 1; k < l; ++k) {
        value |= blockByte(k) << shift;
        shift += 8;
    }
    return value | ((blockByte(l) & LowBits(b + 1)) << shift);
}

Taken MatchElement(Bitfield& element, std::string_view data)
{
    const auto byteCount = static_cast<std::size_t>(element.mByteCount);
    if (data.size() < byteCount) return std::nullopt;
    for (BitRange& range : element.mRanges) {
        range.mValue.mInteger = static_cast<std::int32_t>(BitsOf(element, range, data));
    }
    return byteCount;
}

Taken MatchElement(Line& element, std::string_view data)
{
    const auto isLineEnd = [&](std::size_t i) { return data[i] == '\r' || data[i] == '\n'; };
    if (data.empty()) return std::nullopt;
    std::size_t taken = 0;
    while (taken < data.size() && !isLineEnd(taken)) ++taken;
    while (taken < data.size() && isLineEnd(taken)) ++taken;
    element.mValue.SetText(UpToNul(std::string(data.substr(0, taken))), false);
    return taken;
}

Taken MatchElement(Space&, std::string_view data)
{
    std::size_t taken = 0;
    while (taken < data.size() && std::isspace(At(data, taken)) != 0) ++taken;
    return taken;
}

std::string Word(bool value)
{
    return value ? "true" : "false";
}

std::string DumpElement(const Text& element)
{
    return "STRING     \"" + UpToNul(element.mText) +
           "\" case-sensitive=" + Word(element.mCaseSensitive) + " " + element.mValue.TypedName() +
           "\n";
}

std::string DumpElement(const Number& element)
{
    return "NUMBER     " + std::to_string(element.mIntegerDigits) + "." +
           std::to_string(element.mFractionDigits) +
           " decimal_point=" + Word(element.mDecimalPoint) + " hex=" + Word(element.mHex) + " " +
           element.mValue.TypedName() + "\n";
}

std::string DumpElement(const Byteset& element)
{
    std::string dump = "BYTESET    length=" + std::to_string(element.mLength) + " " +
                       element.mValue.TypedName() + "\n";
    for (unsigned row = 0; row < 16; ++row) {
        dump += "           { ";
        for (unsigned cell = 0; cell < 16; ++cell) {
            const unsigned byte = 16 * row + cell;
            char text[8] = "-- ";
            if (element.mMembers[byte]) std::snprintf(text, sizeof text, "%02X ", byte);
            dump += text;
        }
        dump += "}\n";
    }
    return dump;
}

std::string DumpElement(const Bitfield& element)
{
    std::string dump = std::string("BITFIELD   ") + (element.mBigEndian ? "big" : "little") +
                       "-endian " + std::to_string(element.mByteCount) + "-bytes\n";
    for (const BitRange& range : element.mRanges) {
        dump += "              (" + std::to_string(range.mStartBit) + " - " +
                std::to_string(range.mEndBit) + ") '" + range.mValue.TypedName() + "'\n";
    }
    return dump;
}

std::string DumpElement(const Line& element)
{
    return "EOL        " + element.mValue.TypedName() + "\n";
}

std::string DumpElement(const Space&)
{
    return "WHITESPACE\n";
}

struct BinaryOf {
    bool operator()(const Text&) const { return false; }
    bool operator()(const Number&) const { return false; }
    bool operator()(const Byteset& set) const { return set.mBinary; }
    bool operator()(const Bitfield&) const { return true; }
    bool operator()(const Line&) const { return false; }
    bool operator()(const Space&) const { return true; }
};

struct AppendCaptures {
    void operator()(const Bitfield& bitfield) const
    {
        for (const BitRange& range : bitfield.mRanges) mList.push_back(range.mValue);
    }
    void operator()(const Space&) const {}
    template <typename Other>
    void operator()(const Other& element) const
    {
        if (element.mValue.mType != kNone) mList.push_back(element.mValue);
    }
    std::vector<Value>& mList;
};

}  // namespace

std::string UpToNul(const std::string& text)
{
    return text.substr(0, text.find('\0'));
}

void Value::SetText(const std::string& text, bool hex)
{
    const std::int32_t integer = ToInteger(text, hex ? 16 : 10);
    switch (mType) {
        case kString: mString = text; break;
        case kFloat: mFloat = hex ? static_cast<double>(integer) : ToFloat(text); break;
        case kLInteger:
        case kBInteger: mInteger = integer; break;
        case kNone: break;
    }
}

void Value::SetBytes(std::string_view bytes)
{
    std::uint32_t integer = 0;
    switch (mType) {
        case kString: mString = std::string(bytes); break;
        case kFloat:
            mFloat = 0.0;
            for (std::size_t i = bytes.size(); i > 0; --i)
                mFloat = mFloat * 256.0 + At(bytes, i - 1);
            break;
        case kLInteger:
            for (std::size_t i = bytes.size(); i > 0; --i)
                integer = integer << 8 | At(bytes, i - 1);
            mInteger = static_cast<std::int32_t>(integer);
            break;
        case kBInteger:
            for (std::size_t i = 0; i < bytes.size(); ++i) integer = integer << 8 | At(bytes, i);
            mInteger = static_cast<std::int32_t>(integer);
            break;
        case kNone: break;
    }
}

std::string Value::TypedName() const
{
    switch (mType) {
        case kString: return mName + ":STRING";
        case kFloat: return mName + ":FLOAT";
        case kLInteger: return mName + ":LINTEGER";
        case kBInteger: return mName + ":BINTEGER";
        case kNone: break;
    }
    return "";
}

bool IsBinary(const Element& element)
{
    return std::visit(BinaryOf(), element);
}

std::string Dump(const Elements& elements)
{
    std::string dump;
    for (const Element& element : elements) {
        dump += IsBinary(element) ? "B " : "T ";
        dump += std::visit([](const auto& one) { return DumpElement(one); }, element);
    }
    return dump;
}

std::vector<Value> Captures(const Elements& elements)
{
    std::vector<Value> list;
    for (const Element& element : elements) std::visit(AppendCaptures{list}, element);
    return list;
}

std::optional<std::size_t> Match(Elements& elements, std::string_view message)
{
    if (elements.empty()) return std::nullopt;
    std::size_t current = 0;
    for (Element& element : elements) {
        const std::string_view rest = message.substr(current);
        if (rest.empty()) return std::nullopt;
        const Taken taken = std::visit([&](auto& one) { return MatchElement(one, rest); }, element);
        if (!taken.has_value()) return std::nullopt;
        current += *taken;
    }
    return current;
}

}  // namespace NReference

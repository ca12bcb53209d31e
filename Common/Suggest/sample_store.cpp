#include "sample_store.h"

#include <algorithm>

#include "Common/Pattern/pattern_bytes.h"

namespace NSuggest {

namespace {

constexpr std::size_t kMostFirst = 2000;     // messages that are kept whatever their shape
constexpr std::size_t kMostMessages = 4000;  // with those of rare shapes
constexpr std::size_t kMostUnlike = 1000;    // beyond those
constexpr std::size_t kMostBytes = 1U << 20U;
constexpr std::size_t kMostShapes = 4096;
constexpr unsigned kMostOfOneShape = 16;
constexpr std::size_t kMostShortDigits = 9;  // of a number that fits 32 bits whatever it is

// The same for texts with the same characters at the same places, but for the length of words and
// of numbers that fit 32 bits.
std::uint64_t ShapeOf(std::string_view message)
{
    std::uint64_t hash = 0xCBF29CE484222325U;
    const auto add = [&hash](unsigned char b) { hash = (hash ^ b) * 0x100000001B3U; };
    unsigned char previous = 0;
    std::size_t run = 0;
    for (const char c : message) {
        const auto b = static_cast<unsigned char>(c);
        const unsigned char part = NPattern::IsDigit(b) ? '0' : NPattern::IsAlpha(b) ? 'a' : b;
        run = part == previous ? run + 1 : 1;
        const bool isRun = part == '0' || part == 'a' || part == ' ';
        if (run == 1 || !isRun) add(part);
        if (part == '0' && run == kMostShortDigits + 1) add('1');
        previous = part;
    }
    return hash;
}

}  // namespace

void SampleStore::Add(std::string_view message)
{
    if (HasSpace(IsRare(mSeen, message) ? kMostMessages : kMostFirst)) Keep(message);
}

bool SampleStore::AddUnlike(std::string_view message)
{
    if (!IsRare(mUnlike, message) || !HasSpace(kMostMessages + kMostUnlike)) return false;
    Keep(message);
    return true;
}

Column SampleStore::Messages() const
{
    return {mMessages.begin(), mMessages.end()};
}

bool SampleStore::IsRare(ShapeCounts& ioCounts, std::string_view message)
{
    const std::uint64_t shape = ShapeOf(message);
    const auto entry = ioCounts.find(shape);
    if (entry != ioCounts.end()) return ++entry->second <= kMostOfOneShape;
    if (ioCounts.size() == kMostShapes) return false;
    ioCounts.emplace(shape, 1);
    return true;
}

bool SampleStore::HasSpace(std::size_t messages) const
{
    return mMessages.size() < messages && mBytes < kMostBytes;
}

void SampleStore::Keep(std::string_view message)
{
    mMessages.emplace_back(message);
    mBytes += message.size();
}

}  // namespace NSuggest

#include "pattern_program.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "pattern_element.h"
#include "pattern_memory.h"

namespace NPattern {

namespace {

// The eight bytes from current on, with zeros after end. Reads within begin and end.
std::uint64_t WordAt(const Byte* begin, const Byte* current, const Byte* end)
{
    constexpr std::size_t kSize = sizeof(std::uint64_t);
    const auto left = static_cast<std::size_t>(end - current);
    if (left >= kSize) return ReadWord<std::uint64_t>(current);
    if (static_cast<std::size_t>(end - begin) < kSize) {
        Byte bytes[kSize] = {};
        std::copy(current, end, bytes);
        return ReadWord<std::uint64_t>(bytes);
    }
    const auto word = ReadWord<std::uint64_t>(end - kSize);
    const std::size_t surplus = (kSize - left) * 8;
    return std::endian::native == std::endian::little ? word >> surplus : word << surplus;
}

}  // namespace

TextWord::TextWord(std::string_view text, bool caseSensitive)
    : mSize(static_cast<std::uint32_t>(text.size()))
{
    Byte bytes[kMostBytes] = {};
    Byte fold[kMostBytes] = {};
    Byte mask[kMostBytes] = {};
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto b = static_cast<Byte>(text[i]);
        fold[i] = !caseSensitive && IsAlpha(b) ? kCaseBit : 0;
        bytes[i] = b | fold[i];
        mask[i] = 0xFF;
    }
    mText = ReadWord<std::uint64_t>(bytes);
    mFold = ReadWord<std::uint64_t>(fold);
    mMask = ReadWord<std::uint64_t>(mask);
}

void Program::AddText(std::string_view text, bool caseSensitive)
{
    for (; !text.empty(); text.remove_prefix(std::min(text.size(), TextWord::kMostBytes))) {
        AddStep(nullptr, TextWord(text.substr(0, TextWord::kMostBytes), caseSensitive));
    }
}

void Program::AddElement(Element& element)
{
    AddStep(&element, TextWord());
}

void Program::AddStep(Element* element, const TextWord& text)
{
    mSteps.push_back({std::exchange(mSpacePending, false), element, text});
}

const Byte* Program::Run(const Byte* data, std::uint32_t length) const
{
    if (mSteps.empty()) return nullptr;
    const Byte* const end = data + length;
    const Byte* current = data;
    for (const Step& step : mSteps) {
        if (current == end) return nullptr;
        while (step.mSkipsSpace && IsSpace(*current)) {
            if (++current == end) return nullptr;
        }
        if (step.mElement == nullptr) {
            if (!step.mText.IsIn(WordAt(data, current, end))) return nullptr;
            current += step.mText.Size();
        } else {
            current = step.mElement->Match(current, static_cast<std::uint32_t>(end - current));
            if (current == nullptr) return nullptr;
        }
    }
    return current;
}

}  // namespace NPattern

// The string values of the host.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace NStandIn {

// The texts of the string values that exist, by their payloads. A payload isn't a pointer, so the
// actor can't follow it, and none is ever used again, so a use after the release is seen. A new
// value takes over the memory of a released one.
class StringValues {
  public:
    // Makes a string value. Returns its payload, never 0.
    std::uint64_t Make(const char* text)
    {
        if (mFree.empty()) {
            mFree.reserve(mSlots.size() + 1);  // so that Release can't fail
            mSlots.emplace_back();
            mFree.push_back(mSlots.size() - 1);
        }
        const std::size_t index = mFree.back();
        Slot& slot = mSlots[index];
        slot.mText = text;
        slot.mPayload = ++mMade << kIndexBits | index;
        mFree.pop_back();
        return slot.mPayload;
    }

    // Returns the text of a value; null if there is no such value.
    const std::string* Find(std::uint64_t payload) const
    {
        const std::size_t index = payload & kIndexMask;
        const bool exists =
            payload != 0 && index < mSlots.size() && mSlots[index].mPayload == payload;
        return exists ? &mSlots[index].mText : nullptr;
    }

    // Returns false if there is no such value.
    bool Release(std::uint64_t payload)
    {
        if (Find(payload) == nullptr) return false;
        const std::size_t index = payload & kIndexMask;
        mFree.push_back(index);
        mSlots[index].mPayload = 0;
        return true;
    }

    // Returns the number of values that exist.
    std::size_t Count() const { return mSlots.size() - mFree.size(); }

  private:
    struct Slot {
        std::uint64_t mPayload = 0;  // 0: free
        std::string mText;
    };

    static constexpr int kIndexBits = 24;
    static constexpr std::uint64_t kIndexMask = (std::uint64_t{1} << kIndexBits) - 1;

    std::vector<Slot> mSlots;        // a payload's low bits are the index of its slot
    std::vector<std::size_t> mFree;  // indexes of free slots
    std::uint64_t mMade = 0;         // values made so far
};

}  // namespace NStandIn

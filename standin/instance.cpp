#include "instance.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <utility>

#include "host_operations.h"

namespace NStandIn {

using NActor::HostActor;
using NActor::HostContext;
using NActor::HostString;
using NActor::HostValue;
using NActor::HostWord;
using NActor::PropertyKind;

namespace {

constexpr std::uint16_t kEomCharInput = 1;
constexpr std::uint16_t kTextInput = 2;
constexpr HostWord kUnreadArgument = 0xA5A5A5A5A5A5A5A5;

// Of the value of an input: the input determines what its payload is.
constexpr std::uint16_t kUnreadTag = 0xA5A5;

}  // namespace

Instance::Instance(const NActor::ActorInfo& info, std::vector<Property> inputs,
                   std::vector<Property> outputs)
    : mInfo(info),
      mInputs(std::move(inputs)),
      mOutputs(std::move(outputs)),
      mTextValue(std::make_unique<HostValue>())
{
    mTextValue->mTag = kUnreadTag;  // with a null payload
    mInfo.mHostActor = reinterpret_cast<HostActor*>(this);
}

Instance::~Instance() = default;

void Instance::Create()
{
    const CallContext context;
    mInfo.CreateCallback(context.Get(), &mInfo);
}

void Instance::Dispose()
{
    const CallContext context;
    mInfo.DisposeCallback(context.Get(), &mInfo);
}

void Instance::Recreate()
{
    if (mInfo.mActorDataPtr == nullptr) return;
    Dispose();
    mOutputs.erase(mOutputs.begin() + 1, mOutputs.end());
    // A hook may have created it again during Dispose.
    if (mInfo.mActorDataPtr == nullptr) Create();
}

void Instance::SetState(std::string_view bytes)
{
    const auto copy = bytes.empty() ? nullptr : std::make_unique<char[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), copy.get());
    SetState(copy.get(), static_cast<std::uint32_t>(bytes.size()));
}

void Instance::SetState(const void* bytes, std::uint32_t size)
{
    const CallContext context;
    mInfo.SetStateCallback(context.Get(), &mInfo, bytes, size);
}

void Instance::SetDefaultState()
{
    const CallContext context;
    mInfo.DefaultStateCallback(context.Get(), &mInfo);
}

std::string Instance::State(std::uint32_t capacity)
{
    // These two callbacks must not touch their context.
    auto* const nowhere = reinterpret_cast<HostContext*>(std::uintptr_t{1});
    const std::uint32_t size = std::min(mInfo.StateSizeCallback(nowhere, &mInfo), capacity);
    const auto bytes = size != 0 ? std::make_unique<char[]>(size) : nullptr;
    const std::uint32_t copied = mInfo.GetStateCallback(nowhere, &mInfo, capacity, bytes.get());
    Demand(copied == size, "GetStateCallback: another size");
    return {bytes.get(), copied};
}

void Instance::SetEomChar(std::uint8_t eomChar)
{
    HostValue& value = mInputs[kEomCharInput - 1].mValue.mBits;
    value.mTag = kUnreadTag;
    value.mPayload = kUnreadArgument << 8 | eomChar;
    Notify(kEomCharInput, &value);
}

void Instance::SetInputText(std::string_view text)
{
    text = text.substr(0, text.find('\0'));
    const std::size_t size = offsetof(HostString, mText) + text.size() + 1;
    if (Host().Mode() == HostMode::kHostile || size > mTextRoom) {
        mTextString = std::make_unique<unsigned char[]>(size);
        mTextRoom = size;
        mTextValue = std::make_unique<HostValue>();
        mTextValue->mTag = kUnreadTag;
        mTextValue->mPayload = std::bit_cast<std::uint64_t>(mTextString.get());
    }
    unsigned char* const end =
        std::copy(text.begin(), text.end(), mTextString.get() + offsetof(HostString, mText));
    *end = '\0';
}

void Instance::Deliver(std::string_view text)
{
    SetInputText(text);
    Notify(kTextInput, mTextValue.get());
}

void Instance::Notify(std::uint16_t input, const HostValue* value)
{
    const CallContext context;
    mInfo.InputChangedCallback(context.Get(), &mInfo, input, kUnreadArgument, value);
}

bool Instance::DoubleClick(bool asksForFlag)
{
    std::uint8_t changed = asksForFlag ? kGarbage : 0;
    const CallContext context;
    const std::uint8_t result = mInfo.DoubleClickCallback(
        context.Get(), &mInfo, asksForFlag ? &changed : nullptr, kUnreadArgument);
    Demand(result == 1, "DoubleClickCallback: the result isn't true");
    Demand(changed <= 1, "DoubleClickCallback: no changed flag");
    return changed == 1;
}

std::string Instance::Help(PropertyKind kind, std::uint16_t number, std::uint32_t size)
{
    const auto buffer = size != 0 ? std::make_unique<char[]>(size) : nullptr;
    std::fill_n(buffer.get(), size, static_cast<char>(kGarbage));
    const CallContext context;
    mInfo.PropertyHelpCallback(context.Get(), &mInfo, kind, number, buffer.get(), size);
    return {buffer.get(), size};
}

std::array<std::uint16_t, 4> Instance::IconSize(void* host)
{
    std::array<std::uint16_t, 4> words;
    words.fill(kGarbage);
    const CallContext context;
    const std::uint8_t result =
        mInfo.IconSizeCallback(context.Get(), host, &words[0], &words[1], &words[2], &words[3]);
    Demand(result == 1, "IconSizeCallback: the result isn't true");
    return words;
}

void Instance::DrawIcon(void* host, std::uint16_t part, HostWord place, std::uint8_t state)
{
    const CallContext context;
    mInfo.DrawIconCallback(context.Get(), host, kUnreadArgument, part, kUnreadArgument, place,
                           kUnreadArgument, state);
}

const HostValue* Instance::FindInputValue(std::uint16_t input) const
{
    if (input < 1 || input > mInputs.size()) return nullptr;
    return input == kTextInput ? mTextValue.get() : &mInputs[input - 1U].mValue.mBits;
}

}  // namespace NStandIn

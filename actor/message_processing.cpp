#include "message_processing.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "checks.h"
#include "dynamic_outputs.h"
#include "parser_data.h"

namespace NActor {

using NPattern::Byte;
using NPattern::Parameter;

namespace {

constexpr std::uint16_t kTriggerOutput = 1;

void PublishParameter(const HostContext* context, const ActorInfo* info, const RecordWatch& watch,
                      std::uint16_t output, const Parameter& parameter)
{
    HostValue value;
    FillOutputValue(context, parameter, value);
    if (watch.OutputsStand()) context->mCallbacks->SetOutputValue(info->mHostActor, output, &value);
    ReleaseOutputValue(context, value);
}

void PublishTrigger(const HostContext* context, const ActorInfo* info)
{
    HostValue value;
    value.SetInteger(1);
    context->mCallbacks->SetOutputValue(info->mHostActor, kTriggerOutput, &value);
}

// Goes on only while the outputs are those that the message was matched for.
void PublishParameters(const HostContext* context, const ActorInfo* info,
                       const std::vector<Parameter>& params)
{
    const RecordWatch watch(info);
    const std::int32_t propCount = CountOutputs(context, info);
    Check(context,
          std::int64_t{propCount} - kFixedOutputPropertyCount ==
              static_cast<std::int64_t>(params.size()),
          "propCount - kFixedOutputPropertyCount == params.size()", __LINE__);
    const std::size_t reachable = ReachableOutputs(params.size());
    for (std::size_t k = 0; k < reachable && watch.OutputsStand(); ++k) {
        PublishParameter(context, info, watch, OutputNumber(k), params[k]);
    }
    if (watch.OutputsStand()) PublishTrigger(context, info);
}

// Cuts a text of length bytes, and the NUL behind it, into messages.
class MessageCutter {
  public:
    MessageCutter(const Byte* text, std::size_t length, Byte eomChar)
        : mNext(text), mEnd(text + length + (eomChar == 0 ? 1 : 0)), mEomChar(eomChar)
    {
    }

    // Gives false when no further message is complete.
    bool Next(const Byte*& outMessage, std::uint32_t& outLength)
    {
        const auto left = static_cast<std::size_t>(mEnd - mNext);
        const std::size_t most = std::min<std::size_t>(left, kMessageLimit + 1);
        const void* const eom = most != 0 ? std::memchr(mNext, mEomChar, most) : nullptr;
        if (eom == nullptr && most <= kMessageLimit) return false;

        outMessage = mNext;
        outLength = eom != nullptr
                        ? static_cast<std::uint32_t>(static_cast<const Byte*>(eom) - mNext)
                        : kMessageLimit;
        mNext += outLength + 1;
        return true;
    }

  private:
    const Byte* mNext;
    const Byte* mEnd;  // past the NUL where that ends a message
    Byte mEomChar;
};

std::unique_ptr<Byte[]> CopyOfText(const char* text, std::size_t length)
{
    std::unique_ptr<Byte[]> buffer(new (std::nothrow) Byte[length + 1]);
    if (buffer != nullptr) std::memcpy(buffer.get(), text, length + 1);
    return buffer;
}

}  // namespace

void ParseInputText(const HostContext* context, const ActorInfo* info, const char* text)
{
    const std::size_t length = std::strlen(text);
    const std::unique_ptr<Byte[]> buffer = CopyOfText(text, length);
    // Without a buffer the delivery is dropped: the next one may find memory again.
    if (!Check(context, buffer != nullptr, "buffer != NULL", __LINE__)) return;

    // All of this lives in the call and not in the record, so that a delivery from inside
    // SetOutputValue disturbs nothing here. The record is looked up anew for each message: that
    // call may have replaced its pattern, or have disposed of the instance.
    const RecordWatch watch(info);
    MessageCutter cutter(buffer.get(), length, watch.Record()->mEomChar);
    NPattern::CapturedParameters params;
    const Byte* message = nullptr;
    std::uint32_t messageLength = 0;
    while (watch.Record() != nullptr && cutter.Next(message, messageLength)) {
        NPattern::Pattern& pattern = watch.Record()->mPattern;
        if (pattern.Match(message, messageLength) == nullptr) continue;
        pattern.CollectParameters(params);
        PublishParameters(context, info, params.Entries());
    }
}

void InputChangedCallback(HostContext* context, ActorInfo* info, std::uint16_t input,
                          HostWord /*unread*/, const HostValue* value) noexcept
{
    ParserData* const data = info->mActorDataPtr;
    if (data == nullptr || value == nullptr) return;
    if (input == kEomCharInput) {
        data->mEomChar = static_cast<std::uint8_t>(value->mPayload);
    } else if (input == kTextInput && value->String() != nullptr) {
        RunGuarded(context, __LINE__,
                   [&] { ParseInputText(context, info, value->String()->Text()); });
    }
}

}  // namespace NActor

#include "message_processing.h"

#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "dynamic_outputs.h"
#include "message_cutter.h"
#include "output_value.h"
#include "parser_data.h"
#include "record_watch.h"

namespace NActor {

using NPattern::Parameter;

namespace {

constexpr std::uint16_t kTriggerOutput = 1;

void PublishParameter(const HostCall& call, const RecordWatch& watch, std::uint16_t output,
                      const Parameter& parameter)
{
    const OutputValue value(call, parameter);
    if (watch.OutputsStand()) call.SetOutputValue(output, value.Get());
}

void PublishTrigger(const HostCall& call)
{
    HostValue value;
    value.SetInteger(1);
    call.SetOutputValue(kTriggerOutput, value);
}

// Goes on only while the outputs are those that the message was matched for.
void PublishParameters(const HostCall& call, ParserData& record,
                       const std::vector<Parameter>& params)
{
    const RecordWatch watch(&record);
    const std::int32_t propCount = CountOutputs(call);
    call.Check(std::int64_t{propCount} - kFixedOutputPropertyCount ==
                   static_cast<std::int64_t>(params.size()),
               "propCount - kFixedOutputPropertyCount == params.size()", __LINE__);
    const std::size_t reachable = ReachableOutputs(params.size());
    for (std::size_t k = 0; k < reachable && watch.OutputsStand(); ++k) {
        PublishParameter(call, watch, OutputNumber(k), params[k]);
    }
    if (watch.OutputsStand()) PublishTrigger(call);
}

std::unique_ptr<unsigned char[]> CopyOfText(const char* text, std::size_t length)
{
    std::unique_ptr<unsigned char[]> buffer(new (std::nothrow) unsigned char[length + 1]);
    if (buffer != nullptr) std::memcpy(buffer.get(), text, length + 1);
    return buffer;
}

}  // namespace

void TakeInput(const HostCall& call, std::uint16_t input, const HostValue& value)
{
    if (input == kEomCharInput) {
        call.Record()->mEomChar = static_cast<std::uint8_t>(value.mPayload);
    } else if (input == kTextInput && value.String() != nullptr) {
        ParseInputText(call, value.String()->Text());
    }
}

void ParseInputText(const HostCall& call, const char* text)
{
    const RecordWatch watch(call.Record());
    const std::size_t length = std::strlen(text);
    const std::unique_ptr<unsigned char[]> buffer = CopyOfText(text, length);
    // Without a buffer the delivery is dropped: the next one may find memory again.
    if (!call.Check(buffer != nullptr, "buffer != NULL", __LINE__)) return;
    if (watch.Record() == nullptr) return;

    // All of this lives in the call and not in the record, so that a delivery from inside
    // SetOutputValue disturbs nothing here. The record is looked up anew for each message: that
    // call may have replaced its pattern, or have disposed of the instance.
    MessageCutter cutter(buffer.get(), length, watch.Record()->mEomChar);
    NPattern::CapturedParameters params;
    while (watch.Record() != nullptr) {
        const auto message = cutter.Next();
        if (!message) return;
        NPattern::Pattern& pattern = watch.Record()->mPattern;
        const auto messageLength = static_cast<std::uint32_t>(message->size());
        if (pattern.Match(message->data(), messageLength, params) == nullptr) continue;
        PublishParameters(call, *watch.Record(), params.Entries());
    }
}

}  // namespace NActor

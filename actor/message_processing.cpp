#include "message_processing.h"

#include <cstring>
#include <memory>
#include <new>
#include <utility>
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

// Lends the buffers of a record to one delivery. A delivery from inside another finds none and gets
// its own, so neither disturbs the other.
class LentBuffers {
  public:
    // watch: of a record that has not ended. It must outlive this.
    explicit LentBuffers(const RecordWatch& watch)
        : mWatch(watch), mBuffers(std::move(watch.Record()->mBuffers))
    {
        if (mBuffers == nullptr) mBuffers.reset(new (std::nothrow) DeliveryBuffers);
    }
    LentBuffers(const LentBuffers&) = delete;
    LentBuffers& operator=(const LentBuffers&) = delete;
    ~LentBuffers()
    {
        if (mWatch.Record() == nullptr || mBuffers == nullptr) return;
        mBuffers->mText.Shrink();
        mWatch.Record()->mBuffers = std::move(mBuffers);
    }

    // Null if there is no memory.
    DeliveryBuffers* Get() const { return mBuffers.get(); }

  private:
    const RecordWatch& mWatch;
    std::unique_ptr<DeliveryBuffers> mBuffers;
};

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
    const LentBuffers lent(watch);
    DeliveryBuffers* const buffers = lent.Get();
    const bool copied = buffers != nullptr && buffers->mText.Assign(text, length);
    // Without a buffer the delivery is dropped: the next one may find memory again.
    if (!call.Check(copied, "buffer != NULL", __LINE__)) return;

    // SetOutputValue may have replaced the pattern of the record, or have disposed of the instance:
    // the record is looked up anew for each message.
    MessageCutter cutter(buffers->mText.Bytes(), length, watch.Record()->mEomChar);
    while (watch.Record() != nullptr) {
        const auto message = cutter.Next();
        if (!message) return;
        NPattern::Pattern& pattern = watch.Record()->mPattern;
        const auto messageLength = static_cast<std::uint32_t>(message->size());
        if (pattern.Match(message->data(), messageLength, buffers->mCaptured) == nullptr) continue;
        PublishParameters(call, *watch.Record(), buffers->mCaptured.Entries());
    }
}

}  // namespace NActor

// The operations on the properties of an instance: its inputs and outputs, and their values.

#include <bit>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include "host_operations.h"

namespace NStandIn {

using NActor::HostActor;
using NActor::HostCallbacks;
using NActor::HostError;
using NActor::HostValue;
using NActor::HostZero;
using NActor::kPropertyOutput;
using NActor::PropertyKind;

namespace {

constexpr HostError kFailed = 0x5A00;  // an actor that reads only the low byte sees no error
constexpr HostError kNoError = 0;

std::string IdText(std::uint32_t id)
{
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) text += static_cast<char>(id >> shift & 0xFF);
    return text;
}

// Returns the text of a string value. Empty, after a violation unless the payload is null, if there
// is none.
std::string_view TextOf(const HostValue& bits)
{
    if (bits.mPayload == 0) return {};
    const std::string* const text = Accounts().mStringValues.Find(bits.mPayload);
    Demand(text != nullptr, "a string value that the host doesn't have");
    return text != nullptr ? std::string_view(*text) : std::string_view();
}

// Stores a copy that doesn't depend on the actor's string value.
void Store(const HostValue& bits, Value& outValue)
{
    outValue.mBits = bits;
    if (bits.mTag == NActor::kValueString) outValue.mText = TextOf(bits);
}

Value Keep(const HostValue& bits)
{
    Value value;
    Store(bits, value);
    return value;
}

// The host owns the string of an initial value from now on, even if the definition fails.
Value TakeOver(const HostValue& bits)
{
    Value value = Keep(bits);
    if (bits.mTag == NActor::kValueString) Accounts().mStringValues.Release(bits.mPayload);
    return value;
}

// A value in a line of the log.
struct Shown {
    const HostValue& mBits;

    friend std::ostream& operator<<(std::ostream& stream, const Shown& shown)
    {
        const HostValue& bits = shown.mBits;
        switch (bits.mTag) {
            case NActor::kValueInteger: return stream << static_cast<std::int64_t>(bits.mPayload);
            case NActor::kValueFloat: return stream << std::bit_cast<double>(bits.mPayload);
            case NActor::kValueString: return stream << '"' << TextOf(bits) << '"';
            default: return stream << "tag " << bits.mTag;
        }
    }
};

// Null if there is no instance or it has no such output.
Property* OutputOf(Instance* instance, std::uint16_t output)
{
    return instance != nullptr ? instance->FindOutput(output) : nullptr;
}

// The actor may redefine and remove every output except the first.
void DemandDynamicOutput(Instance* instance, std::uint16_t output, const char* operation)
{
    if (output > 1 && OutputOf(instance, output) != nullptr) return;
    Blame(operation + (": unknown output " + std::to_string(output)));
}

void DemandOneKind(const HostValue& minimum, const HostValue& maximum, const HostValue& initial,
                   const char* operation)
{
    if (minimum.mTag == maximum.mTag && maximum.mTag == initial.mTag) return;
    Blame(std::string(operation) + ": values of several kinds");
}

const HostValue* GetInputValue(HostActor* actor, std::uint16_t input)
{
    const Instance* const instance = LivingInstanceOf(actor, "GetInputValue");
    const OperationScope scope(kGetInputValue, input);
    if (scope.Fails() || instance == nullptr) return nullptr;
    const HostValue* const value = instance->FindInputValue(input);
    if (value == nullptr) Blame("GetInputValue: unknown input " + std::to_string(input));
    return value;
}

HostError SetOutputValue(HostActor* actor, std::uint16_t output, const HostValue* value)
{
    Instance* const instance = LivingInstanceOf(actor, "SetOutputValue");
    const Property* const asked = OutputOf(instance, output);
    if (asked == nullptr) {
        Blame("SetOutputValue: unknown output " + std::to_string(output));
    } else if (value->mTag != asked->mInitial.mBits.mTag) {
        Blame("SetOutputValue: another kind than output " + std::to_string(output));
    }
    const OperationScope scope(kSetOutputValue, output, Shown{*value});
    Property* const set = OutputOf(instance, output);
    if (scope.Fails() || set == nullptr) return kFailed;
    Store(*value, set->mValue);
    if (Host().mOutputListener) Host().mOutputListener(*instance, output);
    return kNoError;
}

std::int32_t PropertyHelpIndex(HostActor* actor, PropertyKind kind, std::uint16_t number)
{
    const OperationScope scope(kPropertyHelpIndex, int{kind}, number);
    if (scope.Fails() || InstanceOf(actor, "PropertyHelpIndex") == nullptr) return -1;
    switch (kind) {
        case kPropertyInput: return number;
        case kPropertyOutput: return 2 + number;
        default: return 0;
    }
}

HostError AddProperty(HostActor* actor, PropertyKind kind, std::uint32_t id, HostZero z1,
                      const char* name, HostZero z2, std::uint32_t firstFlags,
                      std::uint32_t secondFlags, std::uint8_t z3, const HostValue* minimum,
                      const HostValue* maximum, const HostValue* initial, HostZero z4, HostZero z5,
                      HostZero z6)
{
    Instance* const instance = LivingInstanceOf(actor, "AddProperty");
    DemandOneKind(*minimum, *maximum, *initial, "AddProperty");
    const OperationScope scope(kAddProperty, IdText(id), name, Shown{*initial});
    Demand(kind == kPropertyOutput, "AddProperty: not an output");
    Demand((z1 | z2 | z3 | z4 | z5 | z6) == 0, "AddProperty: an argument isn't 0");
    const Value value = TakeOver(*initial);
    if (scope.Fails() || instance == nullptr) return kFailed;
    instance->AddOutput(
        {name, IdText(id), firstFlags, secondFlags, Keep(*minimum), Keep(*maximum), value, value});
    return kNoError;
}

HostError ChangeProperty(HostActor* actor, HostZero zero, PropertyKind kind, std::uint16_t number,
                         const char* name, std::uint32_t firstFlags, std::uint32_t secondFlags,
                         const HostValue* minimum, const HostValue* maximum,
                         const HostValue* lowest, const HostValue* highest,
                         const HostValue* initial)
{
    Instance* const instance = LivingInstanceOf(actor, "ChangeProperty");
    DemandDynamicOutput(instance, number, "ChangeProperty");
    DemandOneKind(*minimum, *maximum, *initial, "ChangeProperty");
    const OperationScope scope(kChangeProperty, number, name, Shown{*initial});
    Demand(kind == kPropertyOutput, "ChangeProperty: not an output");
    Demand(zero == 0, "ChangeProperty: an argument isn't 0");
    Demand(minimum == lowest && maximum == highest, "ChangeProperty: other limits");
    const Value value = TakeOver(*initial);
    Property* const output = OutputOf(instance, number);
    if (scope.Fails() || output == nullptr) return kFailed;
    *output = {name,           output->mId,    firstFlags, secondFlags,
               Keep(*minimum), Keep(*maximum), value,      value};
    return kNoError;
}

HostError RemoveProperty(HostActor* actor, PropertyKind kind, std::uint16_t number)
{
    Instance* const instance = LivingInstanceOf(actor, "RemoveProperty");
    DemandDynamicOutput(instance, number, "RemoveProperty");
    const OperationScope scope(kRemoveProperty, number);
    Demand(kind == kPropertyOutput, "RemoveProperty: not an output");
    if (scope.Fails() || OutputOf(instance, number) == nullptr) return kFailed;
    instance->RemoveOutput(number);
    return kNoError;
}

// The count is written even if the operation fails.
HostError GetPropertyCount(HostActor* actor, PropertyKind kind, std::int32_t* outCount)
{
    const Instance* const instance = LivingInstanceOf(actor, "GetPropertyCount");
    const OperationScope scope(kGetPropertyCount);
    Demand(kind == kPropertyOutput, "GetPropertyCount: not of the outputs");
    if (instance == nullptr) return kFailed;
    *outCount =
        Host().mClaimedOutputCount.value_or(static_cast<std::int32_t>(instance->Outputs().size()));
    return scope.Fails() ? kFailed : kNoError;
}

}  // namespace

void AddPropertyOperations(HostCallbacks& ioTable)
{
    ioTable.GetInputValue = GetInputValue;
    ioTable.SetOutputValue = SetOutputValue;
    ioTable.PropertyHelpIndex = PropertyHelpIndex;
    ioTable.AddProperty = AddProperty;
    ioTable.RemoveProperty = RemoveProperty;
    ioTable.GetPropertyCount = GetPropertyCount;
    ioTable.ChangeProperty = ChangeProperty;
}

}  // namespace NStandIn

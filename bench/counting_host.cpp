#include "counting_host.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "actor/dynamic_outputs.h"
#include "actor/message_processing.h"

namespace NBench {

using namespace NActor;

namespace {

std::int32_t outputCount = 0;
std::size_t setValues = 0;

}  // namespace

CountingHost::CountingHost()
{
    outputCount = kFixedOutputPropertyCount;
    setValues = 0;
    mCallbacks.SetOutputValue = [](HostActor*, std::uint16_t, const HostValue*) -> HostError {
        ++setValues;
        return kQuendalNoError;
    };
    mCallbacks.GetPropertyCount = [](HostActor*, PropertyKind,
                                     std::int32_t* outCount) -> HostError {
        *outCount = outputCount;
        return kQuendalNoError;
    };
    mCallbacks.AddProperty = [](HostActor*, PropertyKind, std::uint32_t, HostZero, const char*,
                                HostZero, std::uint32_t, std::uint32_t, std::uint8_t,
                                const HostValue*, const HostValue*, const HostValue*, HostZero,
                                HostZero, HostZero) -> HostError {
        ++outputCount;
        return kQuendalNoError;
    };
    mCallbacks.ChangeProperty = [](HostActor*, HostZero, PropertyKind, std::uint16_t, const char*,
                                   std::uint32_t, std::uint32_t, const HostValue*, const HostValue*,
                                   const HostValue*, const HostValue*,
                                   const HostValue*) -> HostError { return kQuendalNoError; };
    mCallbacks.RemoveProperty = [](HostActor*, PropertyKind, std::uint16_t) -> HostError {
        --outputCount;
        return kQuendalNoError;
    };
    mCallbacks.AllocateBlock = [](std::uint32_t size, std::uint8_t) {
        return std::memset(::operator new(size), 0, size);
    };
    mCallbacks.ReleaseBlock = [](void* block) { ::operator delete(block); };
    mCallbacks.MakeStringValue = [](const char*, HostValue*) {};
    mCallbacks.ReleaseStringValue = [](HostValue*) {};
    mCallbacks.ReportAssertion = [](const char* text, const char*, std::int32_t line) {
        std::fprintf(stderr, "Assertion failed in line %d: %s\n", line, text);
        std::exit(1);
    };
    mContext.mCallbacks = &mCallbacks;
    GetActorInfo(nullptr, &mInfo);
    mInfo.CreateCallback(&mContext, &mInfo);
}

CountingHost::~CountingHost()
{
    mInfo.DisposeCallback(&mContext, &mInfo);
}

void CountingHost::SetParsingString(const std::string& parsingString)
{
    mInfo.SetStateCallback(&mContext, &mInfo, parsingString.data(),
                           static_cast<std::uint32_t>(parsingString.size()));
}

void CountingHost::SetEomChar(char c)
{
    HostValue value;
    value.SetInteger(static_cast<unsigned char>(c));
    mInfo.InputChangedCallback(&mContext, &mInfo, kEomCharInput, 0, &value);
}

void CountingHost::Deliver(const std::string& text)
{
    HostValue value;
    value.mTag = kValueString;
    value.mPayload = reinterpret_cast<std::uintptr_t>(text.data());
    mInfo.InputChangedCallback(&mContext, &mInfo, kTextInput, 0, &value);
}

std::string CountingHost::TextValue(const std::string& text)
{
    return std::string(offsetof(HostString, mText), '\0') + text;
}

std::size_t CountingHost::SetValues() const
{
    return setValues;
}

}  // namespace NBench

// The callback slots, each of which only fetches the record, checks it and calls one function; and
// the export that fills them in.

#include "actor_info.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "host_call.h"
#include "icon.h"
#include "instance.h"
#include "message_processing.h"
#include "parser_data.h"
#include "pattern_dialog.h"
#include "persistent_state.h"
#include "property_texts.h"

namespace NActor {

namespace {

const char* DefinitionStringCallback(HostContext* /*context*/) noexcept
{
    return DefinitionString();
}

void PropertyHelpCallback(HostContext* context, ActorInfo* info, PropertyKind kind,
                          std::uint16_t number, char* outText, std::uint32_t size) noexcept
{
    WriteHelpText(HostCall(context, info), kind, number, outText, size);
}

void CreateCallback(HostContext* context, ActorInfo* ioActorInfo) noexcept
{
    CreateInstance(HostCall(context, ioActorInfo));
}

void DisposeCallback(HostContext* context, ActorInfo* ioActorInfo) noexcept
{
    DisposeInstance(HostCall(context, ioActorInfo));
}

void NoOpCallback() noexcept {}

void InputChangedCallback(HostContext* context, ActorInfo* info, std::uint16_t input,
                          HostWord /*unread*/, const HostValue* value) noexcept
{
    const HostCall call(context, info);
    if (call.Record() == nullptr || value == nullptr) return;
    call.RunGuarded(__LINE__, [&] { TakeInput(call, input, *value); });
}

std::uint8_t IconSizeCallback(HostContext* context, void* iconHost, std::uint16_t* outFirst,
                              std::uint16_t* outSecond, std::uint16_t* outThird,
                              std::uint16_t* outFourth) noexcept
{
    const IconRecord& icon = LoadedIcon(Host(context), iconHost);
    *outFirst = icon.mFirstExtent;
    *outSecond = icon.mSecondExtent;
    *outThird = 0;
    *outFourth = 0;
    return 1;
}

void DrawIconCallback(HostContext* context, void* iconHost, HostWord /*unread1*/,
                      std::uint16_t part, HostWord /*unread2*/, HostWord place,
                      HostWord /*unread3*/, std::uint8_t state) noexcept
{
    const Host host(context);
    host.RunGuarded(__LINE__, [&] { DrawIcon(host, iconHost, part, place, state); });
}

void SetStateCallback(HostContext* context, ActorInfo* info, const void* bytes,
                      std::uint32_t size) noexcept
{
    const HostCall call(context, info);
    if (call.Record() == nullptr) return;
    call.RunGuarded(__LINE__, [&] { SetState(call, bytes, size); });
}

std::uint32_t StateSizeCallback(HostContext* /*context*/, ActorInfo* info) noexcept
{
    const ParserData* const record = info->mActorDataPtr;
    return record != nullptr ? record->mParseStringSize : 0;
}

std::uint32_t GetStateCallback(HostContext* /*context*/, ActorInfo* info, std::uint32_t capacity,
                               void* outBytes) noexcept
{
    const ParserData* const record = info->mActorDataPtr;
    return record != nullptr ? CopyState(*record, capacity, outBytes) : 0;
}

std::uint8_t DoubleClickCallback(HostContext* context, ActorInfo* info, std::uint8_t* outChanged,
                                 HostWord /*unread*/) noexcept
{
    const HostCall call(context, info);
    bool changed = false;
    call.RunGuarded(__LINE__, [&] { changed = EditParseString(call); });
    if (outChanged != nullptr) *outChanged = changed ? 1 : 0;
    return 1;
}

void DefaultStateCallback(HostContext* context, ActorInfo* info) noexcept
{
    SetStateCallback(context, info, nullptr, 0);
}

}  // namespace

}  // namespace NActor

#if defined(__GNUC__)
[[gnu::visibility("default")]]
#endif
void GetActorInfo(void* /*unread*/, NActor::ActorInfo* outActorInfo)
{
    using namespace NActor;
    ActorInfo& info = *outActorInfo;

    std::memcpy(info.mActorClass, "ltnc", sizeof info.mActorClass);
    std::memcpy(info.mActorId, "SoW_", sizeof info.mActorId);
    info.mHostWord = 256;
    info.mDisplayName = kDisplayName;

    info.DefinitionStringCallback = DefinitionStringCallback;
    info.PropertyHelpCallback = PropertyHelpCallback;
    info.CreateCallback = CreateCallback;
    info.DisposeCallback = DisposeCallback;
    info.NoOpCallback = NoOpCallback;
    info.InputChangedCallback = InputChangedCallback;
    std::fill(std::begin(info.mNull680), std::end(info.mNull680), nullptr);
    info.IconSizeCallback = IconSizeCallback;
    info.DrawIconCallback = DrawIconCallback;
    info.mNull736 = nullptr;
    info.SetStateCallback = SetStateCallback;
    info.StateSizeCallback = StateSizeCallback;
    info.GetStateCallback = GetStateCallback;
    info.DoubleClickCallback = DoubleClickCallback;
    info.DefaultStateCallback = DefaultStateCallback;
}

// The record through which the host knows the actor, one for each instance, and the one export
// that fills it. Layout fixed by the host and proved at the end.

#pragma once

#include <cstddef>
#include <cstdint>

#include "host_interface.h"

namespace NActor {

struct ParserData;

// The name shown to people, and the second argument of every report of a failed check.
inline constexpr char kDisplayName[] = "Word Sifter";

// Results of 8 bits are 1 for true and 0 for false.
struct ActorInfo {
    char mActorClass[4];  // "ltnc", without a terminator
    std::uint8_t mUnused4[4];
    char mActorId[4];         // "SoW_", without a terminator
    std::uint32_t mHostWord;  // 256; read by the host alone
    std::uint8_t mUnused16[8];
    const char* mDisplayName;  // kDisplayName
    std::uint8_t mUnused32[8];
    HostActor* mHostActor;  // set by the host: first argument of the property operations
    std::uint8_t mUnused48[544];
    ParserData* mActorDataPtr;  // the instance's record; null before creation and after disposal
    std::uint8_t mUnused600[24];

    // Callback slots. Each function is documented in the header of its concern.
    const char* (*DefinitionStringCallback)(HostContext* context);
    void (*PropertyHelpCallback)(HostContext* context, ActorInfo* info, PropertyKind kind,
                                 std::uint16_t number, char* outText, std::uint32_t size);
    void (*CreateCallback)(HostContext* context, ActorInfo* ioActorInfo);
    void (*DisposeCallback)(HostContext* context, ActorInfo* ioActorInfo);
    void (*NoOpCallback)();
    void* mUnwritten664;  // kept as it came
    void (*InputChangedCallback)(HostContext* context, ActorInfo* info, std::uint16_t input,
                                 HostWord unread, const HostValue* value);
    void* mNull680[4];
    void* mUnwritten712;  // kept as it came
    std::uint8_t (*IconSizeCallback)(HostContext* context, void* host, std::uint16_t* outFirst,
                                     std::uint16_t* outSecond, std::uint16_t* outThird,
                                     std::uint16_t* outFourth);
    void (*DrawIconCallback)(HostContext* context, void* host, HostWord unread1, std::uint16_t part,
                             HostWord unread2, HostWord place, HostWord unread3,
                             std::uint8_t state);
    void* mNull736;
    void (*SetStateCallback)(HostContext* context, ActorInfo* info, const void* bytes,
                             std::uint32_t size);
    std::uint32_t (*StateSizeCallback)(HostContext* context, ActorInfo* info);
    std::uint32_t (*GetStateCallback)(HostContext* context, ActorInfo* info, std::uint32_t capacity,
                                      void* outBytes);
    std::uint8_t (*DoubleClickCallback)(HostContext* context, ActorInfo* info,
                                        std::uint8_t* outChanged, HostWord unread);
    void (*DefaultStateCallback)(HostContext* context, ActorInfo* info);
};

static_assert(offsetof(ActorInfo, mActorClass) == 0);
static_assert(offsetof(ActorInfo, mActorId) == 8);
static_assert(offsetof(ActorInfo, mHostWord) == 12);
static_assert(offsetof(ActorInfo, mDisplayName) == 24);
static_assert(offsetof(ActorInfo, mHostActor) == 40);
static_assert(offsetof(ActorInfo, mActorDataPtr) == 592);
static_assert(offsetof(ActorInfo, DefinitionStringCallback) == 624);
static_assert(offsetof(ActorInfo, PropertyHelpCallback) == 632);
static_assert(offsetof(ActorInfo, CreateCallback) == 640);
static_assert(offsetof(ActorInfo, DisposeCallback) == 648);
static_assert(offsetof(ActorInfo, NoOpCallback) == 656);
static_assert(offsetof(ActorInfo, mUnwritten664) == 664);
static_assert(offsetof(ActorInfo, InputChangedCallback) == 672);
static_assert(offsetof(ActorInfo, mNull680) == 680);
static_assert(offsetof(ActorInfo, mUnwritten712) == 712);
static_assert(offsetof(ActorInfo, IconSizeCallback) == 720);
static_assert(offsetof(ActorInfo, DrawIconCallback) == 728);
static_assert(offsetof(ActorInfo, mNull736) == 736);
static_assert(offsetof(ActorInfo, SetStateCallback) == 744);
static_assert(offsetof(ActorInfo, StateSizeCallback) == 752);
static_assert(offsetof(ActorInfo, GetStateCallback) == 760);
static_assert(offsetof(ActorInfo, DoubleClickCallback) == 768);
static_assert(offsetof(ActorInfo, DefaultStateCallback) == 776);

}  // namespace NActor

// Tells the host what the actor is: writes the codes, the name and the callback slots, and leaves
// every other byte of the record as it came. The one export of the library.
extern "C" void GetActorInfo(void* unread, NActor::ActorInfo* outActorInfo);

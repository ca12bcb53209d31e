// The record that the host and the actor share for each instance, and the one export that fills it
// in. Its layout is the host's; the assertions at the end prove it.

#pragma once

#include <cstddef>
#include <cstdint>

#include "host_interface.h"

namespace NActor {

struct ParserData;

// The name that users see, and the second argument of every report of a failed check.
inline constexpr char kDisplayName[] = "Word Sifter";

struct ActorInfo {
    char mActorClass[4];  // "ltnc", without a terminator
    std::uint8_t mUnused4[4];
    char mActorId[4];         // "SoW_", without a terminator
    std::uint32_t mHostWord;  // 256; only the host reads it
    std::uint8_t mUnused16[8];
    const char* mDisplayName;  // kDisplayName
    std::uint8_t mUnused32[8];
    HostActor* mHostActor;  // set by the host: first argument of the property operations
    std::uint8_t mUnused48[544];
    ParserData* mActorDataPtr;  // the instance's record; null before creation and after disposal
    std::uint8_t mUnused600[24];

    // The callback slots. No exception leaves any of them, whatever the operations of the host
    // throw. Those for an instance do nothing if it has no record, and return 0. Results of 8 bits
    // are 1 for true and 0 for false.

    // The property definitions; a static text.
    const char* (*DefinitionStringCallback)(HostContext* context);
    // Writes the help text of a property into outText, size bytes: see WriteHelpText.
    void (*PropertyHelpCallback)(HostContext* context, ActorInfo* info, PropertyKind kind,
                                 std::uint16_t number, char* outText, std::uint32_t size);
    // Begin and end an instance: see CreateInstance and DisposeInstance.
    void (*CreateCallback)(HostContext* context, ActorInfo* ioActorInfo);
    void (*DisposeCallback)(HostContext* context, ActorInfo* ioActorInfo);
    void (*NoOpCallback)();
    void* mUnwritten664;  // never written
    // Called when an input has a new value: see TakeInput. A null value is ignored.
    void (*InputChangedCallback)(HostContext* context, ActorInfo* info, std::uint16_t input,
                                 HostWord unread, const HostValue* value);
    void* mNull680[4];
    void* mUnwritten712;  // never written
    // Stores the two size words of the icon, and 0 in the third and the fourth word. Always true.
    // iconHost: passed on to the host, here and below.
    std::uint8_t (*IconSizeCallback)(HostContext* context, void* iconHost, std::uint16_t* outFirst,
                                     std::uint16_t* outSecond, std::uint16_t* outThird,
                                     std::uint16_t* outFourth);
    void (*DrawIconCallback)(HostContext* context, void* iconHost, HostWord unread1,
                             std::uint16_t part, HostWord unread2, HostWord place, HostWord unread3,
                             std::uint8_t state);
    void* mNull736;
    // Installs size bytes as the parsing string, compiles it and rebuilds the outputs. A string
    // that doesn't compile is kept and reported; the pattern is then empty and the outputs stay.
    // bytes: copied; not read if size is 0.
    void (*SetStateCallback)(HostContext* context, ActorInfo* info, const void* bytes,
                             std::uint32_t size);
    // The number of bytes to save. Doesn't touch the context.
    std::uint32_t (*StateSizeCallback)(HostContext* context, ActorInfo* info);
    // Copies the state, at most capacity bytes of it and no terminator. Returns the number of bytes
    // copied. Doesn't touch the context.
    std::uint32_t (*GetStateCallback)(HostContext* context, ActorInfo* info, std::uint32_t capacity,
                                      void* outBytes);
    // Runs the dialog: see EditParseString, whose result goes to outChanged, which may be null.
    // Always true.
    std::uint8_t (*DoubleClickCallback)(HostContext* context, ActorInfo* info,
                                        std::uint8_t* outChanged, HostWord unread);
    // Installs an empty parsing string.
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

// Fills in the codes, the name and the callback slots, and leaves every other byte of the record as
// it came. The only export of the library.
extern "C" void GetActorInfo(void* unread, NActor::ActorInfo* outActorInfo);

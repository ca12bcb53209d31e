// The boundary to the host: its table of operations, and the records that pass across it. Every
// layout here is the host's and fixed; the assertions at the end prove it on each build. The other
// shared records are in actor_info.h and icon.h.
//
// Integers of 8 and 16 bits have exactly that width, as arguments and as results: a host leaves
// garbage in the upper bits of a wider register. An argument that always passes as 0 is as wide as
// a register, so that a host that reads it in any width reads 0.

#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace NActor {

// Opaque to the actor.
struct HostActor;       // the host's reference to an instance
struct HostTextHandle;  // bytes without a terminator; the dialog may change their number

using HostZero = std::intptr_t;   // an argument that always passes as 0
using HostWord = std::uintptr_t;  // a value that is passed on with all its bits, or not read
using HostError = std::uint16_t;  // the result of an operation that can fail
inline constexpr HostError kQuendalNoError = 0;

using PropertyKind = std::uint8_t;
inline constexpr PropertyKind kPropertyOutput = 2;  // the only kind that the actor itself passes

// Properties are numbered from 1 in 16 bits, inputs and outputs each on their own.
inline constexpr std::int32_t kLargestPropertyNumber = 65535;

enum HostValueTag : std::uint16_t {
    kValueInteger = 2,  // payload: a signed 64-bit integer
    kValueFloat = 3,    // payload: a 64-bit float
    kValueString = 6    // payload: a pointer to a string of the host; null for no string
};

// A text of the host, as the string payload of an input points to it.
struct HostString {
    unsigned char mHostPart[8];
    char mText[1];  // where the text starts; NUL-terminated, and as long as it needs

    // By its address: through mText only one character may be read.
    const char* Text() const
    {
        return reinterpret_cast<const char*>(this) + offsetof(HostString, mText);
    }
};

// A tagged value, always passed by pointer. The payload is kept as bits, since the host may read
// and write it as any of its kinds.
struct HostValue {
    std::uint16_t mTag = 0;
    std::uint8_t mHostPart[6] = {};
    std::uint64_t mPayload = 0;

    void SetInteger(std::int64_t value)
    {
        mTag = kValueInteger;
        mPayload = static_cast<std::uint64_t>(value);
    }
    void SetFloat(double value)
    {
        mTag = kValueFloat;
        mPayload = std::bit_cast<std::uint64_t>(value);
    }
    const HostString* String() const { return std::bit_cast<const HostString*>(mPayload); }
};

struct HostCallbacks;

// The first argument of every callback of the actor. Both the context and the table belong to the
// host and may be gone when the callback has returned; neither is kept.
struct HostContext {
    unsigned char mHostPart[16];
    const HostCallbacks* mCallbacks;
};

struct IconRecord;

// Called by the host while RunTextDialog runs: compiles the text in the handle. Returns 1 if it is
// a valid parsing string, and otherwise 0 with a message (at most errorSize bytes, NUL included;
// none if that is 0 or below) and, for a syntax error, the offsets where the error starts and ends.
using ValidateTextFunction = std::uint8_t (*)(HostTextHandle* text, std::int32_t* outStart,
                                              std::int32_t* outEnd, char* outError,
                                              std::int32_t errorSize, HostContext* context);

// The operations of the host. Unnamed entries belong to the host and are never called.
struct HostCallbacks {
    void* mUnused0[6];

    // The current value of an input, or null. It is the host's, and valid only until the next
    // operation.
    const HostValue* (*GetInputValue)(HostActor* actor, std::uint16_t input);
    // The output takes a copy of the value; the caller still owns it.
    HostError (*SetOutputValue)(HostActor* actor, std::uint16_t output, const HostValue* value);

    void* mUnused64[15];

    // The position of a property's text in the help table, 0 to 4.
    std::int32_t (*PropertyHelpIndex)(HostActor* actor, PropertyKind kind, std::uint16_t number);
    // Adds an output after the last one. A string as initial value goes over to the host.
    HostError (*AddProperty)(HostActor* actor, PropertyKind kind, std::uint32_t id, HostZero,
                             const char* name, HostZero, std::uint32_t firstFlags,
                             std::uint32_t secondFlags, std::uint8_t zero, const HostValue* minimum,
                             const HostValue* maximum, const HostValue* initial, HostZero, HostZero,
                             HostZero);
    HostError (*RemoveProperty)(HostActor* actor, PropertyKind kind, std::uint16_t number);
    HostError (*GetPropertyCount)(HostActor* actor, PropertyKind kind, std::int32_t* outCount);

    void* mUnused216[8];

    // A block of size bytes, all 0, or null. flags: always 1.
    void* (*AllocateBlock)(std::uint32_t size, std::uint8_t flags);
    void (*ReleaseBlock)(void* block);

    void* mUnused296[6];

    // Lets the user edit the text; non-zero if the user accepted. The host passes the context on as
    // the last argument of validate. flags: always 1.
    std::uint8_t (*RunTextDialog)(HostActor* actor, HostTextHandle* text, const char* title,
                                  ValidateTextFunction validate, HostContext* context,
                                  std::uint8_t flags, const char* helpFile);
    // Reports a check that failed. It may return.
    void (*ReportAssertion)(const char* text, const char* displayName, std::int32_t line);
    // iconHost: the pointer that the icon callback got.
    void (*LoadIconRecord)(void* iconHost, HostZero, IconRecord* outIcon);
    void (*DrawIconRecord)(void* iconHost, std::uint8_t state, HostWord place, IconRecord* icon);

    void* mUnused376[51];

    // Fills the payload of a value already tagged kValueString from a NUL-terminated text.
    void (*MakeStringValue)(const char* text, HostValue* ioValue);
    // Releases what MakeStringValue made.
    void (*ReleaseStringValue)(HostValue* ioValue);

    void* mUnused800[42];

    // Redefines an output in place; it keeps its id. A string as initial value goes over to the
    // host.
    HostError (*ChangeProperty)(HostActor* actor, HostZero, PropertyKind kind, std::uint16_t number,
                                const char* name, std::uint32_t firstFlags,
                                std::uint32_t secondFlags, const HostValue* minimum,
                                const HostValue* maximum, const HostValue* lowest,
                                const HostValue* highest, const HostValue* initial);

    void* mUnused1144[81];

    // A handle on size bytes, or null. The caller owns it and gives it to DisposeTextHandle.
    HostTextHandle* (*NewTextHandle)(std::uint32_t size, HostZero);
    void (*DisposeTextHandle)(HostTextHandle* text);
    std::uint64_t (*TextHandleSize)(HostTextHandle* text);
    // The bytes of the handle, which stay in place until the lock ends.
    unsigned char* (*LockTextHandle)(HostTextHandle* text);
    void (*UnlockTextHandle)(HostTextHandle* text);
};

static_assert(sizeof(void*) == 8, "the host has 64 bits");

static_assert(offsetof(HostString, mText) == 8);

static_assert(sizeof(HostValue) == 16);
static_assert(offsetof(HostValue, mTag) == 0);
static_assert(offsetof(HostValue, mPayload) == 8);

static_assert(offsetof(HostContext, mCallbacks) == 16);

static_assert(offsetof(HostCallbacks, GetInputValue) == 48);
static_assert(offsetof(HostCallbacks, SetOutputValue) == 56);
static_assert(offsetof(HostCallbacks, PropertyHelpIndex) == 184);
static_assert(offsetof(HostCallbacks, AddProperty) == 192);
static_assert(offsetof(HostCallbacks, RemoveProperty) == 200);
static_assert(offsetof(HostCallbacks, GetPropertyCount) == 208);
static_assert(offsetof(HostCallbacks, AllocateBlock) == 280);
static_assert(offsetof(HostCallbacks, ReleaseBlock) == 288);
static_assert(offsetof(HostCallbacks, RunTextDialog) == 344);
static_assert(offsetof(HostCallbacks, ReportAssertion) == 352);
static_assert(offsetof(HostCallbacks, LoadIconRecord) == 360);
static_assert(offsetof(HostCallbacks, DrawIconRecord) == 368);
static_assert(offsetof(HostCallbacks, MakeStringValue) == 784);
static_assert(offsetof(HostCallbacks, ReleaseStringValue) == 792);
static_assert(offsetof(HostCallbacks, ChangeProperty) == 1136);
static_assert(offsetof(HostCallbacks, NewTextHandle) == 1792);
static_assert(offsetof(HostCallbacks, DisposeTextHandle) == 1800);
static_assert(offsetof(HostCallbacks, TextHandleSize) == 1808);
static_assert(offsetof(HostCallbacks, LockTextHandle) == 1816);
static_assert(offsetof(HostCallbacks, UnlockTextHandle) == 1824);

}  // namespace NActor

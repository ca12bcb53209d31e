// Plays the host where the real one is not: for the tests, for the fuzzer and for sift.

#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "actor/actor_info.h"
#include "actor/host_interface.h"

namespace NStandIn {

using GetActorInfoFunction = void (*)(void*, NActor::ActorInfo*);

inline constexpr NActor::PropertyKind kPropertyActor = 0;  // a help text of the actor itself
inline constexpr NActor::PropertyKind kPropertyInput = 1;

// The operations of HostCallbacks, in the order of the table.
enum Operation {
    kGetInputValue,
    kSetOutputValue,
    kPropertyHelpIndex,
    kAddProperty,
    kRemoveProperty,
    kGetPropertyCount,
    kAllocateBlock,
    kReleaseBlock,
    kRunTextDialog,
    kReportAssertion,
    kLoadIconRecord,
    kDrawIconRecord,
    kMakeStringValue,
    kReleaseStringValue,
    kChangeProperty,
    kNewTextHandle,
    kDisposeTextHandle,
    kTextHandleSize,
    kLockTextHandle,
    kUnlockTextHandle,
    kOperationCount
};

// A value as the host keeps it, with a text of its own.
struct Value {
    NActor::HostValue mBits;  // of a string only the tag counts
    std::string mText;        // of a string

    std::int64_t Integer() const { return static_cast<std::int64_t>(mBits.mPayload); }
    double Float() const { return std::bit_cast<double>(mBits.mPayload); }
};

struct Property {
    std::string mName;
    std::string mId;  // four characters
    std::uint32_t mFirstFlags = 0;
    std::uint32_t mSecondFlags = 0;
    Value mMinimum;
    Value mMaximum;
    Value mInitial;
    Value mValue;
};

struct Assertion {
    std::string mText;
    std::string mDisplayName;
    std::int32_t mLine;
};

// What a check of the text in the dialog gave.
struct Validation {
    bool mGood;
    std::string mMessage;  // cut to the buffer that the dialog has
    std::int32_t mStart;   // kUnset where the actor left it
    std::int32_t mEnd;
    static constexpr std::int32_t kUnset = -12345;
};

// The text dialog while it is open, in the hands of a script.
class Dialog {
  public:
    Dialog(std::string& text, std::function<Validation(std::int32_t)> validate)
        : mText(text), mValidate(std::move(validate))
    {
    }
    const std::string& Text() const { return mText; }
    void SetText(std::string text) { mText = std::move(text); }
    // errorSize: of the actor's error buffer, in bytes.
    Validation Validate(std::int32_t errorSize = 2049) const { return mValidate(errorSize); }

  private:
    std::string& mText;
    std::function<Validation(std::int32_t)> mValidate;
};

class StandInHost;

// One instance of the actor, and what the host does to it. Belongs to its StandInHost.
class Instance {
  public:
    // Not created yet as far as the actor is concerned: StandInHost::CreateInstance does both.
    explicit Instance(StandInHost& host);
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;
    ~Instance();

    void SetState(std::string_view bytes);
    // With just these arguments, however little they fit each other.
    void SetState(const void* bytes, std::uint32_t size);
    void SetDefaultState();
    std::string State(std::uint32_t capacity = 0xFFFFFFFF);

    void SetEomChar(std::uint8_t eomChar);
    // Makes text, up to its first NUL, the value of the input, in place of the one before, whose
    // memory is gone from then on; then tells the actor.
    void Deliver(std::string_view text);
    // Tells the actor of an input with the value given, which may be null.
    void Notify(std::uint16_t input, const NActor::HostValue* value);

    // Double click; the dialog is run by the host's script. Gives the changed flag, or false if the
    // actor isn't to be asked for it.
    bool DoubleClick(bool asksForFlag = true);

    // Asks for a help text in a buffer of so many bytes, and gives the whole buffer.
    std::string Help(NActor::PropertyKind kind, std::uint16_t number, std::uint32_t size);

    std::array<std::uint16_t, 4> IconSize(void* host);
    void DrawIcon(void* host, std::uint16_t part, NActor::HostWord place, std::uint8_t state);

    // Calls DisposeCallback each time; the actor's record is gone behind the first.
    void Dispose();
    // Disposes of the instance, if it lives, and begins it anew, with the same record of the host's
    // and no outputs but the fixed one.
    void Recreate();

    NActor::ActorInfo& Info() { return mInfo; }
    const std::vector<Property>& Inputs() const { return mInputs; }
    const std::vector<Property>& Outputs() const { return mOutputs; }  // output 1 first

  private:
    friend class StandInHost;
    friend struct HostOperations;

    // Replaces the text that stands on the input.
    void SetInputText(std::string_view text);

    NActor::ActorInfo mInfo;
    std::vector<Property> mInputs;
    std::vector<Property> mOutputs;
    std::unique_ptr<unsigned char[]> mInputString;  // a HostString
    std::unique_ptr<NActor::HostValue> mInputValue;
};

// Provides all twenty operations, and keeps accounts of what the actor does with them: properties,
// blocks, text handles and their locks, string values, reports. It is a hostile host: each callback
// gets a context and a table that are gone when it returns, records come filled with a pattern,
// blocks have exactly their size, and a text moves whenever it is locked.
//
// The operations carry no reference to their host, so there is one at a time, on one thread. The
// host must outlive what it hands out.
//
// mHook, mOutputListener and mDialogScript run inside operations: what one of them throws, the
// operation throws. None may put another in its own place while it runs.
class StandInHost {
  public:
    // Calls GetActorInfo, once.
    explicit StandInHost(GetActorInfoFunction getActorInfo);
    StandInHost(const StandInHost&) = delete;
    StandInHost& operator=(const StandInHost&) = delete;
    ~StandInHost();

    // Makes an instance and calls its CreateCallback. It stays until Close, also when disposed of.
    Instance& CreateInstance();

    // Asked at the start of each operation whether it is to fail; may call back into the actor, or
    // throw, in which case the operation does nothing.
    // An operation that gives an error gives one, one that gives a pointer null, one that gives
    // nothing does nothing; but a count is always told, a report always taken, and what is given
    // back is always taken.
    std::function<bool(Operation)> mHook;
    // Told of each output that was set, once it has its value.
    std::function<void(Instance&, std::uint16_t output)> mOutputListener;
    // The user at the dialog: gives whether the text is accepted. Without one it is cancelled.
    std::function<bool(Dialog&)> mDialogScript;
    // Whether a block that was given back is handed out again, as soon as one of its size is
    // wanted. Otherwise each is a new one, so that the use of an old one shows.
    bool mReusesBlocks = false;
    // A count that GetPropertyCount gives in place of the true one; below 0 counts too.
    std::optional<std::int32_t> mClaimedOutputCount;

    // From here on one line for each operation, its name and what tells it apart.
    void StartLog();
    const std::vector<std::string>& Log() const { return mLog; }

    const std::vector<Assertion>& Assertions() const { return mAssertions; }
    void ClearAssertions() { mAssertions.clear(); }

    // What the actor did wrong so far.
    const std::vector<std::string>& Violations() const { return mViolations; }
    // Disposes of all instances and destroys them, and gives what the actor did wrong, things not
    // given back included. Forgets the hook first.
    std::vector<std::string> Close();

    // The actor's icon, once it has been asked for; null before.
    NActor::IconRecord* Icon() const { return mIcon; }

    // Whether what goes on isn't the actor's work: inside an operation, and outside all callbacks.
    static bool IsInsideOperation();

  private:
    friend class Instance;
    friend struct HostOperations;

    struct TextHandle {
        std::string mBytes;
        std::unique_ptr<unsigned char[]> mLocked;  // the bytes while they are locked
        int mLocks = 0;
    };

    NActor::ActorInfo mActorTemplate;
    std::vector<Property> mInputs;  // as the definition string has them
    std::vector<Property> mOutputs;
    std::vector<std::unique_ptr<Instance>> mInstances;

    struct BlockDeleter {
        void operator()(void* block) const { std::free(block); }
    };
    using SpareBlock = std::unique_ptr<void, BlockDeleter>;

    // All 0, of just this size. Null if there is no memory.
    void* TakeBlock(std::uint32_t size);

    std::map<void*, std::uint32_t> mBlocks;                 // sizes
    std::multimap<std::uint32_t, SpareBlock> mSpareBlocks;  // by size, to be used again
    std::map<NActor::HostTextHandle*, TextHandle> mTextHandles;
    std::map<std::uint64_t, std::string> mStringValues;  // by payload
    NActor::IconRecord* mIcon = nullptr;

    bool mLogging = false;
    std::vector<std::string> mLog;
    std::vector<Assertion> mAssertions;
    std::vector<std::string> mViolations;
};

}  // namespace NStandIn

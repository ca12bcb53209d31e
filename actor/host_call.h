// What the functions of the shell work with while the host is in one of the actor's callbacks.

#pragma once

#include <cstdint>
#include <utility>

#include "actor_info.h"
#include "host_interface.h"

namespace NActor {

// The host during one callback: its operations, and the report of failed checks. A value to pass
// around; valid until the callback returns.
//
// An operation may throw. Those marked noexcept here end the exception themselves, so destructors
// can call them. From all others it unwinds to the nearest RunGuarded.
class Host {
  public:
    explicit Host(HostContext* context) : mContext(context) {}

    HostContext* Context() const { return mContext; }
    // The operations that need nothing but their own arguments. The table may be gone when the
    // callback has returned.
    const HostCallbacks& Operations() const { return *mContext->mCallbacks; }

    // Returns held. If it is false, first reports text, which says what should have held, with the
    // source line of the check. The host may return from the report or throw: the caller goes on.
    bool Check(bool held, const char* text, std::int32_t line) const noexcept
    {
        if (!held) Report(text, line);
        return held;
    }

    // Runs work. Whatever it throws ends here and is reported as "false" with this line: neither
    // the exceptions of the engine nor those of a host need have a base in common.
    template <typename Work>
    void RunGuarded(std::int32_t line, Work&& work) const noexcept
    {
        try {
            std::forward<Work>(work)();
        } catch (...) {
            Report("false", line);
        }
    }

    // A block of size bytes, all 0, for the caller to give to ReleaseBlock. Null if the host has
    // no memory or throws.
    void* AllocateBlock(std::uint32_t size) const noexcept;

    // Give back what the host handed out. What a host keeps by throwing stays the host's.
    void ReleaseBlock(void* block) const noexcept;
    void ReleaseStringValue(HostValue& ioValue) const noexcept;
    void DisposeTextHandle(HostTextHandle* text) const noexcept;
    void UnlockTextHandle(HostTextHandle* text) const noexcept;

  private:
    void Report(const char* text, std::int32_t line) const noexcept;

    HostContext* mContext;
};

// All that the host learns about an output but its number and its id.
struct OutputDefinition {
    const char* mName;  // NUL-terminated
    std::uint32_t mFirstFlags;
    std::uint32_t mSecondFlags;
    HostValue mMinimum;
    HostValue mMaximum;
    HostValue mInitial;  // a string in it goes over to the host with the definition
};

// The host during a callback for one instance.
class HostCall : public Host {
  public:
    HostCall(HostContext* context, ActorInfo* info) : Host(context), mInfo(info) {}

    ActorInfo& Info() const { return *mInfo; }
    // The record of the instance as of now: any operation of the host may end it. Null if there is
    // none.
    ParserData* Record() const { return mInfo->mActorDataPtr; }

    // The value on an input, or null. It is the host's, and valid only until the next operation.
    const HostValue* GetInputValue(std::uint16_t input) const
    {
        return Operations().GetInputValue(mInfo->mHostActor, input);
    }
    // The output takes a copy of the value. The result of the operation doesn't matter to anyone.
    void SetOutputValue(std::uint16_t output, const HostValue& value) const
    {
        Operations().SetOutputValue(mInfo->mHostActor, output, &value);
    }
    // ioCount: stays as it is if the host writes none.
    HostError GetOutputCount(std::int32_t& ioCount) const
    {
        return Operations().GetPropertyCount(mInfo->mHostActor, kPropertyOutput, &ioCount);
    }
    // Adds an output after the last one.
    HostError AddOutput(std::uint32_t id, const OutputDefinition& output) const;
    // Redefines an output, which keeps its id.
    HostError ChangeOutput(std::uint16_t number, const OutputDefinition& output) const;
    HostError RemoveOutput(std::uint16_t number) const
    {
        return Operations().RemoveProperty(mInfo->mHostActor, kPropertyOutput, number);
    }
    // The position of a property's text in the help table.
    std::int32_t PropertyHelpIndex(PropertyKind kind, std::uint16_t number) const
    {
        return Operations().PropertyHelpIndex(mInfo->mHostActor, kind, number);
    }
    // Lets the user edit the text. Returns true if the user accepted.
    bool RunTextDialog(HostTextHandle* text, const char* title, ValidateTextFunction validate,
                       const char* helpFile) const;

  private:
    ActorInfo* mInfo;
};

}  // namespace NActor

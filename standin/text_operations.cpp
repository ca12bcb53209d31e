// The operations on texts: the dialog, text handles and string values.

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "host_operations.h"

namespace NStandIn {

using NActor::HostActor;
using NActor::HostCallbacks;
using NActor::HostContext;
using NActor::HostTextHandle;
using NActor::HostValue;
using NActor::HostZero;

namespace {

// Copies the message from the buffer. The actor fills the rest of the buffer with NUL after a
// message, and leaves it alone if the text is good.
void ReadMessage(std::string_view written, Validation& ioResult)
{
    if (!ioResult.mGood) ioResult.mMessage = written.substr(0, written.find('\0'));
    const char rest = ioResult.mGood ? static_cast<char>(kGarbage) : '\0';
    const std::size_t length = ioResult.mMessage.size();
    Demand(written.find_first_not_of(rest, length) == written.npos &&
               (ioResult.mGood || written.empty() || length < written.size()),
           "ValidatePatternText: a message that isn't filled up with NUL");
}

// Has the actor check the text, in its own turn inside the operation. errorSize: may be negative.
Validation ValidateText(HostTextHandle* text, NActor::ValidateTextFunction validate,
                        HostContext* context, std::int32_t errorSize)
{
    const auto size = static_cast<std::size_t>(std::max(errorSize, 0));
    const std::unique_ptr<char[]> buffer(size != 0 ? new char[size] : nullptr);
    std::fill_n(buffer.get(), size, static_cast<char>(kGarbage));
    Validation result{false, {}, Validation::kUnset, Validation::kUnset};
    {
        const Turn turn(Side::kActor);
        result.mGood =
            validate(text, &result.mStart, &result.mEnd, buffer.get(), errorSize, context) == 1;
    }
    ReadMessage({buffer.get(), size}, result);
    return result;
}

std::uint8_t RunTextDialog(HostActor* actor, HostTextHandle* text, const char* title,
                           NActor::ValidateTextFunction validate, HostContext* context,
                           std::uint8_t flags, const char* helpFile)
{
    LivingInstanceOf(actor, "RunTextDialog");
    const OperationScope scope(kRunTextDialog, title, helpFile);
    Demand(flags == 1, "RunTextDialog: the flags aren't 1");
    auto& handles = Accounts().mTextHandles;
    const auto handle = handles.find(text);
    Demand(handle != handles.end(), "RunTextDialog: not a text handle");
    if (scope.Fails() || handle == handles.end() || !Host().mDialogScript) return 0;
    if (handle->second.mLocks != 0) {
        Blame("RunTextDialog: the text is locked");
        return 0;
    }
    Dialog dialog(handle->second.mBytes, [=](std::int32_t errorSize) {
        return ValidateText(text, validate, context, errorSize);
    });
    return Host().mDialogScript(dialog) ? 0x80 : 0;  // true is any value but 0
}

void MakeStringValue(const char* text, HostValue* ioValue)
{
    const OperationScope scope(kMakeStringValue, text);
    Demand(ioValue->mTag == NActor::kValueString, "MakeStringValue: the tag isn't set");
    if (scope.Fails()) return;
    ioValue->mPayload = Accounts().mStringValues.Make(text);
}

// The payload stays, so that a second use by the actor is seen.
void ReleaseStringValue(HostValue* ioValue)
{
    const OperationScope scope(kReleaseStringValue);
    Demand(ioValue->mTag == NActor::kValueString, "ReleaseStringValue: not a string value");
    Demand(ioValue->mPayload == 0 || Accounts().mStringValues.Release(ioValue->mPayload),
           "ReleaseStringValue: never made, or released before");
}

HostTextHandle* NewTextHandle(std::uint32_t size, HostZero zero)
{
    const OperationScope scope(kNewTextHandle, size);
    Demand(zero == 0, "NewTextHandle: an argument isn't 0");
    if (scope.Fails()) return nullptr;
    static std::uintptr_t sNextHandle = 0x1000;
    auto* const text = reinterpret_cast<HostTextHandle*>(sNextHandle += 16);
    Accounts().mTextHandles[text].mBytes.assign(size, static_cast<char>(kGarbage));
    return text;
}

// Null, after a violation, if there is no such handle.
TextHandle* Find(HostTextHandle* text, const char* operation)
{
    auto& handles = Accounts().mTextHandles;
    const auto found = handles.find(text);
    if (found != handles.end()) return &found->second;
    Blame(std::string(operation) + ": not a text handle");
    return nullptr;
}

void DisposeTextHandle(HostTextHandle* text)
{
    const OperationScope scope(kDisposeTextHandle);
    const TextHandle* const handle = Find(text, "DisposeTextHandle");
    if (handle == nullptr) return;
    Demand(handle->mLocks == 0, "DisposeTextHandle: still locked");
    Accounts().mTextHandles.erase(text);
}

std::uint64_t TextHandleSize(HostTextHandle* text)
{
    const OperationScope scope(kTextHandleSize);
    const TextHandle* const handle = Find(text, "TextHandleSize");
    return scope.Fails() || handle == nullptr ? 0 : handle->mBytes.size();
}

// A lock that fails counts too: the actor unlocks whatever it tried to lock.
unsigned char* LockTextHandle(HostTextHandle* text)
{
    const OperationScope scope(kLockTextHandle);
    TextHandle* const handle = Find(text, "LockTextHandle");
    if (handle == nullptr) return nullptr;
    ++handle->mLocks;
    if (scope.Fails() || handle->mBytes.empty()) return nullptr;  // no byte to point to
    if (handle->mLocked == nullptr) {
        handle->mLocked = std::make_unique<unsigned char[]>(handle->mBytes.size());
        std::copy(handle->mBytes.begin(), handle->mBytes.end(), handle->mLocked.get());
    }
    return handle->mLocked.get();
}

void UnlockTextHandle(HostTextHandle* text)
{
    const OperationScope scope(kUnlockTextHandle);
    TextHandle* const handle = Find(text, "UnlockTextHandle");
    if (handle == nullptr) return;
    Demand(handle->mLocks > 0, "UnlockTextHandle: not locked");
    if (--handle->mLocks > 0 || handle->mLocked == nullptr) return;
    std::copy_n(handle->mLocked.get(), handle->mBytes.size(), handle->mBytes.begin());
    handle->mLocked.reset();
}

}  // namespace

void AddTextOperations(HostCallbacks& ioTable)
{
    ioTable.RunTextDialog = RunTextDialog;
    ioTable.MakeStringValue = MakeStringValue;
    ioTable.ReleaseStringValue = ReleaseStringValue;
    ioTable.NewTextHandle = NewTextHandle;
    ioTable.DisposeTextHandle = DisposeTextHandle;
    ioTable.TextHandleSize = TextHandleSize;
    ioTable.LockTextHandle = LockTextHandle;
    ioTable.UnlockTextHandle = UnlockTextHandle;
}

}  // namespace NStandIn

#include "pattern_dialog.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>

#include "checks.h"
#include "dynamic_outputs.h"
#include "message_processing.h"
#include "parser_data.h"
#include "text_buffer.h"

namespace NActor {

namespace {

constexpr char kDialogTitle[] = "Edit Serial Input Parser";
constexpr char kHelpFile[] = "read-serial-docs.html";
constexpr std::uint8_t kDialogFlags = 1;

// Keeps a text handle locked. A handle that the host can't lock has no bytes.
class TextLock {
  public:
    TextLock(const HostContext* context, HostTextHandle* text)
        : mContext(context), mText(text), mBytes(context->mCallbacks->LockTextHandle(text))
    {
    }
    TextLock(const TextLock&) = delete;
    TextLock& operator=(const TextLock&) = delete;
    ~TextLock() { mContext->mCallbacks->UnlockTextHandle(mText); }

    unsigned char* Bytes() const { return mBytes; }

  private:
    const HostContext* mContext;
    HostTextHandle* mText;
    unsigned char* mBytes;
};

// Both give false if there are bytes to copy and the host can't lock the handle. The handle has
// size bytes: a string that isn't so long any more is another, and isn't copied either.
bool CopyToHandle(const HostContext* context, HostTextHandle* text, std::uint32_t size,
                  const ActorInfo* info)
{
    const TextLock lock(context, text);
    if (!IsAlive(info) || info->mActorDataPtr->mParseStringSize != size) return false;
    if (size == 0) return true;
    if (lock.Bytes() == nullptr) return false;
    std::memcpy(lock.Bytes(), info->mActorDataPtr->mParseString, size);
    return true;
}

bool CopyFromHandle(const HostContext* context, HostTextHandle* text, std::uint32_t size,
                    unsigned char* outBytes)
{
    const TextLock lock(context, text);
    if (size == 0) return true;
    if (lock.Bytes() == nullptr) return false;
    std::memcpy(outBytes, lock.Bytes(), size);
    return true;
}

bool StoreTextOfHandle(const HostContext* context, ActorInfo* info, HostTextHandle* text)
{
    ReleaseParseString(context, *info->mActorDataPtr);
    const auto size = static_cast<std::uint32_t>(context->mCallbacks->TextHandleSize(text));
    HostBlock block = AllocateParseString(context, size);
    if (block != nullptr && !CopyFromHandle(context, text, size, block.get())) {
        Check(context, false, "false", __LINE__);
        block.reset();
    }
    return StoreParseString(info, std::move(block), size);
}

void ParseCurrentText(HostContext* context, ActorInfo* info)
{
    if (!IsAlive(info)) return;
    const HostValue* const value = context->mCallbacks->GetInputValue(info->mHostActor, kTextInput);
    if (value == nullptr || value->String() == nullptr || !IsAlive(info)) return;
    ParseInputText(context, info, value->String()->mText);
}

void CommitText(HostContext* context, ActorInfo* info, HostTextHandle* text)
{
    if (!StoreTextOfHandle(context, info, text)) return;
    RunGuarded(context, __LINE__, [&] {
        CompileParseString(*info->mActorDataPtr);
        RebuildOutputs(context, info);
        ParseCurrentText(context, info);
    });
}

// Gives whether the user accepted. size: of the handle.
bool EditParseString(HostContext* context, ActorInfo* info, HostTextHandle* text,
                     std::uint32_t size)
{
    const bool copied = CopyToHandle(context, text, size, info);
    if (!Check(context, copied, "false", __LINE__) || !IsAlive(info)) return false;
    const std::uint8_t accepted =
        context->mCallbacks->RunTextDialog(info->mHostActor, text, kDialogTitle,
                                           ValidatePatternText, context, kDialogFlags, kHelpFile);
    // The host may have disposed of the instance while the dialog was open.
    if (accepted == 0 || !IsAlive(info)) return false;
    CommitText(context, info, text);
    return true;
}

// Compiles the text of a handle. Throws what the engine throws, and a standard exception where the
// text can't be had.
void CompileTextOfHandle(const HostContext* context, HostTextHandle* text)
{
    const TextLock lock(context, text);
    NPattern::Pattern pattern;
    const std::uint64_t size = context->mCallbacks->TextHandleSize(text);
    if (size != 0 && lock.Bytes() == nullptr) throw std::runtime_error("the handle has no bytes");
    pattern.SetPatternString(std::string(reinterpret_cast<const char*>(lock.Bytes()), size));
}

}  // namespace

std::uint8_t DoubleClickCallback(HostContext* context, ActorInfo* info, std::uint8_t* outChanged,
                                 HostWord /*unread*/) noexcept
{
    bool changed = false;
    if (IsAlive(info)) {
        const std::uint32_t size = info->mActorDataPtr->mParseStringSize;
        HostTextHandle* const text = context->mCallbacks->NewTextHandle(size, 0);
        if (Check(context, text != nullptr, "temp != nil", __LINE__)) {
            changed = EditParseString(context, info, text, size);
            context->mCallbacks->DisposeTextHandle(text);
        }
    }
    if (outChanged != nullptr) *outChanged = changed ? 1 : 0;
    return 1;
}

std::uint8_t ValidatePatternText(HostTextHandle* text, std::int32_t* outStart, std::int32_t* outEnd,
                                 char* outError, std::int32_t errorSize,
                                 HostContext* context) noexcept
{
    const auto bufferSize = static_cast<std::uint32_t>(std::max(errorSize, 0));
    try {
        CompileTextOfHandle(context, text);
        return 1;
    } catch (const NPattern::PatternSyntaxException& error) {
        CopyText(error.mMessage, outError, bufferSize);
        *outStart = error.mPosition;
        *outEnd =
            static_cast<std::int32_t>(static_cast<std::uint32_t>(error.mPosition) +
                                      static_cast<std::uint32_t>(error.mOffendingText.size()));
    } catch (const NPattern::PatternException& error) {
        CopyText(error.mMessage, outError, bufferSize);
    } catch (...) {
        // No memory, or no text: nothing is known of it but that it can't be taken now.
        return 0;
    }
    return 0;
}

}  // namespace NActor

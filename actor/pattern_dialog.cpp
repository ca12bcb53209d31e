#include "pattern_dialog.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "checks.h"
#include "dynamic_outputs.h"
#include "message_processing.h"
#include "parser_data.h"
#include "persistent_state.h"
#include "text_buffer.h"

namespace NActor {

namespace {

constexpr char kDialogTitle[] = "Edit Serial Input Parser";
constexpr char kHelpFile[] = "read-serial-docs.html";
constexpr std::uint8_t kDialogFlags = 1;

// Shown to the user in place of a fault of the text.
constexpr char kNotChecked[] = "The text can't be checked now";

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

// False if there are bytes to copy and either side has none.
bool CopyBytes(unsigned char* to, const unsigned char* from, std::uint32_t size)
{
    if (size == 0) return true;
    if (to == nullptr || from == nullptr) return false;
    std::memcpy(to, from, size);
    return true;
}

// text: a handle of just size bytes. False if they can't be had, or if the host has set a state of
// another size since, which the user must not see cut.
bool CopyToHandle(const HostContext* context, const RecordWatch& watch, HostTextHandle* text,
                  std::uint32_t size)
{
    const TextLock lock(context, text);
    const ParserData* const data = watch.Record();
    if (data == nullptr || data->mParseStringSize != size) return false;
    return CopyBytes(lock.Bytes(), data->mParseString, size);
}

bool CopyFromHandle(const HostContext* context, HostTextHandle* text, unsigned char* outBytes,
                    std::uint32_t size)
{
    const TextLock lock(context, text);
    return CopyBytes(outBytes, lock.Bytes(), size);
}

// Null, after a report, if the text can't be had.
StringBlock BlockWithText(const HostContext* context, HostTextHandle* text, std::uint32_t size)
{
    StringBlock block = AllocateParseString(context, size);
    if (block != nullptr &&
        !Check(context, CopyFromHandle(context, text, block.get(), size), "false", __LINE__)) {
        block.reset();
    }
    return block;
}

void ParseCurrentText(const HostContext* context, const ActorInfo* info)
{
    const RecordWatch watch(info);
    const HostValue* const value = context->mCallbacks->GetInputValue(info->mHostActor, kTextInput);
    if (watch.Record() == nullptr || value == nullptr || value->String() == nullptr) return;
    ParseInputText(context, info, value->String()->Text());
}

void CommitText(const HostContext* context, const ActorInfo* info, HostTextHandle* text)
{
    const RecordWatch watch(info);
    StoreParseString(context, *watch.Record(), nullptr, 0);
    const auto size = static_cast<std::uint32_t>(context->mCallbacks->TextHandleSize(text));
    StringBlock block = BlockWithText(context, text, size);
    if (watch.Record() == nullptr) return;
    RunGuarded(context, __LINE__, [&] {
        if (InstallParseString(context, info, std::move(block), size)) {
            ParseCurrentText(context, info);
        }
    });
}

// text: a handle of just size bytes. Gives whether the user accepted.
bool EditParseString(HostContext* context, const ActorInfo* info, HostTextHandle* text,
                     std::uint32_t size)
{
    const RecordWatch watch(info);
    if (!Check(context, CopyToHandle(context, watch, text, size), "false", __LINE__)) return false;
    if (watch.Record() == nullptr) return false;
    const std::uint8_t accepted =
        context->mCallbacks->RunTextDialog(info->mHostActor, text, kDialogTitle,
                                           ValidatePatternText, context, kDialogFlags, kHelpFile);
    if (accepted == 0 || watch.Record() == nullptr) return false;
    CommitText(context, info, text);
    return true;
}

// Compiles the text of a handle. False if its bytes can't be had. Throws what the engine throws,
// and std::bad_alloc.
bool CompileTextOfHandle(const HostContext* context, HostTextHandle* text)
{
    const TextLock lock(context, text);
    const std::uint64_t size = context->mCallbacks->TextHandleSize(text);
    if (size != 0 && lock.Bytes() == nullptr) return false;
    std::string parseString;
    if (size != 0) parseString.assign(reinterpret_cast<const char*>(lock.Bytes()), size);
    NPattern::Pattern().SetPatternString(parseString);
    return true;
}

}  // namespace

std::uint8_t DoubleClickCallback(HostContext* context, ActorInfo* info, std::uint8_t* outChanged,
                                 HostWord /*unread*/) noexcept
{
    bool changed = false;
    if (const RecordWatch watch(info); watch.Record() != nullptr) {
        const std::uint32_t size = watch.Record()->mParseStringSize;
        HostTextHandle* const text = context->mCallbacks->NewTextHandle(size, 0);
        if (Check(context, text != nullptr, "temp != nil", __LINE__)) {
            changed = watch.Record() != nullptr && EditParseString(context, info, text, size);
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
        if (CompileTextOfHandle(context, text)) return 1;
    } catch (const NPattern::PatternSyntaxException& error) {
        CopyText(error.mMessage, outError, bufferSize);
        *outStart = error.mPosition;
        *outEnd =
            static_cast<std::int32_t>(static_cast<std::uint32_t>(error.mPosition) +
                                      static_cast<std::uint32_t>(error.mOffendingText.size()));
        return 0;
    } catch (const NPattern::PatternException& error) {
        CopyText(error.mMessage, outError, bufferSize);
        return 0;
    } catch (...) {
        // Memory ran out: said below.
    }
    Check(context, false, "false", __LINE__);
    CopyText(kNotChecked, outError, bufferSize);
    return 0;
}

}  // namespace NActor

#include "pattern_dialog.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "Common/Pattern/pattern.h"
#include "message_processing.h"
#include "parse_string.h"
#include "parser_data.h"
#include "persistent_state.h"
#include "record_watch.h"
#include "text_buffer.h"
#include "text_handle.h"

namespace NActor {

namespace {

constexpr char kDialogTitle[] = "Edit Serial Input Parser";
constexpr char kHelpFile[] = "read-serial-docs.html";

// Shown to the user in place of an error in the text.
constexpr char kNotChecked[] = "The text can't be checked now";

// Returns false if there are bytes to copy and either side has none.
bool CopyBytes(unsigned char* to, const unsigned char* from, std::uint32_t size)
{
    if (size == 0) return true;
    if (to == nullptr || from == nullptr) return false;
    std::memcpy(to, from, size);
    return true;
}

// text: a handle of exactly size bytes. Returns false if they can't be locked, or if the host has
// set a state of another size since, which the user must not see cut.
bool CopyToHandle(const Host& host, const RecordWatch& watch, HostTextHandle* text,
                  std::uint32_t size)
{
    const TextLock lock(host, text);
    const ParserData* const record = watch.Record();
    if (record == nullptr || record->mParseStringSize != size) return false;
    return CopyBytes(lock.Bytes(), record->mParseString, size);
}

bool CopyFromHandle(const Host& host, HostTextHandle* text, const ParseString& to)
{
    const TextLock lock(host, text);
    return CopyBytes(to.mBytes.get(), lock.Bytes(), to.mSize);
}

// Without bytes, after a report, if the text can't be read. Throws what the host throws.
ParseString ReadText(const Host& host, HostTextHandle* text)
{
    const auto size = static_cast<std::uint32_t>(host.Operations().TextHandleSize(text));
    ParseString parseString = AllocateParseString(host, size);
    if (parseString.mBytes != nullptr &&
        !host.Check(CopyFromHandle(host, text, parseString), "false", __LINE__)) {
        parseString = NoParseString(host);
    }
    return parseString;
}

void ParseCurrentText(const HostCall& call, const RecordWatch& watch)
{
    const HostValue* const value = call.GetInputValue(kTextInput);
    if (watch.Record() == nullptr || value == nullptr || value->String() == nullptr) return;
    ParseInputText(call, value->String()->Text());
}

void CommitText(const HostCall& call, const RecordWatch& watch, HostTextHandle* text)
{
    DropParseString(call, *watch.Record());
    ParseString parseString = NoParseString(call);
    call.RunGuarded(__LINE__, [&] { parseString = ReadText(call, text); });
    if (watch.Record() == nullptr) return;
    call.RunGuarded(__LINE__, [&] {
        if (InstallParseString(call, watch, std::move(parseString))) ParseCurrentText(call, watch);
    });
}

// Compiles the text of a handle. Returns false if its bytes can't be locked. Throws what the engine
// and the host throw, and std::bad_alloc.
bool CompileTextOfHandle(const Host& host, HostTextHandle* text)
{
    const TextLock lock(host, text);
    const std::uint64_t size = host.Operations().TextHandleSize(text);
    if (size != 0 && lock.Bytes() == nullptr) return false;
    std::string parseString;
    if (size != 0) parseString.assign(reinterpret_cast<const char*>(lock.Bytes()), size);
    NPattern::Pattern().SetPatternString(parseString);
    return true;
}

}  // namespace

bool EditParseString(const HostCall& call)
{
    const RecordWatch watch(call.Record());
    if (watch.Record() == nullptr) return false;
    const std::uint32_t size = watch.Record()->mParseStringSize;
    const TextHandle text = MakeTextHandle(call, size);
    if (!call.Check(text != nullptr, "temp != nil", __LINE__)) return false;
    if (watch.Record() == nullptr) return false;
    if (!call.Check(CopyToHandle(call, watch, text.get(), size), "false", __LINE__)) return false;
    if (watch.Record() == nullptr) return false;
    if (!call.RunTextDialog(text.get(), kDialogTitle, ValidatePatternText, kHelpFile)) return false;
    if (watch.Record() == nullptr) return false;
    CommitText(call, watch, text.get());
    return true;
}

std::uint8_t ValidatePatternText(HostTextHandle* text, std::int32_t* outStart, std::int32_t* outEnd,
                                 char* outError, std::int32_t errorSize,
                                 HostContext* context) noexcept
{
    const Host host(context);
    const auto bufferSize = static_cast<std::uint32_t>(std::max(errorSize, 0));
    try {
        if (CompileTextOfHandle(host, text)) return 1;
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
        // Memory ran out, or the host threw: reported below.
    }
    host.Check(false, "false", __LINE__);
    CopyText(kNotChecked, outError, bufferSize);
    return 0;
}

}  // namespace NActor

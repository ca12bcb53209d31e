#include "stand_in_host.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <utility>

#include "actor/icon.h"

namespace NStandIn {

using NActor::ActorInfo;
using NActor::HostActor;
using NActor::HostCallbacks;
using NActor::HostContext;
using NActor::HostError;
using NActor::HostString;
using NActor::HostTextHandle;
using NActor::HostValue;
using NActor::HostWord;
using NActor::HostZero;
using NActor::IconRecord;
using NActor::kPropertyOutput;
using NActor::PropertyKind;

namespace {

constexpr unsigned char kGarbage = 0xA5;
constexpr HostError kFailed = 0x5A00;  // an actor that looks at the low byte alone sees no error
constexpr HostWord kUnreadArgument = 0xA5A5A5A5A5A5A5A5;

constexpr const char* kOperationNames[kOperationCount] = {
    "GetInputValue",     "SetOutputValue",     "PropertyHelpIndex", "AddProperty",
    "RemoveProperty",    "GetPropertyCount",   "AllocateBlock",     "ReleaseBlock",
    "RunTextDialog",     "ReportAssertion",    "LoadIconRecord",    "DrawIconRecord",
    "MakeStringValue",   "ReleaseStringValue", "ChangeProperty",    "NewTextHandle",
    "DisposeTextHandle", "TextHandleSize",     "LockTextHandle",    "UnlockTextHandle",
};

// The one host, and how deep its operations are nested; 0 only while code of the actor runs.
StandInHost* sHost = nullptr;
int sOperationDepth = 1;

std::string IdText(std::uint32_t id)
{
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) text += static_cast<char>(id >> shift & 0xFF);
    return text;
}

// The columns of a line of the definition string are set apart by any number of tabs.
std::vector<std::string> SplitColumns(const std::string& line)
{
    std::vector<std::string> columns;
    std::istringstream stream(line);
    for (std::string column; std::getline(stream, column, '\t');) {
        while (!column.empty() && column.back() == ' ') column.pop_back();
        if (!column.empty()) columns.push_back(column);
    }
    return columns;
}

// A value as a column of the definition string has it; "*" is no number, and counts as 0.
Value ReadValue(NActor::HostValueTag tag, const std::string& column)
{
    Value value;
    value.mBits.mTag = tag;
    if (tag == NActor::kValueString) {
        value.mText = column;
    } else {
        value.mBits.SetInteger(std::strtoll(column.c_str(), nullptr, 10));
    }
    return value;
}

// "INPROP name", id, type, display, minimum, maximum and initial value; what comes behind these the
// real host alone understands.
void ReadDefinitions(const std::string& definitions, std::vector<Property>& outInputs,
                     std::vector<Property>& outOutputs)
{
    std::istringstream stream(definitions);
    for (std::string line; std::getline(stream, line, '\r');) {
        const std::vector<std::string> columns = SplitColumns(line);
        if (columns.size() < 7) continue;
        const std::size_t blank = columns[0].find(' ');
        if (blank == std::string::npos) continue;
        Property property;
        property.mName = columns[0].substr(blank + 1);
        property.mId = columns[1];
        const auto tag = columns[2] == "string" ? NActor::kValueString : NActor::kValueInteger;
        property.mMinimum = ReadValue(tag, columns[4]);
        property.mMaximum = ReadValue(tag, columns[5]);
        property.mInitial = property.mValue = ReadValue(tag, columns[6]);
        (columns[0].compare(0, blank, "INPROP") == 0 ? outInputs : outOutputs).push_back(property);
    }
}

template <typename T>
void FillWithGarbage(T& record)
{
    std::memset(static_cast<void*>(&record), kGarbage, sizeof record);
}

}  // namespace

// The functions of the table.
struct HostOperations {
    // Stands at the head of each operation: keeps the depth, writes the line of the log and asks
    // the hook whether the operation is to fail. The hook may change everything that the operation
    // works on, so what the actor passed is checked before, and looked up anew behind.
    class Scope {
      public:
        template <typename... Details>
        explicit Scope(Operation operation, const Details&... details)
        {
            if (sHost->mLogging) {
                std::ostringstream line;
                line << kOperationNames[operation];
                ((line << ' ' << details), ...);
                sHost->mLog.push_back(line.str());
            }
            mFails = sHost->mHook && sHost->mHook(operation);
        }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() = default;

        bool Fails() const { return mFails; }

      private:
        // A member, so that the depth is right again also if the hook throws.
        struct Depth {
            Depth() { ++sOperationDepth; }
            Depth(const Depth&) = delete;
            Depth& operator=(const Depth&) = delete;
            ~Depth() { --sOperationDepth; }
        } mDepth;
        bool mFails = false;
    };

    static void Blame(const std::string& fault) { sHost->mViolations.push_back(fault); }

    static void Demand(bool held, const char* fault)
    {
        if (!held) Blame(fault);
    }

    static Instance* InstanceOf(HostActor* actor, const char* operation)
    {
        for (const auto& instance : sHost->mInstances) {
            if (reinterpret_cast<HostActor*>(instance.get()) == actor) return instance.get();
        }
        Blame(std::string(operation) + ": foreign mHostActor");
        return nullptr;
    }

    // Of an instance that has a record.
    static Instance* LivingInstanceOf(HostActor* actor, const char* operation)
    {
        Instance* const instance = InstanceOf(actor, operation);
        if (instance != nullptr && instance->mInfo.mActorDataPtr == nullptr) {
            Blame(std::string(operation) + ": the instance has been disposed of");
        }
        return instance;
    }

    // The output of a number that the actor passed; null where the instance hasn't got it.
    static Property* OutputOf(Instance* instance, std::uint16_t output)
    {
        if (instance == nullptr || output < 1 || output > instance->mOutputs.size()) return nullptr;
        return &instance->mOutputs[output - 1U];
    }

    // That the actor may redefine or remove it.
    static void DemandDynamicOutput(Instance* instance, std::uint16_t output, const char* operation)
    {
        if (output > 1 && OutputOf(instance, output) != nullptr) return;
        Blame(operation + (": unknown output " + std::to_string(output)));
    }

    static void DemandOneKind(const HostValue& minimum, const HostValue& maximum,
                              const HostValue& initial, const char* operation)
    {
        if (minimum.mTag == maximum.mTag && maximum.mTag == initial.mTag) return;
        Blame(std::string(operation) + ": values of several kinds");
    }

    // A copy that doesn't depend on the string the value points at.
    static Value Keep(const HostValue& bits)
    {
        Value value;
        value.mBits = bits;
        if (bits.mTag == NActor::kValueString && bits.mPayload != 0) {
            const auto found = sHost->mStringValues.find(bits.mPayload);
            Demand(found != sHost->mStringValues.end(),
                   "a string value that the host doesn't have");
            if (found != sHost->mStringValues.end()) value.mText = found->second;
        }
        return value;
    }

    // The string of an initial value is the host's from now on, whatever becomes of the definition.
    static Value TakeOver(const HostValue& bits)
    {
        Value value = Keep(bits);
        if (bits.mTag == NActor::kValueString) sHost->mStringValues.erase(bits.mPayload);
        return value;
    }

    // A value in a line of the log.
    struct Shown {
        const HostValue& mBits;

        friend std::ostream& operator<<(std::ostream& stream, const Shown& shown)
        {
            const HostValue& bits = shown.mBits;
            switch (bits.mTag) {
                case NActor::kValueInteger:
                    return stream << static_cast<std::int64_t>(bits.mPayload);
                case NActor::kValueFloat: return stream << std::bit_cast<double>(bits.mPayload);
                case NActor::kValueString: return stream << '"' << Keep(bits).mText << '"';
                default: return stream << "tag " << bits.mTag;
            }
        }
    };

    static const HostValue* GetInputValue(HostActor* actor, std::uint16_t input)
    {
        Instance* const instance = LivingInstanceOf(actor, "GetInputValue");
        const Scope scope(kGetInputValue, input);
        if (scope.Fails() || instance == nullptr) return nullptr;
        if (input < 1 || input > instance->mInputs.size()) {
            Blame("GetInputValue: unknown input " + std::to_string(input));
            return nullptr;
        }
        return input == 2 ? instance->mInputValue.get()
                          : &instance->mInputs[input - 1U].mValue.mBits;
    }

    static HostError SetOutputValue(HostActor* actor, std::uint16_t output, const HostValue* value)
    {
        Instance* const instance = LivingInstanceOf(actor, "SetOutputValue");
        const Property* const asked = OutputOf(instance, output);
        if (asked == nullptr) {
            Blame("SetOutputValue: unknown output " + std::to_string(output));
        } else if (value->mTag != asked->mInitial.mBits.mTag) {
            Blame("SetOutputValue: another kind than output " + std::to_string(output));
        }
        const Scope scope(kSetOutputValue, output, Shown{*value});
        Property* const set = OutputOf(instance, output);
        if (scope.Fails() || set == nullptr) return kFailed;
        set->mValue = Keep(*value);
        if (sHost->mOutputListener) sHost->mOutputListener(*instance, output);
        return NActor::kQuendalNoError;
    }

    static std::int32_t PropertyHelpIndex(HostActor* actor, PropertyKind kind, std::uint16_t number)
    {
        const Scope scope(kPropertyHelpIndex, int{kind}, number);
        if (scope.Fails() || InstanceOf(actor, "PropertyHelpIndex") == nullptr) return -1;
        switch (kind) {
            case kPropertyInput: return number;
            case kPropertyOutput: return 2 + number;
            default: return 0;
        }
    }

    static HostError AddProperty(HostActor* actor, PropertyKind kind, std::uint32_t id, HostZero z1,
                                 const char* name, HostZero z2, std::uint32_t firstFlags,
                                 std::uint32_t secondFlags, std::uint8_t z3,
                                 const HostValue* minimum, const HostValue* maximum,
                                 const HostValue* initial, HostZero z4, HostZero z5, HostZero z6)
    {
        Instance* const instance = LivingInstanceOf(actor, "AddProperty");
        DemandOneKind(*minimum, *maximum, *initial, "AddProperty");
        const Scope scope(kAddProperty, IdText(id), name, Shown{*initial});
        Demand(kind == kPropertyOutput, "AddProperty: not an output");
        Demand((z1 | z2 | z3 | z4 | z5 | z6) == 0, "AddProperty: an argument isn't 0");
        const Value value = TakeOver(*initial);
        if (scope.Fails() || instance == nullptr) return kFailed;
        instance->mOutputs.push_back({name, IdText(id), firstFlags, secondFlags, Keep(*minimum),
                                      Keep(*maximum), value, value});
        return NActor::kQuendalNoError;
    }

    static HostError ChangeProperty(HostActor* actor, HostZero zero, PropertyKind kind,
                                    std::uint16_t number, const char* name,
                                    std::uint32_t firstFlags, std::uint32_t secondFlags,
                                    const HostValue* minimum, const HostValue* maximum,
                                    const HostValue* lowest, const HostValue* highest,
                                    const HostValue* initial)
    {
        Instance* const instance = LivingInstanceOf(actor, "ChangeProperty");
        DemandDynamicOutput(instance, number, "ChangeProperty");
        DemandOneKind(*minimum, *maximum, *initial, "ChangeProperty");
        const Scope scope(kChangeProperty, number, name, Shown{*initial});
        Demand(kind == kPropertyOutput, "ChangeProperty: not an output");
        Demand(zero == 0, "ChangeProperty: an argument isn't 0");
        Demand(minimum == lowest && maximum == highest, "ChangeProperty: other limits");
        const Value value = TakeOver(*initial);
        Property* const output = OutputOf(instance, number);
        if (scope.Fails() || output == nullptr) return kFailed;
        *output = {name,           output->mId,    firstFlags, secondFlags,
                   Keep(*minimum), Keep(*maximum), value,      value};
        return NActor::kQuendalNoError;
    }

    static HostError RemoveProperty(HostActor* actor, PropertyKind kind, std::uint16_t number)
    {
        Instance* const instance = LivingInstanceOf(actor, "RemoveProperty");
        DemandDynamicOutput(instance, number, "RemoveProperty");
        const Scope scope(kRemoveProperty, number);
        Demand(kind == kPropertyOutput, "RemoveProperty: not an output");
        if (scope.Fails() || OutputOf(instance, number) == nullptr) return kFailed;
        instance->mOutputs.erase(instance->mOutputs.begin() + (number - 1));
        return NActor::kQuendalNoError;
    }

    static HostError GetPropertyCount(HostActor* actor, PropertyKind kind, std::int32_t* outCount)
    {
        Instance* const instance = LivingInstanceOf(actor, "GetPropertyCount");
        const Scope scope(kGetPropertyCount);
        Demand(kind == kPropertyOutput, "GetPropertyCount: not of the outputs");
        if (instance == nullptr) return kFailed;
        *outCount = sHost->mClaimedOutputCount.value_or(
            static_cast<std::int32_t>(instance->mOutputs.size()));
        return scope.Fails() ? kFailed : NActor::kQuendalNoError;
    }

    static void* AllocateBlock(std::uint32_t size, std::uint8_t flags)
    {
        const Scope scope(kAllocateBlock, size);
        Demand(flags == 1, "AllocateBlock: the flags aren't 1");
        if (scope.Fails()) return nullptr;
        void* const block = sHost->TakeBlock(size);
        if (block != nullptr) sHost->mBlocks.emplace(block, size);
        return block;
    }

    static void ReleaseBlock(void* block)
    {
        const auto found = sHost->mBlocks.find(block);
        const Scope scope(kReleaseBlock, found != sHost->mBlocks.end() ? found->second : 0);
        const auto stillThere = sHost->mBlocks.find(block);
        if (stillThere == sHost->mBlocks.end()) {
            Blame("ReleaseBlock: not a block");
            return;
        }
        StandInHost::SpareBlock spare(block);
        if (sHost->mReusesBlocks) sHost->mSpareBlocks.emplace(stillThere->second, std::move(spare));
        sHost->mBlocks.erase(stillThere);
    }

    static std::uint8_t RunTextDialog(HostActor* actor, HostTextHandle* text, const char* title,
                                      NActor::ValidateTextFunction validate, HostContext* context,
                                      std::uint8_t flags, const char* helpFile)
    {
        LivingInstanceOf(actor, "RunTextDialog");
        const Scope scope(kRunTextDialog, title, helpFile);
        Demand(flags == 1, "RunTextDialog: the flags aren't 1");
        const auto handle = sHost->mTextHandles.find(text);
        Demand(handle != sHost->mTextHandles.end(), "RunTextDialog: not a text handle");
        if (scope.Fails() || handle == sHost->mTextHandles.end() || !sHost->mDialogScript) return 0;
        if (handle->second.mLocks != 0) {
            Blame("RunTextDialog: the text is locked");
            return 0;
        }
        Dialog dialog(handle->second.mBytes, [=](std::int32_t errorSize) {
            const auto size = static_cast<std::size_t>(std::max(errorSize, 0));
            const auto buffer = std::make_unique<char[]>(size);
            std::fill_n(buffer.get(), size, static_cast<char>(kGarbage));
            Validation result{false, {}, Validation::kUnset, Validation::kUnset};
            // What the actor does in there is its own work again.
            const int depth = std::exchange(sOperationDepth, 0);
            const std::uint8_t good =
                validate(text, &result.mStart, &result.mEnd, buffer.get(), errorSize, context);
            sOperationDepth = depth;
            result.mGood = good == 1;
            // A message comes with NUL up to the end of the buffer; without a fault there is none.
            const std::string_view written(buffer.get(), size);
            if (!result.mGood) result.mMessage = written.substr(0, written.find('\0'));
            const char rest = result.mGood ? static_cast<char>(kGarbage) : '\0';
            Demand(written.find_first_not_of(rest, result.mMessage.size()) == written.npos &&
                       (result.mGood || size == 0 || result.mMessage.size() < size),
                   "ValidatePatternText: a message that isn't filled up with NUL");
            return result;
        });
        return sHost->mDialogScript(dialog) ? 0x80 : 0;
    }

    static void ReportAssertion(const char* text, const char* displayName, std::int32_t line)
    {
        const Scope scope(kReportAssertion, text);
        sHost->mAssertions.push_back({text, displayName, line});
    }

    static void LoadIconRecord(void* host, HostZero zero, IconRecord* outIcon)
    {
        const Scope scope(kLoadIconRecord, host);
        Demand(zero == 0, "LoadIconRecord: an argument isn't 0");
        sHost->mIcon = outIcon;
        if (scope.Fails()) return;
        outIcon->mLoaded = 1;
        outIcon->mFirstExtent = 48;
        outIcon->mSecondExtent = 32;
    }

    static void DrawIconRecord(void* host, std::uint8_t state, HostWord place, IconRecord* icon)
    {
        const Scope scope(kDrawIconRecord, host, int{state}, place);
        Demand(icon == sHost->mIcon, "DrawIconRecord: another icon");
    }

    static void MakeStringValue(const char* text, HostValue* ioValue)
    {
        const Scope scope(kMakeStringValue, text);
        Demand(ioValue->mTag == NActor::kValueString, "MakeStringValue: the tag isn't set");
        if (scope.Fails()) return;
        static std::uint64_t sNextPayload = 0x1000;  // no pointer: the actor has no business there
        ioValue->mPayload = sNextPayload += 16;
        sHost->mStringValues.emplace(ioValue->mPayload, text);
    }

    static void ReleaseStringValue(HostValue* ioValue)
    {
        const Scope scope(kReleaseStringValue);
        Demand(ioValue->mTag == NActor::kValueString, "ReleaseStringValue: not a string value");
        // The payload stays, so that the actor can be seen to use it again.
        Demand(ioValue->mPayload == 0 || sHost->mStringValues.erase(ioValue->mPayload) == 1,
               "ReleaseStringValue: never made, or released before");
    }

    static HostTextHandle* NewTextHandle(std::uint32_t size, HostZero zero)
    {
        const Scope scope(kNewTextHandle, size);
        Demand(zero == 0, "NewTextHandle: an argument isn't 0");
        if (scope.Fails()) return nullptr;
        static std::uintptr_t sNextHandle = 0x1000;
        auto* const text = reinterpret_cast<HostTextHandle*>(sNextHandle += 16);
        sHost->mTextHandles[text].mBytes.assign(size, static_cast<char>(kGarbage));
        return text;
    }

    static StandInHost::TextHandle* Find(HostTextHandle* text, const char* operation)
    {
        const auto found = sHost->mTextHandles.find(text);
        if (found != sHost->mTextHandles.end()) return &found->second;
        Blame(std::string(operation) + ": not a text handle");
        return nullptr;
    }

    static void DisposeTextHandle(HostTextHandle* text)
    {
        const Scope scope(kDisposeTextHandle);
        const StandInHost::TextHandle* const handle = Find(text, "DisposeTextHandle");
        if (handle == nullptr) return;
        Demand(handle->mLocks == 0, "DisposeTextHandle: still locked");
        sHost->mTextHandles.erase(text);
    }

    static std::uint64_t TextHandleSize(HostTextHandle* text)
    {
        const Scope scope(kTextHandleSize);
        const StandInHost::TextHandle* const handle = Find(text, "TextHandleSize");
        return scope.Fails() || handle == nullptr ? 0 : handle->mBytes.size();
    }

    // A lock that fails counts all the same: the actor unlocks whatever it tried to lock.
    static unsigned char* LockTextHandle(HostTextHandle* text)
    {
        const Scope scope(kLockTextHandle);
        StandInHost::TextHandle* const handle = Find(text, "LockTextHandle");
        if (handle == nullptr) return nullptr;
        ++handle->mLocks;
        if (scope.Fails()) return nullptr;
        if (handle->mLocked == nullptr) {
            handle->mLocked = std::make_unique<unsigned char[]>(handle->mBytes.size());
            std::copy(handle->mBytes.begin(), handle->mBytes.end(), handle->mLocked.get());
        }
        return handle->mLocked.get();
    }

    static void UnlockTextHandle(HostTextHandle* text)
    {
        const Scope scope(kUnlockTextHandle);
        StandInHost::TextHandle* const handle = Find(text, "UnlockTextHandle");
        if (handle == nullptr) return;
        Demand(handle->mLocks > 0, "UnlockTextHandle: not locked");
        if (--handle->mLocks > 0 || handle->mLocked == nullptr) return;
        std::copy_n(handle->mLocked.get(), handle->mBytes.size(), handle->mBytes.begin());
        handle->mLocked.reset();
    }

    static HostCallbacks Table()
    {
        HostCallbacks table;
        FillWithGarbage(table);
        table.GetInputValue = GetInputValue;
        table.SetOutputValue = SetOutputValue;
        table.PropertyHelpIndex = PropertyHelpIndex;
        table.AddProperty = AddProperty;
        table.RemoveProperty = RemoveProperty;
        table.GetPropertyCount = GetPropertyCount;
        table.AllocateBlock = AllocateBlock;
        table.ReleaseBlock = ReleaseBlock;
        table.RunTextDialog = RunTextDialog;
        table.ReportAssertion = ReportAssertion;
        table.LoadIconRecord = LoadIconRecord;
        table.DrawIconRecord = DrawIconRecord;
        table.MakeStringValue = MakeStringValue;
        table.ReleaseStringValue = ReleaseStringValue;
        table.ChangeProperty = ChangeProperty;
        table.NewTextHandle = NewTextHandle;
        table.DisposeTextHandle = DisposeTextHandle;
        table.TextHandleSize = TextHandleSize;
        table.LockTextHandle = LockTextHandle;
        table.UnlockTextHandle = UnlockTextHandle;
        return table;
    }

    // The context of one callback: both it and the table are gone when the callback has returned.
    class CallContext {
      public:
        CallContext() : mTable(std::make_unique<HostCallbacks>(Table())), mContext(new HostContext)
        {
            FillWithGarbage(*mContext);
            mContext->mCallbacks = mTable.get();
            mOuterDepth = std::exchange(sOperationDepth, 0);
        }
        CallContext(const CallContext&) = delete;
        CallContext& operator=(const CallContext&) = delete;
        ~CallContext() { sOperationDepth = mOuterDepth; }

        HostContext* Get() const { return mContext.get(); }

      private:
        std::unique_ptr<HostCallbacks> mTable;
        std::unique_ptr<HostContext> mContext;
        int mOuterDepth = 0;
    };
};

using CallContext = HostOperations::CallContext;

Instance::Instance(StandInHost& host)
    : mInfo(host.mActorTemplate),
      mInputs(host.mInputs),
      mOutputs(host.mOutputs),
      mInputValue(std::make_unique<HostValue>())
{
    mInputValue->mTag = NActor::kValueString;  // and no string
    mInfo.mHostActor = reinterpret_cast<HostActor*>(this);
}

Instance::~Instance() = default;

void Instance::SetState(std::string_view bytes)
{
    // A copy of exactly these bytes, gone when the call returns; none at all is a null pointer.
    const auto copy = bytes.empty() ? nullptr : std::make_unique<char[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), copy.get());
    SetState(copy.get(), static_cast<std::uint32_t>(bytes.size()));
}

void Instance::SetState(const void* bytes, std::uint32_t size)
{
    const CallContext context;
    mInfo.SetStateCallback(context.Get(), &mInfo, bytes, size);
}

void Instance::SetDefaultState()
{
    const CallContext context;
    mInfo.DefaultStateCallback(context.Get(), &mInfo);
}

std::string Instance::State(std::uint32_t capacity)
{
    // These two callbacks are promised not to touch their context.
    auto* const nowhere = reinterpret_cast<HostContext*>(std::uintptr_t{1});
    // No more room than the state takes, whatever capacity is told: one byte more is one too many.
    const std::uint32_t size = std::min(mInfo.StateSizeCallback(nowhere, &mInfo), capacity);
    const auto bytes = size != 0 ? std::make_unique<char[]>(size) : nullptr;
    const std::uint32_t copied = mInfo.GetStateCallback(nowhere, &mInfo, capacity, bytes.get());
    HostOperations::Demand(copied == size, "GetStateCallback: another size");
    return {bytes.get(), copied};
}

void Instance::SetEomChar(std::uint8_t eomChar)
{
    HostValue& value = mInputs[0].mValue.mBits;
    value.SetInteger(static_cast<std::int64_t>(kUnreadArgument << 8 | eomChar));
    Notify(1, &value);
}

void Instance::SetInputText(std::string_view text)
{
    text = text.substr(0, text.find('\0'));
    mInputString = std::make_unique<unsigned char[]>(offsetof(HostString, mText) + text.size() + 1);
    std::copy(text.begin(), text.end(), mInputString.get() + offsetof(HostString, mText));
    mInputValue = std::make_unique<HostValue>();
    mInputValue->mTag = NActor::kValueString;
    mInputValue->mPayload = std::bit_cast<std::uint64_t>(mInputString.get());
}

void Instance::Deliver(std::string_view text)
{
    SetInputText(text);
    Notify(2, mInputValue.get());
}

void Instance::Notify(std::uint16_t input, const HostValue* value)
{
    const CallContext context;
    mInfo.InputChangedCallback(context.Get(), &mInfo, input, kUnreadArgument, value);
}

bool Instance::DoubleClick(bool asksForFlag)
{
    std::uint8_t changed = asksForFlag ? kGarbage : 0;
    const CallContext context;
    const std::uint8_t result = mInfo.DoubleClickCallback(
        context.Get(), &mInfo, asksForFlag ? &changed : nullptr, kUnreadArgument);
    HostOperations::Demand(result == 1, "DoubleClickCallback: the result isn't true");
    HostOperations::Demand(changed <= 1, "DoubleClickCallback: no changed flag");
    return changed == 1;
}

std::string Instance::Help(PropertyKind kind, std::uint16_t number, std::uint32_t size)
{
    const auto buffer = size != 0 ? std::make_unique<char[]>(size) : nullptr;
    std::fill_n(buffer.get(), size, static_cast<char>(kGarbage));
    const CallContext context;
    mInfo.PropertyHelpCallback(context.Get(), &mInfo, kind, number, buffer.get(), size);
    return {buffer.get(), size};
}

std::array<std::uint16_t, 4> Instance::IconSize(void* host)
{
    std::array<std::uint16_t, 4> words;
    words.fill(kGarbage);
    const CallContext context;
    const std::uint8_t result =
        mInfo.IconSizeCallback(context.Get(), host, &words[0], &words[1], &words[2], &words[3]);
    HostOperations::Demand(result == 1, "IconSizeCallback: the result isn't true");
    return words;
}

void Instance::DrawIcon(void* host, std::uint16_t part, HostWord place, std::uint8_t state)
{
    const CallContext context;
    mInfo.DrawIconCallback(context.Get(), host, kUnreadArgument, part, kUnreadArgument, place,
                           kUnreadArgument, state);
}

void Instance::Dispose()
{
    const CallContext context;
    mInfo.DisposeCallback(context.Get(), &mInfo);
}

void Instance::Recreate()
{
    if (mInfo.mActorDataPtr == nullptr) return;
    Dispose();
    mOutputs.erase(mOutputs.begin() + 1, mOutputs.end());
    // It may have begun from inside that already.
    if (mInfo.mActorDataPtr != nullptr) return;
    const CallContext context;
    mInfo.CreateCallback(context.Get(), &mInfo);
}

StandInHost::StandInHost(GetActorInfoFunction getActorInfo)
{
    if (sHost != nullptr) std::abort();  // the operations couldn't tell two hosts apart
    sHost = this;
    FillWithGarbage(mActorTemplate);
    getActorInfo(nullptr, &mActorTemplate);
    const CallContext context;
    ReadDefinitions(mActorTemplate.DefinitionStringCallback(context.Get()), mInputs, mOutputs);
}

StandInHost::~StandInHost()
{
    Close();
    for (const auto& [block, size] : mBlocks) std::free(block);
    sHost = nullptr;
}

Instance& StandInHost::CreateInstance()
{
    mInstances.push_back(std::make_unique<Instance>(*this));
    Instance& instance = *mInstances.back();
    const CallContext context;
    instance.mInfo.CreateCallback(context.Get(), &instance.mInfo);
    return instance;
}

void StandInHost::StartLog()
{
    mLogging = true;
    mLog.clear();
}

std::vector<std::string> StandInHost::Close()
{
    mHook = nullptr;
    for (const auto& instance : mInstances) {
        if (instance->mInfo.mActorDataPtr != nullptr) instance->Dispose();
    }
    mInstances.clear();
    const auto demandNone = [this](std::size_t count, const char* what) {
        if (count != 0) mViolations.push_back(std::to_string(count) + what);
    };
    demandNone(mBlocks.size(), " blocks not given back");
    demandNone(mTextHandles.size(), " text handles not given back");
    demandNone(mStringValues.size(), " string values not given back");
    return mViolations;
}

void* StandInHost::TakeBlock(std::uint32_t size)
{
    const auto spare = mSpareBlocks.find(size);
    if (spare == mSpareBlocks.end()) return std::calloc(1, size);
    void* const block = spare->second.release();
    mSpareBlocks.erase(spare);
    return std::memset(block, 0, size);
}

bool StandInHost::IsInsideOperation()
{
    return sOperationDepth > 0;
}

}  // namespace NStandIn

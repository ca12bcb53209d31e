// clang-format off: the verbs are a table
//
// Fuzzes the shell on the stand-in host. An input is a script. Each line is one action of the host:
// the first byte is its verb, the rest is its text.
//
//   c    create an instance
//   0-3  select this instance
//   x    dispose of the instance
//   a    dispose of the instance and create it again in the same record
//   u    from now on, reuse released blocks
//   s    set the text as the state
//   z    set the default state
//   g    get the state into N bytes
//   e    set the end-of-message byte
//   t    deliver the text
//   n    report a change of input N without a value
//   d    open the dialog and accept the text
//   v    open the dialog, validate the text and cancel
//   h    get help texts of N bytes
//   i    get the size of the icon and draw it
//   fON  make the Nth call of operation O from now fail; if O is '*', of any operation
//   mN   report a wrong number of outputs at the next query
//   rO.. execute the rest of the line inside the next call of operation O; if O is '*', inside the
//        next call that sets an output
//
// The letter of an operation is its index in the table, counted from 'a'.
//
// clang-format on

#include <algorithm>
#include <array>
#include <deque>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "actor/icon.h"
#include "fuzzer.h"
#include "standin/stand_in_host.h"

using NStandIn::Dialog;
using NStandIn::Instance;
using NStandIn::kOperationCount;
using NStandIn::Operation;
using NStandIn::StandInHost;

namespace {

constexpr std::size_t kMostInstances = 4;
constexpr int kMostCommands = 100;

constexpr std::int32_t kOddCounts[] = {
    std::numeric_limits<std::int32_t>::min(), -1, 0, 1, 2, 3, 7, 300};

class Session {
  public:
    Session();

    void Run(std::string_view script);
    // Checks that every remaining instance still works, and that everything has been returned.
    void Finish();

  private:
    void Do(std::string_view line);
    void DoFor(Instance& instance, char verb, std::string_view text);
    void Restore(Instance& instance, std::string_view state);
    bool RunDialog(Dialog& dialog);
    bool OnOperation(std::size_t operation);
    void DoInside(std::size_t operation);

    StandInHost mHost{GetActorInfo};
    std::vector<Instance*> mInstances;  // only completely created ones
    std::size_t mCurrent = 0;
    int mCommands = 0;

    // By operation. The last entry stands for any operation, or for an output that is set.
    std::array<int, kOperationCount + 1> mCallsToFailure{};  // 0: none fails
    std::array<std::deque<std::string_view>, kOperationCount + 1> mInside;

    std::int32_t mClaimedCount = 0;
    bool mClaiming = false;   // the next query returns mClaimedCount
    bool mHonest = true;      // the host has done nothing wrong so far
    std::string_view mTyped;  // the text for the next dialog
    bool mAccepting = false;
};

// Returns the number that the first byte of a text stands for.
unsigned NumberIn(std::string_view text)
{
    return text.empty() ? 0 : static_cast<unsigned char>(text.front() - '0');
}

// Returns an index of an operation, or kOperationCount for any operation.
std::size_t OperationIn(std::string_view text)
{
    constexpr std::size_t kAny = kOperationCount;
    if (text.empty() || text.front() == '*') return kAny;
    return (static_cast<unsigned char>(text.front()) - std::size_t{'a'}) % kAny;
}

std::string_view After(std::string_view text)
{
    return text.substr(std::min<std::size_t>(text.size(), 1));
}

Session::Session()
{
    mHost.mHook = [this](Operation operation) { return OnOperation(operation); };
    mHost.mOutputListener = [this](Instance&, std::uint16_t) { DoInside(kOperationCount); };
    mHost.mDialogScript = [this](Dialog& dialog) { return RunDialog(dialog); };
}

void Session::Run(std::string_view script)
{
    while (!script.empty()) {
        const std::size_t end = std::min(script.find('\n'), script.size());
        Do(script.substr(0, end));
        script.remove_prefix(std::min(end + 1, script.size()));
    }
}

void Session::Do(std::string_view line)
{
    if (line.empty() || ++mCommands > kMostCommands) return;
    const char verb = line.front();
    const std::string_view text = line.substr(1);
    switch (verb) {
        case 'c':
            if (mInstances.size() < kMostInstances) mInstances.push_back(&mHost.CreateInstance());
            break;
        case '0':
        case '1':
        case '2':
        case '3': mCurrent = NumberIn(line); break;
        case 'u': mHost.mReusesBlocks = true; break;
        case 'f':
            mHonest = false;
            mCallsToFailure[OperationIn(text)] = static_cast<int>(NumberIn(After(text)));
            break;
        case 'm':
            mHonest = false;
            mClaiming = true;
            mClaimedCount = kOddCounts[NumberIn(text) % std::size(kOddCounts)];
            break;
        case 'r':
            mHonest = false;
            mInside[OperationIn(text)].push_back(After(text));
            break;
        default:
            if (!mInstances.empty()) DoFor(*mInstances[mCurrent % mInstances.size()], verb, text);
            break;
    }
}

void Session::DoFor(Instance& instance, char verb, std::string_view text)
{
    switch (verb) {
        case 's': Restore(instance, text); break;
        case 'z': instance.SetDefaultState(); break;
        case 'g': instance.State(NumberIn(text)); break;
        case 'e':
            instance.SetEomChar(text.empty() ? 0 : static_cast<std::uint8_t>(text.front()));
            break;
        case 't': instance.Deliver(text); break;
        case 'n': instance.Notify(static_cast<std::uint16_t>(NumberIn(text)), nullptr); break;
        case 'd':
        case 'v':
            mTyped = text;
            mAccepting = verb == 'd';
            instance.DoubleClick();
            break;
        case 'h':
            if (instance.Info().mActorDataPtr == nullptr) break;
            for (std::uint16_t number = 0; number < 4; ++number) {
                instance.Help(static_cast<NActor::PropertyKind>(number), number, NumberIn(text));
            }
            break;
        case 'i':
            instance.IconSize(&instance);
            instance.DrawIcon(&instance, static_cast<std::uint16_t>(NumberIn(text)), 7, 1);
            break;
        case 'x': instance.Dispose(); break;
        case 'a': instance.Recreate(); break;
        default: break;
    }
}

void Session::Restore(Instance& instance, std::string_view state)
{
    instance.SetState(state);
    if (mHonest && instance.Info().mActorDataPtr != nullptr) {
        Expect(instance.State() == state, "an instance returns its state unchanged");
    }
}

bool Session::RunDialog(Dialog& dialog)
{
    const bool accepting = mAccepting;
    dialog.SetText(std::string(mTyped));
    for (const std::int32_t errorSize : {2049, 9, 1, 0, -1}) dialog.Validate(errorSize);
    return accepting;
}

bool Session::OnOperation(std::size_t operation)
{
    DoInside(operation);
    if (operation == NStandIn::kGetPropertyCount) {
        mHost.mClaimedOutputCount.reset();
        if (std::exchange(mClaiming, false)) mHost.mClaimedOutputCount = mClaimedCount;
    }
    const auto isDue = [](int& calls) { return calls != 0 && --calls == 0; };
    const bool thisFails = isDue(mCallsToFailure[operation]);
    return isDue(mCallsToFailure[kOperationCount]) || thisFails;
}

void Session::DoInside(std::size_t operation)
{
    if (mInside[operation].empty()) return;
    const std::string_view line = mInside[operation].front();
    mInside[operation].pop_front();
    Do(line);
}

// Returns true if a wrong action of the host explains the violation. If the host reports a wrong
// number of outputs, fails to change them, or changes them while values are set, the actor can't
// know which outputs exist.
bool FollowsFromOddities(const std::string& violation)
{
    return violation.find("unknown output") != std::string::npos ||
           violation.find("another kind than output") != std::string::npos;
}

void Session::Finish()
{
    mCallsToFailure.fill(0);
    for (auto& lines : mInside) lines.clear();
    mClaiming = false;
    for (Instance* const instance : mInstances) {
        if (instance->Info().mActorDataPtr == nullptr) continue;
        instance->SetState("n:i=#");
        instance->SetEomChar(0);
        instance->Deliver("42");
        Expect(instance->Outputs().size() == 2 && instance->Outputs()[1].mValue.Integer() == 42 &&
                   instance->Outputs()[0].mValue.Integer() == 1,
               "an instance works again when the host does");
    }
    if (mHost.Icon() != nullptr)
        *mHost.Icon() = NActor::IconRecord{};  // as in a newly loaded library
    for (const std::string& violation : mHost.Close()) {
        Expect(!mHonest && FollowsFromOddities(violation), violation.c_str());
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Session session;
    session.Run({reinterpret_cast<const char*>(data), size});
    session.Finish();
    return 0;
}

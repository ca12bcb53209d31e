// What the host does to the actor from inside its own operations, at each of their calls.

#include <functional>
#include <set>

#include "actor_support.h"

namespace {

using NStandIn::Instance;
using NStandIn::Operation;
using NStandIn::StandInHost;

// Parsing strings that all match the texts, with outputs that differ in number and types.
constexpr char kFirstState[] = "n:i=# s:s=letters f:f=.#";
constexpr char kLongState[] = "a:i=# (x=0-3, y=4-7) b:s=letters c:f=.#";
constexpr char kShortState[] = "z:s=[0-9]";
constexpr char kDialogText[] = "n:i=# t:s=letters";

constexpr char kFirstText[] = "5 aa 2.5\n";
constexpr char kText[] = "1 ab 2.5\n2 cd 3\n";

struct Action {
    const char* mName;
    std::function<void(Instance&)> mRun;
};

enum { kDeliver, kBadState };  // places in kActions
const Action kActions[] = {
    {"deliver", [](Instance& i) { i.Deliver(kText); }},
    {"set a bad state", [](Instance& i) { i.SetState("a:i=# wrong"); }},
    {"grow", [](Instance& i) { i.SetState(kLongState); }},
    {"shrink", [](Instance& i) { i.SetState(kShortState); }},
    {"set the default state", [](Instance& i) { i.SetDefaultState(); }},
    {"double click", [](Instance& i) { i.DoubleClick(); }},
    {"dispose", [](Instance& i) { i.Dispose(); }},
};
const Action kFailure = {"fail", [](Instance&) {}};

// The outputs as far as the parsing string makes them.
Texts DefinitionsOf(const Instance& instance)
{
    Texts texts;
    for (const auto& output : instance.Outputs()) {
        const auto tag = output.mInitial.mBits.mTag;
        texts.push_back(output.mId + " " + output.mName + " " + std::to_string(tag));
    }
    return texts;
}

// From here on appends what is published to the text that target then points to: "name=value ", and
// '!' for a trigger.
void Record(StandInHost& host, std::string* const& target)
{
    host.mOutputListener = [&target](Instance& instance, std::uint16_t output) {
        const NStandIn::Property& property = instance.Outputs()[output - 1U];
        *target += output == 1 ? "!" : property.mName + "=" + ShownValue(property) + " ";
    };
}

// What each message publishes with each parsing string.
std::set<std::string> PublishWholeMessages()
{
    std::set<std::string> messages;
    for (const char* const state : {kFirstState, kLongState, kShortState, kDialogText}) {
        for (const char* const text : {"5 aa 2.5", "1 ab 2.5", "2 cd 3"}) {
            StandInHost host(GetActorInfo);
            Instance& instance = host.CreateInstance();
            instance.SetState(state);
            std::string published;
            std::string* const target = &published;
            Record(host, target);
            instance.Deliver(text);
            EXPECT_EQ(published.find('!'), published.size() - 1) << state << text;
            messages.insert(published);
        }
    }
    return messages;
}

// Each trigger must follow all values of one message. Values before those are of a message whose
// rest was dropped.
void ExpectWholeMessages(std::string_view published, const std::set<std::string>& wholeMessages)
{
    while (published.find('!') != published.npos) {
        const std::string_view message = published.substr(0, published.find('!') + 1);
        EXPECT_TRUE(std::any_of(wholeMessages.begin(), wholeMessages.end(),
                                [message](const auto& whole) { return message.ends_with(whole); }))
            << message;
        published.remove_prefix(message.size());
    }
}

// Runs the outer action, and the inner one from inside the call of that number, counted from 0.
class Interruption {
  public:
    Interruption(const std::set<std::string>& wholeMessages, const Action& outer,
                 const Action& inner, int call)
        : mWholeMessages(wholeMessages), mOuter(outer), mInner(inner), mCall(call)
    {
        mInstance.SetEomChar('\n');
        mInstance.SetState(kFirstState);
        mInstance.Deliver(kFirstText);
        mHost.mDialogScript = [](NStandIn::Dialog& dialog) {
            dialog.Validate();
            dialog.SetText(kDialogText);
            return true;
        };
        mHost.mHook = [this](Operation operation) { return OnOperation(operation); };
        Record(mHost, mTarget);
    }

    // Returns true if there are so many calls.
    bool Run()
    {
        mOuter.mRun(mInstance);
        mHost.mHook = nullptr;
        mHost.mOutputListener = nullptr;
        if (Fails()) {
            ExpectReport();
        } else {
            ExpectValues();
        }
        if (mInstance.Info().mActorDataPtr != nullptr) ExpectToWork();
        for (const std::string& violation : mHost.Close()) {
            EXPECT_TRUE(DeliversIntoRebuild() && violation.find("SetOutputValue: ") == 0)
                << violation;
        }
        return mReached;
    }

  private:
    bool Fails() const { return &mInner == &kFailure; }

    bool OnOperation(Operation operation)
    {
        if (mCall-- != 0) return false;
        mReached = true;
        mInterrupted = operation;
        mTarget = &mInside;
        mInner.mRun(mInstance);
        mTarget = &mOutside;
        return Fails();
    }

    // Checks only the first report, since a failure can have further consequences.
    void ExpectReport() const
    {
        const auto& reports = mHost.Assertions();
        std::string expected = &mOuter == &kActions[kBadState] ? "false" : "";
        if (mReached && kReportOfFailure.contains(mInterrupted)) {
            expected = kReportOfFailure.at(mInterrupted);
        }
        EXPECT_EQ(reports.empty() ? "" : reports.front().mText, expected);
    }

    // A text delivered during a rebuild finds some outputs of the old string and some of the new.
    bool DeliversIntoRebuild() const
    {
        return &mInner == &kActions[kDeliver] && &mOuter != &kActions[kDeliver];
    }

    void ExpectValues() const
    {
        ExpectWholeMessages(mOutside, mWholeMessages);
        if (!DeliversIntoRebuild()) ExpectWholeMessages(mInside, mWholeMessages);
        // A delivery inside another one disturbs nothing.
        if (&mOuter != &kActions[kDeliver] || &mInner != &mOuter) return;
        EXPECT_EQ(mOutside, "n=1 s=ab f=2.500000 !n=2 s=cd f=3.000000 !");
        EXPECT_EQ(mInside, mReached ? mOutside : "");
    }

    void ExpectToWork()
    {
        mHost.ClearAssertions();
        Instance& fresh = mHost.CreateInstance();
        fresh.SetState(mInstance.State());
        // The outputs match the string, unless it is bad or the host failed to make them.
        if (!Fails() && mHost.Assertions().empty()) {
            EXPECT_EQ(DefinitionsOf(mInstance), DefinitionsOf(fresh));
        }
        mInstance.SetState("k:i=#");
        mInstance.Deliver("3\n");
        EXPECT_EQ(mInstance.Outputs().size(), 2U);
        EXPECT_EQ(mInstance.Outputs().back().mName, "k");
        EXPECT_EQ(ShownValue(mInstance.Outputs().back()), "3");
    }

    const std::set<std::string>& mWholeMessages;
    const Action& mOuter;
    const Action& mInner;
    int mCall;  // calls until then
    StandInHost mHost{GetActorInfo};
    Instance& mInstance = mHost.CreateInstance();
    bool mReached = false;
    Operation mInterrupted{};
    std::string mOutside;
    std::string mInside;
    std::string* mTarget = &mOutside;
};

TEST(Reentry, NothingBreaksAtAnyCall)
{
    const std::set<std::string> wholeMessages = PublishWholeMessages();
    const auto interrupt = [&](const Action& outer, const Action& inner, int call) {
        SCOPED_TRACE(outer.mName + " / "s + inner.mName + " at call " + std::to_string(call));
        return Interruption(wholeMessages, outer, inner, call).Run();
    };
    for (const Action& outer : kActions) {
        for (int call = 0; interrupt(outer, kFailure, call); ++call) {
            for (const Action& inner : kActions) interrupt(outer, inner, call);
        }
    }
}

// Actions from inside the first call of an operation that end the work outside.
TEST(Reentry, EndsWhatItOvertakes)
{
    using NStandIn::kAddProperty;
    using NStandIn::kNewTextHandle;
    using NStandIn::kRemoveProperty;
    using NStandIn::kSetOutputValue;
    const auto deliver = [](Instance& i) { i.Deliver("1 2 3"); };
    const auto setSame = [](Instance& i) { i.SetState("a:i=# b:i=# c:i=#"); };
    const auto beginAnew = [](Instance& i) {
        i.Recreate();
        i.SetState("s:s=letters");
    };
    struct Row {
        std::function<void(Instance&)> mOuter;
        Operation mOperation;
        std::function<void(Instance&)> mInner;
        const char* mCounted;
        std::ptrdiff_t mCalls;  // of the operation counted
        Texts mReports;
    };
    const Row rows[] = {
        // The value that is being set is the last.
        {deliver, kSetOutputValue, setSame, "SetOutputValue", 1, {}},
        {deliver, kSetOutputValue, beginAnew, "SetOutputValue", 1, {}},
        {[](Instance& i) { i.SetDefaultState(); },
         kRemoveProperty,
         setSame,
         "RemoveProperty",
         1,
         {}},
        {[](Instance& i) { i.SetState("a:i=# b:i=# c:i=# d:i=# e:i=#"); },
         kAddProperty,
         beginAnew,
         "AddProperty",
         2,
         {}},
        // The text no longer has the size of the handle.
        {[](Instance& i) { i.DoubleClick(); },
         kNewTextHandle,
         [](Instance& i) { i.SetState("a:i=# b:i=# c:i=# d:i=#"); },
         "RunTextDialog",
         0,
         {"false"}},
    };
    for (const Row& row : rows) {
        NStandIn::StandInHost host(GetActorInfo);
        host.mReusesBlocks = true;
        Instance& instance = host.CreateInstance();
        setSame(instance);
        bool inside = false;
        host.mHook = [&](Operation operation) {
            if (operation == row.mOperation && !std::exchange(inside, true)) row.mInner(instance);
            return false;
        };
        host.StartLog();
        row.mOuter(instance);
        EXPECT_EQ(CallsOf(row.mCounted, host.Log()), row.mCalls) << &row - rows;
        Texts reports;
        for (const auto& assertion : host.Assertions()) reports.push_back(assertion.mText);
        EXPECT_EQ(reports, row.mReports) << &row - rows;
        host.Close();
    }
}

class DeliveryInside : public ActorTest {};

// Outputs wired back to the input: each message still publishes its own values, then its trigger.
TEST_F(DeliveryInside, DisturbsNothingOutside)
{
    mInstance.SetState("n:i=# s:s=letters");
    bool inside = false;
    Texts seen;
    mHost.mOutputListener = [&](Instance& instance, std::uint16_t output) {
        seen.push_back(output == 1 ? "trigger" : OutputsOf(instance).at(output - 2U));
        if (!std::exchange(inside, true)) instance.Deliver("7 in");
    };
    mInstance.Deliver("1 out");
    EXPECT_EQ(seen,
              (Texts{"ot01 n 1", "ot01 n 7", "ot02 s in", "trigger", "ot02 s out", "trigger"}));
}

}  // namespace

// What the host does to the actor from inside its own operations, at each of their calls.

#include <functional>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

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

// What each message publishes with each parsing string: the values as "name=value ", and '!' for
// the trigger.
constexpr const char* kWholeMessages[] = {
    "n=5 s=aa f=2.500000 !",
    "n=1 s=ab f=2.500000 !",
    "n=2 s=cd f=3.000000 !",
    "a=5 x=0 y=2 b=aa c=2.500000 !",
    "a=1 x=0 y=2 b=ab c=2.500000 !",
    "a=2 x=0 y=2 b=cd c=3.000000 !",
    "z=5 !",
    "z=1 !",
    "z=2 !",
    "n=5 t=aa !",
    "n=1 t=ab !",
    "n=2 t=cd !",
};

struct Action {
    const char* mName;
    std::function<void(Instance&)> mRun;
};

const Action kActions[] = {
    {"deliver", [](Instance& i) { i.Deliver(kText); }},
    {"set a bad state", [](Instance& i) { i.SetState("a:i=# wrong"); }},
    {"grow", [](Instance& i) { i.SetState(kLongState); }},
    {"shrink", [](Instance& i) { i.SetState(kShortState); }},
    {"set the default state", [](Instance& i) { i.SetDefaultState(); }},
    {"double click", [](Instance& i) { i.DoubleClick(); }},
    {"dispose", [](Instance& i) { i.Dispose(); }},
};

bool Delivers(const Action& action)
{
    return &action == &kActions[0];
}

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

// Each trigger must follow all values of one message. Values before those are of a message whose
// rest was dropped.
void ExpectWholeMessages(std::string_view published)
{
    while (published.find('!') != published.npos) {
        const std::string_view message = published.substr(0, published.find('!') + 1);
        EXPECT_TRUE(std::any_of(std::begin(kWholeMessages), std::end(kWholeMessages),
                                [message](const char* whole) { return message.ends_with(whole); }))
            << message;
        published.remove_prefix(message.size());
    }
}

// Runs one action, and another from inside one of its calls.
class Interruption {
  public:
    // call: the number of the call, counted from 0.
    Interruption(const Action& outer, const Action& inner, int call)
        : mOuter(outer), mInner(inner), mCall(call)
    {
        mInstance.SetEomChar('\n');
        mInstance.SetState(kFirstState);
        mInstance.Deliver(kFirstText);
        mHost.mDialogScript = [](NStandIn::Dialog& dialog) {
            dialog.Validate();
            dialog.SetText(kDialogText);
            return true;
        };
        mHost.mHook = [this](Operation) {
            if (mCall-- == 0) RunInner();
            return false;
        };
        mHost.mOutputListener = [this](const Instance& instance, std::uint16_t output) {
            const NStandIn::Property& property = instance.Outputs()[output - 1U];
            *mTarget += output == 1 ? "!" : property.mName + "=" + ShownValue(property) + " ";
        };
    }

    // Returns true if there are so many calls.
    bool Run()
    {
        mOuter.mRun(mInstance);
        mHost.mHook = nullptr;
        mHost.mOutputListener = nullptr;
        ExpectValues();
        if (mInstance.Info().mActorDataPtr != nullptr) ExpectToWork();
        for (const std::string& violation : mHost.Close()) {
            EXPECT_TRUE(DeliversIntoRebuild() && violation.find("SetOutputValue: ") == 0)
                << violation;
        }
        return mReached;
    }

  private:
    void RunInner()
    {
        mReached = true;
        mTarget = &mInside;
        mInner.mRun(mInstance);
        mTarget = &mOutside;
    }

    // A text delivered during a rebuild finds some outputs of the old string and some of the new.
    bool DeliversIntoRebuild() const { return Delivers(mInner) && !Delivers(mOuter); }

    void ExpectValues() const
    {
        ExpectWholeMessages(mOutside);
        if (!DeliversIntoRebuild()) ExpectWholeMessages(mInside);
        // A delivery inside another one disturbs nothing.
        if (!Delivers(mOuter) || !Delivers(mInner)) return;
        EXPECT_EQ(mOutside, "n=1 s=ab f=2.500000 !n=2 s=cd f=3.000000 !");
        EXPECT_EQ(mInside, mReached ? mOutside : "");
    }

    void ExpectToWork()
    {
        mHost.ClearAssertions();
        Instance& fresh = mHost.CreateInstance();
        fresh.SetState(mInstance.State());
        // The outputs match the string unless it is bad.
        if (mHost.Assertions().empty()) {
            EXPECT_EQ(DefinitionsOf(mInstance), DefinitionsOf(fresh));
        }
        mInstance.SetState("k:i=#");
        mInstance.Deliver("3\n");
        EXPECT_EQ(OutputsOf(mInstance), Texts{"ot01 k 3"});
    }

    const Action& mOuter;
    const Action& mInner;
    int mCall;  // calls until then
    StandInHost mHost{GetActorInfo};
    Instance& mInstance = mHost.CreateInstance();
    bool mReached = false;
    std::string mOutside;
    std::string mInside;
    std::string* mTarget = &mOutside;
};

TEST(Reentry, NothingBreaksAtAnyCall)
{
    for (const Action& outer : kActions) {
        for (const Action& inner : kActions) {
            bool reached = true;
            for (int call = 0; reached; ++call) {
                SCOPED_TRACE(outer.mName + " / "s + inner.mName + " " + std::to_string(call));
                reached = Interruption(outer, inner, call).Run();
            }
        }
    }
}

class Overtaking : public ActorTest {};

// Actions from inside the first call of an operation, and what they leave of the work outside.
TEST_F(Overtaking, EndsTheWorkOutside)
{
    using Act = std::function<void(Instance&)>;
    const auto set = [](const char* state) -> Act {
        return [state](Instance& i) { i.SetState(state); };
    };
    const Act setSame = set("a:i=# b:s=[0-9] c:i=#");
    const Act setMore = set("a:i=# b:i=# c:i=# d:i=# e:s=[0-9]");
    const Act deliver = [](Instance& i) { i.Deliver("1 2 3"); };
    const Act doubleClick = [](Instance& i) { EXPECT_FALSE(i.DoubleClick()); };
    const Act dispose = [](Instance& i) { i.Dispose(); };
    const Act beginAnew = [](Instance& i) {
        i.Recreate();
        i.SetState("s:s=letters");
    };
    const Act endAndThrow = [](Instance& i) {
        i.Dispose();
        throw 1;
    };
    std::optional<Operation> fatal;  // whose next call ends the instance
    const Act setAndEndLater = [&fatal](Instance& i) {
        i.SetState("'x'");
        fatal = NStandIn::kReleaseBlock;
    };
    const Act loseRecord = [](Instance& i) { i.Info().mActorDataPtr = nullptr; };
    struct Row {
        Act mOuter;
        Operation mInterrupted;
        Act mInner;
        const char* mCounted;  // the operation with so many calls
        std::ptrdiff_t mCalls;
        Texts mReports;
    };
    const Texts gone = {"ioActorInfo->mActorDataPtr != nil"};
    const Row rows[] = {
        // The value that is being set is the last.
        {deliver, NStandIn::kSetOutputValue, setSame, "SetOutputValue", 1, {}},
        {deliver, NStandIn::kSetOutputValue, beginAnew, "SetOutputValue", 1, {}},
        {deliver, NStandIn::kSetOutputValue, dispose, "MakeStringValue", 0, {}},
        {set(""), NStandIn::kRemoveProperty, setSame, "RemoveProperty", 1, {}},
        {setMore, NStandIn::kAddProperty, beginAnew, "AddProperty", 2, {}},
        {setMore, NStandIn::kAddProperty, dispose, "MakeStringValue", 0, {}},
        {setMore, NStandIn::kAddProperty, endAndThrow, "AddProperty", 1, {"false"}},
        {setMore, NStandIn::kAllocateBlock, setAndEndLater, "ChangeProperty", 0, {}},
        // The text no longer has the size of the handle.
        {doubleClick, NStandIn::kNewTextHandle, setMore, "RunTextDialog", 0, {"false"}},
        {doubleClick, NStandIn::kNewTextHandle, dispose, "RunTextDialog", 0, {}},
        {doubleClick, NStandIn::kUnlockTextHandle, dispose, "RunTextDialog", 0, {}},
        {doubleClick, NStandIn::kRunTextDialog, dispose, "TextHandleSize", 0, {}},
        // Each string and each record is released once.
        {dispose, NStandIn::kReleaseBlock, setSame, "ReleaseBlock", 3, {}},
        {dispose, NStandIn::kReleaseBlock, dispose, "ReleaseBlock", 2, gone},
        {dispose, NStandIn::kReleaseBlock, beginAnew, "ReleaseBlock", 2, gone},
        {dispose, NStandIn::kReleaseBlock, loseRecord, "ReleaseBlock", 2, gone},
    };
    Accept("b:i=#");
    for (const bool reuses : {false, true}) {
        mHost.mReusesBlocks = reuses;
        for (const Row& row : rows) {
            SCOPED_TRACE(&row - rows);
            Instance& instance = mHost.CreateInstance();
            setSame(instance);
            bool inside = false;
            mHost.mHook = [&](Operation operation) {
                if (operation == fatal) {
                    fatal.reset();
                    instance.Dispose();
                } else if (operation == row.mInterrupted && !std::exchange(inside, true)) {
                    row.mInner(instance);
                }
                return false;
            };
            const Texts log = LogOf([&] { row.mOuter(instance); });
            mHost.mHook = nullptr;
            EXPECT_EQ(CallsOf(row.mCounted, log), row.mCalls);
            EXPECT_EQ(Reports(), row.mReports);
        }
    }
}

}  // namespace

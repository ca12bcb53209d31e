// What the host does to the actor from inside its own operations, at each of their calls.

#include <functional>
#include <map>

#include "actor_support.h"

namespace {

using NStandIn::Instance;
using NStandIn::Operation;

struct Action {
    const char* mName;
    std::function<void(Instance&)> mRun;
};

const Action kFailure = {"fail", [](Instance&) {}};
const Action kActions[] = {
    {"deliver", [](Instance& i) { i.Deliver("1 ab 2.5\n2 cd 3\n"); }},
    {"grow", [](Instance& i) { i.SetState("a:s=letters b:i=# c:f=# d:s='x' e:i=# f:i=#"); }},
    {"shrink", [](Instance& i) { i.SetState("z:s='q'"); }},
    {"set a bad state", [](Instance& i) { i.SetState("a:i=# wrong"); }},
    {"set the default state", [](Instance& i) { i.SetDefaultState(); }},
    {"double click", [](Instance& i) { i.DoubleClick(); }},
    {"dispose", [](Instance& i) { i.Dispose(); }},
};

// What is reported first when an operation fails.
const std::map<Operation, std::string> kReports = {
    {NStandIn::kAllocateBlock, "info->mParseString != nil"},
    {NStandIn::kGetPropertyCount,
     "err == kQuendalNoError && propCount >= kFixedOutputPropertyCount"},
    {NStandIn::kAddProperty, "err == noErr"},
    {NStandIn::kChangeProperty, "err == noErr"},
    {NStandIn::kRemoveProperty, "err == noErr"},
    {NStandIn::kNewTextHandle, "temp != nil"},
    {NStandIn::kLockTextHandle, "false"},
};

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

// Runs the outer action, and the inner one from inside the call of that number. Gives whether there
// are so many calls.
bool Interrupt(const Action& outer, const Action& inner, int call)
{
    SCOPED_TRACE(outer.mName + " / "s + inner.mName + " at call " + std::to_string(call));
    NStandIn::StandInHost host(GetActorInfo);
    Instance& instance = host.CreateInstance();
    instance.SetEomChar('\n');
    instance.SetState("n:i=# s:s=letters f:f=.#");
    instance.Deliver("5 aa 2.5\n");
    host.mDialogScript = [](NStandIn::Dialog& dialog) {
        dialog.Validate();
        dialog.SetText("n:i=# t:s=letters");
        return true;
    };
    const bool fails = &inner == &kFailure;
    int calls = 0;
    Operation interrupted{};
    host.mHook = [&](Operation operation) {
        if (calls++ != call) return false;
        interrupted = operation;
        inner.mRun(instance);
        return fails;
    };
    outer.mRun(instance);
    host.mHook = nullptr;
    if (const auto report = kReports.find(interrupted); fails && report != kReports.end()) {
        EXPECT_EQ(host.Assertions().at(0).mText, report->second);
    }
    if (instance.Info().mActorDataPtr != nullptr) {
        host.ClearAssertions();
        Instance& fresh = host.CreateInstance();
        fresh.SetState(instance.State());
        // The outputs are those of the string, but for a bad one or a host that didn't make them.
        if (!fails && host.Assertions().empty()) {
            EXPECT_EQ(DefinitionsOf(instance), DefinitionsOf(fresh));
        }
        instance.SetState("k:i=#");
        instance.Deliver("3\n");
        EXPECT_EQ(OutputsOf(instance).size(), 1U);
        EXPECT_EQ(instance.Outputs().back().mValue.Integer(), 3);
    }
    EXPECT_EQ(host.Close(), Texts());
    return calls > call;
}

TEST(Reentry, NothingBreaksAtAnyCall)
{
    for (const Action& outer : kActions) {
        for (int call = 0; Interrupt(outer, kFailure, call); ++call) {
            for (const Action& inner : kActions) Interrupt(outer, inner, call);
        }
    }
}

// What the host does from inside the first call of an operation, where that ends the work outside.
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
        // The value that is on its way goes out, and no more.
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
        // The handle has the size of another text.
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

// Outputs wired back to the input: each message still gives its own values, and then its trigger.
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

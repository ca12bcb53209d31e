// Memory that runs out, and operations that fail or throw, at every single place: the callback
// returns normally, nothing is lost, and the next work succeeds.

#include <map>
#include <string>
#include <utility>

#include "actor/icon.h"
#include "actor_support.h"
#include "allocations.h"

using namespace NAllocations;
using NStandIn::Instance;
using NStandIn::Operation;
using NStandIn::StandInHost;

namespace {

constexpr char kOldState[] = "a:i=# b:i=# c:i=# d:i=# e:i=# f:i=# g:i=# h:i=#";
constexpr char kLongState[] = "a:i=# b:i=# c:i=# d:i=# e:i=# f:i=# g:i=# h:i=# i:s=[a-z]";
constexpr char kState[] =
    "'T=' t:float=.# name_beyond_any_small_buffer:s=[a-z] n:i=2x (a=0-3, 4-7) {20-7F} eol";
constexpr char kText[] = "T=2.5 abcdefghijklmnopqrstuvwxyz ff0 some\nrest";
const std::string kLongRest(100000, 'x');  // more than an instance keeps memory for

// A piece of the host's work.
struct Work {
    const char* mName;
    const char* mState;       // of the instance before
    bool mKeepsState;         // whatever happens
    int mAllocations;         // the fewest places at which memory can run out
    int mOperations;          // the number of operations called
    const char* mReport;      // made in any case, or empty
    const char* mBlockFails;  // the report if AllocateBlock fails
    void (*mDo)(Instance& instance);
    // Done once more when the first output has its value, or null.
    void (*mDoInside)(Instance& instance) = nullptr;
};

void Deliver(Instance& instance)
{
    instance.Deliver(kText);
}

const Work kWork[] = {
    {"restore", kOldState, false, 20, 12, "", kNoString, [](Instance& i) { i.SetState(kState); }},
    {"growth", kOldState, false, 20, 13, "", kNoString,
     [](Instance& i) { i.SetState(kLongState); }},
    {"bad restore", kOldState, false, 2, 3, "false", kNoString,
     [](Instance& i) { i.SetState("n:i=# no"); }},
    {"delivery", kState, true, 4, 9, "", "", Deliver},
    {"long delivery", kState, true, 4, 9, "", "",
     [](Instance& i) { i.Deliver(kText + kLongRest); }},
    {"second delivery", kState, true, 4, 18, "", "", [](Instance& i) { Deliver(i), Deliver(i); }},
    {"delivery inside", kState, true, 8, 18, "", "", Deliver, Deliver},
    {"restore inside", kState, false, 24, 11, "", kNoString, Deliver,
     [](Instance& i) { i.SetState(kState); }},
    {"end inside", kState, true, 4, 4, "", "", Deliver, [](Instance& i) { i.Dispose(); }},
    {"commit", kOldState, false, 40, 33, "", kNoString, [](Instance& i) { i.DoubleClick(); }},
    {"help and icon", kOldState, false, 0, 3, "", "",
     [](Instance& i) {
         i.Help(NStandIn::kPropertyInput, 1, 5);
         i.IconSize(nullptr);
         i.DrawIcon(nullptr, 1, 0, 0);
     }},
    {"dispose", kOldState, false, 0, 2, "", "", [](Instance& i) { i.Dispose(); }},
    {"recreate", kOldState, false, 0, 3, "", "info != nil", [](Instance& i) { i.Recreate(); }},
};

// Reported first when an operation fails in an instance. A failure of any other isn't reported.
const std::map<Operation, std::string> kReportOfFailure = {
    {NStandIn::kGetPropertyCount, kNoCount},     {NStandIn::kAddProperty, "err == noErr"},
    {NStandIn::kChangeProperty, "err == noErr"}, {NStandIn::kRemoveProperty, "err == noErr"},
    {NStandIn::kNewTextHandle, "temp != nil"},   {NStandIn::kLockTextHandle, "false"},
};

void ExpectToWork(Instance& instance, bool restore)
{
    instance.Deliver("");
    instance.Deliver(kText);  // publishes nothing on outputs that are still another string's
    if (restore) instance.SetState(kState);
    instance.Deliver(kText);
    ASSERT_EQ(instance.Outputs().size(), 6U);
    EXPECT_EQ(instance.Outputs()[1].mValue.Float(), 2.5);
    EXPECT_EQ(instance.Outputs()[2].mValue.mText, "abcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(instance.Outputs()[0].mValue.Integer(), 1);
}

// kThrow: an operation throws. kThrowFromThen: so do all after it.
enum Fault { kOfMemory, kOfOperation, kThrow, kThrowFromThen };

struct Thrown {};  // of no standard class

// Makes the faults of a host, and checks what follows. What the host doesn't take back because it
// throws stays in its accounts.
class FaultyHost {
  public:
    FaultyHost(StandInHost& host, Fault fault, int n) : mHost(host), mFault(fault), mN(n)
    {
        host.StartLog();
        host.mHook = [this](Operation operation) { return OnOperation(operation); };
        sAllocations = 0;
        sFailing = fault == kOfMemory ? n : 0;
    }

    // Ends the faults. Returns true if the work had so many places.
    bool Mend()
    {
        mReached = (mFault == kOfMemory ? sAllocations : mOperations) >= mN;
        sFailing = 0;
        mHost.mHook = nullptr;
        return mReached;
    }

    // The first report of the work.
    void ExpectReport(const Work& work) const
    {
        if (mFault == kOfMemory || mFault == kThrowFromThen) return;
        std::string expected = work.mReport;
        if (mReached && mFault == kThrow) {
            expected = mFirst == NStandIn::kReportAssertion ? "" : "false";
        } else if (mReached && mFirst == NStandIn::kAllocateBlock) {
            expected = work.mBlockFails;
        } else if (mReached && kReportOfFailure.contains(mFirst)) {
            expected = kReportOfFailure.at(mFirst);
        }
        const auto& reports = mHost.Assertions();
        EXPECT_EQ(reports.empty() ? "" : reports.front().mText, expected);
    }

    void ExpectAccounts()
    {
        Texts kept;
        for (const auto& [operation, what] :
             {std::pair(NStandIn::kReleaseBlock, " blocks not given back"),
              {NStandIn::kDisposeTextHandle, " text handles not given back"},
              {NStandIn::kReleaseStringValue, " string values not given back"}}) {
            const int count = mThrown[operation];
            if (count != 0) kept.push_back(std::to_string(count) + what);
        }
        Texts violations = mHost.Close();
        std::erase_if(violations, [this](const std::string& violation) {
            // A value for an output that the host failed to add or to redefine; a lock that the
            // host failed to end.
            return (mFault == kOfOperation && violation.find("SetOutputValue: ") == 0) ||
                   (mThrown[NStandIn::kUnlockTextHandle] != 0 &&
                    (violation == "RunTextDialog: the text is locked" ||
                     violation == "DisposeTextHandle: still locked"));
        });
        EXPECT_EQ(violations, kept);
    }

  private:
    bool OnOperation(Operation operation)
    {
        ++mOperations;
        if (mOperations == mN) mFirst = operation;
        if (mFault == kOfOperation) return mOperations == mN;
        const bool throws = mFault == kThrow ? mOperations == mN : mOperations >= mN;
        if (mFault == kOfMemory || !throws) return false;
        ++mThrown[operation];
        // The string of a definition goes over to the host with the call.
        if ((operation == NStandIn::kAddProperty || operation == NStandIn::kChangeProperty) &&
            mHost.Log().back().back() == '"') {
            ++mThrown[NStandIn::kReleaseStringValue];
        }
        throw Thrown();
    }

    StandInHost& mHost;
    Fault mFault;
    int mN;
    int mOperations = 0;
    Operation mFirst{};
    bool mReached = false;
    std::map<Operation, int> mThrown;  // the number of each that threw
};

// Does the work with a fault at its nth allocation or operation. Returns true if there are so many.
bool DoWithFault(const Work& work, Fault fault, int n)
{
    StandInHost host(GetActorInfo);
    Instance& instance = host.CreateInstance();
    instance.SetState(work.mState);
    host.mDialogScript = [](NStandIn::Dialog& dialog) {
        dialog.SetText(kState);
        dialog.Validate();
        return true;
    };
    // Stays on the input. Only the first delivery allocates.
    if (work.mState == kOldState) instance.Deliver(kText);
    host.mOutputListener = [&work, isInside = false](Instance& i, std::uint16_t output) mutable {
        if (work.mDoInside != nullptr && output == 2 && !std::exchange(isInside, true))
            work.mDoInside(i);
    };
    FaultyHost faulty(host, fault, n);
    work.mDo(instance);
    const bool reached = faulty.Mend();
    host.mOutputListener = nullptr;
    faulty.ExpectReport(work);

    if (instance.Info().mActorDataPtr != nullptr) ExpectToWork(instance, !work.mKeepsState);
    ExpectToWork(host.CreateInstance(), true);
    if (host.Icon() != nullptr) *host.Icon() = NActor::IconRecord{};  // as in a library just loaded
    faulty.ExpectAccounts();
    return reached;
}

// Returns the number of places at which there was a fault.
int CountFaults(const Work& work, Fault fault)
{
    int n = 0;
    for (bool reached = true; reached;) {
        const std::string place = std::string(work.mName) + ' ' + std::to_string(++n);
        SCOPED_TRACE(place);
        const long live = sLive;
        reached = DoWithFault(work, fault, n);
        EXPECT_EQ(sLive, live);
    }
    return n - 1;
}

TEST(Faults, OfMemoryAtEveryAllocation)
{
    for (const Work& work : kWork) {
        EXPECT_GE(CountFaults(work, kOfMemory), work.mAllocations) << work.mName;
    }
}

TEST(Allocations, NoDeliveryAfterTheFirstNeedsAny)
{
    StandInHost host(GetActorInfo);
    Instance& instance = host.CreateInstance();
    instance.SetState(kState);
    int triggers = 0;
    host.mOutputListener = [&triggers](Instance& /*instance*/, std::uint16_t output) {
        if (output == 1) ++triggers;
    };
    const auto allocationsOf = [&instance](const std::string& text, int failing = 0) {
        sAllocations = 0;
        sFailing = failing;
        instance.Deliver(text);
        sFailing = 0;
        return sAllocations;
    };
    for (const int failing : {1, 2, 0}) allocationsOf(kText, failing);
    EXPECT_EQ(triggers, 1);
    for (const char* text : {kText, "T=-3 zyxwvutsrqponmlkjihgfedcba 00f line\n", "", "no\n"}) {
        EXPECT_EQ(allocationsOf(text), 0) << text;
    }
    EXPECT_EQ(triggers, 3);
    // The memory of a long text is not kept.
    for (int round = 0; round < 2; ++round) EXPECT_EQ(allocationsOf(kText + kLongRest), 1);
    EXPECT_EQ(triggers, 5);
    EXPECT_EQ(allocationsOf(kText), 1);
    EXPECT_EQ(allocationsOf(kText), 0);
    allocationsOf(kLongRest, 1);
    EXPECT_EQ(allocationsOf(kText), 1);
    ASSERT_EQ(host.Assertions().size(), 3U);
    for (const auto& report : host.Assertions()) EXPECT_EQ(report.mText, "buffer != NULL");
    // What an exception leaves is kept.
    host.mHook = [](Operation operation) -> bool {
        if (operation == NStandIn::kSetOutputValue) throw Thrown();
        return false;
    };
    EXPECT_EQ(allocationsOf(kText), 0);
    host.mHook = nullptr;
    EXPECT_EQ(allocationsOf(kText), 0);
    EXPECT_EQ(host.Close(), Texts());
}

TEST(Faults, OfEachOperationAtEveryCall)
{
    for (const Fault fault : {kOfOperation, kThrow, kThrowFromThen}) {
        for (const Work& work : kWork) {
            SCOPED_TRACE(fault);
            EXPECT_EQ(CountFaults(work, fault), work.mOperations) << work.mName;
        }
    }
}

}  // namespace

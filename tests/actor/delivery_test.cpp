// From text on the input to values on the outputs.

#include <iterator>
#include <limits>
#include <utility>

#include "actor_support.h"

namespace {

class DynamicOutputs : public ActorTest {};
class Delivery : public ActorTest {
  protected:
    Delivery() { mInstance.SetEomChar('\n'); }
};

TEST_F(DynamicOutputs, FollowTheCaptures)
{
    mInstance.SetState("a:string='x' b:float=#");
    EXPECT_EQ(Outputs(), (Texts{"ot01 a ", "ot02 b 0.000000"}));

    // Growing: redefinitions come before additions, and keep the ids.
    EXPECT_EQ(LogOf([&] { mInstance.SetState("c:i=# d:b=# e:s='?' f:f=#"); }),
              (Texts{"ReleaseBlock 23", "AllocateBlock 26", "GetPropertyCount",
                     "ChangeProperty 2 c 0", "ChangeProperty 3 d 0", "MakeStringValue ",
                     "AddProperty ot03 e \"\"", "AddProperty ot04 f 0"}));
    EXPECT_EQ(Outputs(), (Texts{"ot01 c 0", "ot02 d 0", "ot03 e ", "ot04 f 0.000000"}));

    // Shrinking: removals come first, from the last one down.
    EXPECT_EQ(LogOf([&] { mInstance.SetState("g:s='?'"); }),
              (Texts{"ReleaseBlock 26", "AllocateBlock 8", "GetPropertyCount", "RemoveProperty 5",
                     "RemoveProperty 4", "RemoveProperty 3", "MakeStringValue ",
                     "ChangeProperty 2 g \"\""}));
    mInstance.SetDefaultState();
    EXPECT_EQ(Outputs(), Texts());
}

TEST_F(DynamicOutputs, GoOnAfterEachFailure)
{
    struct Row {
        NStandIn::Operation mFailed;
        const char* mState;  // set after one with three captures
        const char* mCalled;
        std::ptrdiff_t mCalls;
        Texts mReports;
    };
    const std::string err = "err == noErr";
    const Row rows[] = {
        {NStandIn::kRemoveProperty, "", "RemoveProperty", 3, {err, err, err}},
        {NStandIn::kChangeProperty, "d:i=# e:i=#", "ChangeProperty", 2, {err, err}},
        {NStandIn::kAddProperty, "a:i=# b:i=# c:i=# d:i=# e:i=#", "AddProperty", 2, {err, err}},
        {NStandIn::kGetPropertyCount, "d:i=# e:i=#", "ChangeProperty", 2, {kNoCount}},
    };
    for (const Row& row : rows) {
        mHost.mHook = nullptr;
        mInstance.SetState("a:i=# b:i=# c:i=#");
        Fail(row.mFailed);
        const Texts log = LogOf([&] { mInstance.SetState(row.mState); });
        EXPECT_EQ(CallsOf(row.mCalled, log), row.mCalls);
        EXPECT_EQ(Reports(), row.mReports);
    }
}

TEST_F(DynamicOutputs, HaveFlagsAndLimitsByType)
{
    struct Row {
        const char* mName;
        std::uint32_t mFirstFlags;
        std::uint32_t mSecondFlags;
        std::uint16_t mTag;
        std::uint64_t mMinimum;
        std::uint64_t mMaximum;
    };
    const Row rows[] = {
        {"s", 0x10002000, 0x2000, 6, 0, 0},
        {"f", 0x10000001, 1, 3, 0xFFEFFFFFFFFFFFFF, 0x7FEFFFFFFFFFFFFF},
        {"i", 0x10000001, 1, 2, 0x8000000000000000, 0x7FFFFFFFFFFFFFFF},
        {"x", 0x10000001, 1, 2, 0x8000000000000000, 0x7FFFFFFFFFFFFFFF},
    };
    for (const char* const former : {"", "a:f=# b:i=# c:s='x' d:s='x'"}) {  // added, and redefined
        mInstance.SetState(former);
        mInstance.SetState("s:s='x' f:f=# i:i=# (x=0-3)");
        for (std::size_t k = 0; k < std::size(rows); ++k) {
            const NStandIn::Property& output = mInstance.Outputs().at(k + 1);
            EXPECT_EQ(output.mName, rows[k].mName);
            EXPECT_EQ(output.mFirstFlags, rows[k].mFirstFlags);
            EXPECT_EQ(output.mSecondFlags, rows[k].mSecondFlags);
            EXPECT_EQ(output.mInitial.mBits.mTag, rows[k].mTag);  // the limits have it too
            EXPECT_EQ(output.mMinimum.mBits.mPayload, rows[k].mMinimum);
            EXPECT_EQ(output.mMaximum.mBits.mPayload, rows[k].mMaximum);
        }
    }
}

TEST_F(DynamicOutputs, StopAtTheLastNumber)
{
    std::string pattern = "(0-0";
    for (int i = 1; i < 65600; ++i) pattern += ",0-0";
    mInstance.SetState(pattern + ")");
    ASSERT_EQ(mInstance.Outputs().size(), 65535U);
    EXPECT_EQ(mInstance.Outputs()[1351].mId, "otwd");
    EXPECT_EQ(Reports().front(), "inIndex >= 0 && inIndex < kTwoCharMax * 2");
    const Texts log = LogOf([&] { mInstance.Deliver("a"); });
    EXPECT_EQ(Reports(), Texts{"propCount - kFixedOutputPropertyCount == params.size()"});
    ASSERT_EQ(log.size(), 65537U);  // the count, the report, the values and the trigger
    EXPECT_EQ(log[65535], "SetOutputValue 65535 1");
    mHost.mClaimedOutputCount = 2000000000;  // believed as far as numbers go
    EXPECT_EQ(LogOf([&] { mInstance.SetDefaultState(); })[3], "RemoveProperty 65535");
    mHost.mClaimedOutputCount = std::numeric_limits<std::int32_t>::min();  // as if there were none
    EXPECT_EQ(LogOf([&] { mInstance.SetDefaultState(); }).back(), "ReportAssertion "s + kNoCount);
    Reports();
}

TEST_F(Delivery, PublishesValuesThenTheTrigger)
{
    mInstance.SetState("'T=' t:float=.# u:string=letters n:integer=#");
    EXPECT_EQ(LogOf([&] { mInstance.Deliver("T=2.5 C -3 rest\nx\nT=1K7\nT=9 lost"); }),
              (Texts{"GetPropertyCount", "SetOutputValue 2 2.5", "MakeStringValue C",
                     "SetOutputValue 3 \"C\"", "ReleaseStringValue", "SetOutputValue 4 -3",
                     "SetOutputValue 1 1", "GetPropertyCount", "SetOutputValue 2 1",
                     "MakeStringValue K", "SetOutputValue 3 \"K\"", "ReleaseStringValue",
                     "SetOutputValue 4 7", "SetOutputValue 1 1"}));
    mInstance.SetState("'only'");
    EXPECT_EQ(LogOf([&] { mInstance.Deliver("only\n"); }),
              (Texts{"GetPropertyCount", "SetOutputValue 1 1"}));
}

TEST_F(Delivery, TakesTheEndOfMessageCharacterForTheNextText)
{
    mInstance.SetState("m:s={00-FF}");
    for (const auto& [eomChar, expected] :
         {std::pair{0x0A, "ot01 m b\376c"}, {0, "ot01 m a\nb\376c\nd"}, {0xFE, "ot01 m a\nb"}}) {
        mInstance.SetEomChar(static_cast<std::uint8_t>(eomChar));
        mInstance.Deliver("a\nb\376c\nd");
        EXPECT_EQ(Outputs(), Texts{expected});
    }
    // What is left of a text after a cut at the limit is a message of its own.
    mInstance.SetEomChar(0);
    mInstance.Deliver(std::string(70000, 'x'));  // too long for its memory to be kept
    mInstance.Deliver("");
    mInstance.Deliver(std::string(2049, 'x') + "rest");
    EXPECT_EQ(Outputs(), Texts{"ot01 m rest"});
}

TEST_F(Delivery, IgnoresOtherInputsAndNullValues)
{
    mInstance.SetState("eol");
    mHost.StartLog();
    NActor::HostValue value;
    value.mTag = NActor::kValueString;
    mInstance.Notify(2, &value);
    for (std::uint16_t input = 0; input < 4; ++input) mInstance.Notify(input, nullptr);
    value.SetInteger(1);
    mInstance.Notify(3, &value);
    mInstance.SetEomChar(0);
    EXPECT_EQ(mHost.Log(), Texts());
}

TEST_F(Delivery, GoesOnAfterFailedChecks)
{
    mInstance.SetState("n:i=#");
    const Texts unlike = {"propCount - kFixedOutputPropertyCount == params.size()"};
    const Texts noneAndUnlike = {kNoCount, unlike[0]};
    const std::int32_t least = std::numeric_limits<std::int32_t>::min();
    for (const auto& [claimed, reports] :
         {std::pair(5, unlike), {0, noneAndUnlike}, {least, noneAndUnlike}}) {
        mHost.mClaimedOutputCount = claimed;
        EXPECT_EQ(LogOf([&] { mInstance.Deliver("4\n"); }).back(), "SetOutputValue 1 1");
        EXPECT_EQ(Reports(), reports);
    }
    mHost.mClaimedOutputCount.reset();
    Fail(NStandIn::kGetPropertyCount);
    mInstance.Deliver("7\n");
    EXPECT_EQ(Reports(), Texts{kNoCount});
    EXPECT_EQ(Outputs(), Texts{"ot01 n 7"});
}

// The stand-in host's own: it must notice a string value that is used after its release.
TEST(StringValues, NeverReusesAPayload)
{
    NStandIn::StringValues values;
    const std::uint64_t first = values.Make("a");
    EXPECT_TRUE(values.Release(first));
    const std::uint64_t second = values.Make("b");
    EXPECT_EQ(values.Find(first), nullptr);
    EXPECT_FALSE(values.Release(first));
    EXPECT_EQ(*values.Find(second), "b");
    EXPECT_EQ(values.Count(), 1U);
    EXPECT_EQ(values.Find(0), nullptr);
    EXPECT_EQ(values.Find(~std::uint64_t{0}), nullptr);
}

}  // namespace

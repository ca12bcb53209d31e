// From text on the input to values on the outputs.

#include <cmath>

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

    // Growing: redefinitions come before additions, under the ids that the outputs have.
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
    EXPECT_EQ(mInstance.Outputs().size(), 1U);
}

TEST_F(DynamicOutputs, HaveFlagsAndLimitsByType)
{
    mInstance.SetState("s:s='x' f:f=# i:i=# b:b=# (x=0-3, 4-7)");
    ASSERT_EQ(mInstance.Outputs().size(), 7U);
    for (std::size_t i = 1; i < 7; ++i) {
        const NStandIn::Property& output = mInstance.Outputs()[i];
        const bool isString = i == 1;
        EXPECT_EQ(output.mFirstFlags, isString ? 0x10002000U : 0x10000001U);
        EXPECT_EQ(output.mSecondFlags, isString ? 0x2000U : 1U);
        const std::uint16_t tag = isString ? 6 : i == 2 ? 3 : 2;
        EXPECT_EQ(output.mMinimum.mBits.mTag, tag);
        EXPECT_EQ(output.mMaximum.mBits.mTag, tag);
        EXPECT_EQ(output.mInitial.mBits.mTag, tag);
        EXPECT_EQ(output.mMinimum.mBits.mPayload, isString ? 0U
                                                  : i == 2 ? 0xFFEFFFFFFFFFFFFFU
                                                           : 0x8000000000000000U);
        EXPECT_EQ(output.mMaximum.mBits.mPayload, isString ? 0U
                                                  : i == 2 ? 0x7FEFFFFFFFFFFFFFU
                                                           : 0x7FFFFFFFFFFFFFFFU);
    }
    EXPECT_EQ(mInstance.Outputs()[6].mName, "");
}

TEST_F(DynamicOutputs, GoOnBehindFailuresAndReportThem)
{
    mInstance.SetState("a:i=# b:i=# c:i=#");
    const auto failing = [this](NStandIn::Operation failed) {
        mHost.mHook = [failed](NStandIn::Operation operation) { return operation == failed; };
    };
    failing(NStandIn::kRemoveProperty);
    mInstance.SetState("d:i=#");
    EXPECT_EQ(Reports(), (Texts{"err == noErr", "err == noErr"}));
    EXPECT_EQ(Outputs(), (Texts{"ot01 d 0", "ot02 b 0", "ot03 c 0"}));
    failing(NStandIn::kChangeProperty);
    mInstance.SetState("e:s='x' f:i=# g:i=# h:i=#");
    EXPECT_EQ(Reports(), (Texts{"err == noErr", "err == noErr", "err == noErr"}));
    EXPECT_EQ(Outputs().back(), "ot04 h 0");
    failing(NStandIn::kGetPropertyCount);  // as if there were none
    mInstance.SetState("i:i=#");
    EXPECT_EQ(Reports(), Texts{"err == kQuendalNoError && propCount >= kFixedOutputPropertyCount"});
    EXPECT_EQ(Outputs().back(), "ot01 i 0");
    mHost.mHook = nullptr;

    mHost.mClaimedOutputCount = 0;
    EXPECT_EQ(LogOf([&] { mInstance.SetDefaultState(); }).back(),
              "ReportAssertion err == kQuendalNoError && propCount >= kFixedOutputPropertyCount");
    Reports();
}

TEST_F(DynamicOutputs, StopAtTheLastNumberThereIs)
{
    std::string pattern;
    for (int i = 0; i < 65600; ++i) pattern += "n:i=#";
    mInstance.SetState(pattern);
    EXPECT_EQ(mInstance.Outputs().size(), 65535U);
    EXPECT_EQ(mInstance.Outputs()[1351].mId, "otwd");
    EXPECT_EQ(Reports().front(), "inIndex >= 0 && inIndex < kTwoCharMax * 2");
    std::string text;
    for (int i = 0; i < 65600; ++i) text += "7 ";
    mInstance.Deliver(text);  // longer than any message: nothing matches
    EXPECT_EQ(mInstance.Outputs()[0].mValue.Integer(), 0);
    // // believed as far as numbers go
    mHost.mClaimedOutputCount = 2000000000;
    EXPECT_EQ(LogOf([&] { mInstance.SetDefaultState(); })[3], "RemoveProperty 65535");
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

// Which messages a text gives: a pattern that captures a whole one, and its length.
TEST_F(Delivery, CutsTextIntoMessages)
{
    mInstance.SetState("m:s={00-FF}");
    std::vector<std::string> messages;
    mHost.mOutputListener = [&](NStandIn::Instance& instance, std::uint16_t output) {
        if (output == 1) messages.push_back(instance.Outputs()[1].mValue.mText);
    };
    const auto x = [](std::size_t count) { return std::string(count, 'x'); };
    struct Row {
        std::uint8_t mEomChar;
        std::string mText;
        Texts mMessages;
    };
    for (const Row& row : {
             Row{'\n', "ab\ncd\n", {"ab", "cd"}},
             {'\n', "\n\nab\nlost", {"ab"}},
             {'\n', "", {}},
             {0, "ab\ncd", {"ab\ncd"}},
             {0, "", {}},
             {0xFE,
              "ab\xFE"
              "cd\xFE",
              {"ab", "cd"}},
             {'\n', x(2048) + "\nab\n", {x(2048), "ab"}},
             {'\n', x(2048) + "yab\n", {x(2048), "ab"}},  // the y is lost
             {'\n', x(2048), {}},
             {'\n', x(2049), {x(2048)}},
             {'\n', x(5000), {x(2048), x(2048)}},
             {0, x(2048), {x(2048)}},
             {0, x(2049), {x(2048)}},
             {0, x(2050), {x(2048), x(1)}},
             {0, x(4097), {x(2048), x(2048)}},
         }) {
        messages.clear();
        mInstance.SetEomChar(row.mEomChar);
        mInstance.Deliver(row.mText);
        EXPECT_EQ(messages, row.mMessages) << int{row.mEomChar} << ' ' << row.mText.size();
    }
}

TEST_F(Delivery, IgnoresWhatIsNoText)
{
    mInstance.SetState("eol");
    EXPECT_EQ(LogOf([&] {
                  NActor::HostValue value;
                  value.mTag = NActor::kValueString;
                  mInstance.Notify(2, &value);
                  for (std::uint16_t input = 0; input < 4; ++input)
                      mInstance.Notify(input, nullptr);
                  value.SetInteger(1);
                  mInstance.Notify(3, &value);
              }),
              Texts());
}

TEST_F(Delivery, GoesOnBehindFailedChecks)
{
    mInstance.SetState("n:i=#");

    mHost.mClaimedOutputCount = 5;
    EXPECT_EQ(LogOf([&] { mInstance.Deliver("4\n"); }).back(), "SetOutputValue 1 1");
    EXPECT_EQ(Reports(), Texts{"propCount - kFixedOutputPropertyCount == params.size()"});
    mHost.mHook = [](NStandIn::Operation operation) {
        return operation == NStandIn::kGetPropertyCount;
    };
    mInstance.Deliver("5\n");
    EXPECT_EQ(Reports(), (Texts{"err == kQuendalNoError && propCount >= kFixedOutputPropertyCount",
                                "propCount - kFixedOutputPropertyCount == params.size()"}));
    EXPECT_EQ(Outputs(), Texts{"ot01 n 5"});
}

// Outputs wired back to the actor: what runs inside a host call disturbs nothing outside it.
TEST_F(Delivery, LetsTheHostComeBackIn)
{
    mInstance.SetState("n:i=# s:s=letters");
    Texts seen;
    bool inside = false;
    mHost.mOutputListener = [&](NStandIn::Instance& instance, std::uint16_t output) {
        const auto& outputs = instance.Outputs();
        if (output == 1) seen.push_back("trigger " + outputs[2].mValue.mText);
        if (output != 2 || inside) return;
        seen.push_back("outer " + std::to_string(outputs[1].mValue.Integer()));
        inside = true;
        instance.Deliver("7 in\n8 in\n");  // takes the place of the text outside
        EXPECT_EQ(instance.State(), "n:i=# s:s=letters");
        inside = false;
    };
    mInstance.Deliver("1 out\n2 aus\n");
    EXPECT_EQ(seen, (Texts{"outer 1", "trigger in", "trigger in", "trigger out", "outer 2",
                           "trigger in", "trigger in", "trigger aus"}));
}

TEST_F(Delivery, SurvivesAnEndOrANewPatternFromInside)
{
    mInstance.SetState("n:i=#");
    mHost.mOutputListener = [&](NStandIn::Instance& instance, std::uint16_t output) {
        if (output == 1) instance.SetState("n:i='x' s:s=#");
    };
    mInstance.Deliver("1\n2\n3\n");
    EXPECT_EQ(Outputs(), (Texts{"ot01 n 0", "ot02 s "}));
    mInstance.SetState("n:i=#");
    mHost.mOutputListener = [](NStandIn::Instance& instance, std::uint16_t) { instance.Dispose(); };
    mInstance.Deliver("1\n2\n3\n");
    EXPECT_EQ(mInstance.Info().mActorDataPtr, nullptr);
}

}  // namespace

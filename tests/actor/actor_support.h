// Fixtures and helpers of the tests of the shell.

#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "actor/actor_info.h"
#include "standin/stand_in_host.h"

using namespace std::string_literals;
using Texts = std::vector<std::string>;

// Reports that several tests expect.
inline constexpr char kNoString[] = "info->mParseString != nil";
inline constexpr char kNoCount[] =
    "err == kQuendalNoError && propCount >= kFixedOutputPropertyCount";

// The value of an output as a text.
inline std::string ShownValue(const NStandIn::Property& output)
{
    const NStandIn::Value& value = output.mValue;
    if (value.mBits.mTag == NActor::kValueString) return value.mText;
    if (value.mBits.mTag == NActor::kValueFloat) return std::to_string(value.Float());
    return std::to_string(value.Integer());
}

// The dynamic outputs as "id name value".
inline Texts OutputsOf(const NStandIn::Instance& instance)
{
    Texts texts;
    for (std::size_t i = 1; i < instance.Outputs().size(); ++i) {
        const NStandIn::Property& output = instance.Outputs()[i];
        texts.push_back(output.mId + " " + output.mName + " " + ShownValue(output));
    }
    return texts;
}

// The number of lines of a log that are of this operation.
inline std::ptrdiff_t CallsOf(const std::string& operation, const Texts& log)
{
    return std::count_if(log.begin(), log.end(), [&operation](const std::string& line) {
        return line.substr(0, operation.size()) == operation;
    });
}

// A host with one instance. At the end of every test the accounts of the host must balance, and
// every report must have been taken by the test.
class ActorTest : public testing::Test {
  protected:
    ActorTest() : mHost(GetActorInfo), mInstance(mHost.CreateInstance()) {}

    void TearDown() override
    {
        EXPECT_EQ(Reports(), Texts());
        EXPECT_EQ(mHost.Close(), Texts());
    }

    // The texts reported since the last call.
    Texts Reports()
    {
        Texts texts;
        for (const NStandIn::Assertion& assertion : mHost.Assertions()) {
            EXPECT_EQ(assertion.mDisplayName, "Word Sifter");
            EXPECT_GT(assertion.mLine, 0);
            texts.push_back(assertion.mText);
        }
        mHost.ClearAssertions();
        return texts;
    }

    // The operations that work makes the actor call, in order.
    template <typename Work>
    Texts LogOf(Work work)
    {
        mHost.StartLog();
        work();
        return mHost.Log();
    }

    Texts Outputs() const { return OutputsOf(mInstance); }

    // From here on every call of an operation fails, or throws.
    void Fail(NStandIn::Operation failed, bool throws = false)
    {
        mHost.mHook = [failed, throws](NStandIn::Operation operation) {
            if (throws && operation == failed) throw 1;
            return operation == failed;
        };
    }

    // From here on the user enters text into the dialog and accepts it.
    void Accept(const std::string& text)
    {
        mHost.mDialogScript = [text](NStandIn::Dialog& dialog) {
            dialog.SetText(text);
            return true;
        };
    }

    NStandIn::StandInHost mHost;
    NStandIn::Instance& mInstance;
};

// What the tests of the shell share.

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

// The dynamic outputs as "id name" and the value.
inline Texts OutputsOf(const NStandIn::Instance& instance)
{
    Texts texts;
    for (std::size_t i = 1; i < instance.Outputs().size(); ++i) {
        const NStandIn::Property& output = instance.Outputs()[i];
        const NStandIn::Value& value = output.mValue;
        const std::string shown = value.mBits.mTag == NActor::kValueString ? value.mText
                                  : value.mBits.mTag == NActor::kValueFloat
                                      ? std::to_string(value.Float())
                                      : std::to_string(value.Integer());
        texts.push_back(output.mId + " " + output.mName + " " + shown);
    }
    return texts;
}

// How many lines of a log are of this operation.
inline std::ptrdiff_t CallsOf(const std::string& operation, const Texts& log)
{
    return std::count_if(log.begin(), log.end(), [&operation](const std::string& line) {
        return line.substr(0, operation.size()) == operation;
    });
}

// A host with one instance. At the end of every test the host's accounts must balance, and nothing
// may have been reported that the test didn't expect.
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

    // The operations of the host that work makes the actor call, in order.
    template <typename Work>
    Texts LogOf(Work work)
    {
        mHost.StartLog();
        work();
        return mHost.Log();
    }

    Texts Outputs() const { return OutputsOf(mInstance); }

    // From here on the host fails at each call of an operation.
    void Fail(NStandIn::Operation failed)
    {
        mHost.mHook = [failed](NStandIn::Operation operation) { return operation == failed; };
    }

    // From here on the user puts text into the dialog and accepts it.
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

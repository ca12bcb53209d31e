// Saved state, the editing dialog and the icon.

#include <sstream>
#include <tuple>

#include "actor/icon.h"
#include "actor_support.h"

using NStandIn::Operation;

namespace {

class State : public ActorTest {};
class DialogTest : public ActorTest {};
class Icon : public ActorTest {};

TEST_F(State, ComesBackByteForByte)
{
    EXPECT_EQ(mInstance.State(), "");
    EXPECT_EQ(LogOf([&] { mInstance.Deliver(""); }), Texts());
    for (const std::string& text : {"n:i=#"s, "#"s, ""s, "'a\0b'"s, "\xFF\xFE ' \0"s, "no good"s}) {
        mInstance.SetState(text);
        const std::string saved = mInstance.State();
        mInstance.SetDefaultState();
        EXPECT_EQ(mInstance.State(), "");
        mInstance.SetState(saved);
        EXPECT_EQ(mInstance.State(), text);
        EXPECT_EQ(mInstance.State(2), text.substr(0, 2));
    }
    EXPECT_EQ(Reports(), (Texts{"false", "false", "false", "false"}));
}

TEST_F(State, WithoutAGoodStringTheOutputsStay)
{
    mInstance.SetState("n:i=#");
    EXPECT_EQ(LogOf([&] { mInstance.SetState("n:i=# (1-)"); }),
              (Texts{"ReleaseBlock 6", "AllocateBlock 11", "ReportAssertion false"}));
    EXPECT_EQ(Outputs(), Texts{"ot01 n 0"});
    EXPECT_EQ(LogOf([&] { mInstance.Deliver("5"); }), Texts());
    mInstance.SetState("n:i=#");
    Fail(NStandIn::kAllocateBlock);
    EXPECT_EQ(LogOf([&] { mInstance.SetState("m:i=#"); }),
              (Texts{"ReleaseBlock 6", "AllocateBlock 6", "ReportAssertion "s + kNoString}));
    EXPECT_EQ(mInstance.State(), "");
    EXPECT_EQ(Outputs(), Texts{"ot01 n 0"});
    EXPECT_EQ(LogOf([&] { mInstance.Deliver("5"); }), Texts());
    mHost.mHook = nullptr;
    // A block of one byte more can't be requested; the pointer is never followed.
    EXPECT_EQ(LogOf([&] { mInstance.SetState(nullptr, 0xFFFFFFFF); }),
              Texts{"ReportAssertion "s + kNoString});
    EXPECT_EQ(Reports(), (Texts{"false", kNoString, kNoString}));
}

TEST_F(DialogTest, CommitsInItsOrder)
{
    mInstance.SetState("a:i=#");
    mInstance.Deliver("42");
    Accept("bb:i=#");
    EXPECT_EQ(
        LogOf([&] { EXPECT_TRUE(mInstance.DoubleClick()); }),
        (Texts{"NewTextHandle 5", "LockTextHandle", "UnlockTextHandle",
               "RunTextDialog Edit Serial Input Parser read-serial-docs.html", "ReleaseBlock 6",
               "TextHandleSize", "AllocateBlock 7", "LockTextHandle", "UnlockTextHandle",
               "GetPropertyCount", "ChangeProperty 2 bb 0", "GetInputValue 2", "GetPropertyCount",
               "SetOutputValue 2 42", "SetOutputValue 1 1", "DisposeTextHandle"}));
    EXPECT_EQ(mInstance.State(), "bb:i=#");
}

TEST_F(DialogTest, NeedsATextHandle)
{
    Fail(NStandIn::kNewTextHandle);
    EXPECT_EQ(LogOf([&] { EXPECT_FALSE(mInstance.DoubleClick()); }),
              (Texts{"NewTextHandle 0", "ReportAssertion temp != nil"}));
    EXPECT_EQ(Reports(), Texts{"temp != nil"});
    Fail(NStandIn::kRunTextDialog, true);
    EXPECT_FALSE(mInstance.DoubleClick());
    EXPECT_EQ(Reports(), Texts{"false"});
}

TEST_F(DialogTest, AcceptsEmptyAndBadTexts)
{
    for (const char* const former : {"", "#"}) {
        mHost.mDialogScript = [former](NStandIn::Dialog& dialog) {
            EXPECT_EQ(dialog.Text(), former);
            dialog.SetText("#");
            return true;
        };
        EXPECT_TRUE(mInstance.DoubleClick());
    }
    mInstance.SetState("a:i=#");
    Accept("a:i= #!");
    EXPECT_TRUE(mInstance.DoubleClick());
    EXPECT_EQ(Reports(), Texts{"false"});
    EXPECT_EQ(mInstance.State(), "a:i= #!");
    EXPECT_EQ(Outputs(), Texts{"ot01 a 0"});
    mHost.mDialogScript = [](NStandIn::Dialog& dialog) {
        EXPECT_EQ(dialog.Text(), "a:i= #!");
        dialog.SetText("");
        return true;
    };
    EXPECT_FALSE(mInstance.DoubleClick(false));  // without a flag, and no text on the input
    EXPECT_EQ(mInstance.State(), "");
    EXPECT_EQ(Outputs(), Texts());
}

TEST_F(DialogTest, ValidatesWithoutTouchingTheInstance)
{
    struct Row {
        std::string mText;
        std::int32_t mErrorSize;
        NStandIn::Validation mResult;
        bool mLocks = true;
    };
    static constexpr std::int32_t kUnset = NStandIn::Validation::kUnset;
    const Row rows[] = {
        {"n:i=#", 100, {true, "", kUnset, kUnset}},
        {"", 100, {true, "", kUnset, kUnset}},
        {"'abcdefghi' wrong", 100, {false, "Syntax error at 'wrong'", 12, 17}},
        {"!", 100, {false, "Unexpected character '!'", -1, 0}},
        {"'x' !", 8, {false, "Unexpec", 3, 4}},
        {"\0"s, 100, {false, "Unexpected character '", -1, 0}},  // up to the NUL
        {"!", 0, {false, "", -1, 0}},
        {"!", -5, {false, "", -1, 0}},
        {"#", 100, {false, "The text can't be checked now", kUnset, kUnset}, false},
    };
    const auto fields = [](const NStandIn::Validation& result) {
        return std::tie(result.mGood, result.mMessage, result.mStart, result.mEnd);
    };
    mInstance.SetState("n:i=#");
    for (const Row& row : rows) {
        mHost.mDialogScript = [&](NStandIn::Dialog& dialog) {
            dialog.SetText(row.mText);
            if (!row.mLocks) Fail(NStandIn::kLockTextHandle);
            const NStandIn::Validation result = dialog.Validate(row.mErrorSize);
            EXPECT_EQ(fields(result), fields(row.mResult)) << row.mText;
            return false;
        };
        EXPECT_FALSE(mInstance.DoubleClick());
        mHost.mHook = nullptr;
        EXPECT_EQ(Reports(), row.mLocks ? Texts() : Texts{"false"});
    }
    mInstance.Deliver("5");
    EXPECT_EQ(Outputs(), Texts{"ot01 n 5"});
    EXPECT_EQ(mInstance.State(), "n:i=#");
}

// What remains is no string, and outputs on which nothing goes out.
TEST_F(DialogTest, CommitsNoStringIfTheHostFails)
{
    struct Row {
        Operation mFailed;
        bool mThrows;
        Texts mReports;
    };
    for (const Row& row : {Row{NStandIn::kAllocateBlock, false, {kNoString}},
                           {NStandIn::kLockTextHandle, false, {"false"}},
                           {NStandIn::kLockTextHandle, true, {"false"}},
                           {NStandIn::kTextHandleSize, true, {"false"}}}) {
        mInstance.SetState("a:i=#");
        mHost.mDialogScript = [&](NStandIn::Dialog& dialog) {
            dialog.SetText("b:i=#");
            Fail(row.mFailed, row.mThrows);
            return true;
        };
        EXPECT_TRUE(mInstance.DoubleClick());
        mHost.mHook = nullptr;
        EXPECT_EQ(Reports(), row.mReports);
        EXPECT_EQ(mInstance.State(), "");
        EXPECT_EQ(Outputs(), Texts{"ot01 a 0"});
        EXPECT_EQ(LogOf([&] { mInstance.Deliver("5"); }), Texts());
    }
}

TEST_F(Icon, IsLoadedOnceForAllAndDrawnAsItsFirstPart)
{
    int token = 0;
    const std::string host = (std::ostringstream() << &token).str();
    Fail(NStandIn::kLoadIconRecord);
    EXPECT_EQ(LogOf([&] { EXPECT_EQ(mInstance.IconSize(&token)[2], 0); }),
              Texts{"LoadIconRecord " + host});
    EXPECT_EQ(LogOf([&] { mInstance.DrawIcon(&token, 1, 0, 0); }), Texts());
    mHost.mHook = nullptr;
    EXPECT_EQ(mInstance.IconSize(&token), (std::array<std::uint16_t, 4>{48, 32, 0, 0}));
    EXPECT_EQ(LogOf([&] { mHost.CreateInstance().IconSize(&token); }).size(), 1U);  // its record
    EXPECT_EQ(LogOf([&] {
                  mInstance.DrawIcon(&token, 0, 0, 0);
                  mInstance.DrawIcon(&token, 2, 0, 0);
                  mInstance.DrawIcon(&token, 1, 0xFEDCBA9876543210, 200);
              }),
              Texts{"DrawIconRecord " + host + " 200 18364758544493064720"});
    *mHost.Icon() = NActor::IconRecord{};  // as in a library just loaded
}

}  // namespace

// Saved state, the editing dialog and the icon.

#include "actor/icon.h"
#include "actor_support.h"

using NStandIn::Operation;

namespace {

class State : public ActorTest {};
class DialogTest : public ActorTest {};
class Icon : public ActorTest {};

constexpr char kNoMemory[] = "info->mParseString != nil";

TEST_F(State, ComesBackByteForByte)
{
    for (const std::string& text : {"n:i=#"s, ""s, "'a\0b'"s, "\xFF\xFE ' \0"s, "no good"s}) {
        mInstance.SetState(text);
        const std::string saved = mInstance.State();
        EXPECT_EQ(saved, text);
        mInstance.SetDefaultState();
        EXPECT_EQ(mInstance.State(), "");
        mInstance.SetState(saved);
        EXPECT_EQ(mInstance.State(), text);
        EXPECT_EQ(mInstance.State(2), text.substr(0, 2));
    }
    EXPECT_EQ(Reports(), (Texts{"false", "false", "false", "false"}));
}

TEST_F(State, ABadStringStaysAndSoDoTheOutputs)
{
    mInstance.SetState("n:i=#");
    EXPECT_EQ(LogOf([&] { mInstance.SetState("n:i=# (1-)"); }),
              (Texts{"ReleaseBlock 6", "AllocateBlock 11", "ReportAssertion false"}));
    Reports();
    EXPECT_EQ(Outputs(), Texts{"ot01 n 0"});
    EXPECT_EQ(LogOf([&] { mInstance.Deliver("5"); }), Texts());
}

TEST_F(State, WithoutMemoryThereIsNone)
{
    mInstance.SetState("n:i=#");
    mHost.mHook = [](Operation operation) { return operation == NStandIn::kAllocateBlock; };
    EXPECT_EQ(LogOf([&] { mInstance.SetState("m:i=#"); }),
              (Texts{"ReleaseBlock 6", "AllocateBlock 6", "ReportAssertion "s + kNoMemory}));
    EXPECT_EQ(mInstance.State(), "");
    EXPECT_EQ(Outputs(), Texts{"ot01 n 0"});
    EXPECT_EQ(LogOf([&] { mInstance.Deliver("5"); }), Texts());
    mHost.mHook = nullptr;
    // One byte more than this can't be asked for; the pointer is never followed.
    static std::string sReported;
    NActor::HostCallbacks table{};
    table.ReportAssertion = [](const char* text, const char*, std::int32_t) { sReported = text; };
    NActor::HostContext context{{}, &table};
    mInstance.Info().SetStateCallback(&context, &mInstance.Info(), nullptr, 0xFFFFFFFF);
    EXPECT_EQ(sReported, kNoMemory);
    EXPECT_EQ(Reports(), Texts{kNoMemory});
}

TEST_F(DialogTest, CommitsInItsOrder)
{
    mInstance.SetState("a:i=#");
    mInstance.Deliver("42");
    mHost.mDialogScript = [](NStandIn::Dialog& dialog) {
        EXPECT_EQ(dialog.Text(), "a:i=#");
        dialog.SetText("bb:i=#");
        return true;
    };
    EXPECT_EQ(
        LogOf([&] { EXPECT_TRUE(mInstance.DoubleClick()); }),
        (Texts{"NewTextHandle 5", "LockTextHandle", "UnlockTextHandle",
               "RunTextDialog Edit Serial Input Parser read-serial-docs.html", "ReleaseBlock 6",
               "TextHandleSize", "AllocateBlock 7", "LockTextHandle", "UnlockTextHandle",
               "GetPropertyCount", "ChangeProperty 2 bb 0", "GetInputValue 2", "GetPropertyCount",
               "SetOutputValue 2 42", "SetOutputValue 1 1", "DisposeTextHandle"}));
    EXPECT_EQ(mInstance.State(), "bb:i=#");
}

TEST_F(DialogTest, CancellingChangesNothing)
{
    const Texts shown = {"NewTextHandle 0", "LockTextHandle", "UnlockTextHandle",
                         "RunTextDialog Edit Serial Input Parser read-serial-docs.html",
                         "DisposeTextHandle"};
    EXPECT_EQ(LogOf([&] { EXPECT_FALSE(mInstance.DoubleClick()); }), shown);
    mHost.mHook = [](Operation operation) { return operation == NStandIn::kNewTextHandle; };
    EXPECT_EQ(LogOf([&] { EXPECT_FALSE(mInstance.DoubleClick()); }),
              (Texts{"NewTextHandle 0", "ReportAssertion temp != nil"}));
    EXPECT_EQ(Reports(), Texts{"temp != nil"});
}

TEST_F(DialogTest, AcceptsEmptyAndBadTexts)
{
    mInstance.SetState("a:i=#");
    mHost.mDialogScript = [](NStandIn::Dialog& dialog) {
        dialog.SetText("a:i= #!");
        return true;
    };
    EXPECT_TRUE(mInstance.DoubleClick());
    EXPECT_EQ(Reports(), Texts{"false"});
    EXPECT_EQ(mInstance.State(), "a:i= #!");
    EXPECT_EQ(Outputs(), Texts{"ot01 a 0"});
    mHost.mDialogScript = [](NStandIn::Dialog& dialog) {
        EXPECT_EQ(dialog.Text(), "a:i= #!");
        dialog.SetText("");
        return true;
    };
    EXPECT_TRUE(mInstance.DoubleClick());  // nothing stands on the input: no parse
    EXPECT_EQ(mInstance.State(), "");
    EXPECT_EQ(Outputs(), Texts());
}

TEST_F(DialogTest, ValidatesWithoutTouchingTheInstance)
{
    struct Row {
        std::string mText;
        std::int32_t mErrorSize;
        NStandIn::Validation mResult;
    };
    constexpr std::int32_t kUnset = NStandIn::Validation::kUnset;
    const Row rows[] = {
        {"n:i=#", 100, {true, "", kUnset, kUnset}},
        {"", 100, {true, "", kUnset, kUnset}},
        {"'abcdefghi' wrong", 100, {false, "Syntax error at 'wrong'", 12, 17}},
        {"!", 100, {false, "Unexpected character '!'", -1, 0}},
        {"'x' !", 8, {false, "Unexpec", 3, 4}},
        {"!", 1, {false, "", -1, 0}},
        {"!", 0, {false, "", -1, 0}},
        {"!", -5, {false, "", -1, 0}},
    };
    mInstance.SetState("n:i=#");
    for (const Row& row : rows) {
        mHost.mDialogScript = [&row](NStandIn::Dialog& dialog) {
            dialog.SetText(row.mText);
            const NStandIn::Validation result = dialog.Validate(row.mErrorSize);
            EXPECT_EQ(result.mGood, row.mResult.mGood) << row.mText;
            EXPECT_EQ(result.mMessage, row.mResult.mMessage);
            EXPECT_EQ(result.mStart, row.mResult.mStart);
            EXPECT_EQ(result.mEnd, row.mResult.mEnd);
            return false;
        };
        EXPECT_FALSE(mInstance.DoubleClick());
    }
    mInstance.Deliver("5");
    EXPECT_EQ(Outputs(), Texts{"ot01 n 5"});
    EXPECT_EQ(mInstance.State(), "n:i=#");
}

// What a commit leaves behind when one of its steps fails.
TEST_F(DialogTest, FailsInGoodOrder)
{
    mHost.mDialogScript = [](NStandIn::Dialog& dialog) {
        dialog.SetText("b:i=#");
        return true;
    };
    bool dialogClosed = false;
    const auto failing = [&](Operation failed) {
        mInstance.SetState("a:i=#");
        dialogClosed = false;
        mHost.mHook = [&dialogClosed, failed](Operation operation) {
            if (operation == NStandIn::kRunTextDialog) dialogClosed = true;
            return dialogClosed && operation == failed;
        };
        const bool changed = mInstance.DoubleClick();
        mHost.mHook = nullptr;
        return changed;
    };
    EXPECT_TRUE(failing(NStandIn::kAllocateBlock));
    EXPECT_EQ(Reports(), Texts{kNoMemory});
    EXPECT_EQ(mInstance.State(), "");
    EXPECT_EQ(Outputs(), Texts{"ot01 a 0"});
    EXPECT_TRUE(failing(NStandIn::kLockTextHandle));
    EXPECT_EQ(Reports(), Texts{"false"});
    EXPECT_EQ(mInstance.State(), "");
    EXPECT_TRUE(failing(NStandIn::kChangeProperty));
    EXPECT_EQ(Reports(), Texts{"err == noErr"});
    EXPECT_TRUE(failing(NStandIn::kGetInputValue));
    EXPECT_EQ(mInstance.State(), "b:i=#");
    // The text can't even be shown: nothing is lost.
    mHost.mHook = [](Operation operation) { return operation == NStandIn::kLockTextHandle; };
    EXPECT_FALSE(mInstance.DoubleClick());
    EXPECT_EQ(Reports(), Texts{"false"});
    EXPECT_EQ(mInstance.State(), "b:i=#");
}

TEST_F(DialogTest, LetsTheHostComeBackIn)
{
    mInstance.SetState("a:i=#");
    mHost.mDialogScript = [this](NStandIn::Dialog& dialog) {
        mInstance.Deliver("1");
        EXPECT_EQ(Outputs(), Texts{"ot01 a 1"});
        EXPECT_EQ(mInstance.State(), "a:i=#");
        dialog.SetText("b:i=# c:i=#");
        return true;
    };
    bool inside = false;
    mHost.mHook = [&](Operation operation) {
        if (operation == NStandIn::kAddProperty && !std::exchange(inside, true)) {
            EXPECT_EQ(mInstance.State(), "b:i=# c:i=#");
            mInstance.Deliver("no match");
        }
        return false;
    };
    EXPECT_TRUE(mInstance.DoubleClick());
    EXPECT_TRUE(inside);
    EXPECT_EQ(Outputs(), (Texts{"ot01 b 0", "ot02 c 0"}));
    mHost.mDialogScript = [this](NStandIn::Dialog&) {
        mInstance.Dispose();
        return true;
    };
    EXPECT_FALSE(mInstance.DoubleClick());
}

TEST_F(Icon, IsLoadedOnceForAllAndDrawnAsItsFirstPart)
{
    int token = 0;
    mHost.mHook = [](Operation operation) { return operation == NStandIn::kLoadIconRecord; };
    const auto unloaded = mInstance.IconSize(&token);
    EXPECT_EQ(unloaded[2], 0);
    EXPECT_EQ(LogOf([&] { mInstance.DrawIcon(&token, 1, 0, 0); }), Texts());
    mHost.mHook = nullptr;
    EXPECT_EQ(mInstance.IconSize(&token), (std::array<std::uint16_t, 4>{48, 32, 0, 0}));
    EXPECT_EQ(LogOf([&] { mHost.CreateInstance().IconSize(&token); }).size(), 1U);  // its record
    const auto drawn = LogOf([&] {
        mInstance.DrawIcon(&token, 0, 0, 0);
        mInstance.DrawIcon(&token, 2, 0, 0);
        mInstance.DrawIcon(&token, 1, 0xFEDCBA9876543210, 200);
    });
    ASSERT_EQ(drawn.size(), 1U);
    EXPECT_NE(drawn[0].find(" 200 18364758544493064720"), std::string::npos);
    *mHost.Icon() = NActor::IconRecord{};  // as a library just loaded has it
}

}  // namespace

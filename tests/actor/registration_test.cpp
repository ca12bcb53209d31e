// Registration, help texts, and the beginning and end of an instance.

#include <cstring>
#include <functional>
#include <utility>

#include "actor/property_id.h"
#include "actor_support.h"

using NActor::ActorInfo;

namespace {

class Registration : public ActorTest {};

TEST_F(Registration, FillsItsFieldsAndNothingElse)
{
    // Codes, slots and untouched words, at the offsets of the host.
    unsigned char first[800];
    unsigned char second[800];
    std::memset(first, 0xA5, sizeof first);
    std::memset(second, 0x3C, sizeof second);
    GetActorInfo(nullptr, reinterpret_cast<ActorInfo*>(first));
    GetActorInfo(nullptr, reinterpret_cast<ActorInfo*>(second));

    EXPECT_EQ(std::memcmp(first, "ltnc", 4), 0);
    EXPECT_EQ(std::memcmp(first + 8, "SoW_\0\1\0\0", 8), 0);
    const char* name = nullptr;
    std::memcpy(&name, first + 24, sizeof name);
    EXPECT_STREQ(name, "Word Sifter");

    std::vector<std::size_t> untouched;
    std::vector<std::size_t> nulls;
    for (std::size_t word = 0; word < sizeof first; word += 8) {
        if (first[word] == 0xA5 && second[word] == 0x3C) untouched.push_back(word);
        if (std::memcmp(first + word, "\0\0\0\0\0\0\0\0", 8) == 0) nulls.push_back(word);
    }
    EXPECT_EQ(nulls, (std::vector<std::size_t>{680, 688, 696, 704, 736}));
    std::vector<std::size_t> expected = {16, 32, 664, 712, 784, 792};
    for (std::size_t word = 616; word >= 40; word -= 8) expected.insert(expected.begin() + 2, word);
    EXPECT_EQ(untouched, expected);
    EXPECT_EQ(first[4], 0xA5);
    mInstance.Info().NoOpCallback();
}

TEST_F(Registration, DefinesItsProperties)
{
    EXPECT_STREQ(mInstance.Info().DefinitionStringCallback(nullptr),
                 "INPROP eom_char \t\teoms\tint\t\t\tnumber,hex,char\t\t0\t255\t\t0\r"
                 "INPROP text\t\t\ttext\tstring\t\ttext\t\t\t\t*\t*\t\t-text-\t*\t*\t1\r"
                 "OUTPROP msg_rcv\t\tmrcv\tbool\t\ttrig\t\t\t\t0\t1\t\t0\r");
    ASSERT_EQ(mInstance.Outputs().size(), 1U);
    EXPECT_EQ(mInstance.Outputs()[0].mName, "msg_rcv");
    EXPECT_EQ(mInstance.Outputs()[0].mId, "mrcv");
    EXPECT_EQ(mInstance.Inputs()[0].mMaximum.Integer(), 255);
}

TEST_F(Registration, HelpFoldsDynamicOutputsAndIsCutToItsBuffer)
{
    constexpr auto kInput = NStandIn::kPropertyInput;
    constexpr auto kOutput = NActor::kPropertyOutput;
    struct Row {
        NActor::PropertyKind mKind;
        std::uint16_t mNumber;
        const char* mStart;
        const char* mAsked;
    };
    for (const Row& row : {Row{NStandIn::kPropertyActor, 0, "Parses the 'text' input", "0 0"},
                           {kInput, 1, "The character that signifies", "1 1"},
                           {kInput, 2, "The text to be parsed. Each", "1 2"},
                           {kInput, 9, "", "1 9"},  // the host gives no position
                           {kOutput, 1, "Sends a trigger when", "2 1"},
                           {kOutput, 2, "The output for one of", "2 2"},
                           {kOutput, 65535, "The output for one of", "2 2"}}) {
        std::string help;
        EXPECT_EQ(LogOf([&] { help = mInstance.Help(row.mKind, row.mNumber, 400); }),
                  Texts{"PropertyHelpIndex "s + row.mAsked});
        EXPECT_EQ(std::strncmp(help.c_str(), row.mStart, std::strlen(row.mStart)), 0) << help;
        EXPECT_EQ(help[0] == '\0', row.mStart[0] == '\0') << help;
        EXPECT_EQ(help.find_first_not_of('\0', std::strlen(help.c_str())), std::string::npos);
    }
    EXPECT_EQ(mInstance.Help(kOutput, 2, 5), "The \0"s);
    EXPECT_EQ(mInstance.Help(kOutput, 2, 1), "\0"s);
    EXPECT_EQ(LogOf([&] { mInstance.Help(kOutput, 3, 0); }), Texts{"PropertyHelpIndex 2 2"});
}

TEST_F(Registration, CreatesAndDisposes)
{
    mHost.StartLog();
    NStandIn::Instance& second = mHost.CreateInstance();
    ASSERT_EQ(mHost.Log().size(), 1U);
    const std::string record = mHost.Log()[0].substr(std::strlen("AllocateBlock "));
    EXPECT_EQ(second.State(), "");
    EXPECT_EQ(LogOf([&] { second.Deliver("abc\n"); }), Texts());  // an empty pattern
    second.SetState("'abc'");
    EXPECT_EQ(LogOf([&] { second.Dispose(); }),
              (Texts{"ReleaseBlock 6", "ReleaseBlock " + record}));
}

// What the host does to an instance from inside the release of its string.
TEST_F(Registration, DisposesOnceWhateverTheHostDoesInside)
{
    struct Row {
        const char* mName;
        std::function<void(NStandIn::Instance&)> mInner;
        std::ptrdiff_t mReleases;
        Texts mReports;
    };
    const std::string gone = "ioActorInfo->mActorDataPtr != nil";
    for (const Row& row : {
             Row{"nothing", [](NStandIn::Instance&) {}, 2, {}},
             {"store a string", [](NStandIn::Instance& i) { i.SetState("'c'"); }, 3, {}},
             {"dispose", [](NStandIn::Instance& i) { i.Dispose(); }, 2, {gone}},
             {"begin anew", [](NStandIn::Instance& i) { i.Recreate(); }, 2, {gone}},
             {"take away the pointer",
              [](NStandIn::Instance& i) { i.Info().mActorDataPtr = nullptr; },
              2,
              {gone}},
         }) {
        SCOPED_TRACE(row.mName);
        NStandIn::Instance& instance = mHost.CreateInstance();
        instance.SetState("'abc'");
        bool inside = false;
        mHost.mHook = [&](NStandIn::Operation) {
            if (!std::exchange(inside, true)) row.mInner(instance);
            return false;
        };
        const Texts log = LogOf([&] { instance.Dispose(); });
        mHost.mHook = nullptr;
        EXPECT_EQ(CallsOf("ReleaseBlock", log), row.mReleases);
        EXPECT_EQ(Reports(), row.mReports);
    }
}

// Every callback without a record: creation failed, or the instance is gone.
TEST_F(Registration, DoesNothingWithoutARecord)
{
    mHost.mHook = [](NStandIn::Operation) { return true; };
    NStandIn::Instance& failed = mHost.CreateInstance();
    mHost.mHook = nullptr;
    EXPECT_EQ(Reports(), Texts{"info != nil"});
    mInstance.Dispose();

    for (NStandIn::Instance* const instance : {&failed, &mInstance}) {
        EXPECT_EQ(LogOf([&] {
                      instance->SetState("abc");
                      instance->SetDefaultState();
                      instance->SetEomChar(10);
                      instance->Deliver("abc\n");
                      EXPECT_FALSE(instance->DoubleClick());
                      EXPECT_EQ(instance->State(), "");
                  }),
                  Texts());
        EXPECT_EQ(LogOf([&] { instance->Dispose(); }), Texts{"ReportAssertion info != nil"});
        EXPECT_EQ(Reports(), Texts{"info != nil"});
    }
}

TEST_F(Registration, MakesIdsAndReportsThoseOutOfRange)
{
    static Texts sReported;
    NActor::HostCallbacks table{};
    table.ReportAssertion = [](const char* text, const char*, std::int32_t) {
        sReported.emplace_back(text);
    };
    NActor::HostContext context{{}, &table};
    const auto idOf = [&](const char* base, int index) {
        sReported.clear();
        const std::uint32_t id = NActor::MakeTwoCharId(NActor::Host(&context), base, index);
        std::string text;
        for (int shift = 24; shift >= 0; shift -= 8) text += static_cast<char>(id >> shift & 0xFF);
        return text;
    };
    Texts ids;
    for (const int index : {0, 99, 100, 126, 775, 776, 1351}) {
        ids.push_back(idOf("ot", index));
        EXPECT_EQ(sReported, Texts());
    }
    EXPECT_EQ(ids, (Texts{"ot00", "ot99", "otAA", "otBA", "otZZ", "otaa", "otwd"}));
    const std::string range = "inIndex >= 0 && inIndex < kTwoCharMax * 2";
    EXPECT_EQ(idOf("ot", 1352), "otwe");
    EXPECT_EQ(sReported, Texts{range});
    EXPECT_EQ(idOf("ot", 1451), "otzz");
    for (const int index : {-1, 1452}) {
        EXPECT_EQ(idOf("ot", index), "ot\0\0"s);
        EXPECT_EQ(sReported, (Texts{range, "false"}));
    }
    for (const char* const base : {"o", ""}) {
        EXPECT_EQ(idOf(base, 5), (base + "\0\0"s).substr(0, 2) + "05");
        EXPECT_EQ(sReported, Texts{"inRateBase[0] != 0 && inRateBase[1] != 0"});
    }
}

}  // namespace

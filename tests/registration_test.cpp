// How the host learns the actor, and the beginning and end of an instance.

#include <cstring>

#include "actor/dynamic_outputs.h"
#include "actor_support.h"

using NActor::ActorInfo;

namespace {

class Registration : public ActorTest {};

TEST_F(Registration, FillsItsFieldsAndNothingElse)
{
    // Codes, slots and what stays, at the offsets that the host has them.
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
    std::vector<std::size_t> expected = {16, 32, 40};
    for (std::size_t word = 48; word < 624; word += 8) expected.push_back(word);
    for (const std::size_t word : {664U, 712U, 784U, 792U}) expected.push_back(word);
    EXPECT_EQ(untouched, expected);
    EXPECT_EQ(first[4], 0xA5);
    mInstance.Info().NoOpCallback();
}

TEST_F(Registration, DefinesItsProperties)
{
    const std::string definitions = mInstance.Info().DefinitionStringCallback(nullptr);
    EXPECT_EQ(definitions,
              "INPROP eom_char \t\teoms\tint\t\t\tnumber,hex,char\t\t0\t255\t\t0\r"
              "INPROP text\t\t\ttext\tstring\t\ttext\t\t\t\t*\t*\t\t-text-\t*\t*\t1\r"
              "OUTPROP msg_rcv\t\tmrcv\tbool\t\ttrig\t\t\t\t0\t1\t\t0\r");
    ASSERT_EQ(mInstance.Outputs().size(), 1U);
    EXPECT_EQ(mInstance.Outputs()[0].mName, "msg_rcv");
    EXPECT_EQ(mInstance.Outputs()[0].mId, "mrcv");
}

TEST_F(Registration, HelpFoldsDynamicOutputsAndIsCutToItsBuffer)
{
    using NStandIn::kPropertyActor;
    using NStandIn::kPropertyInput;
    constexpr auto kPropertyOutput = NActor::kPropertyOutput;
    struct Row {
        NActor::PropertyKind mKind;
        std::uint16_t mNumber;
        const char* mStart;
        const char* mAsked;
    };
    for (const Row& row : {Row{kPropertyActor, 0, "Parses the 'text' input", "0 0"},
                           {kPropertyInput, 1, "The character that signifies", "1 1"},
                           {kPropertyInput, 2, "The text to be parsed. Each", "1 2"},
                           {kPropertyInput, 9, "", "1 9"},  // the host gives no position
                           {kPropertyOutput, 1, "Sends a trigger when", "2 1"},
                           {kPropertyOutput, 2, "The output for one of", "2 2"},
                           {kPropertyOutput, 65535, "The output for one of", "2 2"}}) {
        std::string help;
        EXPECT_EQ(LogOf([&] { help = mInstance.Help(row.mKind, row.mNumber, 400); }),
                  Texts{"PropertyHelpIndex "s + row.mAsked});
        EXPECT_EQ(std::strncmp(help.c_str(), row.mStart, std::strlen(row.mStart)), 0) << help;
        EXPECT_EQ(help.find_first_not_of('\0', std::strlen(help.c_str())), std::string::npos);
    }
    EXPECT_EQ(mInstance.Help(kPropertyOutput, 2, 5), "The \0"s);
    EXPECT_EQ(mInstance.Help(kPropertyOutput, 2, 1), "\0"s);
    EXPECT_EQ(LogOf([&] { mInstance.Help(kPropertyOutput, 3, 0); }),
              Texts{"PropertyHelpIndex 2 2"});
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
    EXPECT_EQ(second.Info().mActorDataPtr, nullptr);
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
        ActorInfo& info = instance->Info();
        NActor::HostCallbacks table{};
        static int sReports = 0;
        table.ReportAssertion = [](const char* text, const char*, std::int32_t) {
            EXPECT_STREQ(text, "info != nil");
            ++sReports;
        };
        NActor::HostContext context{{}, &table};
        sReports = 0;
        info.DisposeCallback(&context, &info);
        EXPECT_EQ(sReports, 1);
    }
}

TEST_F(Registration, MakesIdsAndReportsThoseOutOfRange)
{
    static std::vector<std::string> sReported;
    NActor::HostCallbacks table{};
    table.ReportAssertion = [](const char* text, const char*, std::int32_t) {
        sReported.emplace_back(text);
    };
    NActor::HostContext context{{}, &table};
    const auto idOf = [&](const char* base, int index) {
        sReported.clear();
        const std::uint32_t id = NActor::MakeTwoCharId(&context, base, index);
        std::string text;
        for (int shift = 24; shift >= 0; shift -= 8) text += static_cast<char>(id >> shift & 0xFF);
        return text;
    };
    struct Row {
        int mIndex;
        std::string mId;
    };
    for (const Row& row : {Row{0, "ot00"},
                           {1, "ot01"},
                           {9, "ot09"},
                           {99, "ot99"},
                           {100, "otAA"},
                           {125, "otAZ"},
                           {126, "otBA"},
                           {775, "otZZ"},
                           {776, "otaa"},
                           {1351, "otwd"}}) {
        EXPECT_EQ(idOf("ot", row.mIndex), row.mId);
        EXPECT_EQ(sReported, Texts());
    }
    const std::string range = "inIndex >= 0 && inIndex < kTwoCharMax * 2";
    EXPECT_EQ(idOf("ot", 1352), "otwe");
    EXPECT_EQ(sReported, Texts{range});
    EXPECT_EQ(idOf("ot", 1451), "otzz");
    for (const int index : {-1, 1452}) {
        EXPECT_EQ(idOf("ot", index), "ot\0\0"s);
        EXPECT_EQ(sReported, (Texts{range, "false"}));
    }
    EXPECT_EQ(idOf("o", 5), "o\0"s + "05");
    EXPECT_EQ(sReported, Texts{"inRateBase[0] != 0 && inRateBase[1] != 0"});
}

}  // namespace

// Registration, help texts, and the beginning and end of an instance.

#include <cstring>

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
    EXPECT_EQ(std::memcmp(first + 8, "SoW_", 4), 0);
    EXPECT_EQ(mInstance.Info().mHostWord, 256U);
    EXPECT_STREQ(mInstance.Info().mDisplayName, "Word Sifter");

    // For each word: 'u' untouched, '0' null, 'w' written.
    std::string words;
    for (std::size_t word = 0; word < sizeof first; word += 8) {
        const bool untouched = first[word] == 0xA5 && second[word] == 0x3C;
        const bool null = std::memcmp(first + word, "\0\0\0\0\0\0\0\0", 8) == 0;
        words += untouched ? 'u' : null ? '0' : 'w';
    }
    EXPECT_EQ(words, "wwuwu" + std::string(73, 'u') + "wwwwwuw0000uww0wwwwwuu");
    EXPECT_EQ(first[4], 0xA5);
    mInstance.Info().NoOpCallback();
}

TEST_F(Registration, DefinesItsProperties)
{
    EXPECT_STREQ(mInstance.Info().DefinitionStringCallback(nullptr),
                 "INPROP eom_char \t\teoms\tint\t\t\tnumber,hex,char\t\t0\t255\t\t0\r"
                 "INPROP text\t\t\ttext\tstring\t\ttext\t\t\t\t*\t*\t\t-text-\t*\t*\t1\r"
                 "OUTPROP msg_rcv\t\tmrcv\tbool\t\ttrig\t\t\t\t0\t1\t\t0\r");
    EXPECT_EQ(mInstance.Outputs().at(0).mName, "msg_rcv");
    EXPECT_EQ(mInstance.Outputs().at(0).mId, "mrcv");
    EXPECT_EQ(mInstance.Inputs().at(0).mMaximum.Integer(), 255);
}

TEST_F(Registration, HelpFoldsDynamicOutputsAndIsCutToItsBuffer)
{
    constexpr auto kInput = NStandIn::kPropertyInput;
    constexpr auto kOutput = NActor::kPropertyOutput;
    struct Row {
        NActor::PropertyKind mKind;
        std::uint16_t mNumber;
        const char* mText;
        const char* mAsked;
    };
    const char* const ofAValue = "The output for one of the parsed values.";
    for (const Row& row :
         {Row{NStandIn::kPropertyActor, 0,
              "Parses the 'text' input using a user-specified parsing string. To edit the parsing "
              "string, double-click this actor's icon and edit the values in the dialog that "
              "appears. For documentation on the parsing string format, click the \"Help\" button "
              "at the bottom of the dialog.",
              "0 0"},
          {kInput, 1,
           "The character that signifies the end of a line. Whenever this character is received, "
           "the data accumulated in the buffer is parsed using the parsing string, and the "
           "resulting output is provided if a match is successfully made. Use 0 to parse to the "
           "end of the input text.",
           "1 1"},
          {kInput, 2,
           "The text to be parsed. Each time new data is sent to this input, it will be parsed "
           "according to the user specified parsing-string.",
           "1 2"},
          {kInput, 9, "", "1 9"},  // the host has no position for it
          {kOutput, 1,
           "Sends a trigger when a valid message has been parsed and it matches the pattern "
           "specified by the parsing string.",
           "2 1"},
          {kOutput, 2, ofAValue, "2 2"},
          {kOutput, 65535, ofAValue, "2 2"}}) {
        std::string help;
        EXPECT_EQ(LogOf([&] { help = mInstance.Help(row.mKind, row.mNumber, 400); }),
                  Texts{"PropertyHelpIndex "s + row.mAsked});
        EXPECT_STREQ(help.c_str(), row.mText);
    }
    EXPECT_EQ(mInstance.Help(kOutput, 2, 5), "The \0"s);
    EXPECT_EQ(mInstance.Help(kOutput, 2, 1), "\0"s);
    EXPECT_EQ(LogOf([&] { mInstance.Help(kOutput, 3, 0); }), Texts{"PropertyHelpIndex 2 2"});
    EXPECT_EQ(mInstance.Help(kInput, 5, 2), "\0\0"s);  // after the last text
    Fail(NStandIn::kPropertyHelpIndex, true);
    EXPECT_EQ(mInstance.Help(kInput, 1, 2), "\0\0"s);
    EXPECT_EQ(Reports(), Texts{"false"});
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
    struct Row {
        const char* mBase;
        std::int32_t mIndex;
        std::string mId;
        Texts mReports;
    };
    const Texts none;
    const Texts shortBase = {"inRateBase[0] != 0 && inRateBase[1] != 0"};
    const std::string range = "inIndex >= 0 && inIndex < kTwoCharMax * 2";
    for (const Row& row : {Row{"ot", 0, "ot00", none},
                           {"ot", 99, "ot99", none},
                           {"ot", 100, "otAA", none},
                           {"ot", 126, "otBA", none},
                           {"ot", 775, "otZZ", none},
                           {"ot", 776, "otaa", none},
                           {"ot", 1351, "otwd", none},
                           {"ot", 1352, "otwe", {range}},
                           {"ot", 1451, "otzz", {range}},
                           {"ot", -1, "ot\0\0"s, {range, "false"}},
                           {"ot", 1452, "ot\0\0"s, {range, "false"}},
                           {"o", 5, {'o', 0, '0', '5'}, shortBase},
                           {"", 5, {0, 0, '0', '5'}, shortBase}}) {
        sReported.clear();
        const std::uint32_t id =
            NActor::MakeTwoCharId(NActor::Host(&context), row.mBase, row.mIndex);
        std::string text;
        for (int shift = 24; shift >= 0; shift -= 8) text += static_cast<char>(id >> shift & 0xFF);
        EXPECT_EQ(text, row.mId);
        EXPECT_EQ(sReported, row.mReports) << row.mId;
    }
}

}  // namespace

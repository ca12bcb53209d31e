// sift --suggest as a user runs it.

#include "sift_support.h"

namespace {

TEST_F(Sift, SuggestsParsingStrings)
{
    struct Row {
        const char* mArguments;
        std::string mInput;
        int mStatus;
        const char* mPrinted;  // parts
        const char* mError;    // parts
    };
    const Row rows[] = {
        {"--suggest", "T=1.5 kg\r\nT=-20 g\r\n \r\nERR\r\n", 0,
         "Messages end with line feed: eom_char is 10.\n~'T=' T:float=.# unit:string=letters\n"
         "  matches 2 of 3 messages\n  T     float    -20 to 1.5\n  unit  string   \"kg\", \"g\"\n~"
         "'ERR'\n  matches 1 of 3 messages\n  note: ~1 message of only white space not "
         "counted.\nEvery message matches one of these.\n",
         ""},
        {"--suggest --name t,u --json", "1;2\n3;4\n", 0,
         "{\"type\":\"suggestion\",\"pattern\":\"t:integer=# ';' u:integer=#\",\"messages\":2,"
         "\"matched\":2,\"outputs\":[{\"name\":\"t\",\"value\":\"integer\",\"least\":1,"
         "\"greatest\":3},"
         "~,\"notes\":[]}\n{\"type\":\"summary\",\"messages\":2,\"matched\":2,\"missed\":0,"
         "\"eom_char\":10}\n",
         ""},
        {"--suggest -e ';' -", "a1;a2;a\0b;a3"s, 0,
         "eom_char is 59~'a' a:integer=#\n  matches 3 of 3", "1 message with a byte 00 left out"},
        {"--suggest -x", "AA 05\nAA 07\nzz\n", 2, "{{AA}} byte:integer=byte\n  matches 2 of 2",
         "line 3"},
        {"--suggest", "", 1, "There are no messages", ""},
        {"--suggest --name 1t", "", 2, "", "'1t' isn't a name"},
        {"--suggest --count", "", 2, "", "can't be combined"},
        {"--suggest missing", "", 2, "There are no messages", "missing: "},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Run(row.mArguments, row.mInput), row.mStatus) << row.mArguments;
        ExpectParts(mOut, row.mPrinted);
        ExpectParts(mErr, row.mError);
        if (row.mStatus != 0 || row.mError[0] != '\0' || row.mArguments != "--suggest"s) continue;
        const std::string fromPipe = mOut;
        EXPECT_EQ(Run("--suggest " + Write("file", row.mInput)), 0);
        EXPECT_EQ(mOut, fromPipe);
    }
}

TEST_F(Sift, EditsASuggestionIfThereIsNoParsingStringYet)
{
    setenv("TMPDIR", mFolder.c_str(), 1);
    unsetenv("VISUAL");
    setenv("EDITOR", "sed -i s/T:/temp:/", 1);
    const std::string pattern = (mFolder / "new").string();
    EXPECT_EQ(Run("--edit -f " + pattern + ' ' + Write("file", "T=1\nT=2\n")), 0);
    EXPECT_EQ(mOut, "temp=1\ntemp=2\n");
    EXPECT_EQ(ReadFile(pattern), "'T=' temp:integer=#");
    ExpectParts(mErr, "a suggestion that matches 2 of 2 messages");
}

}  // namespace

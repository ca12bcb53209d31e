// What sift does when its input or output fails, or its memory.

#include <sys/stat.h>

#include "sift_support.h"

namespace {

TEST_F(Sift, ReportsOutputThatIsLost)
{
    const std::string one = Write("one", "1\n");
    std::string lines;  // more than sift reads at a time
    for (int i = 0; i < 100; ++i) lines += "1" + std::string(1000, 'x') + '\n';
    const std::string large = Write("large", lines);
    for (const std::string& arguments :
         {"n:i=# " + one, "n:i=# --csv " + large, "n:i=# --json --misses " + large,
          "n:i=# --count " + one, "n:i=# --trace " + one, "--suggest " + one,
          "--suggest --json " + one, "--show " + large, "--explain n:i=#"s, "--check n:i=#"s,
          "--check --json n:i=#"s, "n:q=# --json"s, "--man"s, "--help"s, "--version"s}) {
        for (const char* const output : {" >/dev/full", " >&-"}) {
            if (output == " >/dev/full"s && !fs::exists("/dev/full")) continue;
            EXPECT_EQ(Run(arguments + output), 2) << arguments;
            ExpectParts(mErr, "sift: can't write to standard output: ");
        }
        const int status = Run(arguments);
        const std::string out = mOut;
        EXPECT_EQ(Run(arguments + " <&- 2>&-"), status) << arguments;
        EXPECT_EQ(mOut, out);
    }
}

TEST_F(Sift, ReadsTheFilesThatItCan)
{
    struct Row {
        const char* mArguments;
        const char* mOut;  // parts
    };
    const Row rows[] = {
        {"n:i=# ", "n=1\nn=2\n"},
        {"n:i=# --csv ", "n\n1\n2\n"},
        {"n:i=# --count ", "2\n"},
        {"n:i=# --trace --misses ", "n=1\n~n=2\n"},
        {"n:i=# --json ", "\"n\":1}}\n{\"type\":\"error\",\"error\":\"~\"n\":2}}\n{\"type\":\"sum"},
        {"--show ", "  31 0D 0A ~3 bytes~ of them 00\n       0  32 0D 0A ~3 bytes~ of them 00\n"},
        {"--suggest ", "matches 2 of 2 messages"},
    };
    const std::string one = Write("one", "1\r\n");
    const std::string two = Write("two", "2\r\n");
    const std::string locked = Write("locked", "3\r\n");
    fs::permissions(locked, fs::perms::none);
    for (const std::string& bad : {"/nowhere"s, mFolder.string(), locked, "/proc/self/mem"s}) {
        if (bad == locked ? access(bad.c_str(), R_OK) == 0 : bad[1] == 'p' && !fs::exists(bad))
            continue;
        for (const Row& row : rows) {
            EXPECT_EQ(Run(row.mArguments + one + ' ' + bad + ' ' + two), 2);
            EXPECT_EQ(mErr.rfind("sift: " + bad + ": ", 0), 0U) << mErr;
            EXPECT_EQ(std::count(mErr.begin(), mErr.end(), '\n'), 1) << mErr;
            ExpectParts(mOut, row.mOut);
            EXPECT_EQ(mOut.find("empty"), std::string::npos) << mOut;
        }
        EXPECT_EQ(Run("-f " + bad + ' ' + one), 2);
        ExpectParts(mErr, "sift: -f: " + bad + ": ");
    }
    EXPECT_EQ(Run("n:i=# " + one + " - " + two + " <&-"), 2);
    EXPECT_EQ(mOut, "n=1\nn=2\n");
    ExpectParts(mErr, "sift: standard input: Bad file descriptor\n");
}

// Runs the program with a limit of the shell.
class SiftWithLimit : public Sift {
  protected:
    void Limit(const std::string& command)
    {
        const std::string script =
            Write("limited", "#!/bin/sh\n" + command + "\nexec '" + Program() + "' \"$@\"\n");
        fs::permissions(script, fs::perms::owner_all);
        setenv("WORD_SIFTER_SIFT", script.c_str(), 1);
    }
};

TEST_F(SiftWithLimit, EndsWithoutMemory)
{
    Limit("ulimit -v 100000 || exit");
    if (Run("--version") != 0) GTEST_SKIP() << "there is no such limit, or a sanitizer needs more";
    EXPECT_EQ(Run("--hex n:i=# " + Write("one", "31\n") + " /dev/zero"), 2);
    EXPECT_EQ(mOut, "n=1\n");
    EXPECT_EQ(mErr, "sift: out of memory\n");
}

// The plug-in can't tell the host about more outputs than there are numbers for.
TEST_F(Sift, FailsIfThePluginReportsAFailure)
{
    std::string pattern = "(0-0";
    for (int i = 0; i < 65'600; ++i) pattern += ",0-0";
    EXPECT_EQ(Run("--count -f " + Write("pattern", pattern + ")"), "a\n"), 2);
    EXPECT_EQ(mOut, "1\n");
    ExpectParts(mErr, "sift: the plug-in reports a failed check: propCount");
}

// Whatever fails, the pattern is as it was, and a text that the user wrote is kept.
TEST_F(SiftWithLimit, KeepsWhatWasEdited)
{
    setenv("TMPDIR", mFolder.c_str(), 1);
    unsetenv("VISUAL");
    struct Row {
        const char* mEditor;
        std::string mFile;   // of the pattern
        const char* mError;  // parts
        bool mIsKept;
    };
    const std::string fresh = (mFolder / "fresh").string();
    const std::string pipe = (mFolder / "pipe").string();
    const std::string old = Write("pattern", "'old'\n");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const Row rows[] = {
        {"echo n:i >", fresh, "cancelled; your text is kept in ", true},
        {"echo n:i=# >", "/nowhere/x", "your text is kept in ~No such file or directory", true},
        {"echo n:i=# >", pipe, "your text is kept in ~pipe: Operation not permitted", true},
        {": >", fresh, "cancelled; nothing was written\n", false},
        {": >", old, "cancelled; the parsing string is unchanged\n", false},
        {"false", old, "the editor 'false' failed\n", false},
        {"rm", old, "can't read back ", false},
    };
    const auto expectNoMore = [this] {
        for (const auto& entry : fs::directory_iterator(mFolder))
            EXPECT_NE(entry.path().filename().string().substr(0, 5), "sift.");
    };
    for (const Row& row : rows) {
        setenv("EDITOR", row.mEditor, 1);
        const std::string fill = row.mFile == pipe ? "echo >" + pipe + " &" : "true";
        EXPECT_EQ(std::system(fill.c_str()), 0);
        EXPECT_EQ(Run("--edit -f " + row.mFile + ' ' + Write("one", "1\n")), 2) << row.mEditor;
        ExpectParts(mErr, row.mError);
        const std::size_t kept = mErr.find("kept in ");
        EXPECT_EQ(kept != std::string::npos, row.mIsKept) << mErr;
        if (row.mIsKept) {
            EXPECT_EQ(mErr.find("nothing was written"), std::string::npos) << mErr;
            fs::remove(mErr.substr(kept + 8, mErr.find('\n', kept) - kept - 8));
        }
        expectNoMore();
        EXPECT_FALSE(fs::exists(fresh));
        EXPECT_TRUE(fs::is_fifo(pipe));
        EXPECT_EQ(ReadFile(old), "'old'\n");
    }
    Limit("ulimit -f 8");
    EXPECT_EQ(Run("--edit -f " + Write("large", std::string(100'000, ' '))), 2);
    ExpectParts(mErr, ".pattern: File too large\n");
    EXPECT_EQ(mErr.find("kept"), std::string::npos) << mErr;
    expectNoMore();
}

}  // namespace

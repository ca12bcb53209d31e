// sift as a user runs it: the program itself, its output and its exit status.

#include <gtest/gtest.h>
#if __has_include(<pty.h>)
#include <pty.h>
#else
#include <util.h>
#endif
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

using namespace std::string_literals;

namespace {

namespace fs = std::filesystem;

std::string ReadFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Expects these parts in text, one after the other. '~' separates them.
void ExpectParts(const std::string& text, const std::string& parts)
{
    std::size_t place = 0;
    std::istringstream stream(parts);
    for (std::string part; std::getline(stream, part, '~');) {
        place = text.find(part, place);
        EXPECT_NE(place, std::string::npos) << part << "\n" << text;
    }
}

class Sift : public testing::Test {
  protected:
    Sift() : mFolder(fs::temp_directory_path() / ("sift_test." + std::to_string(getpid())))
    {
        fs::create_directories(mFolder);
    }
    ~Sift() override { fs::remove_all(mFolder); }

    std::string Write(const char* name, const std::string& text)
    {
        std::ofstream(mFolder / name, std::ios::binary) << text;
        return (mFolder / name).string();
    }

    // arguments: as a shell reads them. Returns the exit status; the fields have what was printed.
    int Run(const std::string& arguments, const std::string& input = "")
    {
        const std::string command = "\"" WORD_SIFTER_SIFT "\" " + arguments + " <" +
                                    Write("in", input) + " >" + (mFolder / "out").string() + " 2>" +
                                    (mFolder / "err").string();
        const int status = std::system(command.c_str());
        mOut = ReadFile(mFolder / "out");
        mErr = ReadFile(mFolder / "err");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // As Run, but at a terminal, where keys are typed. All that is printed there is in mOut.
    int RunAtTerminal(const std::string& arguments, const std::string& keys = "")
    {
        int terminal = -1;
        if (forkpty(&terminal, nullptr, nullptr, nullptr) == 0) {
            const std::string command = "\"" WORD_SIFTER_SIFT "\" " + arguments;
            _exit(WEXITSTATUS(std::system(command.c_str())));
        }
        EXPECT_EQ(write(terminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
        mOut.clear();
        for (char c = 0; read(terminal, &c, 1) == 1;) mOut += c;
        close(terminal);
        int status = 0;
        wait(&status);
        return WEXITSTATUS(status);
    }

    fs::path mFolder;
    std::string mOut;
    std::string mErr;
};

TEST_F(Sift, PrintsTheValuesOfEachMessage)
{
    EXPECT_EQ(Run("\"'T=' t:float=.# u:string=eol\"", "T=2.50 a b\nno\r\nT=-1 \"q\\\x01"), 0);
    EXPECT_EQ(mOut, "t=2.5 u=\"a b\"\nt=-1 u=\"\\\"q\\\\\\x01\"\n");
    EXPECT_EQ(mErr, "");
    EXPECT_EQ(Run("x:integer=#", "none\n"), 1);
    EXPECT_EQ(mOut, "");
    EXPECT_EQ(Run("\"'a'\"", "a\nb\na\n"), 0);
    EXPECT_EQ(mOut, "msg_rcv=1\nmsg_rcv=1\n");
}

TEST_F(Sift, TakesTheEndOfMessageInManyWays)
{
    struct Row {
        const char* mEom;
        std::string mInput;
    };
    for (const Row& row : {Row{"';'", "1;2;"},
                           {"'\\r'", "1\r2\r"},
                           {"'\\x3b'", "1;2"},
                           {"59", "1;2;"},
                           {"'\\0'", "1\0002"s},
                           {"0", "1\0002\0"s}}) {
        EXPECT_EQ(Run("n:i=# -e "s + row.mEom, row.mInput), 0);
        EXPECT_EQ(mOut, "n=1\nn=2\n") << row.mEom;
    }
    for (const char* bad : {"256", "ab", "'\\q'", "''", "'\\x1FF'"}) {
        EXPECT_EQ(Run("n:i=# -e "s + bad), 2) << bad;
        EXPECT_NE(mErr.find("isn't a character"), std::string::npos) << mErr;
    }
}

TEST_F(Sift, ShowsThePlaceOfABadParsingString)
{
    struct Row {
        const char* mPattern;
        const char* mError;  // parts
    };
    const Row rows[] = {
        {"'ab' wrong x",
         "sift: Syntax error at 'wrong'\n  'ab' wrong x\n       ^^^^^\nat byte 5 of the parsing "
         "string\nhint: a text of the message is written in quotes: 'wrong'\nno piece can start "
         "there; each form would have needed:\n  text       'a text"},
        {"'x' # first line\n\t'\xC3\xA4' ! y\n",
         "sift: Unexpected character '!'\n  \\t'\xC3\xA4' ! y\n        ^\nat byte 23 "},
        {"n:i=# 'abc", "n:i=# 'abc\n        ^\n"},
        {"{0A0D}", "{0A0D}\n   ^^^^\n~: 0A 0D"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Run("-f " + Write("pattern", row.mPattern)), 2);
        ExpectParts(mErr, row.mError);
    }
}

TEST_F(Sift, ReadsFilesInTurn)
{
    const std::string pattern = Write("pattern", "n:i=#\n");
    const std::string one = Write("one", "1\n");
    const std::string two = Write("two", "2");
    EXPECT_EQ(Run("-f " + pattern + " " + one + " - " + two, "5\n"), 0);
    EXPECT_EQ(mOut, "n=1\nn=5\nn=2\n");
    EXPECT_EQ(Run("-f " + pattern + " " + one + " /nowhere " + two), 2);
    EXPECT_EQ(mOut, "n=1\nn=2\n");
    EXPECT_NE(mErr.find("/nowhere"), std::string::npos);
    EXPECT_EQ(Run("-f /nowhere"), 2);
    EXPECT_EQ(Run(""), 2);
    EXPECT_EQ(Run("--plugin /nowhere x"), 2);
    EXPECT_EQ(Run("n:i=#", "\0007\n8\n"s), 0);
    EXPECT_EQ(mOut, "n=8\n");
    EXPECT_NE(mErr.find("NUL"), std::string::npos);
}

TEST_F(Sift, WarnsOfWhatCompilesButIsSeldomMeant)
{
    EXPECT_EQ(Run("--check 'ph:float=#.#'"), 0);
    EXPECT_EQ(mErr.rfind("sift: warning: piece 1: ", 0), 0U) << mErr;
    EXPECT_EQ(Run("--explain 'ph:float=#.#'"), 0);
    ExpectParts(mOut, "warning: this piece and the next~piece 2");
    EXPECT_EQ(Run("--check 'ph:float=.#'"), 0);
    EXPECT_EQ(mErr, "");
}

// A live source: the answer to one message is there before the next one is sent.
TEST_F(Sift, AnswersWhileItsInputIsOpen)
{
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    ASSERT_EQ(pipe(input.data()), 0);
    ASSERT_EQ(pipe(output.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
        dup2(input[0], 0);
        dup2(output[1], 1);
        close(input[1]);
        execl(WORD_SIFTER_SIFT, "sift", "n:i=#", static_cast<char*>(nullptr));
        _exit(127);
    }
    close(input[0]);
    close(output[1]);
    for (const char* message : {"1\n", "2\n"}) {
        ASSERT_EQ(write(input[1], message, 2), 2);
        std::string line(4, '\0');
        ASSERT_EQ(read(output[0], line.data(), line.size()), 4);
        EXPECT_EQ(line, "n="s + message);
    }
    close(input[1]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(Sift, ExplainsAndPrintsInManyForms)
{
    const std::string pattern = "\"'T=' t:s=[^,;] ',' f:f=.# f:i=2x (1-1)\" ";
    const std::string input = "T=\"\xC3\xA4\",2.5 1Fa\nT=\xFF,-1 x\nT=a;b\n\nT=\x01\x02,99 0AZ\n";
    struct Row {
        std::string mArguments;
        std::string mInput;
        int mStatus;
        std::string mOut;  // parts
    };
    const Row rows[] = {
        {pattern + "--csv", input, 0,
         "t,ot02,ot03,ot04\n\"\"\"\xC3\xA4\"\"\",2.5,31,0\n\x01\x02,99,10,1\n"},
        {pattern + "--count", input, 0, "2\n"},
        {pattern + "--check", "", 0, "t  string   ot01\nf  float    ot02\nf  integer  ot03\n "},
        {"s:s=? --json", "\xFF\na\n", 0,
         R"({"type":"match","message":1,"values":{"s":{"hex":"FF"}}}~,"values":{"s":"a"}})"
         R"(~{"type":"summary","messages":2,"matched":2,"missed":0})"},
        {"\"'a' n:i=#\" --json --trace --misses", "a 1\nb", 0,
         R"("text":"a 1","steps":[{"piece":1,"start":0,"length":1},{"piece":null,"start":1,)"
         R"(~"miss","message":2,"text":"b","verdict":"piece 1 ~"stopped_at":0,"piece":1,)"},
        {"n:i=# --json /nowhere", "", 2, R"({"type":"error","error":"/nowhere: ~"summary")"},
        {"n:q=# --json", "", 2, R"({"type":"error","error":"Syntax ~"start":0,"length":1,"hints")"},
        {"n:i=# --hex", "31 3\t2\n\n3 1 3\n3g\n33", 2, "n=12\nn=3\n"},
        {"n:i=# --csv --json", "1\n", 2, ""},
        {"\"n:integer=2 bytes (x=0-3):L 'a' eol\" --explain", "", 0,
         "takes exactly 2 bytes~captures \"n\", an integer, least significant byte first\npiece 2  "
         "(x=0-3):L\n"
         "~a block of 1 byte~\"x\", an integer, bits 0 to 3\n~skipped)\npiece 4  eol\n~of the "
         "line"},
        {"\"'\xC3\xA4' # n:s=c 'x'\" --trace --misses", "\xC3\xA4 12.5 x\n\xC3\xA4 7xx\n\n", 0,
         "message 1 matched: n=.5\n  \xC3\xA4 12.5 x\n  1-2233-4\n~white space skipped: \" \"\n"
         "~piece 3  n:s=c  took \".5\", gave n=.5\n~message 2: the message ends before piece 4\n"
         "  \xC3\xA4 7xx\n  1-233^\n  piece 4  'x'\n~wanted   the text \"x\"~found    nothing\n"
         "  hint     piece 3 took \"xx\": ~message 3: the message is empty\n"},
        {"'2 bytes n:i=#' --misses", "\x01\x02z\n\0b\n"s, 1,
         "message 1: piece 2 does not match at byte 2\n  0000  01 02 7A   ~|..z|\n         1  1 "
         "^^\n"
         "~found    'z'\nmessage 2: the message is lost: it contains a NUL~  0000  00 62  "},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Run(row.mArguments, row.mInput), row.mStatus) << row.mArguments << mErr;
        ExpectParts(mOut, row.mOut);
    }
}

// What a user at a terminal sees, and what becomes of an edited parsing string.
TEST_F(Sift, EditsTheParsingString)
{
    setenv("TMPDIR", mFolder.c_str(), 1);
    unsetenv("VISUAL");
    const std::string pattern = Write("pattern", "'old'\n");
    fs::permissions(pattern, fs::perms::owner_all);
    fs::create_symlink(pattern, mFolder / "link");
    const std::string link = (mFolder / "link").string();

    // Nobody is there to ask: the text is kept, and the pattern is as it was.
    setenv("EDITOR", "echo n:i >", 1);
    EXPECT_EQ(Run("--edit -f " + link, "7\n"), 2);
    const std::size_t place = mErr.find("your text is kept in ") + 21;
    EXPECT_EQ(ReadFile(mErr.substr(place, mErr.find('\n', place) - place)), "n:i\n") << mErr;
    EXPECT_EQ(ReadFile(pattern), "'old'\n");

    const std::string turned = (mFolder / "turned").string();
    setenv("EDITOR", ("mkdir " + turned + " && t=n:i || t=n:i=#; echo $t >").c_str(), 1);
    EXPECT_EQ(RunAtTerminal("--edit -f " + link, "y\n"), 0);
    EXPECT_NE(mOut.find("\x1B[1;31m^\x1B[0m"), std::string::npos) << mOut;
    EXPECT_EQ(ReadFile(pattern), "n:i=#\n");
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(fs::status(pattern).permissions(), fs::perms::owner_all);
    EXPECT_EQ(Run("--edit", "7\n"), 0);
    EXPECT_EQ(mOut, "n=7\n");

    const std::string one = Write("one", "7\n");
    EXPECT_EQ(RunAtTerminal("k:i=# " + one), 0);
    EXPECT_EQ(mOut, "\x1B[36mk\x1B[0m=7\r\n");
    setenv("NO_COLOR", "1", 1);
    EXPECT_EQ(RunAtTerminal("k:i=# " + one), 0);
    EXPECT_EQ(mOut, "k=7\r\n");
}

// sift compares where the steps that it shows lead with the plug-in's own verdict, and fails where
// they differ: so it goes through every beginning of every message.
TEST_F(Sift, TracesWhatThePluginMatches)
{
    std::string traces;
    for (const auto& entry : fs::directory_iterator(WORD_SIFTER_EXAMPLES)) {
        if (entry.path().extension() != ".pattern") continue;
        std::string messages;
        std::istringstream input(ReadFile(fs::path(entry.path()).replace_extension(".input")));
        for (std::string line; std::getline(input, line);) {
            for (std::size_t n = 1; n <= line.size(); ++n) messages += line.substr(0, n) + '\x1E';
        }
        EXPECT_EQ(Run("-e '\\x1E' --trace --misses -f " + entry.path().string(), messages), 0)
            << mErr;
        traces += mOut;
    }
    for (const char* words : {"matched: ", "does not match at", "the message ends before"})
        ExpectParts(traces, words);
}

// Every example prints the output beside it.
TEST_F(Sift, RunsTheExamples)
{
    int examples = 0;
    for (const auto& entry : fs::directory_iterator(WORD_SIFTER_EXAMPLES)) {
        if (entry.path().extension() != ".pattern") continue;
        ++examples;
        const std::string stem = (entry.path().parent_path() / entry.path().stem()).string();
        std::string options = "-f " + stem + ".pattern";
        std::string eom;
        if (std::ifstream(stem + ".eom") >> eom) options += " -e " + eom;
        EXPECT_EQ(Run(options, ReadFile(stem + ".input")), 0) << stem << mErr;
        EXPECT_EQ(mOut, ReadFile(stem + ".output")) << stem;
    }
    EXPECT_GE(examples, 6);
}

TEST_F(Sift, ReportsItsVersion)
{
    EXPECT_EQ(Run("--version"), 0);
    EXPECT_EQ(mOut, "sift " WORD_SIFTER_VERSION "\n");
    EXPECT_EQ(Run("--man"), 0);
    ExpectParts(mOut, ".TH SIFT 1 \"\" \"Word Sifter " WORD_SIFTER_VERSION "\"\n~\\-\\-version");
}

}  // namespace

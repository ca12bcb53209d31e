// sift as a user runs it: the program itself, its output and its exit status.

#include <gtest/gtest.h>
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

    // arguments: as a shell reads them. Gives the exit status; what was printed is in the fields.
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
        EXPECT_NE(mErr.find("is no character"), std::string::npos) << mErr;
    }
}

TEST_F(Sift, ShowsThePlaceOfABadParsingString)
{
    struct Row {
        const char* mPattern;
        const char* mWords;  // parts of what is said, one behind the other
    };
    const Row rows[] = {
        {"'ab' wrong x",
         "sift: Syntax error at 'wrong'\n  'ab' wrong x\n       ^^^^^\nat byte 5 of the parsing "
         "string\nhint: a text that the message holds is written in quotes: 'wrong'\n"},
        {"'x' # first line\n\t'\xC3\xA4' ! y\n",
         "sift: Unexpected character '!'\n  \\t'\xC3\xA4' ! y\n        ^\nat byte 23 "},
        {"n:i=# 'abc", "n:i=# 'abc\n        ^\n"},
        {"n:s=[abc", "n:s=[abc\n      ^\n"},
        {"{0A0D}", "{0A0D}\n   ^^^^\n|: 0A 0D"},
        {"{A}", ": 0A\n"},
        {"n:i=3[a-z]", "hint: a count can't stand before a bracket|behind n:i= behind the count 3"},
        {"n:i#", "hint: a capture has an = behind its type: n:i="},
        {"t=.#", "hint: a capture has a type|t:float="},
        {"n:flaot=.#", "did you mean float?|number     another type in the header"},
        {"n:i=(0-7)", "hint: a bit field has no header|(n=0-7)"},
        {"digits4", "hint: a count stands before its word: 4 digits"},
        {"(a=0-32)", "at most 32 bits wide: 0-32 is more"},
        {"\xE2\x80\x9C"
         "a\xE2\x80\x9D",
         "hint: this isn't a plain quote"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Run("-f " + Write("pattern", row.mPattern)), 2);
        std::size_t place = 0;
        std::istringstream words(row.mWords);
        for (std::string part; std::getline(words, part, '|');) {
            place = mErr.find(part, place);
            EXPECT_NE(place, std::string::npos) << part << "\n" << mErr;
        }
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

// Every example gives what stands beside it.
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

}  // namespace

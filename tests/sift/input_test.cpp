// What sift reads: files, pipes and lines of hexadecimal digits, cut into messages.

#include <sys/time.h>

#include <array>
#include <csignal>

#include "sift_support.h"
#include "tools/system/input_file.h"

namespace {

constexpr int kBlockSize = 65536;  // that sift reads at a time

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
    for (const char* bad : {"256", "0x100", "ab", "'\\q'", "''", "'\\x1FF'"}) {
        EXPECT_EQ(Run("n:i=# -e "s + bad), 2) << bad;
        ExpectParts(mErr, "isn't a character: write~from 0x00 to 0xFF");
    }
}

TEST_F(Sift, ReadsFilesInTurn)
{
    const std::string pattern = Write("pattern", "n:i=#\n");
    const std::string one = Write("one", "1\n");
    const std::string two = Write("two", "2");
    EXPECT_EQ(Run("-f " + pattern + " " + one + " - " + two, "5\n"), 0);
    EXPECT_EQ(mOut, "n=1\nn=5\nn=2\n");
    EXPECT_EQ(Run("-f /nowhere"), 2);
    EXPECT_EQ(Run(""), 2);
    EXPECT_EQ(Run("--plugin /nowhere x"), 2);
    EXPECT_EQ(Run("n:i=#", "\0007\n8\n"s), 0);
    EXPECT_EQ(mOut, "n=8\n");
    EXPECT_NE(mErr.find("bytes 00"), std::string::npos);
}

// A live source waits for the answer to each message before it sends more. What it sends may end
// inside a message.
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
        execl(Program().c_str(), "sift", "n:i=#", static_cast<char*>(nullptr));
        _exit(127);
    }
    close(input[0]);
    close(output[1]);
    struct Row {
        std::string mSent;
        std::string mAnswer;
    };
    for (const Row& row : {Row{"1\n", "n=1\n"}, {"2\n3\n4", "n=2\nn=3\n"}, {"5\n", "n=45\n"}}) {
        ASSERT_EQ(write(input[1], row.mSent.data(), row.mSent.size()),
                  static_cast<ssize_t>(row.mSent.size()));
        std::string answer(row.mAnswer.size(), '\0');
        ASSERT_EQ(read(output[0], answer.data(), answer.size()),
                  static_cast<ssize_t>(answer.size()));
        EXPECT_EQ(answer, row.mAnswer);
    }
    close(input[1]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

// Messages of 7 bytes: in 7 blocks, each of their bytes is once the first of a block and once the
// last. The last message has no end-of-message character.
TEST_F(Sift, ContinuesMessagesInTheNextBlock)
{
    std::string input;
    std::string hexInput;
    std::string expected;
    for (int i = 100; i < 100 + kBlockSize + 10; ++i) {
        const std::string digits = std::to_string(i % 900 + 100);
        input += "n =" + digits + '\n';
        for (const char digit : digits) hexInput += "3"s + digit;
        hexInput += '\n';
        expected += "n=" + digits + '\n';
    }
    input.pop_back();
    hexInput.pop_back();
    EXPECT_EQ(Run("\"'n =' n:i=#\"", input), 0);
    EXPECT_TRUE(mOut == expected);
    EXPECT_EQ(Run("--hex n:i=#", hexInput), 0);
    EXPECT_TRUE(mOut == expected);
}

// A message has at most 2048 bytes. The byte after it ends it or is dropped.
TEST_F(Sift, CutsLongMessagesAcrossBlocks)
{
    const std::string longest = 'A' + std::string(2047, 'b');
    std::string whole;
    std::string cut;
    std::string hex;
    for (int i = 0; i < 100; ++i) {
        whole += longest + '\n';
        cut += longest + 'A';
        hex += "41";
        for (int k = 0; k < 2047; ++k) hex += "62";
        hex += "41";
    }
    EXPECT_EQ(Run("--count \"'A'\"", whole), 0);
    EXPECT_EQ(mOut, "100\n");
    EXPECT_EQ(Run("--count --json \"'A'\"", cut), 2);
    EXPECT_EQ(Run("--json \"'A'\"", cut + "A\n\n"), 0);
    ExpectParts(mOut, R"("messages":102,"matched":101,)");
    EXPECT_EQ(Run("--json --hex \"'A'\"", hex + '\n' + hex + "41"), 0);
    ExpectParts(mOut, R"("messages":201,"matched":201,)");
}

TEST_F(Sift, ShowsItsProgressOverALargeFile)
{
    std::string large;
    while (large.size() < std::size_t{9} << 20) large += std::string(2000, 'x') + '\n';
    EXPECT_EQ(RunAtTerminal("--count n:i=# " + Write("large", large) + " >" + Write("out", "")), 1);
    std::string parts;
    for (int percent = 0; percent <= 100; ++percent) {
        parts += "\r\x1B[Ksift: " + (mFolder / "large").string() + ": " + std::to_string(percent) +
                 " %~";
    }
    ExpectParts(mOut, parts + "\r\x1B[K");
    EXPECT_EQ(ReadFile(mFolder / "out"), "0\n");
}

// A signal that interrupts the read.
TEST(InputFile, GoesOnReadingAfterASignal)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    static volatile std::sig_atomic_t sWriteEnd = -1;
    sWriteEnd = ends[1];
    struct sigaction action = {};
    action.sa_handler = [](int) {
        static volatile std::sig_atomic_t sSignals = 0;
        sSignals = sSignals + 1;
        if (sSignals == 2 && write(sWriteEnd, "1", 1) != 1) _exit(1);
    };
    ASSERT_EQ(sigaction(SIGALRM, &action, nullptr), 0);  // without SA_RESTART
    const itimerval timer = {{0, 20'000}, {0, 20'000}};
    setitimer(ITIMER_REAL, &timer, nullptr);
    NSystem::InputFile file("/dev/fd/" + std::to_string(ends[0]), {});
    std::array<char, 8> buffer{};
    std::error_code error;
    EXPECT_EQ(file.Read(buffer, std::nullopt, error), 1U);
    EXPECT_FALSE(error) << error.message();
    const itimerval noTimer = {};
    setitimer(ITIMER_REAL, &noTimer, nullptr);
    close(ends[1]);
    EXPECT_EQ(file.Read(buffer, std::nullopt, error), 0U);
    EXPECT_FALSE(error) << error.message();
    close(ends[0]);
}

}  // namespace

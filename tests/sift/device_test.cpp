// sift at serial devices, which pseudo-terminals replace, and what it says to people at a terminal.

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <array>
#include <csignal>
#include <cstring>

#include "sift_support.h"

namespace {

// The test's end is the device; the program reads the other.
class Device {
  public:
    Device() : mEnd(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK))
    {
        grantpt(mEnd);
        unlockpt(mEnd);
        mPath = ptsname(mEnd);
        mOther = open(mPath.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        fcntl(mEnd, F_SETFD, FD_CLOEXEC);
        mFormer = Settings();
    }
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;
    ~Device() { Unplug(); }

    void Send(const std::string& bytes) const
    {
        EXPECT_EQ(write(mEnd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }

    std::string Received() const
    {
        std::array<char, 100> bytes{};
        return {bytes.data(), static_cast<std::size_t>(
                                  std::max<ssize_t>(read(mEnd, bytes.data(), bytes.size()), 0))};
    }

    // Waits until the program has this many bytes to read.
    void WaitForUnread(std::size_t size) const
    {
        int unread = -1;
        for (int i = 0; i < 10'000 && unread != static_cast<int>(size); ++i) {
            if (unread >= 0) usleep(1'000);
            ioctl(mOther, FIONREAD, &unread);
        }
        EXPECT_EQ(unread, static_cast<int>(size));
    }

    void Unplug()
    {
        for (int* const end : {&mOther, &mEnd}) {
            if (*end >= 0) close(std::exchange(*end, -1));
        }
    }

    bool IsUnplugged() const { return mEnd < 0; }

    void WaitUntilSetUp() const
    {
        for (int i = 0; i < 1000 && (Settings().c_lflag & ICANON) != 0; ++i) usleep(10'000);
        const termios settings = Settings();
        EXPECT_EQ(settings.c_lflag & (ECHO | ICANON | ISIG), 0U);
        EXPECT_EQ(settings.c_iflag & (ICRNL | IXON | IXOFF), 0U);
        ExpectExclusive(1);
    }

    void ExpectRestored() const
    {
        const termios settings = Settings();
        EXPECT_EQ(settings.c_iflag, mFormer.c_iflag);
        EXPECT_EQ(settings.c_oflag, mFormer.c_oflag);
        EXPECT_EQ(settings.c_cflag, mFormer.c_cflag);
        EXPECT_EQ(settings.c_lflag, mFormer.c_lflag);
        EXPECT_EQ(cfgetospeed(&settings), cfgetospeed(&mFormer));
        EXPECT_EQ(std::memcmp(settings.c_cc, mFormer.c_cc, sizeof settings.c_cc), 0);
        ExpectExclusive(0);
    }

    const std::string& Path() const { return mPath; }

  private:
    termios Settings() const
    {
        termios settings = {};
        EXPECT_EQ(tcgetattr(mOther, &settings), 0);
        return settings;
    }

    // Not every system reports it.
    void ExpectExclusive([[maybe_unused]] int expected) const
    {
#ifdef TIOCGEXCL
        int isExclusive = -1;
        EXPECT_EQ(ioctl(mOther, TIOCGEXCL, &isExclusive), 0);
        EXPECT_EQ(isExclusive, expected);
#endif
    }

    int mEnd;
    int mOther = -1;
    std::string mPath;
    termios mFormer = {};
};

class SiftAtDevice : public Sift {
  protected:
    // isFull: the pipe that takes the output is, and nobody reads it.
    void Start(const std::string& arguments, bool isFull = false)
    {
        std::array<int, 2> output{};
        ASSERT_EQ(pipe(output.data()), 0);
        if (isFull) {
            fcntl(output[1], F_SETFL, O_NONBLOCK);
            while (write(output[1], "", 1) == 1) continue;
            fcntl(output[1], F_SETFL, 0);
        }
        const std::string command =
            "exec \"" WORD_SIFTER_SIFT "\" 2>" + (mFolder / "err").string() + ' ' + arguments;
        mProcess = fork();
        if (mProcess == 0) {
            dup2(output[1], 1);
            for (const int end : output) close(end);
            // Whoever runs the tests may ignore them.
            for (const int signal : {SIGHUP, SIGINT, SIGQUIT}) std::signal(signal, SIG_DFL);
            execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        close(output[1]);
        mOutput = output[0];
    }

    // Returns after the program has read everything. The device needs a moment to pass it on, so
    // the program is stopped until then.
    void SendAndWait(const Device& device, const std::string& bytes) const
    {
        kill(mProcess, SIGSTOP);
        waitpid(mProcess, nullptr, WUNTRACED);
        device.Send(bytes);
        device.WaitForUnread(bytes.size());
        kill(mProcess, SIGCONT);
        device.WaitForUnread(0);
    }

    // Returns as many bytes of output as expected, or fewer if no more come.
    std::string Read(std::size_t size) const
    {
        std::string text;
        pollfd output = {mOutput, POLLIN, 0};
        for (char c = 0; text.size() < size && poll(&output, 1, 10'000) == 1;) {
            if (read(mOutput, &c, 1) != 1) break;
            text += c;
        }
        return text;
    }

    // Returns the exit status; a shell's, if a signal ended the process. Ends a process that hangs.
    int Wait()
    {
        int status = 0;
        for (int i = 0; waitpid(mProcess, &status, WNOHANG) == 0; ++i) {
            if (i == 20'000) kill(mProcess, SIGKILL);
            usleep(1'000);
        }
        mErr = ReadFile(mFolder / "err");
        return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    }

    pid_t mProcess = -1;
    int mOutput = -1;
};

constexpr int kUnplugged = -1;
constexpr int kTimeOver = -2;
constexpr int kOutputClosed = -3;

// A message that the device has begun when the run ends is never matched.
TEST_F(SiftAtDevice, ReadsEveryByteAndRestoresTheLine)
{
    struct Row {
        std::string mArguments;
        std::string mSent;
        std::string mPrinted;
        int mEnd;  // a signal, or one of the ends above
        int mStatus;
        std::string mAtEnd;  // printed at the end
        const char* mError;  // part
    };
    const std::string frames = "-e 3 '{{02}} n:i=# {{11}} {{13}} {{04}}' ";
    const Row rows[] = {
        {"n:i=# ", "12\n3\n4", "n=12\nn=3\n", SIGINT, 130, "", ""},
        {"n:i=# -e '\\r' --baud 31250 ", "1\r2\r", "n=1\nn=2\n", SIGTERM, 143, "", ""},
        {frames, "\x02\x37\x11\x13\x04\x03", "n=7\n", SIGHUP, 129, "", ""},
        {"n:i=# <", "12\n3\n", "n=12\nn=3\n", SIGINT, 130, "", ""},
        {"n:i=# --csv ", "1\nx\n", "n\n1\n", kUnplugged, 2, "", "was the device unplugged?"},
        {"n:i=# --json ", "1\n", "{\"type\":\"match\",\"message\":1,\"values\":{\"n\":1}}\n",
         SIGINT, 130, "{\"type\":\"summary\",\"messages\":1,\"matched\":1,\"missed\":0}\n", ""},
        {"-e 0 '{{81}} n:i=1 byte' --for 1s ", "\x81\x07", "n=7\n", kTimeOver, 0, "", ""},
        {"n:i=# ", "1\n", "n=1\n", kOutputClosed, 128 + SIGPIPE, "", ""},
        {"n:i=# ", "1\r2\r3\r", "", SIGINT, 130, "", "try -e '\\r'"},
        {"n:i=# ", "1\n", "n=1\n", SIGQUIT, 128 + SIGQUIT, "", ""},
        {"n:i=# 2>&- ", "1\n", "n=1\n", SIGTERM, 143, "", ""},
        {"--edit -f " + (mFolder / "new").string() + " ", "1\n2\n", "", SIGINT, 130, "", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.mArguments);
        Device device;
        Start(row.mArguments + device.Path());
        device.WaitUntilSetUp();
        SendAndWait(device, row.mSent);
        EXPECT_EQ(Read(row.mPrinted.size()), row.mPrinted);
        EXPECT_EQ(device.Received(), "");
        if (row.mEnd == kOutputClosed) {
            close(mOutput);
            device.Send("1\n");
        } else if (row.mEnd == kUnplugged) {
            device.Send("4");
            device.Unplug();
        } else if (row.mEnd != kTimeOver) {
            kill(mProcess, row.mEnd);
        }
        EXPECT_EQ(Wait(), row.mStatus);
        if (row.mEnd != kOutputClosed) {
            EXPECT_EQ(Read(1000), row.mAtEnd);
            close(mOutput);
        }
        EXPECT_NE(mErr.find(row.mError), std::string::npos) << mErr;
        if (!device.IsUnplugged()) device.ExpectRestored();
    }
}

// Whenever the signal comes, whole lines are printed, and none is missing before the last one.
TEST_F(SiftAtDevice, EndsAtAnyMoment)
{
    std::string sent;
    std::string expected;
    for (int i = 100; i < 300; ++i) {
        sent += std::to_string(i) + '\n';
        expected += "n=" + std::to_string(i) + '\n';
    }
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        for (useconds_t delay = 0; delay < 2'000; delay += 250) {
            Device device;
            Start("n:i=# " + device.Path());
            device.WaitUntilSetUp();
            device.Send(sent);
            usleep(delay);
            kill(mProcess, signal);
            EXPECT_EQ(Wait(), 128 + signal);
            const std::string printed = Read(expected.size());
            EXPECT_EQ(printed, expected.substr(0, printed.size() / 6 * 6));
            close(mOutput);
            device.ExpectRestored();
        }
    }
}

// The first signal waits for a reader that has stopped reading; the second doesn't.
TEST_F(SiftAtDevice, EndsAtOnceAtTheSecondSignal)
{
    Device device;
    Start("--json n:i=# " + device.Path(), true);
    device.WaitUntilSetUp();
    kill(mProcess, SIGTERM);
    usleep(100'000);
    EXPECT_EQ(waitpid(mProcess, nullptr, WNOHANG), 0);
    kill(mProcess, SIGINT);
    EXPECT_EQ(Wait(), 128 + SIGINT);
    close(mOutput);
    device.ExpectRestored();
}

TEST_F(SiftAtDevice, ShowsWhatADeviceSends)
{
    Device device;
    Start("--show --for 1s " + device.Path());
    device.WaitUntilSetUp();
    for (int i = 0; i < 3; ++i) {
        device.Send("A=1\r\nB\r\n");
        usleep(150'000);
    }
    EXPECT_EQ(Wait(), 0);
    ExpectParts(Read(5000),
                "41 3D 31 0D 0A ~A=1\\r\\n\n~42 0D 0A ~B\\r\\n\n~ +0.1~\n\neach message seems to "
                "end with CR LF; use -e 10\n6 messages of 1 to 3 bytes");
}

TEST_F(SiftAtDevice, SuggestsForCompleteMessages)
{
    Device device;
    Start("--suggest --for 1s " + device.Path());
    device.WaitUntilSetUp();
    device.Send("4\rT=1.5\rT=2\rT=3");
    EXPECT_EQ(Wait(), 0);
    ExpectParts(Read(5000), "eom_char is 13~'T=' T:float=.#\n  matches 2 of 2 messages\n");
    Start("--suggest -e 0 --for 1s " + device.Path());
    device.WaitUntilSetUp();
    for (const char* const message : {"=1", "T=1.5", "T=2"}) {
        device.Send(message);
        usleep(150'000);
    }
    EXPECT_EQ(Wait(), 0);
    ExpectParts(Read(5000), "eom_char is 0~'T=' T:float=.#\n  matches 2 of 2 messages\n");
}

// People at a terminal read how a run ended; scripts have the exit status.
TEST_F(Sift, TellsPeopleHowARunEnded)
{
    struct Row {
        std::string mArguments;
        const char* mKeys;
        const char* mShown;  // parts
    };
    const std::string two = Write("two", "1\nx\n");
    for (const Row& row :
         {Row{"n:i=# " + two, "", "n~=1\r\nsift: 1 message matched, 1 missed; --m"},
          {"\"'y'\" " + two, "", "sift: none of 2 messages matched; --misses"},
          {"--misses \"'y'\" " + two, "", "sift: none of 2 messages matched\r\n"},
          {"n:i=#", "\x04", "sift: waiting for~sift: nothing came; --show"},
          {"n:i=# >/dev/full " + two, "", "output: No space left on device"}}) {
        RunAtTerminal(row.mArguments, row.mKeys);
        ExpectParts(mOut, row.mShown);
    }
    EXPECT_EQ(Run("n:i=# " + two), 0);
    EXPECT_EQ(mErr, "");
}

// Each warning appears once, and only for input that is most likely wrong.
TEST_F(Sift, WarnsOfInputThatIsMostLikelyWrong)
{
    struct Row {
        const char* mArguments;
        std::string mInput;
        const char* mWarning;  // part; empty: none
    };
    const std::string longest(2048, '1');
    const Row rows[] = {
        {"'?'", "1\r2\r", "try -e '\\r'"},
        {"'?'", "1\r2\r3\r4\n", ""},
        {"'?' -e 13", "1\n2\n", "try -e '\\n'"},
        {"'?' -e 13", "1\r\n2\r\n", ""},
        {"'?' -e 59", "1\r2\r3\r;", ""},
        {"'?'", longest + "\n" + longest, ""},
        {"'?'", longest + "11\n" + longest + "1\n", "longer than 2048 bytes"},
        {"'?'", "1\n2\0\n3\0\n"s, "bytes 00"},
        {"'?' --hex", "3200 33\n3400 35\n", "bytes 00"},
    };
    for (const Row& row : rows) {
        Run(row.mArguments, row.mInput);
        const bool isWarned = *row.mWarning != '\0';
        EXPECT_EQ(std::count(mErr.begin(), mErr.end(), '\n'), isWarned ? 1 : 0) << mErr;
        ExpectParts(mErr, row.mWarning);
    }
}

}  // namespace

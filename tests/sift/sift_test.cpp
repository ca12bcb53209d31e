// sift as a user runs it: the program itself, its output and its exit status.

#include <array>
#include <charconv>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "sift_support.h"

namespace {

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

TEST_F(Sift, ShowsThePlaceOfABadParsingString)
{
    struct Row {
        const char* mPattern;
        const char* mError;  // parts
    };
    const Row rows[] = {
        {"'ab' wrong x",
         "sift: Syntax error at 'wrong'\n  'ab' wrong x\n       ^^^^^\nat byte 5 of the parsing "
         "string\nhint: a text of the message is written in quotes: 'wrong'\n"},
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

TEST_F(Sift, WarnsOfWhatCompilesButIsSeldomMeant)
{
    EXPECT_EQ(Run("--check 'ph:float=#.#'"), 0);
    EXPECT_EQ(mErr.rfind("sift: warning: piece 1: ", 0), 0U) << mErr;
    EXPECT_EQ(Run("--explain 'ph:float=#.#'"), 0);
    ExpectParts(mOut, "warning: this piece and the next~piece 2");
    EXPECT_EQ(Run("--check 'ph:float=.#'"), 0);
    EXPECT_EQ(mErr, "");
    EXPECT_EQ(RunAtTerminal("'ph:float=#.#' " + Write("one", "7.5\n")), 0);
    ExpectParts(mOut, "sift: warning: piece 1: this piece");
    EXPECT_EQ(Run("'w:float=[-+ .0-9]'", "1.5\n"), 0);
    ExpectParts(mErr, "sift: warning: piece 1: this set includes white space");
    const std::string large = "5\n5901234123457\n5901234123458\n";
    const std::string warning = "message 2, piece 1: the number 5901234123457 is too large";
    EXPECT_EQ(Run("--trace n:i=#", large), 0);
    EXPECT_EQ(mErr.rfind("sift: warning: " + warning, 0), 0U) << mErr;
    EXPECT_EQ(mErr.find("457", warning.size()), std::string::npos) << "once for each piece";
    ExpectParts(mOut, "  warning: piece 1: the~  warning: piece 1: the number 5901234123458");
    EXPECT_EQ(Run("--trace --json n:i=12#", large), 0);
    ExpectParts(mOut, R"({"type":"caution","piece":1,"caution":"12 digits~"cautions":[{"piece":1)"
                      R"(~{"type":"caution","message":2,"piece":1,"caution":"the number)");
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
        {"n:i=# -x", "0x31 0X32\n31:33\n31-34\n31,35\n", 0, "n=12\nn=13\nn=14\nn=15\n"},
        {"n:i=# --for 1.5s -e etx",
         "1\x03"
         "2",
         0, "n=1\n"},
        {"--show " + Write("empty", ""), "", 1, "the file is empty\n"},
        {"--show /dev/null", "", 1, "nothing came\n"},
        {"n:i=# -e 0x0D", "1\r", 0, "n=1\n"},
        {"n:i=# -r", "1 b\n2\n", 0, "n=1  rest: \" b\"\nn=2\n"},
        {"n:i=# -j -r", "1 b\n2\n", 0, R"("values":{"n":1},"rest":" b"}~"rest":""})"},
        {"\"n:integer=2 bytes (x=0-3):L 'a' eol\" --explain", "", 0,
         "takes exactly 2 bytes~captures \"n\", an integer, least significant byte first\npiece 2  "
         "(x=0-3):L\n"
         "~a block of 1 byte~\"x\", an integer, bits 0 to 3\npiece 3  'a'\n~of the line~except "
         "before piece "
         "2, 3:\n"},
        {"\"'\xC3\xA4' # n:s=c 'x'\" --trace --misses", "\xC3\xA4 12.5 x\n\xC3\xA4 7xx\n\n", 0,
         "message 1 matched: n=.5\n  \xC3\xA4 12.5 x\n  1-2233-4\n~white space skipped: \" \"\n"
         "~piece 3  n:s=c  took \".5\", gave n=.5\n~message 2: the message ends before piece 4\n"
         "  \xC3\xA4 7xx\n  1-233^\n  piece 4  'x'\n~wanted   the text \"x\"~found    nothing\n"
         "  hint     piece 3 took \"xx\": ~message 3: the message is empty\n"},
        {"'2 bytes n:i=#' --misses", "\x01\x02z\n\0b\n"s, 1,
         "message 1: piece 2 does not match at byte 2\n  0000  01 02 7A   ~|..z|\n         1  1 "
         "^^\n"
         "~found    'z'\nmessage 2: the message is lost: it contains a byte 00~  0000  00 62  "},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Run(row.mArguments, row.mInput), row.mStatus) << row.mArguments << mErr;
        ExpectParts(mOut, row.mOut);
    }
}

TEST_F(Sift, SaysWhatIsWrongWithACommand)
{
    const std::string file = Write("[a,b]", "1\n\nx\n");
    struct Row {
        std::string mArguments;
        const char* mError;
    };
    const Row rows[] = {
        {"--jsn x", "there is no option --jsn; did you mean --json?"},
        {"-y x", "there is no option -y"},
        {"--csv --json x", "--json: can't be combined with --csv"},
        {"--for 10 x",
         "--for: '10' isn't a time, which needs a unit: 10s, 1.5s, 500ms, 5min or 2h"},
        {"--for -1s x",
         "--for: '-1s' isn't a time, which needs a unit: 10s, 1.5s, 500ms, 5min or 2h"},
        {"--shwo x", "there is no option --shwo; did you mean --show?"},
        {"--name t x", "--name: needs --suggest or --edit"},
        {"",
         "there is no parsing string: PATTERN or -f is required; --show FILE shows what comes, and "
         "--suggest FILE suggests a parsing string"},
        {"x --for", "--for needs an argument"},
        {"--baud 0 x", "--baud: '0' isn't a number of bits per second, such as 9600"},
        {"--line 9N1 x",
         "--line: '9N1' isn't data bits (5 to 8), parity (N, E or O) and stop bits (1 or 2), such "
         "as 8N1"},
        {"-f /nowhere", "-f: /nowhere: No such file or directory"},
        {"--show -f x", "--show: can't be combined with --file"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Run(row.mArguments), 2);
        EXPECT_EQ(mErr, "sift: "s + row.mError + "\nsift: for help, run sift --help\n");
    }
    const std::string quoted = "'" + file + "' ";
    EXPECT_EQ(Run("n:i=# -m " + quoted + quoted), 0);
    ExpectParts(mOut,
                "n=1\n~message 3 (" + file + " line 3): ~n=1~message 6 (" + file + " line 3)");
    EXPECT_EQ(Run("n:i=# -j -m " + quoted + quoted), 0);
    ExpectParts(mOut, "\"message\":6,\"file\":\"" + file + "\",\"line\":3,\"text\"");
}

// What a user at a terminal sees, and what happens to an edited parsing string.
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
    ExpectParts(mErr, "n:i=#\n");

    const std::string one = Write("one", "7\n");
    EXPECT_EQ(RunAtTerminal("k:i=# " + one), 0);
    EXPECT_EQ(mOut, "\x1B[36mk\x1B[0m=7\r\nsift: 1 message matched\r\n");
    setenv("NO_COLOR", "1", 1);
    EXPECT_EQ(RunAtTerminal("k:i=# " + one), 0);
    EXPECT_EQ(mOut, "k=7\r\nsift: 1 message matched\r\n");
}

// sift fails if the steps that it shows contradict the plug-in's own verdict. The test runs it over
// every beginning of every message.
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

// Every example prints the result that is stored next to it.
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
        EXPECT_EQ(mErr, "") << stem;
    }
    EXPECT_GE(examples, 6);
}

// Messages of many lengths, one after another. The text formats are what the standard library
// prints, and a line of JSON is what the JSON library makes of it.
TEST_F(Sift, PrintsValuesAsTheLibrariesDo)
{
    std::string input;
    std::string expected;
    const auto add = [&](double value, const std::string& text) {
        std::array<char, 400> digits{};
        const auto end =
            std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed);
        input += "F=" + std::string(digits.begin(), end.ptr) + text + '\n';
        const auto shortest = std::to_chars(digits.begin(), digits.end(), value);
        expected += std::string(digits.begin(), shortest.ptr) + ',' + text + '\n';
    };
    for (const double value :
         {0., -0., 1., 0.1, 0.001, 0.0001, 99999.999, 1e5, 1e-9, 1.0005, 1e300}) {
        for (const int factor : {1, -1, 7, 1234}) add(value * factor, "x");
    }
    for (int i = -2000; i < 2000; ++i) add(i / 10., "x");
    for (const char* text : {"a b", "\\", "\x7F", "\x01\t", "\xC3\xA4", "\xC3", "\xE2\x80\xA8"})
        add(2.5, text);
    const std::string pattern = "\"'F=' f:float=.# t:string=eol\" ";
    EXPECT_EQ(Run(pattern + "--csv", input), 0);
    EXPECT_EQ(mOut, "f,t\n" + expected);
    EXPECT_EQ(Run(pattern + "--json --trace", input), 0);
    std::istringstream lines(mOut);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(nlohmann::ordered_json::parse(line).dump(), line);
    }
    EXPECT_EQ(Run("'f:float=.#'", "1\n10000\n100000\n.5\n-0\n"), 0);
    EXPECT_EQ(mOut, "f=1\nf=10000\nf=1e+05\nf=0.5\nf=-0\n");
    EXPECT_EQ(Run("'f:float=.#' --json", "1\n100000\n-0\n2.25\n"), 0);
    ExpectParts(mOut, R"("f":1.0}~"f":100000.0}~"f":-0.0}~"f":2.25})");
}

// The ids of outputs past a certain number are not unique either.
TEST_F(Sift, PrintsTheLastOfTheOutputsWithOneName)
{
    std::string pattern;
    for (int i = 0; i < 1500; ++i) pattern += "n:i=1x ";
    EXPECT_EQ(Run("--json '" + pattern + "'", std::string(1499, '0') + "7\n"), 0);
    const auto values = nlohmann::ordered_json::parse(mOut.substr(0, mOut.find('\n')))["values"];
    EXPECT_EQ(values.size(), 1452U);
    EXPECT_EQ(values.back(), 7);
}

TEST_F(Sift, ReportsItsVersion)
{
    EXPECT_EQ(Run("--version"), 0);
    EXPECT_EQ(mOut, "sift " WORD_SIFTER_VERSION "\n");
    EXPECT_EQ(Run("--man"), 0);
    ExpectParts(mOut, ".TH SIFT 1 \"\" \"Word Sifter " WORD_SIFTER_VERSION "\"\n~\\-\\-version");
}

}  // namespace

// The fixture of the tests of sift, which runs the program.

#pragma once

#include <gtest/gtest.h>
#if __has_include(<pty.h>)
#include <pty.h>
#else
#include <util.h>
#endif
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

using namespace std::string_literals;
namespace fs = std::filesystem;

// The program under test: that of this build, or what the environment names instead, such as a
// script that runs the one for another system.
inline std::string Program()
{
    const char* const other = std::getenv("WORD_SIFTER_SIFT");
    return other != nullptr ? other : WORD_SIFTER_SIFT;
}

inline std::string ReadFile(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Expects text to contain these parts in this order. parts: separated by '~'.
inline void ExpectParts(const std::string& text, const std::string& parts)
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

    // arguments: as a shell reads them, with redirections of their own. Returns the exit status;
    // what was printed is in the fields.
    int Run(const std::string& arguments, const std::string& input = "")
    {
        const std::string command = '"' + Program() + "\" <" + Write("in", input) + " >" +
                                    (mFolder / "out").string() + " 2>" +
                                    (mFolder / "err").string() + ' ' + arguments;
        const int status = std::system(command.c_str());
        mOut = ReadFile(mFolder / "out");
        mErr = ReadFile(mFolder / "err");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // As Run, but at a terminal, with typed keys. Everything that appears on the terminal is in
    // mOut.
    int RunAtTerminal(const std::string& arguments, const std::string& keys = "")
    {
        int terminal = -1;
        if (forkpty(&terminal, nullptr, nullptr, nullptr) == 0) {
            const std::string command = '"' + Program() + "\" " + arguments;
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

// The built module, opened as the host opens it.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "standin/stand_in_host.h"
#include "tools/system/plugin_module.h"

namespace {

using NStandIn::Instance;
using NStandIn::StandInHost;
using NSystem::PluginModule;

TEST(Plugin, LoadsRunsUnloadsAndLoadsAgain)
{
    for (int round = 0; round < 2; ++round) {
        const PluginModule plugin(WORD_SIFTER_MODULE);
        StandInHost host(plugin.GetActorInfo());
        Instance& instance = host.CreateInstance();
        instance.SetState("'T=' t:float=.# u:string=letters");
        instance.Deliver("T=-0.5 K");
        EXPECT_EQ(instance.Outputs().at(1).mValue.Float(), -0.5);
        EXPECT_EQ(instance.Outputs().at(2).mValue.mText, "K");
        instance.SetState("'T=' wrong");
        EXPECT_EQ(host.Assertions().size(), 1U);
        EXPECT_EQ(instance.IconSize(nullptr)[0], 48);
        EXPECT_EQ(host.Close(), std::vector<std::string>());
    }
}

// The program and the module may have a C++ runtime each, and an exception passes from one to the
// other.
TEST(Plugin, CatchesWhatOperationsThrow)
{
    const PluginModule plugin(WORD_SIFTER_MODULE);
    bool reached = true;
    int n = 0;
    while (reached) {
        ++n;
        StandInHost host(plugin.GetActorInfo());
        host.mDialogScript = [](NStandIn::Dialog& dialog) {
            dialog.SetText("'T=' a:integer=#");
            return dialog.Validate().mGood;
        };
        Instance& instance = host.CreateInstance();
        int calls = 0;
        host.mHook = [&](NStandIn::Operation) -> bool {
            if (++calls == n) throw std::runtime_error("thrown in the program");
            return false;
        };
        instance.SetState("'T=' t:float=.# u:string=letters");
        instance.Deliver("T=-0.5 K");
        instance.DoubleClick();
        instance.SetState("wrong");
        instance.Help(NStandIn::kPropertyInput, 1, 5);
        instance.Dispose();
        host.mHook = nullptr;
        reached = calls >= n;

        Instance& next = host.CreateInstance();
        next.SetState("n:integer=#");
        next.Deliver("7");
        EXPECT_EQ(next.Outputs().at(1).mValue.Integer(), 7);
    }
    EXPECT_GT(n, 30);
}

#ifndef _MSC_VER  // which may drop a text that nothing reads
TEST(Plugin, ContainsItsVersion)
{
    std::ifstream file(WORD_SIFTER_MODULE, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    const char text[] = "\0Word Sifter " WORD_SIFTER_VERSION;
    EXPECT_NE(bytes.find(std::string(text, sizeof text)), std::string::npos);
}
#endif

}  // namespace

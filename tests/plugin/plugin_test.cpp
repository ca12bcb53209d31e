// The built module, opened as the host opens it.

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

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
    const std::function<void(Instance&)> works[] = {
        [](Instance& i) { i.SetState("'T=' t:float=.# u:string=letters"); },
        [](Instance& i) { i.SetState("wrong"); },
        [](Instance& i) { i.Deliver("T=-0.5 K"); },
        [](Instance& i) { i.DoubleClick(); },
        [](Instance& i) { i.Help(NStandIn::kPropertyInput, 1, 5); },
        [](Instance& i) { i.Dispose(); },
    };
    int thrown = 0;
    for (const auto& work : works) {
        bool reached = true;
        for (int n = 1; reached; ++n) {
            StandInHost host(plugin.GetActorInfo());
            Instance& instance = host.CreateInstance();
            instance.SetState("'T=' t:float=.# v:string=letters");
            host.mDialogScript = [](NStandIn::Dialog& dialog) {
                dialog.SetText("'T=' a:integer=#");
                return dialog.Validate().mGood;
            };
            int calls = 0;
            host.mHook = [&](NStandIn::Operation) -> bool {
                if (++calls == n) throw std::runtime_error("thrown in the program");
                return false;
            };
            work(instance);
            host.mHook = nullptr;
            reached = calls >= n;
            thrown += reached;

            Instance& next = host.CreateInstance();
            next.SetState("n:integer=#");
            next.Deliver("7");
            EXPECT_EQ(next.Outputs().at(1).mValue.Integer(), 7);
        }
    }
    EXPECT_GT(thrown, 30);
}

}  // namespace

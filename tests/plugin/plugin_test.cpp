// The built module, opened as the host opens it.

#include <gtest/gtest.h>

#include "standin/stand_in_host.h"
#include "tools/system/plugin_module.h"

namespace {

TEST(Plugin, LoadsRunsUnloadsAndLoadsAgain)
{
    for (int round = 0; round < 2; ++round) {
        const NSystem::PluginModule plugin(WORD_SIFTER_MODULE);
        NStandIn::StandInHost host(plugin.GetActorInfo());
        NStandIn::Instance& instance = host.CreateInstance();
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

}  // namespace

#include "stand_in_host.h"

#include <cstdlib>

#include "host_operations.h"
#include "property_definitions.h"

namespace NStandIn {

StandInHost::StandInHost(GetActorInfoFunction getActorInfo, HostMode mode) : mMode(mode)
{
    if (sHost != nullptr) std::abort();
    sHost = this;
    if (mode == HostMode::kPlain) mSharedRecords = std::make_unique<ContextRecords>();
    FillWithGarbage(mActorTemplate);
    getActorInfo(nullptr, &mActorTemplate);
    const CallContext context;
    ReadDefinitions(mActorTemplate.DefinitionStringCallback(context.Get()), mInputs, mOutputs);
}

StandInHost::~StandInHost()
{
    Close();
    sHost = nullptr;
}

Instance& StandInHost::CreateInstance()
{
    mInstances.push_back(std::make_unique<Instance>(mActorTemplate, mInputs, mOutputs));
    Instance& instance = *mInstances.back();
    instance.Create();
    return instance;
}

void StandInHost::StartLog()
{
    mAccounts.mLogging = true;
    mAccounts.mLog.clear();
}

std::vector<std::string> StandInHost::Close()
{
    mHook = nullptr;
    for (const auto& instance : mInstances) {
        if (instance->Info().mActorDataPtr != nullptr) instance->Dispose();
    }
    mInstances.clear();
    const auto demandNone = [this](std::size_t count, const char* what) {
        if (count != 0) mAccounts.mViolations.push_back(std::to_string(count) + what);
    };
    demandNone(mAccounts.mBlocks.size(), " blocks not given back");
    demandNone(mAccounts.mTextHandles.size(), " text handles not given back");
    demandNone(mAccounts.mStringValues.Count(), " string values not given back");
    return mAccounts.mViolations;
}

bool StandInHost::IsInsideOperation()
{
    return Turn::IsHosts();
}

}  // namespace NStandIn

#include "host_call.h"

namespace NActor {

namespace {

constexpr std::uint8_t kBlockFlags = 1;
constexpr std::uint8_t kDialogFlags = 1;

}  // namespace

void* Host::AllocateBlock(std::uint32_t size) const noexcept
{
    void* block = nullptr;
    RunGuarded(__LINE__, [&] { block = Operations().AllocateBlock(size, kBlockFlags); });
    return block;
}

void Host::ReleaseBlock(void* block) const noexcept
{
    RunGuarded(__LINE__, [&] { Operations().ReleaseBlock(block); });
}

void Host::ReleaseStringValue(HostValue& ioValue) const noexcept
{
    RunGuarded(__LINE__, [&] { Operations().ReleaseStringValue(&ioValue); });
}

void Host::DisposeTextHandle(HostTextHandle* text) const noexcept
{
    RunGuarded(__LINE__, [&] { Operations().DisposeTextHandle(text); });
}

void Host::UnlockTextHandle(HostTextHandle* text) const noexcept
{
    RunGuarded(__LINE__, [&] { Operations().UnlockTextHandle(text); });
}

void Host::Report(const char* text, std::int32_t line) const noexcept
{
    try {
        Operations().ReportAssertion(text, kDisplayName, line);
    } catch (...) {
        // There is no other way to report that the report failed.
    }
}

HostError HostCall::AddOutput(std::uint32_t id, const OutputDefinition& output) const
{
    return Operations().AddProperty(mInfo->mHostActor, kPropertyOutput, id, 0, output.mName, 0,
                                    output.mFirstFlags, output.mSecondFlags, 0, &output.mMinimum,
                                    &output.mMaximum, &output.mInitial, 0, 0, 0);
}

HostError HostCall::ChangeOutput(std::uint16_t number, const OutputDefinition& output) const
{
    return Operations().ChangeProperty(mInfo->mHostActor, 0, kPropertyOutput, number, output.mName,
                                       output.mFirstFlags, output.mSecondFlags, &output.mMinimum,
                                       &output.mMaximum, &output.mMinimum, &output.mMaximum,
                                       &output.mInitial);
}

bool HostCall::RunTextDialog(HostTextHandle* text, const char* title, ValidateTextFunction validate,
                             const char* helpFile) const
{
    return Operations().RunTextDialog(mInfo->mHostActor, text, title, validate, Context(),
                                      kDialogFlags, helpFile) != 0;
}

}  // namespace NActor

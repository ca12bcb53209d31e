#include "pattern.h"

#include <utility>

#include "pattern_element.h"
#include "pattern_memory.h"
#include "pattern_program.h"

namespace NPattern {

namespace {

void CopyValue(Parameter& outParameter, const Parameter& parameter)
{
    outParameter.mIntValue = parameter.mIntValue;
    outParameter.mFloatValue = parameter.mFloatValue;
    if (parameter.mType == kTypeString) {
        AssignBytes(outParameter.mStringValue, parameter.mStringValue.data(),
                    parameter.mStringValue.size());
    }
}

}  // namespace

Pattern::Pattern() = default;
Pattern::Pattern(Pattern&&) noexcept = default;
Pattern& Pattern::operator=(Pattern&&) noexcept = default;
Pattern::~Pattern() = default;

void Pattern::SetPatternString(const std::string& parseString)
{
    Clear();
    ElementList elements = CompileElements(parseString);
    const auto program = std::make_shared<Program>();
    for (const auto& element : elements) element->Emit(*program);
    mElements = std::move(elements);
    mProgram = program;
}

const Byte* Pattern::Match(const Byte* data, std::uint32_t length)
{
    return mProgram != nullptr ? mProgram->Run(data, length) : nullptr;
}

void Pattern::CollectParameters(std::vector<Parameter>& outParameters) const
{
    outParameters.clear();
    if (mProgram == nullptr) return;
    outParameters.reserve(mProgram->Captures().size());
    for (const auto& element : mElements) element->CollectParameters(outParameters);
}

void Pattern::CollectParameters(CapturedParameters& ioParameters) const
{
    if (ioParameters.mProgram != mProgram) {
        std::vector<Parameter> entries;
        CollectParameters(entries);
        ioParameters.mEntries = std::move(entries);
        ioParameters.mProgram = mProgram;
    } else if (mProgram != nullptr) {
        auto entry = ioParameters.mEntries.begin();
        for (const Parameter* const capture : mProgram->Captures()) CopyValue(*entry++, *capture);
    }
}

void Pattern::Clear()
{
    mProgram.reset();
    mElements.clear();
}

}  // namespace NPattern

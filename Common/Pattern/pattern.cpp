#include "pattern.h"

#include <utility>

#include "pattern_element.h"
#include "pattern_program.h"

namespace NPattern {

Pattern::Pattern() = default;
Pattern::Pattern(Pattern&&) noexcept = default;
Pattern& Pattern::operator=(Pattern&&) noexcept = default;
Pattern::~Pattern() = default;

void CapturedParameters::Follow(const std::shared_ptr<const Program>& program)
{
    std::vector<Parameter> entries;
    if (program != nullptr) entries = program->Captures();
    mEntries = std::move(entries);
    mProgram = program;
}

void Pattern::SetPatternString(const std::string& parseString)
{
    Clear();
    ElementList elements = CompileElements(parseString);
    const auto program = std::make_shared<Program>();
    for (const auto& element : elements) element->Emit(*program);
    program->Finish();
    mElements = std::move(elements);
    mProgram = program;
}

const Byte* Pattern::Match(const Byte* data, std::uint32_t length)
{
    return Match(data, length, mCaptured);
}

const Byte* Pattern::Match(const Byte* data, std::uint32_t length,
                           CapturedParameters& outParameters)
{
    if (outParameters.mProgram != mProgram) outParameters.Follow(mProgram);
    if (mProgram == nullptr) return nullptr;
    return mProgram->Run(data, length, outParameters.mEntries.data());
}

void Pattern::CollectParameters(std::vector<Parameter>& outParameters) const
{
    // Without a program there is no match either, and nothing captured.
    const bool hasMatched = mCaptured.mProgram == mProgram;
    outParameters = hasMatched ? mCaptured.mEntries : mProgram->Captures();
}

void Pattern::Clear()
{
    mCaptured = {};
    mProgram.reset();
    mElements.clear();
}

}  // namespace NPattern

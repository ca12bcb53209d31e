// Memory that runs out and operations that fail, each at every single place: the host sees an
// ordinary return, nothing is lost, and the next piece of work succeeds. A program of its own,
// since it replaces the allocation functions.

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

#include "Common/Pattern/pattern.h"
#include "standin/stand_in_host.h"

using NStandIn::Instance;
using NStandIn::StandInHost;

namespace {

long sLiveAllocations = 0;
int sAllocations = 0;       // of the actor's code
int sFailing = 0;           // which of them fails; 0: none
bool sWithoutHost = false;  // while a test uses the engine itself

void* Allocate(std::size_t size)
{
    const bool ofActor = sWithoutHost || !StandInHost::IsInsideOperation();
    if (ofActor && ++sAllocations == sFailing) return nullptr;
    ++sLiveAllocations;
    return std::malloc(size != 0 ? size : 1);
}

void* AllocateOrThrow(std::size_t size)
{
    if (void* const memory = Allocate(size)) return memory;
    throw std::bad_alloc();
}

void Release(void* memory)
{
    if (memory != nullptr) --sLiveAllocations;
    std::free(memory);
}

}  // namespace

void* operator new(std::size_t size)
{
    return AllocateOrThrow(size);
}
void* operator new[](std::size_t size)
{
    return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}
void operator delete(void* memory) noexcept
{
    Release(memory);
}
void operator delete[](void* memory) noexcept
{
    Release(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    Release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
    Release(memory);
}

namespace {

constexpr char kOldState[] = "a:i=# b:i=# c:i=# d:i=# e:i=# f:i=# g:i=# h:i=#";
constexpr char kState[] =
    "'T=' t:float=.# name_beyond_any_small_buffer:s=[a-z] n:i=2x (a=0-3, 4-7) {20-7F} eol";
constexpr char kText[] = "T=2.5 abcdefghijklmnopqrstuvwxyz ff0 some\nrest";

// A piece of the host's work, on an instance that has kOldState, or kState where that is told.
struct Work {
    const char* mName;
    bool mIsDelivery;  // finds kState, and leaves it in force whatever happens
    int mAllocations;  // at least so many places at which memory can run out
    int mOperations;   // so many operations called
    void (*mDo)(StandInHost& host, Instance& instance);
};

const Work kWork[] = {
    {"create", false, 0, 1, [](StandInHost& host, Instance&) { host.CreateInstance(); }},
    {"restore", false, 20, 12, [](StandInHost&, Instance& instance) { instance.SetState(kState); }},
    {"delivery", true, 4, 9, [](StandInHost&, Instance& instance) { instance.Deliver(kText); }},
    {"commit", false, 40, 33, [](StandInHost&, Instance& instance) { instance.DoubleClick(); }},
    {"dispose", false, 0, 2, [](StandInHost&, Instance& instance) { instance.Dispose(); }},
};

void ExpectToWork(Instance& instance, bool restore)
{
    if (restore) instance.SetState(kState);
    instance.Deliver(kText);
    ASSERT_EQ(instance.Outputs().size(), 6U);
    EXPECT_EQ(instance.Outputs()[1].mValue.Float(), 2.5);
    EXPECT_EQ(instance.Outputs()[2].mValue.mText, "abcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(instance.Outputs()[0].mValue.Integer(), 1);
}

enum Fault { kOfMemory, kOfOperation };
// Does the work with its nth allocation or operation failing. Gives whether it came that far.
bool DoWithFault(const Work& work, Fault fault, int n)
{
    StandInHost host(GetActorInfo);
    Instance& instance = host.CreateInstance();
    instance.SetState(work.mIsDelivery ? kState : kOldState);
    host.mDialogScript = [](NStandIn::Dialog& dialog) {
        dialog.SetText(kState);
        dialog.Validate();
        return true;
    };
    instance.Deliver(kText);  // stands on the input from here on
    int operations = 0;
    host.mHook = [&](NStandIn::Operation) { return ++operations == n && fault == kOfOperation; };
    sAllocations = 0;
    sFailing = fault == kOfMemory ? n : 0;
    work.mDo(host, instance);
    sFailing = 0;
    const bool reached = (fault == kOfMemory ? sAllocations : operations) >= n;
    host.mHook = nullptr;

    if (instance.Info().mActorDataPtr != nullptr) ExpectToWork(instance, !work.mIsDelivery);
    ExpectToWork(host.CreateInstance(), true);
    for (const std::string& violation : host.Close()) {
        // A value for an output that the host failed to add or to redefine.
        EXPECT_EQ(violation.find("SetOutputValue: "), 0U) << violation;
        EXPECT_EQ(fault, kOfOperation);
    }
    return reached;
}

// Gives at how many places there was a fault.
int CountFaults(const Work& work, Fault fault)
{
    int n = 0;
    for (bool reached = true; reached;) {
        const std::string place = std::string(work.mName) + ' ' + std::to_string(++n);
        SCOPED_TRACE(place);
        const long live = sLiveAllocations;
        reached = DoWithFault(work, fault, n);
        EXPECT_EQ(sLiveAllocations, live);
    }
    return n - 1;
}

TEST(Faults, OfMemoryAtEveryAllocation)
{
    for (const Work& work : kWork) {
        EXPECT_GE(CountFaults(work, kOfMemory), work.mAllocations) << work.mName;
    }
}

// Captures of another pattern come whole or not at all.
TEST(Faults, OfMemoryWhileParametersAreCollected)
{
    NPattern::Pattern one;
    one.SetPatternString("a:i=# b:i=#");
    NPattern::Pattern other;
    other.SetPatternString(
        "name_beyond_any_small_buffer:i=# another_one_beyond_any_small_buffer:i=#");
    const auto collects = [&other](NPattern::CapturedParameters& kept) {
        try {
            other.CollectParameters(kept);
            return true;
        } catch (const std::bad_alloc&) {
            return false;
        }
    };
    for (int n = 1; n <= 4; ++n) {  // one allocation for the entries, one for each name
        NPattern::CapturedParameters kept;
        one.CollectParameters(kept);
        sAllocations = 0;
        sFailing = n;
        sWithoutHost = true;
        const bool collected = collects(kept);
        sWithoutHost = false;
        sFailing = 0;
        EXPECT_EQ(collected, n > 3);
        EXPECT_EQ(kept.Entries()[1].mName == "b", !collected);
        one.CollectParameters(kept);
        EXPECT_EQ(kept.Entries()[0].mName + kept.Entries()[1].mName, "ab");
    }
}

TEST(Faults, OfEachOperationAtEveryCall)
{
    for (const Work& work : kWork) {
        EXPECT_EQ(CountFaults(work, kOfOperation), work.mOperations) << work.mName;
    }
}

}  // namespace

#include "allocations.h"

#include <cstdlib>
#include <new>

#include "standin/stand_in_host.h"

using namespace NAllocations;

namespace {

void* Allocate(std::size_t size)
{
    const bool isCounted = sCountsWithoutHost || !NStandIn::StandInHost::IsInsideOperation();
    if (isCounted && ++sAllocations == sFailing) return nullptr;
    ++sLive;
    return std::malloc(size != 0 ? size : 1);
}

void* AllocateOrThrow(std::size_t size)
{
    if (void* const memory = Allocate(size)) return memory;
    throw std::bad_alloc();
}

void Release(void* memory)
{
    if (memory != nullptr) --sLive;
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

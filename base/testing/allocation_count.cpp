#include "base/testing/allocation_count.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local int allocations = 0;

} // namespace

void* operator new(std::size_t size) {
    ++allocations;
    if (void* const block = std::malloc(size == 0 ? 1 : size)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

namespace lumbrine {

int allocationCount() {
    return allocations;
}

} // namespace lumbrine

#include "benchmarks/allocation_count.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace lumbrine {

namespace {
std::atomic<std::uint64_t> allocations{0};
}

std::uint64_t allocationCount() {
    return allocations.load(std::memory_order_relaxed);
}

} // namespace lumbrine

void* operator new(std::size_t size) {
    lumbrine::allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

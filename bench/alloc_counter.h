// Counts the heap: replaces the global operator new and delete of the one
// benchmark program that includes this header (include it from exactly one
// file of a program). Each thread counts its own allocations, so a benchmark
// can show how many a call makes; the bytes in use are counted for the whole
// process as the allocator hands them out (malloc_usable_size), so a
// benchmark can show what a stored object really costs.
#pragma once

#include <malloc.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace quantor::bench {

inline thread_local std::uint64_t threadAllocations = 0;
inline std::atomic<std::int64_t> liveHeapBytes{0};

// Allocations made by the calling thread so far.
inline std::uint64_t AllocationsOfThisThread() { return threadAllocations; }

// Heap bytes in use by the whole process, as the allocator counts them.
inline std::int64_t LiveHeapBytes() { return liveHeapBytes.load(std::memory_order_relaxed); }

inline void* CountedAllocate(std::size_t size) {
    void* block = std::malloc(size == 0 ? 1 : size);
    if (!block) throw std::bad_alloc();
    ++threadAllocations;
    liveHeapBytes.fetch_add(static_cast<std::int64_t>(malloc_usable_size(block)), std::memory_order_relaxed);
    return block;
}

inline void CountedFree(void* block) noexcept {
    if (!block) return;
    liveHeapBytes.fetch_sub(static_cast<std::int64_t>(malloc_usable_size(block)), std::memory_order_relaxed);
    std::free(block);
}

}  // namespace quantor::bench

void* operator new(std::size_t size) { return quantor::bench::CountedAllocate(size); }
void* operator new[](std::size_t size) { return quantor::bench::CountedAllocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return quantor::bench::CountedAllocate(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return operator new(size, tag); }
void operator delete(void* block) noexcept { quantor::bench::CountedFree(block); }
void operator delete[](void* block) noexcept { quantor::bench::CountedFree(block); }
void operator delete(void* block, std::size_t) noexcept { quantor::bench::CountedFree(block); }
void operator delete[](void* block, std::size_t) noexcept { quantor::bench::CountedFree(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { quantor::bench::CountedFree(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { quantor::bench::CountedFree(block); }

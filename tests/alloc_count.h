// Counting replacements of the global operator new and delete, for tests that
// show how much an operation allocates, how much it holds at its peak, or
// how it behaves when the Nth allocation fails.
//
// The operators are defined here, not declared: include this header from
// exactly one source file of a test program, and from no other header.
//
// Threads: the counters are atomic, so other threads may allocate while a
// test counts; a count taken then includes their allocations.
#ifndef ORU_TESTS_ALLOC_COUNT_H
#define ORU_TESTS_ALLOC_COUNT_H

#include <malloc.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

// The replacements pair malloc with free; once GCC inlines them into a
// caller it no longer sees that and warns about every delete.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

namespace OruTest {
namespace AllocDetail {

// Constant-initialised, so allocations before main are counted too.
inline std::atomic<long> g_made{0};              // every call of operator new, failed ones included
inline std::atomic<long> g_failAt{0};            // the value of g_made that throws; 0 never
inline std::atomic<long> g_live{0};              // blocks not yet freed
inline std::atomic<std::size_t> g_liveBytes{0};  // bytes the allocator really handed out
inline std::atomic<std::size_t> g_peakBytes{0};

inline void* Allocate(std::size_t size) {
    long const made = g_made.fetch_add(1, std::memory_order_relaxed) + 1;
    if (made == g_failAt.load(std::memory_order_relaxed)) {
        throw std::bad_alloc();
    }
    void* const p = std::malloc(size ? size : 1);
    if (!p) {
        throw std::bad_alloc();
    }
    g_live.fetch_add(1, std::memory_order_relaxed);
    std::size_t const bytes = malloc_usable_size(p);
    std::size_t const live = g_liveBytes.fetch_add(bytes, std::memory_order_relaxed) + bytes;
    std::size_t peak = g_peakBytes.load(std::memory_order_relaxed);
    while (live > peak && !g_peakBytes.compare_exchange_weak(peak, live)) {
    }
    return p;
}

inline void Free(void* p) noexcept {
    if (p) {
        g_live.fetch_sub(1, std::memory_order_relaxed);
        g_liveBytes.fetch_sub(malloc_usable_size(p), std::memory_order_relaxed);
    }
    std::free(p);
}

}  // namespace AllocDetail

// Calls of operator new since the program started.
inline long AllocationCount() {
    return AllocDetail::g_made.load(std::memory_order_relaxed);
}

// Blocks allocated and not yet freed.
inline long LiveAllocations() {
    return AllocDetail::g_live.load(std::memory_order_relaxed);
}

// Heap bytes held now, as the allocator sized the blocks.
inline std::size_t LiveBytes() {
    return AllocDetail::g_liveBytes.load(std::memory_order_relaxed);
}

// The most heap bytes held at once since the last ResetPeakBytes.
inline std::size_t PeakBytes() {
    return AllocDetail::g_peakBytes.load(std::memory_order_relaxed);
}

// Starts a new peak from what is held now.
inline void ResetPeakBytes() {
    AllocDetail::g_peakBytes.store(LiveBytes(), std::memory_order_relaxed);
}

// The allocations made while it lives.
class AllocationScope {
public:
    AllocationScope() : start_(AllocationCount()) {}
    long Count() const { return AllocationCount() - start_; }

private:
    long start_;
};

// While it lives, the nth allocation from its construction (n from 1)
// throws std::bad_alloc; the later ones succeed again.
class FailingAllocation {
public:
    explicit FailingAllocation(long n) {
        AllocDetail::g_failAt.store(AllocationCount() + n, std::memory_order_relaxed);
    }
    ~FailingAllocation() { AllocDetail::g_failAt.store(0, std::memory_order_relaxed); }
    FailingAllocation(FailingAllocation const&) = delete;
    FailingAllocation& operator=(FailingAllocation const&) = delete;
};

}  // namespace OruTest

void* operator new(std::size_t size) {
    return OruTest::AllocDetail::Allocate(size);
}
void* operator new[](std::size_t size) {
    return OruTest::AllocDetail::Allocate(size);
}
void operator delete(void* p) noexcept {
    OruTest::AllocDetail::Free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    OruTest::AllocDetail::Free(p);
}
void operator delete[](void* p) noexcept {
    OruTest::AllocDetail::Free(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    OruTest::AllocDetail::Free(p);
}

#endif

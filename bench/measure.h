// What every benchmark program measures besides time: heap allocations,
// counted by a replacement of the global operator new, and instruction counts
// of a timed loop when the program runs under callgrind (bench/report).
//
// The replacement functions are defined here, not declared: include this
// header from exactly one source file per program (each bench/*_bench.cpp is
// a program of its own).
#ifndef ORU_BENCH_MEASURE_H
#define ORU_BENCH_MEASURE_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

namespace Bench {

// Relaxed plain counters: every benchmark runs on one thread.
inline std::uint64_t& Allocations() {
    static std::uint64_t count = 0;
    return count;
}

inline std::int64_t& LiveBytes() {
    static std::int64_t bytes = 0;
    return bytes;
}

// The size is kept in front of each block, so that a delete knows what it frees.
constexpr std::size_t k_prefix = alignof(std::max_align_t);

// Not inlined: the compiler would otherwise read the size prefix as an
// access outside the object it sees being freed.
__attribute__((noinline)) inline void* Allocate(std::size_t size) noexcept {
    void* const raw = std::malloc(size + k_prefix);
    if (!raw) {
        return nullptr;
    }
    *static_cast<std::size_t*>(raw) = size;
    ++Allocations();
    LiveBytes() += static_cast<std::int64_t>(size);
    return static_cast<char*>(raw) + k_prefix;
}

__attribute__((noinline)) inline void Release(void* block) noexcept {
    if (!block) {
        return;
    }
    void* const raw = static_cast<char*>(block) - k_prefix;
    LiveBytes() -= static_cast<std::int64_t>(*static_cast<std::size_t*>(raw));
    std::free(raw);
}

// Allocations made while a scope is open.
class AllocationScope {
public:
    AllocationScope() : start_(Allocations()), bytes_(Bench::LiveBytes()) {}
    std::uint64_t Count() const { return Allocations() - start_; }
    // Bytes allocated and not yet freed since the scope opened.
    std::int64_t Bytes() const { return Bench::LiveBytes() - bytes_; }

private:
    std::uint64_t start_;
    std::int64_t bytes_;
};

// Reports allocations per iteration of the timed loop as a counter.
inline void ReportAllocations(benchmark::State& state, AllocationScope const& scope) {
    state.counters["allocs"] = benchmark::Counter(static_cast<double>(scope.Count()) /
                                                  static_cast<double>(state.iterations()));
}

// Around a timed loop: under callgrind (run with --collect-atstart=no) it
// counts the loop's instructions alone and dumps them as
// "<name> iterations=<n>", which bench/report divides. Outside valgrind the
// client requests are a few no-op instructions.
class InstructionWindow {
public:
    InstructionWindow(benchmark::State const& state, std::string name)
        : state_(state), name_(std::move(name)) {
        CALLGRIND_ZERO_STATS;
        CALLGRIND_TOGGLE_COLLECT;
    }
    ~InstructionWindow() {
        CALLGRIND_TOGGLE_COLLECT;
        if (RUNNING_ON_VALGRIND) {
            std::string const label = name_ + " iterations=" + std::to_string(state_.iterations());
            CALLGRIND_DUMP_STATS_AT(label.c_str());
        }
    }
    InstructionWindow(InstructionWindow const&) = delete;
    InstructionWindow& operator=(InstructionWindow const&) = delete;

private:
    benchmark::State const& state_;
    std::string name_;
};

// Setup inside a timed loop: neither timed nor counted.
class Paused {
public:
    explicit Paused(benchmark::State& state) : state_(state) {
        state_.PauseTiming();
        CALLGRIND_TOGGLE_COLLECT;
    }
    ~Paused() {
        CALLGRIND_TOGGLE_COLLECT;
        state_.ResumeTiming();
    }
    Paused(Paused const&) = delete;
    Paused& operator=(Paused const&) = delete;

private:
    benchmark::State& state_;
};

}  // namespace Bench

void* operator new(std::size_t size) {
    void* const block = Bench::Allocate(size);
    if (!block) {
        throw std::bad_alloc();
    }
    return block;
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    return Bench::Allocate(size);
}
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
    return Bench::Allocate(size);
}
void operator delete(void* block) noexcept {
    Bench::Release(block);
}
void operator delete[](void* block) noexcept {
    Bench::Release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    Bench::Release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    Bench::Release(block);
}
void operator delete(void* block, std::nothrow_t const&) noexcept {
    Bench::Release(block);
}
void operator delete[](void* block, std::nothrow_t const&) noexcept {
    Bench::Release(block);
}

#endif

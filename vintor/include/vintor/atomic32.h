// Atomic32: a signed 32-bit integer with atomic access, laid out as exactly
// that one word, so that it can be embedded as an object's reference count.
// Every operation may be called from any thread.
#ifndef VINTOR_ATOMIC32_H
#define VINTOR_ATOMIC32_H

#include <atomic>
#include <cstdint>

#include <vintor/export.h>  // for its C++17 check

namespace Vintor {

class Atomic32 {
public:
    Atomic32() noexcept : value_(0) {}
    explicit Atomic32(std::int32_t value) noexcept : value_(value) {}
    // A fresh count is a property of the new object, never copied.
    Atomic32(Atomic32 const&) noexcept : value_(0) {}
    Atomic32& operator=(Atomic32 const&) noexcept { return *this; }
    ~Atomic32() = default;

    // Adds delta and answers the value before the addition.
    std::int32_t FetchAdd(std::int32_t delta) noexcept {
        return value_.fetch_add(delta, std::memory_order_acq_rel);
    }
    std::int32_t Load() const noexcept { return value_.load(std::memory_order_acquire); }
    void Store(std::int32_t value) noexcept { value_.store(value, std::memory_order_release); }

private:
    std::atomic<std::int32_t> value_;
};

static_assert(sizeof(Atomic32) == 4, "Atomic32 must be one 32-bit word");

}  // namespace Vintor

#endif

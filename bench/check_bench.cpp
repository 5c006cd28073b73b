// A passing Validate against the bare comparison a user would write instead:
// the value against the bounds, with nothing else. Validate must allocate
// nothing; the "allocs" counter is the number per check.
#include <cstdint>
#include <string>

#include <benchmark/benchmark.h>
#include <legacy/oru/oru.h>

#include "measure.h"

namespace {

using namespace Legacy::Oru;

unsigned int const k_id = 0x00001234;

void BM_Validate_Oru_Numeric(benchmark::State& state) {
    auto* const numeric = new NumericInfo<U32Traits>(k_id, "Gain", Permission_t(3));
    boost::intrusive_ptr<InfoBase const> const info(numeric);
    numeric->SetMin(10);
    numeric->SetMax(5000);
    boost::intrusive_ptr<ItemBase const> const item(NumericItem<U32Traits>::Create(k_id, 1200));
    if (item->Validate(info)) {
        state.SkipWithError("the value should pass");
        return;
    }
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, "Validate/Oru/Numeric");
        for (auto _ : state) {
            benchmark::DoNotOptimize(item->Validate(info));
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Validate_Oru_Numeric);

void BM_Validate_Bare_Numeric(benchmark::State& state) {
    std::uint32_t value = 1200;
    std::uint32_t min = 10;
    std::uint32_t max = 5000;
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, "Validate/Bare/Numeric");
        for (auto _ : state) {
            // Opaque to the optimizer, so each pass loads and compares.
            benchmark::DoNotOptimize(value);
            benchmark::DoNotOptimize(min);
            benchmark::DoNotOptimize(max);
            bool const passes = value >= min && value <= max;
            benchmark::DoNotOptimize(passes);
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Validate_Bare_Numeric);

void BM_Validate_Oru_String(benchmark::State& state) {
    auto* const text = new StringInfo(k_id, "Label", Permission_t(3));
    boost::intrusive_ptr<InfoBase const> const info(text);
    text->SetMaxLength(64);
    boost::intrusive_ptr<ItemBase const> const item(
        StringItem::Create(k_id, "a label of some thirty-two bytes"));
    if (item->Validate(info)) {
        state.SkipWithError("the value should pass");
        return;
    }
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, "Validate/Oru/String");
        for (auto _ : state) {
            benchmark::DoNotOptimize(item->Validate(info));
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Validate_Oru_String);

void BM_Validate_Bare_String(benchmark::State& state) {
    std::string const value = "a label of some thirty-two bytes";
    std::string const* text = &value;
    std::uint64_t maxLength = 64;
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, "Validate/Bare/String");
        for (auto _ : state) {
            benchmark::DoNotOptimize(text);
            benchmark::DoNotOptimize(maxLength);
            bool const passes = text->size() <= maxLength;
            benchmark::DoNotOptimize(passes);
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Validate_Bare_String);

}  // namespace

BENCHMARK_MAIN();

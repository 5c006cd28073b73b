// How the bulk operations of the directory grow with its size: UpdateFromDelta
// of a change set that replaces every Item, and FindItems of one top-level
// section (a quarter of the settings), at 10^3 to 10^6 settings of the shared
// settings tree. items_per_second is per setting touched, so a flat rate
// means linear cost; std::map beside UpdateFromDelta shows the floor.
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <legacy/oru/oru.h>

#include "measure.h"
#include "settings_tree.h"

namespace {

using namespace Legacy::Oru;
using Bench::ItemPtr;
using Bench::SettingsTree;

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMicrosecond);
}

void BM_ScaleUpdateFromDelta_Directory(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    auto const delta = std::make_shared<InfoItemDirectoryDelta>();
    for (auto const& item : s.replacements) {
        delta->AddItem(item);
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(s.dir.UpdateFromDelta(delta, true, true));
    }
    state.counters["bytes_per_setting"] = s.DirectoryBytesPerSetting();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ScaleUpdateFromDelta_Directory)->Apply(Sizes);

void BM_ScaleUpdateFromDelta_StdMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    std::map<unsigned int, ItemPtr> map = s.ById(bytes);
    std::map<unsigned int, ItemPtr> delta;
    for (auto const& item : s.replacements) {
        delta.emplace(item->GetItem()->GetId(), item);
    }
    for (auto _ : state) {
        for (auto const& entry : delta) {
            map[entry.first] = entry.second;
        }
        benchmark::ClobberMemory();
    }
    state.counters["bytes_per_setting"] = bytes;
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ScaleUpdateFromDelta_StdMap)->Apply(Sizes);

void BM_ScaleFindItems_Directory(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    InfoItemSectionId const section = s.dir.FindSection("Audio").GetInfoItemSectionId();
    std::vector<boost::intrusive_ptr<ItemHolder const>> out;
    for (auto _ : state) {
        out.clear();
        benchmark::DoNotOptimize(s.dir.FindItems(section, out));
    }
    state.counters["settings"] = static_cast<double>(out.size());
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(out.size()));
}
BENCHMARK(BM_ScaleFindItems_Directory)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();

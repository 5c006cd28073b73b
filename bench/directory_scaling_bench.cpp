// How the directory's operations grow with its size, at 10^3 to 10^6 settings
// of the shared settings tree: AddInfo (building the whole directory), a
// refused AddInfo (a name taken in its section, while thousands of settings
// elsewhere share it), FindItem by id and by path, FindItems of one
// top-level section (a quarter of the settings) and UpdateFromDelta of a
// change set that replaces every Item; std::map beside UpdateFromDelta and
// FindItems shows the floor. Each case is named Scale/<operation>/<peer>/<n>
// for bench/report, which prints per setting where the operation touches
// many ("per_item" counter: how many one iteration touches).
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

std::string Label(char const* operation, char const* peer, benchmark::State const& state) {
    return std::string("Scale/") + operation + "/" + peer + "/" + std::to_string(state.range(0));
}

void PerItem(benchmark::State& state, std::size_t count) {
    state.counters["per_item"] = static_cast<double>(count);
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
}

// Every Info of the tree added to a new directory that has the sections
// already: the cost of building it, per setting.
void BM_ScaleAddInfo_Directory(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    auto const& infos = s.Infos();
    {
        Bench::InstructionWindow const window(state, Label("AddInfo", "Oru", state));
        for (auto _ : state) {
            std::unique_ptr<InfoItemDirectory> dir;
            {
                Bench::Paused const setup(state);
                dir.reset(new InfoItemDirectory());
                SectionId leaf;
                for (std::string const& name : s.LeafNames()) {
                    dir->AddSection(name, leaf);
                }
            }
            for (auto const& info : infos) {
                benchmark::DoNotOptimize(dir->AddInfo(info));
            }
            {
                Bench::Paused const teardown(state);
                dir.reset();
            }
        }
    }
    PerItem(state, infos.size());
}

// An Info whose name its section holds already, under a new id: the
// directory refuses it with -47 and takes its holder out again. Every leaf
// holds a "Gain0", so the name map holds thousands of that name at 10^6.
void BM_ScaleRefusedAddInfo_Directory(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    SectionId const leaf = s.dir.FindSection(s.LeafNames().back());
    unsigned int const id = leaf.GetInfoItemSectionId().CreateInfoItemId(200);
    boost::intrusive_ptr<InfoHolder const> const info(new InfoHolder(
        boost::intrusive_ptr<InfoBase>(new NumericInfo<U32Traits>(id, "Gain0", Permission_t(3)))));
    if (s.dir.AddInfo(info) != -47 || s.dir.FindInfo(id)) {
        state.SkipWithError("the Info should be refused with -47 and leave nothing");
        return;
    }
    {
        Bench::InstructionWindow const window(state, Label("RefusedAddInfo", "Oru", state));
        for (auto _ : state) {
            benchmark::DoNotOptimize(s.dir.AddInfo(info));
        }
    }
    state.SetItemsProcessed(state.iterations());
}

template <class Find>
void Lookups(benchmark::State& state, char const* operation, SettingsTree& s, Find find) {
    std::size_t i = 0;
    {
        Bench::InstructionWindow const window(state, Label(operation, "Oru", state));
        for (auto _ : state) {
            find(i);
            i = i + 1 == s.Count() ? 0 : i + 1;
        }
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_ScaleFindItemById_Directory(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    Lookups(state, "FindItemById", s,
            [&](std::size_t i) { benchmark::DoNotOptimize(s.dir.FindItem(s.ids[i])); });
}

void BM_ScaleFindItemByPath_Directory(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    Lookups(state, "FindItemByPath", s,
            [&](std::size_t i) { benchmark::DoNotOptimize(s.dir.FindItem(s.paths[i])); });
}

void BM_ScaleFindItems_Directory(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    InfoItemSectionId const section = s.dir.FindSection("Audio").GetInfoItemSectionId();
    std::vector<boost::intrusive_ptr<ItemHolder const>> out;
    // Once outside the window: the vector's capacity, and whatever the
    // allocator does with the heap the case before left, are not the walk.
    s.dir.FindItems(section, out);
    {
        Bench::InstructionWindow const window(state, Label("FindItems", "Oru", state));
        for (auto _ : state) {
            out.clear();
            benchmark::DoNotOptimize(s.dir.FindItems(section, out));
        }
    }
    PerItem(state, out.size());
}

// The same quarter from a scattered std::map: the id range of "Audio".
void BM_ScaleFindItems_ScatteredMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    auto const& map = s.ScatteredById(bytes);
    unsigned int const section = s.dir.FindSection("Audio").GetInfoItemSectionId();
    // Depth-3 info ids under this depth-1 section: depth code 2, same top field.
    unsigned int const low = (2u << 30) | (section & 0x3F000000u);
    unsigned int const high = low | 0x00FFFFFFu;
    std::vector<ItemPtr> out;
    out.reserve(map.size());
    {
        Bench::InstructionWindow const window(state, Label("FindItems", "ScatteredMap", state));
        for (auto _ : state) {
            out.clear();
            for (auto entry = map.lower_bound(low); entry != map.end() && entry->first <= high;
                 ++entry) {
                out.push_back(entry->second);
            }
            benchmark::DoNotOptimize(out.data());
        }
    }
    PerItem(state, out.size());
}

void BM_ScaleUpdateFromDelta_Directory(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    auto const delta = std::make_shared<InfoItemDirectoryDelta>();
    for (auto const& item : s.replacements) {
        delta->AddItem(item);
    }
    {
        Bench::InstructionWindow const window(state, Label("UpdateFromDelta", "Oru", state));
        for (auto _ : state) {
            benchmark::DoNotOptimize(s.dir.UpdateFromDelta(delta, true, true));
        }
    }
    state.counters["bytes_per_setting"] = s.DirectoryBytesPerSetting();
    PerItem(state, s.Count());
}

template <class Map>
void UpdateMap(benchmark::State& state, char const* peer, Map& map, SettingsTree& s, double bytes) {
    std::map<unsigned int, ItemPtr> delta;
    for (auto const& item : s.replacements) {
        delta.emplace(item->GetItem()->GetId(), item);
    }
    {
        Bench::InstructionWindow const window(state, Label("UpdateFromDelta", peer, state));
        for (auto _ : state) {
            for (auto const& entry : delta) {
                map[entry.first] = entry.second;
            }
            benchmark::ClobberMemory();
        }
    }
    state.counters["bytes_per_setting"] = bytes;
    PerItem(state, s.Count());
}

void BM_ScaleUpdateFromDelta_StdMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    std::map<unsigned int, ItemPtr> map = s.ById(bytes);
    UpdateMap(state, "StdMap", map, s, bytes);
}

void BM_ScaleUpdateFromDelta_ScatteredMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    auto& map = s.ScatteredById(bytes);
    UpdateMap(state, "ScatteredMap", map, s, bytes);
}

}  // namespace

// Registered size by size, so that the tree of 10^6 settings is built once.
int main(int argc, char** argv) {
    struct Case {
        char const* name;
        void (*run)(benchmark::State&);
    };
    Case const cases[] = {
        {"BM_ScaleAddInfo_Directory", BM_ScaleAddInfo_Directory},
        {"BM_ScaleRefusedAddInfo_Directory", BM_ScaleRefusedAddInfo_Directory},
        {"BM_ScaleFindItemById_Directory", BM_ScaleFindItemById_Directory},
        {"BM_ScaleFindItemByPath_Directory", BM_ScaleFindItemByPath_Directory},
        {"BM_ScaleFindItems_Directory", BM_ScaleFindItems_Directory},
        {"BM_ScaleFindItems_ScatteredMap", BM_ScaleFindItems_ScatteredMap},
        {"BM_ScaleUpdateFromDelta_Directory", BM_ScaleUpdateFromDelta_Directory},
        {"BM_ScaleUpdateFromDelta_StdMap", BM_ScaleUpdateFromDelta_StdMap},
        {"BM_ScaleUpdateFromDelta_ScatteredMap", BM_ScaleUpdateFromDelta_ScatteredMap},
    };
    for (std::int64_t size = 1000; size <= 1000000; size *= 10) {
        for (Case const& c : cases) {
            auto* const bench = benchmark::RegisterBenchmark(c.name, c.run);
            bench->Arg(size)->Unit(benchmark::kMicrosecond);
            // Building the directory is the slow case: a few builds suffice.
            if (c.run == BM_ScaleAddInfo_Directory) {
                bench->Iterations(size >= 100000 ? 1 : 10);
            }
        }
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

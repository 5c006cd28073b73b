// The directory against what a user would pick instead: std::map (packed and
// scattered, see settings_tree.h) and std::unordered_map of holder pointers
// by id or by path, and a Boost.PropertyTree of the same holders addressed by
// the same paths. Every peer answers an owning handle, as the directory does.
// Every case runs on the shared settings tree of 10, 1,000 and 100,000
// settings; lookups walk the settings in a shuffled order. Counters: "allocs"
// per operation, "bytes_per_setting" of the structure looked in, and for the
// directory its split by structure with the floor of its documented layout.
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <benchmark/benchmark.h>
#include <legacy/oru/oru.h>

#include "measure.h"
#include "settings_tree.h"

namespace {

using namespace Legacy::Oru;
using Bench::ItemPtr;
using Bench::PropertyTree;
using Bench::SettingsTree;

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(10)->Arg(1000)->Arg(100000);
}

std::string Label(char const* operation, char const* peer, benchmark::State const& state) {
    return std::string(operation) + "/" + peer + "/" + std::to_string(state.range(0));
}

// The loop every lookup shares: `find(i)` looks up the i-th setting of the
// shuffled order.
template <class Find>
void LookupLoop(benchmark::State& state, char const* operation, char const* peer, std::size_t count,
                double bytesPerSetting, Find find) {
    std::size_t i = 0;
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, Label(operation, peer, state));
        for (auto _ : state) {
            find(i);
            i = i + 1 == count ? 0 : i + 1;
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.counters["bytes_per_setting"] = bytesPerSetting;
    state.SetItemsProcessed(state.iterations());
}

void BM_FindItemById_Directory(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    if (!s.dir.FindItem(s.ids.front())) {
        state.SkipWithError("a setting is missing");
        return;
    }
    state.counters["item_bytes"] = s.ItemBytesPerSetting();
    state.counters["holder_bytes"] = s.Split().holder;
    state.counters["id_map_bytes"] = s.Split().idMap;
    state.counters["name_map_bytes"] = s.Split().nameMap;
    state.counters["section_map_bytes"] = s.Split().sectionMap;
    state.counters["floor_bytes"] = s.Split().floor;
    LookupLoop(state, "FindItemById", "Oru", s.Count(), s.DirectoryBytesPerSetting(),
               [&](std::size_t i) { benchmark::DoNotOptimize(s.dir.FindItem(s.ids[i])); });
}
BENCHMARK(BM_FindItemById_Directory)->Apply(Sizes);

void BM_FindItemById_StdMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    auto const& map = s.ById(bytes);
    LookupLoop(state, "FindItemById", "StdMap", s.Count(), bytes, [&](std::size_t i) {
        auto const found = map.find(s.ids[i]);
        benchmark::DoNotOptimize(found == map.end() ? ItemPtr() : found->second);
    });
}
BENCHMARK(BM_FindItemById_StdMap)->Apply(Sizes);

void BM_FindItemById_ScatteredMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    auto const& map = s.ScatteredById(bytes);
    LookupLoop(state, "FindItemById", "ScatteredMap", s.Count(), bytes, [&](std::size_t i) {
        auto const found = map.find(s.ids[i]);
        benchmark::DoNotOptimize(found == map.end() ? ItemPtr() : found->second);
    });
}
BENCHMARK(BM_FindItemById_ScatteredMap)->Apply(Sizes);

void BM_FindItemById_UnorderedMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    auto const& map = s.HashedById(bytes);
    LookupLoop(state, "FindItemById", "UnorderedMap", s.Count(), bytes, [&](std::size_t i) {
        auto const found = map.find(s.ids[i]);
        benchmark::DoNotOptimize(found == map.end() ? ItemPtr() : found->second);
    });
}
BENCHMARK(BM_FindItemById_UnorderedMap)->Apply(Sizes);

void BM_FindItemByPath_Directory(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    if (s.dir.FindItem(s.paths.front()) != s.dir.FindItem(s.ids.front())) {
        state.SkipWithError("a path does not lead to its setting");
        return;
    }
    LookupLoop(state, "FindItemByPath", "Oru", s.Count(), s.DirectoryBytesPerSetting(),
               [&](std::size_t i) { benchmark::DoNotOptimize(s.dir.FindItem(s.paths[i])); });
}
BENCHMARK(BM_FindItemByPath_Directory)->Apply(Sizes);

void BM_FindItemByPath_StdMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    auto const& map = s.ByPath(bytes);
    LookupLoop(state, "FindItemByPath", "StdMap", s.Count(), bytes, [&](std::size_t i) {
        auto const found = map.find(s.paths[i]);
        benchmark::DoNotOptimize(found == map.end() ? ItemPtr() : found->second);
    });
}
BENCHMARK(BM_FindItemByPath_StdMap)->Apply(Sizes);

void BM_FindItemByPath_UnorderedMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    auto const& map = s.HashedByPath(bytes);
    LookupLoop(state, "FindItemByPath", "UnorderedMap", s.Count(), bytes, [&](std::size_t i) {
        auto const found = map.find(s.paths[i]);
        benchmark::DoNotOptimize(found == map.end() ? ItemPtr() : found->second);
    });
}
BENCHMARK(BM_FindItemByPath_UnorderedMap)->Apply(Sizes);

// get_child with "/" as the separator, as a user of a path-addressed tree writes it.
void BM_FindItemByPath_PropertyTree(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    PropertyTree const& tree = s.Tree(bytes);
    LookupLoop(state, "FindItemByPath", "PropertyTree", s.Count(), bytes, [&](std::size_t i) {
        ItemPtr const found = tree.get_child(PropertyTree::path_type(s.paths[i], '/')).data();
        benchmark::DoNotOptimize(found.get());
    });
}
BENCHMARK(BM_FindItemByPath_PropertyTree)->Apply(Sizes);

void BM_SetItem_Directory(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    LookupLoop(state, "SetItem", "Oru", s.Count(), s.DirectoryBytesPerSetting(),
               [&](std::size_t i) { benchmark::DoNotOptimize(s.dir.SetItem(s.replacements[i])); });
}
BENCHMARK(BM_SetItem_Directory)->Apply(Sizes);

void BM_SetItem_StdMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    // A map of its own: the shared one stays as built.
    std::map<unsigned int, ItemPtr> map = s.ById(bytes);
    LookupLoop(state, "SetItem", "StdMap", s.Count(), bytes, [&](std::size_t i) {
        ItemPtr const& item = s.replacements[i];
        map[item->GetItem()->GetId()] = item;
    });
}
BENCHMARK(BM_SetItem_StdMap)->Apply(Sizes);

void BM_SetItem_UnorderedMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    std::unordered_map<unsigned int, ItemPtr> map = s.HashedById(bytes);
    LookupLoop(state, "SetItem", "UnorderedMap", s.Count(), bytes, [&](std::size_t i) {
        ItemPtr const& item = s.replacements[i];
        map[item->GetItem()->GetId()] = item;
    });
}
BENCHMARK(BM_SetItem_UnorderedMap)->Apply(Sizes);

// FindItems of the subtree "Audio/Unit0": an id range in an ordered map (the
// packed ids keep a subtree together), a recursive walk in a property tree.
void BM_FindItems_Directory(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    InfoItemSectionId const section = s.Subtree().GetInfoItemSectionId();
    std::vector<boost::intrusive_ptr<ItemHolder const>> out;
    std::size_t found = 0;
    // Once outside the window: the vector's capacity, and whatever the
    // allocator does with the heap a previous case left, are not the walk.
    s.dir.FindItems(section, out);
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, Label("FindItems", "Oru", state));
        for (auto _ : state) {
            out.clear();
            benchmark::DoNotOptimize(s.dir.FindItems(section, out));
            found = out.size();
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.counters["settings"] = static_cast<double>(found);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_FindItems_Directory)->Apply(Sizes);

// A section's settings from an id-ordered map: the depth-3 info ids under the
// depth-2 section share its depth code and top two subsection fields.
void FindItemsInMap(benchmark::State& state, SettingsTree& s,
                    std::map<unsigned int, ItemPtr> const& map, char const* peer) {
    unsigned int const section = s.Subtree().GetInfoItemSectionId();
    unsigned int const low = (2u << 30) | (section & 0x3FFC0000u);
    unsigned int const high = low | 0x0003FFFFu;
    std::vector<ItemPtr> out;
    std::size_t found = 0;
    out.reserve(map.size());
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, Label("FindItems", peer, state));
        for (auto _ : state) {
            out.clear();
            for (auto entry = map.lower_bound(low); entry != map.end() && entry->first <= high;
                 ++entry) {
                out.push_back(entry->second);
            }
            benchmark::DoNotOptimize(out.data());
            found = out.size();
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.counters["settings"] = static_cast<double>(found);
    state.SetItemsProcessed(state.iterations());
}

void BM_FindItems_StdMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    FindItemsInMap(state, s, s.ById(bytes), "StdMap");
}
BENCHMARK(BM_FindItems_StdMap)->Apply(Sizes);

void BM_FindItems_ScatteredMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    FindItemsInMap(state, s, s.ScatteredById(bytes), "ScatteredMap");
}
BENCHMARK(BM_FindItems_ScatteredMap)->Apply(Sizes);

// Owning handles of every leaf under the subtree, as FindItems answers.
void CollectLeaves(PropertyTree const& tree, std::vector<ItemPtr>& out) {
    if (tree.empty()) {
        out.push_back(tree.data());
        return;
    }
    for (auto const& child : tree) {
        CollectLeaves(child.second, out);
    }
}

void BM_FindItems_PropertyTree(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    PropertyTree const& tree = s.Tree(bytes);
    std::vector<ItemPtr> out;
    std::size_t found = 0;
    CollectLeaves(tree.get_child(PropertyTree::path_type(s.SubtreePath(), '/')), out);
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, Label("FindItems", "PropertyTree", state));
        for (auto _ : state) {
            out.clear();
            CollectLeaves(tree.get_child(PropertyTree::path_type(s.SubtreePath(), '/')), out);
            benchmark::DoNotOptimize(out.data());
            found = out.size();
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.counters["settings"] = static_cast<double>(found);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_FindItems_PropertyTree)->Apply(Sizes);

// One change set of a new Item for every setting, applied whole per iteration.
void BM_UpdateFromDelta_Directory(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    auto const delta = std::make_shared<InfoItemDirectoryDelta>();
    for (auto const& item : s.replacements) {
        delta->AddItem(item);
    }
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, Label("UpdateFromDelta", "Oru", state));
        for (auto _ : state) {
            benchmark::DoNotOptimize(s.dir.UpdateFromDelta(delta, true, true));
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_UpdateFromDelta_Directory)->Apply(Sizes);

// The map peer of UpdateFromDelta: each replacement assigned by id, in the
// sorted order of a change set.
void UpdateMap(benchmark::State& state, SettingsTree const& s, std::map<unsigned int, ItemPtr>& map,
               char const* peer) {
    std::map<unsigned int, ItemPtr> delta;
    for (auto const& item : s.replacements) {
        delta.emplace(item->GetItem()->GetId(), item);
    }
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow const window(state, Label("UpdateFromDelta", peer, state));
        for (auto _ : state) {
            for (auto const& entry : delta) {
                map[entry.first] = entry.second;
            }
            benchmark::ClobberMemory();
        }
    }
    Bench::ReportAllocations(state, allocations);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_UpdateFromDelta_StdMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    std::map<unsigned int, ItemPtr> map = s.ById(bytes);
    UpdateMap(state, s, map, "StdMap");
}
BENCHMARK(BM_UpdateFromDelta_StdMap)->Apply(Sizes);

// In place on the shared scattered map: a copy would be packed.
void BM_UpdateFromDelta_ScatteredMap(benchmark::State& state) {
    SettingsTree& s = Bench::SharedTree(state.range(0));
    double bytes = 0;
    UpdateMap(state, s, s.ScatteredById(bytes), "ScatteredMap");
}
BENCHMARK(BM_UpdateFromDelta_ScatteredMap)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();

// The directory against what a user would pick instead: a bare std::map or
// std::unordered_map of holder pointers. Each case runs for 10, 1,000 and
// 100,000 settings; the map rows show the ratio of the directory's bookkeeping
// (two maps, the section tree, the type checks) to the lookup alone.
#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include <benchmark/benchmark.h>
#include <legacy/oru/oru.h>

namespace {

using namespace Legacy::Oru;

using ItemPtr = boost::intrusive_ptr<ItemHolder const>;

// N settings "Bench/Input/S<i>", each with an Item, and the same Items in
// the two plain maps; lookups walk the ids in a shuffled order.
struct Settings {
    InfoItemDirectory dir;
    std::map<unsigned int, ItemPtr> byId;
    std::unordered_map<unsigned int, ItemPtr> hashedById;
    std::unordered_map<std::string, ItemPtr> hashedByPath;
    std::vector<unsigned int> ids;
    std::vector<std::string> paths;
    std::vector<ItemPtr> replacements;

    explicit Settings(std::size_t count) {
        SectionId section;
        dir.AddSection("Bench/Input", section);
        for (std::size_t i = 0; i < count; ++i) {
            unsigned int const id = section.GetInfoItemSectionId().CreateInfoItemId(i);
            std::string const name = "S" + std::to_string(i);
            boost::intrusive_ptr<InfoBase> info(
                new NumericInfo<U32Traits>(id, name, Permission_t(3)));
            dir.AddInfo(boost::intrusive_ptr<InfoHolder const>(new InfoHolder(info)));
            ItemPtr const item(new ItemHolder(
                boost::intrusive_ptr<ItemBase>(NumericItem<U32Traits>::Create(id, i))));
            dir.SetItem(item);
            byId.emplace(id, item);
            hashedById.emplace(id, item);
            hashedByPath.emplace("Bench/Input/" + name, item);
            ids.push_back(id);
            replacements.emplace_back(new ItemHolder(
                boost::intrusive_ptr<ItemBase>(NumericItem<U32Traits>::Create(id, i + 1))));
        }
        std::mt19937 random(42);
        std::shuffle(ids.begin(), ids.end(), random);
        for (unsigned int id : ids) {
            paths.push_back("Bench/Input/S" + std::to_string(id & 0x3FFFF));
        }
    }
};

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(10)->Arg(1000)->Arg(100000);
}

void BM_FindItemById_Directory(benchmark::State& state) {
    Settings s(state.range(0));
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(s.dir.FindItem(s.ids[i]));
        i = i + 1 == s.ids.size() ? 0 : i + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_FindItemById_Directory)->Apply(Sizes);

void BM_FindItemById_StdMap(benchmark::State& state) {
    Settings s(state.range(0));
    std::size_t i = 0;
    for (auto _ : state) {
        auto const found = s.byId.find(s.ids[i]);
        benchmark::DoNotOptimize(found == s.byId.end() ? ItemPtr() : found->second);
        i = i + 1 == s.ids.size() ? 0 : i + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_FindItemById_StdMap)->Apply(Sizes);

void BM_FindItemById_UnorderedMap(benchmark::State& state) {
    Settings s(state.range(0));
    std::size_t i = 0;
    for (auto _ : state) {
        auto const found = s.hashedById.find(s.ids[i]);
        benchmark::DoNotOptimize(found == s.hashedById.end() ? ItemPtr() : found->second);
        i = i + 1 == s.ids.size() ? 0 : i + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_FindItemById_UnorderedMap)->Apply(Sizes);

void BM_FindItemByPath_Directory(benchmark::State& state) {
    Settings s(state.range(0));
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(s.dir.FindItem(s.paths[i]));
        i = i + 1 == s.paths.size() ? 0 : i + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_FindItemByPath_Directory)->Apply(Sizes);

void BM_FindItemByPath_UnorderedMap(benchmark::State& state) {
    Settings s(state.range(0));
    std::size_t i = 0;
    for (auto _ : state) {
        auto const found = s.hashedByPath.find(s.paths[i]);
        benchmark::DoNotOptimize(found == s.hashedByPath.end() ? ItemPtr() : found->second);
        i = i + 1 == s.paths.size() ? 0 : i + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_FindItemByPath_UnorderedMap)->Apply(Sizes);

void BM_SetItem_Directory(benchmark::State& state) {
    Settings s(state.range(0));
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(s.dir.SetItem(s.replacements[i]));
        i = i + 1 == s.replacements.size() ? 0 : i + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_SetItem_Directory)->Apply(Sizes);

void BM_SetItem_StdMap(benchmark::State& state) {
    Settings s(state.range(0));
    std::size_t i = 0;
    for (auto _ : state) {
        ItemPtr const& item = s.replacements[i];
        s.byId[item->GetItem()->GetId()] = item;
        i = i + 1 == s.replacements.size() ? 0 : i + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_SetItem_StdMap)->Apply(Sizes);

void BM_SetItem_UnorderedMap(benchmark::State& state) {
    Settings s(state.range(0));
    std::size_t i = 0;
    for (auto _ : state) {
        ItemPtr const& item = s.replacements[i];
        s.hashedById[item->GetItem()->GetId()] = item;
        i = i + 1 == s.replacements.size() ? 0 : i + 1;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_SetItem_UnorderedMap)->Apply(Sizes);

// One change set of a new Item for every setting, applied whole per iteration.
void BM_UpdateFromDelta_Directory(benchmark::State& state) {
    Settings s(state.range(0));
    auto const delta = std::make_shared<InfoItemDirectoryDelta>();
    for (auto const& item : s.replacements) {
        delta->AddItem(item);
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(s.dir.UpdateFromDelta(delta, true, true));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_UpdateFromDelta_Directory)->Apply(Sizes);

void BM_UpdateFromDelta_StdMap(benchmark::State& state) {
    Settings s(state.range(0));
    std::map<unsigned int, ItemPtr> delta;
    for (auto const& item : s.replacements) {
        delta.emplace(item->GetItem()->GetId(), item);
    }
    for (auto _ : state) {
        for (auto const& entry : delta) {
            s.byId[entry.first] = entry.second;
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_UpdateFromDelta_StdMap)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();

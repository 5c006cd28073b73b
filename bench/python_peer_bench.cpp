// The C++ side of bench/python_bench.py: the work the Python module does for
// a script, done by a C++ caller of the files layer. Setting one value is
// one values file of one member, read, checked and applied; a change set is
// one values file of every member.
#include <string>

#include <benchmark/benchmark.h>

#include <legacy/oru/files/files.h>
#include <legacy/oru/oru.h>

namespace {

using namespace Legacy::Oru;

std::string Path(int i) {
    return "Bench/Setting" + std::to_string(i);
}

// settings U32 settings of 0 to 1000 in section Bench, all with a value.
void MakeDevice(InfoItemDirectory& directory, int settings) {
    std::string description = "{\"settings\": [";
    std::string values = "{";
    for (int i = 0; i < settings; ++i) {
        description += (i ? "," : "") + std::string("{\"path\":\"") + Path(i) +
                       "\",\"type\":\"Numeric:U32\",\"max\":1000,\"default\":0}";
        values += (i ? "," : "") + std::string("\"") + Path(i) + "\":0";
    }
    Files::ReadDescription(description + "]}", directory);
    Files::ReadValues(values + "}", directory);
}

// One value at a time, as `device[path] = value` sets it.
void BM_FilesSetOne(benchmark::State& state) {
    InfoItemDirectory directory;
    MakeDevice(directory, 1000);
    int i = 0;
    for (auto _ : state) {
        std::string json = "{\"" + Path(i % 1000) + "\":" + std::to_string(i % 997) + "}";
        Files::ValuesReport const report =
            Files::ReadValues(json, directory, Files::Apply::AllOrNothing);
        benchmark::DoNotOptimize(report.applied);
        ++i;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_FilesSetOne);

// 100,000 values in one change set, as `with device.change()` applies them.
void BM_FilesSetMany(benchmark::State& state) {
    int const settings = 100000;
    InfoItemDirectory directory;
    MakeDevice(directory, settings);
    int round = 0;
    for (auto _ : state) {
        std::string json = "{";
        for (int i = 0; i < settings; ++i) {
            json += (i ? ",\"" : "\"") + Path(i) + "\":" + std::to_string((i + round) % 997);
        }
        json += "}";
        Files::ValuesReport const report =
            Files::ReadValues(json, directory, Files::Apply::AllOrNothing);
        benchmark::DoNotOptimize(report.applied);
        ++round;
    }
    state.SetItemsProcessed(state.iterations() * settings);
}
BENCHMARK(BM_FilesSetMany)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

// Reading a values file of 100,000 settings and applying it to a directory,
// beside the floor: parsing the same JSON text with nlohmann alone.
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <legacy/oru/files/values.h>
#include <legacy/oru/oru.h>

#include "measure.h"

namespace {

using namespace Legacy::Oru;

constexpr int k_settings = 100000;
constexpr int k_sections = 100;

// A directory of k_settings U32 settings spread over k_sections sections,
// and a values file that sets each of them (the setup fails loudly if a
// section or setting cannot be added, so the case never times less work).
struct Device {
    InfoItemDirectory directory;
    std::string values;

    Device() {
        nlohmann::json file = nlohmann::json::object();
        for (int s = 0; s < k_sections; ++s) {
            // A level holds at most 62 sections: two groups of 50 units.
            std::string const sectionName =
                "Device/Group" + std::to_string(s / 50) + "/Unit" + std::to_string(s % 50);
            SectionId section;
            if (directory.AddSection(sectionName, section) != 0) {
                throw std::runtime_error("cannot add section " + sectionName);
            }
            for (int i = 0; i < k_settings / k_sections; ++i) {
                unsigned int const id = section.GetInfoItemSectionId().CreateInfoItemId(i + 1);
                std::string const name = "Value" + std::to_string(i);
                boost::intrusive_ptr<NumericInfo<U32Traits>> info(
                    new NumericInfo<U32Traits>(id, name, Permission_t(3)));
                info->SetMax(1000000);
                if (directory.AddInfo(
                        boost::intrusive_ptr<InfoHolder const>(new InfoHolder(info))) != 0) {
                    throw std::runtime_error("cannot add setting " + name);
                }
                file[sectionName + "/" + name] = s * 1000 + i;
            }
        }
        values = file.dump();
    }
};

Device& TheDevice() {
    static Device device;
    return device;
}

void BM_ReadValues_Oru(benchmark::State& state) {
    Device& device = TheDevice();
    Bench::InstructionWindow window(state, "ReadValues/Oru/100000");
    for (auto _ : state) {
        Files::ValuesReport const report = Files::ReadValues(device.values, device.directory);
        if (report.applied != static_cast<std::size_t>(k_settings)) {
            state.SkipWithError("not every value was applied");
        }
        benchmark::DoNotOptimize(report);
    }
}
BENCHMARK(BM_ReadValues_Oru)->Unit(benchmark::kMillisecond);

void BM_ReadValues_Nlohmann(benchmark::State& state) {
    Device& device = TheDevice();
    Bench::InstructionWindow window(state, "ReadValues/Nlohmann/100000");
    for (auto _ : state) {
        nlohmann::json parsed = nlohmann::json::parse(device.values);
        benchmark::DoNotOptimize(parsed);
    }
}
BENCHMARK(BM_ReadValues_Nlohmann)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

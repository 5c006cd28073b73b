// Reading a values file of 100,000 settings and applying it to a directory,
// beside the floor: parsing the same JSON text with nlohmann alone. Reading a
// description of 100,000 settings into a new directory, beside its floor:
// nlohmann's parse of the same text plus the bare AddSection/AddInfo loop.
#include <cstdlib>
#include <stdexcept>
#include <string>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <legacy/oru/files/check.h>
#include <legacy/oru/files/description.h>
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
    std::string description;

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
        description = Files::WriteDescription(directory);
    }
};

Device& TheDevice() {
    static Device device;
    return device;
}

void BM_ReadValues_Oru(benchmark::State& state) {
    Device& device = TheDevice();
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow window(state, "ReadValues/Oru/100000");
        for (auto _ : state) {
            Files::ValuesReport const report = Files::ReadValues(device.values, device.directory);
            if (report.applied != static_cast<std::size_t>(k_settings)) {
                state.SkipWithError("not every value was applied");
            }
            benchmark::DoNotOptimize(report);
        }
    }
    Bench::ReportAllocations(state, allocations);
}
BENCHMARK(BM_ReadValues_Oru)->Unit(benchmark::kMillisecond);

void BM_ReadValues_Nlohmann(benchmark::State& state) {
    Device& device = TheDevice();
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow window(state, "ReadValues/Nlohmann/100000");
        for (auto _ : state) {
            nlohmann::json parsed = nlohmann::json::parse(device.values);
            benchmark::DoNotOptimize(parsed);
        }
    }
    Bench::ReportAllocations(state, allocations);
}

// The one check of a passing value, timed, with its allocations.
void TimeCheck(benchmark::State& state, ItemBase const& item,
               boost::intrusive_ptr<InfoBase const> const& info, char const* label) {
    std::string const pointer;
    Bench::AllocationScope const allocations;
    {
        Bench::InstructionWindow window(state, label);
        for (auto _ : state) {
            Files::Problems const problems = Files::Check(item, info, pointer);
            if (!problems.empty()) {
                state.SkipWithError(problems.front().message.c_str());
            }
            benchmark::DoNotOptimize(problems);
        }
    }
    Bench::ReportAllocations(state, allocations);
}

// The one check of a value that passes: it should allocate nothing.
void BM_Check_Oru_Numeric(benchmark::State& state) {
    Device& device = TheDevice();
    auto const slot = device.directory.FindInfoItem("Device/Group0/Unit0/Value7");
    if (!slot) {
        state.SkipWithError("no setting Device/Group0/Unit0/Value7");
        return;
    }
    boost::intrusive_ptr<InfoBase const> const info = slot->GetInfoHolder()->GetInfo();
    boost::intrusive_ptr<ItemBase const> const item(
        NumericItem<U32Traits>::Create(info->GetId(), 1200));
    TimeCheck(state, *item, info, "Check/Oru/Numeric");
}
BENCHMARK(BM_Check_Oru_Numeric);

// A value whose family takes the full round trip through record and text.
void BM_Check_Oru_String(benchmark::State& state) {
    boost::intrusive_ptr<StringInfo> const string(new StringInfo(1, "Name", Permission_t(3)));
    string->SetMaxLength(64);
    boost::intrusive_ptr<InfoBase const> const info(string);
    boost::intrusive_ptr<ItemBase const> const item(StringItem::Create(1, "camera-entrance-1"));
    TimeCheck(state, *item, info, "Check/Oru/String");
}
BENCHMARK(BM_Check_Oru_String);
BENCHMARK(BM_ReadValues_Nlohmann)->Unit(benchmark::kMillisecond);

// An id as a description writes it: a number, or a hexadecimal string.
unsigned int IdOf(nlohmann::json const& id) {
    if (id.is_string()) {
        return static_cast<unsigned int>(
            std::strtoul(id.get_ref<std::string const&>().c_str(), nullptr, 16));
    }
    return id.get<unsigned int>();
}

void BM_ReadDescription_Oru(benchmark::State& state) {
    Device& device = TheDevice();
    Bench::InstructionWindow window(state, "ReadDescription/Oru/100000");
    for (auto _ : state) {
        InfoItemDirectory directory;
        Files::Problems const problems = Files::ReadDescription(device.description, directory);
        if (!problems.empty()) {
            state.SkipWithError(problems.front().message.c_str());
        }
        benchmark::DoNotOptimize(directory);
    }
}
BENCHMARK(BM_ReadDescription_Oru)->Unit(benchmark::kMillisecond);

// The same text parsed, and the same Infos made and added by hand: the
// sections by path, each setting under the id and bounds the text gives.
void BM_ReadDescription_Floor(benchmark::State& state) {
    Device& device = TheDevice();
    Bench::InstructionWindow window(state, "ReadDescription/Floor/100000");
    for (auto _ : state) {
        InfoItemDirectory directory;
        nlohmann::json const parsed = nlohmann::json::parse(device.description);
        for (nlohmann::json const& setting : parsed.at("settings")) {
            std::string const& path = setting.at("path").get_ref<std::string const&>();
            std::size_t const slash = path.rfind('/');
            SectionId section;
            std::string const sectionName = path.substr(0, slash);
            // -47: the section is there already, and section names it.
            int const added = directory.AddSection(sectionName, section);
            if (added != 0 && added != -47) {
                state.SkipWithError("cannot add a section");
                break;
            }
            boost::intrusive_ptr<NumericInfo<U32Traits>> info(
                new NumericInfo<U32Traits>(IdOf(setting.at("id")), path.substr(slash + 1),
                                           Permission_t(setting.value("permission", 0u))));
            info->SetMin(setting.value("min", 0u));
            info->SetMax(setting.value("max", 0u));
            info->SetDefault(setting.value("default", 0u));
            if (directory.AddInfo(boost::intrusive_ptr<InfoHolder const>(new InfoHolder(info))) !=
                0) {
                state.SkipWithError("cannot add a setting");
                break;
            }
        }
        benchmark::DoNotOptimize(directory);
    }
}
BENCHMARK(BM_ReadDescription_Floor)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();

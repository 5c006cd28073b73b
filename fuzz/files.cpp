// Settings files from a hostile source. The first byte says which reader
// gets the rest: a description read into a directory that already holds the
// sample device, or a values file read for the sample device's settings
// (applying those that pass, all or nothing, or first as a dry run).
// Whatever the text, nothing crashes; a refused description changes
// nothing; values are applied whole or, all-or-nothing, not at all; every
// value applied passes the check, and its record and the values file written
// from it give it back, the same text each time.
//
// The sample device is built once; each input starts from its settings as
// they were, put back by their holders, so that an input costs what its
// reading costs.
#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <vector>

#include <legacy/oru/files/files.h>
#include <legacy/oru/oru.h>

#include "sample.h"

using namespace Legacy::Oru;

namespace {

void Require(bool condition) {
    if (!condition) {
        __builtin_trap();
    }
}

using SlotPtr = boost::intrusive_ptr<InfoItemHolder const>;
using InfoHolderPtr = boost::intrusive_ptr<InfoHolder const>;
using ItemHolderPtr = boost::intrusive_ptr<ItemHolder const>;
using ItemPtr = boost::intrusive_ptr<ItemBase const>;

// What a directory holds: its leaf sections, and each setting's Info and Item
// holders. Holders are never changed in place, so the same holders are the
// same state.
struct Snapshot {
    struct Setting {
        InfoHolderPtr info;
        ItemHolderPtr item;
    };
    std::list<SectionId> leaves;
    std::vector<Setting> settings;

    explicit Snapshot(InfoItemDirectory const& directory) {
        directory.GetLeafSections(leaves);
        std::vector<SlotPtr> slots;
        directory.GetAllInfoItems(slots);
        settings.reserve(slots.size());
        for (SlotPtr const& slot : slots) {
            settings.push_back(Setting{slot->GetInfoHolder(), slot->GetItemHolder()});
        }
    }
};

// The sample device as built once.
struct Pristine {
    InfoItemDirectory directory;
    Snapshot snapshot;

    Pristine() : snapshot(Build(directory)) {}

    static InfoItemDirectory& Build(InfoItemDirectory& directory) {
        OruTool::SampleDirectory(directory);
        return directory;
    }

    // Fills an empty directory with the sample's sections and settings, with
    // their values or, bare, without any.
    void Fill(InfoItemDirectory& target, bool values = true) const {
        for (SectionId const& leaf : snapshot.leaves) {
            Require(target.AddSection(leaf) == 0);
        }
        for (Snapshot::Setting const& setting : snapshot.settings) {
            Require(target.AddInfo(setting.info) == 0);
            if (values && setting.item) {
                Require(target.SetItem(setting.item) == 0);
            }
        }
    }

    // Puts back the sample's values in a directory that holds its settings.
    void RestoreValues(InfoItemDirectory& target) const {
        for (Snapshot::Setting const& setting : snapshot.settings) {
            SlotPtr const slot = target.FindInfoItem(setting.info->GetInfo()->GetId());
            Require(slot && slot->GetInfoHolder() == setting.info);
            if (setting.item && slot->GetItemHolder() != setting.item) {
                Require(target.SetItem(setting.item) == 0);
            }
        }
    }

    // Whether a directory holds exactly the sample's settings and values,
    // found by id, without copying its sections.
    bool SameSettings(InfoItemDirectory const& target) const {
        std::vector<SlotPtr> slots;
        target.GetAllInfoItems(slots);
        if (slots.size() != snapshot.settings.size()) {
            return false;
        }
        for (std::size_t i = 0; i < slots.size(); ++i) {
            if (slots[i]->GetInfoHolder() != snapshot.settings[i].info ||
                slots[i]->GetItemHolder() != snapshot.settings[i].item) {
                return false;
            }
        }
        return true;
    }

    // The same, with the same sections too.
    bool Same(InfoItemDirectory const& target) const {
        if (!SameSettings(target)) {
            return false;
        }
        std::list<SectionId> leaves;
        target.GetLeafSections(leaves);
        return leaves == snapshot.leaves;
    }
};

Pristine const& Sample() {
    static Pristine const* const pristine = new Pristine();
    return *pristine;
}

// The directory the inputs are read into; it holds the sample device between
// inputs.
InfoItemDirectory& Work() {
    static InfoItemDirectory* const directory = [] {
        auto* made = new InfoItemDirectory();
        Sample().Fill(*made);
        return made;
    }();
    return *directory;
}

// The sample's settings without values, to hold only what an input applied:
// one to write a values file from, one to read it back into.
InfoItemDirectory& Bare(int which) {
    static InfoItemDirectory* const directories = [] {
        auto* made = new InfoItemDirectory[2];
        Sample().Fill(made[0], false);
        Sample().Fill(made[1], false);
        return made;
    }();
    return directories[which];
}

void Empty(InfoItemDirectory& directory) {
    directory.Clear();
    Sample().Fill(directory, false);
}

// The same value: equal as the family compares, and in text, since some
// families compare by a distance.
bool SameValue(ItemBase const& held, ItemPtr const& other) {
    return other && held.IsEqualValue(other) && held.GetValAsString() == other->GetValAsString();
}

// The held item's serial record reads back to the same value.
bool RecordRoundTrips(ItemBase const& item) {
    ItemBase::SerialStruct_t record;
    if (item.Serialize(&record) != 0) {
        return false;
    }
    ItemBase::ConstSerialStruct_t const view(record);
    boost::intrusive_ptr<ItemBase> back;
    if (ItemBase::Deserialize(&view, back) != 0) {
        return false;
    }
    return SameValue(item, back);
}

void Description(std::string const& text) {
    Pristine const& sample = Sample();
    InfoItemDirectory& directory = Work();
    Files::Problems const problems = Files::ReadDescription(text, directory);
    if (!problems.empty()) {
        Require(sample.Same(directory));
        return;
    }
    // What was read describes itself the same way again.
    std::string const written = Files::WriteDescription(directory);
    InfoItemDirectory again;
    Require(Files::ReadDescription(written, again).empty());
    Require(Files::WriteDescription(again) == written);
    if (!sample.Same(directory)) {
        directory.Clear();
        sample.Fill(directory);
    }
}

void Values(std::string const& text, Files::Apply mode) {
    Pristine const& sample = Sample();
    InfoItemDirectory& directory = Work();
    bool const whole = Files::Apply::AllOrNothing == mode;
    Files::Problems dryRun;
    if (Files::Apply::Nothing == mode) {
        // A dry run applies nothing and finds what the real one finds.
        Files::ValuesReport const checked = Files::ReadValues(text, directory, mode);
        Require(checked.applied == 0 && sample.SameSettings(directory));
        dryRun = checked.problems;
    }
    Files::ValuesReport const report = Files::ReadValues(
        text, directory, whole ? Files::Apply::AllOrNothing : Files::Apply::Passing);
    if (Files::Apply::Nothing == mode) {
        Require(report.problems == dryRun);
    }
    if (report.applied == 0 || (whole && !report.problems.empty())) {
        Require(report.applied == 0);
        // Values change no section, so the settings say it all.
        Require(sample.SameSettings(directory));
        return;
    }
    Snapshot const held(directory);
    Require(held.settings.size() == sample.snapshot.settings.size());
    // Every value applied passes the check and survives its record.
    InfoItemDirectory& applied = Bare(0);
    std::size_t changed = 0;
    for (std::size_t i = 0; i < held.settings.size(); ++i) {
        Snapshot::Setting const& setting = held.settings[i];
        Require(setting.info == sample.snapshot.settings[i].info);
        if (setting.item == sample.snapshot.settings[i].item) {
            continue;
        }
        ++changed;
        ItemBase const& item = *setting.item->GetItem();
        Require(Files::Check(item, setting.info->GetInfo(), "/value").empty());
        Require(RecordRoundTrips(item));
        Require(!Files::Explain(item, setting.info->GetInfo()));
        Require(applied.SetItem(setting.item) == 0);
    }
    Require(changed == report.applied);
    // The values applied write out and read back, without a problem, to the
    // same values; writing those gives the same text. The sample's own values
    // are left out: they are the same for every input.
    std::string const written = Files::WriteValues(applied);
    InfoItemDirectory& back = Bare(1);
    Files::ValuesReport const again = Files::ReadValues(written, back);
    Require(again.problems.empty() && again.applied == changed);
    for (Snapshot::Setting const& setting : held.settings) {
        unsigned int const id = setting.info->GetInfo()->GetId();
        ItemHolderPtr const out = applied.FindItem(id);
        ItemHolderPtr const read = back.FindItem(id);
        Require((out != nullptr) == (read != nullptr));
        Require(!out || SameValue(*out->GetItem(), read->GetItem()));
    }
    Require(Files::WriteValues(back) == written);
    Empty(applied);
    Empty(back);
    sample.RestoreValues(directory);
}

}  // namespace

// Defaults of this target, each overridden by the same option given on the
// command line or in ASAN_OPTIONS. An input costs about a millisecond, so
// the fuzzer's own bookkeeping of rare features (-entropic) and the
// sanitizer's 256 MB quarantine and 30-frame allocation stacks took most of
// the time; without them a run makes several times the inputs and reaches
// more coverage in the same minutes. A 16 MB quarantine still spans many
// inputs' frees.
extern "C" char const* __asan_default_options() {
    return "quarantine_size_mb=16:malloc_context_size=8";
}

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static char entropic[] = "-entropic=0";
    static std::vector<char*> args;
    args.assign(*argv, *argv + *argc);
    bool given = false;
    for (char* arg : args) {
        given = given || std::string(arg).rfind("-entropic=", 0) == 0;
    }
    if (!given && !args.empty()) {
        args.insert(args.begin() + 1, entropic);
        args.push_back(nullptr);
        *argv = args.data();
        ++*argc;
    }
    Sample();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    std::string const text(reinterpret_cast<char const*>(data) + 1, size - 1);
    switch (data[0] % 4) {
        case 0:
            Description(text);
            break;
        case 1:
            Values(text, Files::Apply::Passing);
            break;
        case 2:
            Values(text, Files::Apply::AllOrNothing);
            break;
        default:
            Values(text, Files::Apply::Nothing);
            break;
    }
    return 0;
}

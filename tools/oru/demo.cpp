// oru demo: a tour of the model on an embedded sample device. It needs no
// files and no arguments; everything it shows is made here.
#include <iomanip>
#include <ostream>
#include <sstream>

#include <legacy/oru/oru.h>

#include "commands.h"
#include "demo_directory.h"
#include "hex.h"

namespace OruTool {

namespace {

using namespace Legacy::Oru;

// One setting of the sample device: its Info, and an Item set to a value.
struct Setting {
    boost::intrusive_ptr<InfoBase> info;
    boost::intrusive_ptr<ItemBase> item;
};

template <class T>
Setting MakeNumeric(unsigned int id, char const* name, typename T::Element low,
                    typename T::Element high, typename T::Element def, typename T::Element value) {
    boost::intrusive_ptr<NumericInfo<T>> info(new NumericInfo<T>(id, name, Permission_t(0x0003)));
    info->SetMin(low);
    info->SetMax(high);
    info->SetDefault(def);
    boost::intrusive_ptr<NumericItem<T>> item(static_cast<NumericItem<T>*>(info->CreateItem()));
    item->SetVal(value);
    return Setting{info, item};
}

Setting MakeString(unsigned int id, char const* name, unsigned long long maxLength, char const* def,
                   char const* value) {
    boost::intrusive_ptr<StringInfo> info(new StringInfo(id, name, Permission_t(0x0001)));
    info->SetMaxLength(maxLength);
    info->SetDefault(def);
    boost::intrusive_ptr<StringItem> item(static_cast<StringItem*>(info->CreateItem()));
    item->SetVal(value);
    return Setting{info, item};
}

void Heading(std::ostream& out, char const* title) {
    out << "\n== " << title << " ==\n";
}

}  // namespace

int RunDemo(Args const& args, std::ostream& out, std::ostream& err) {
    if (!args.empty()) {
        if (args[0] == "--help" || args[0] == "-h") {
            out << "usage: oru demo\n\n"
                   "A tour of the settings model on a small sample device: Infos with\n"
                   "bounds and defaults, Items checked against them, serial records written\n"
                   "in hex and read back, and each setting printed on one line.\n\n"
                   "example:\n  oru demo\n";
            return 0;
        }
        err << "oru demo: takes no arguments (try 'oru demo --help')\n";
        return 2;
    }

    // Ids of the sample device: section numbers packed into the top bits,
    // the setting's number in the low ones.
    Setting const settings[] = {
        MakeNumeric<U32Traits>(0x420C0005, "Audio/Input/Gain", 0, 100, 50, 72),
        MakeNumeric<S16Traits>(0x420C0006, "Audio/Input/Balance", -50, 50, 0, -12),
        MakeNumeric<FloatTraits>(0x41000001, "Video/FrameRate", 1.0f, 60.0f, 25.0f, 30.0f),
        MakeNumeric<U8Traits>(0x41000002, "Video/Brightness", 0, 100, 50, 130),
        MakeString(0x40000001, "Device/Name", 16, "camera", "lobby-east"),
    };

    out << "oru demo: the settings of a small sample device\n";

    Heading(out, "Settings (name, type, {item} {info})");
    for (auto const& setting : settings) {
        out << "  ";
        FormattedInfoItemDump(out, setting.info, setting.item);
        out << "\n";
    }

    Heading(out, "Checks of each value against its Info");
    for (auto const& setting : settings) {
        auto const failed = setting.item->Validate(setting.info);
        out << "  " << std::left << std::setw(22) << setting.info->GetName() << std::right
            << " value " << setting.item->GetValAsString() << ": ";
        if (!failed) {
            out << "passed\n";
        } else {
            out << "failed (severity " << static_cast<int>(failed->GetSeverityLevel())
                << ", bounds " << *setting.info << ")\n";
        }
    }

    Heading(out, "Serial records (header | payload) and what reads back");
    for (auto const& setting : settings) {
        ItemBase::SerialStruct_t record;
        if (setting.item->Serialize(&record) != 0) {
            err << "oru demo: could not write " << setting.info->GetName() << "\n";
            return 1;
        }
        auto const flat = FlatRecord(record);
        ItemBase::ConstSerialStruct_t const view(record);
        boost::intrusive_ptr<ItemBase> back;
        int const code = ItemBase::Deserialize(&view, back);
        out << "  " << setting.info->GetName() << "\n    " << HexBytes(flat.data(), 10) << " | "
            << HexBytes(flat.data() + 10, flat.size() - 10) << "\n    reads back as ";
        if (code != 0) {
            out << "error " << code << "\n";
        } else {
            out << back->GetValAsString()
                << (back->IsEqualValue(setting.item) ? " (equal)" : " (changed on the wire)")
                << "\n";
        }
    }

    Heading(out, "One setting in full: its Info, then its Item");
    settings[0].info->DumpVal(out);
    out << "--\n";
    settings[0].item->DumpVal(out);
    return RunDirectoryDemo(out, err);
}

}  // namespace OruTool

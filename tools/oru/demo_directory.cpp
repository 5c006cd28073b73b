// oru demo, the directory part: sections, an Info and its Item entered in a
// directory, a check, a lookup by path, a serial record and back, and a
// change set applied while a derived directory prints what it is told.
#include "demo_directory.h"

#include <iomanip>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include <legacy/oru/oru.h>

#include "hex.h"

namespace OruTool {

namespace {

using namespace Legacy::Oru;

std::string IdText(unsigned int id) {
    std::ostringstream text;
    text << "0x" << std::hex << std::uppercase << std::setw(8) << std::setfill('0') << id;
    return text.str();
}

// A directory that reports each change it makes, as a derived class would.
class PrintingDirectory : public InfoItemDirectory {
public:
    explicit PrintingDirectory(std::ostream& out) : out_(out) {}

protected:
    void InfoChanged_(boost::intrusive_ptr<InfoHolder const> const& oldInfo,
                      boost::intrusive_ptr<InfoItemHolder const> const& holder) override {
        InfoBase const& info = *holder->GetInfoHolder()->GetInfo();
        out_ << "    changed: info " << IdText(info.GetId()) << " " << info.GetName() << " "
             << (oldInfo ? "replaced" : "added") << ", bounds " << info << "\n";
    }
    void ItemChanged_(boost::intrusive_ptr<ItemHolder const> const& oldItem,
                      boost::intrusive_ptr<InfoItemHolder const> const& holder) override {
        InfoBase const& info = *holder->GetInfoHolder()->GetInfo();
        out_ << "    changed: item " << IdText(info.GetId()) << " " << info.GetName() << " "
             << (oldItem ? oldItem->GetItem()->GetValAsString() : std::string("(none)")) << " -> "
             << holder->GetItemHolder()->GetItem()->GetValAsString() << "\n";
    }

private:
    std::ostream& out_;
};

boost::intrusive_ptr<InfoHolder const> U32Setting(unsigned int id, char const* name,
                                                  unsigned int max, unsigned int def) {
    boost::intrusive_ptr<NumericInfo<U32Traits>> info(
        new NumericInfo<U32Traits>(id, name, Permission_t(0x0003)));
    info->SetMin(0);
    info->SetMax(max);
    info->SetDefault(def);
    return boost::intrusive_ptr<InfoHolder const>(new InfoHolder(info));
}

boost::intrusive_ptr<ItemHolder const> U32Value(unsigned int id, unsigned int value) {
    return boost::intrusive_ptr<ItemHolder const>(
        new ItemHolder(boost::intrusive_ptr<ItemBase>(NumericItem<U32Traits>::Create(id, value))));
}

int Fail(std::ostream& err, char const* step, int code) {
    err << "oru demo: " << step << " failed with " << code << "\n";
    return 1;
}

}  // namespace

int RunDirectoryDemo(std::ostream& out, std::ostream& err) {
    out << "\n== One setting's road through a directory ==\n";
    PrintingDirectory dir(out);

    SectionId section;
    int code = dir.AddSection("Audio/Input", section);
    out << "  AddSection(\"Audio/Input\"): " << code << ", section "
        << IdText(section.GetInfoItemSectionId()) << " at depth " << section.GetSectionDepth()
        << "\n";
    if (code != 0) {
        return Fail(err, "AddSection", code);
    }

    unsigned int const gainId = section.GetInfoItemSectionId().CreateInfoItemId(5);
    auto const gainInfo = U32Setting(gainId, "Gain", 100, 50);
    code = dir.AddInfo(gainInfo);
    out << "  AddInfo(Gain, " << IdText(gainId) << "): " << code << "\n";
    if (code != 0) {
        return Fail(err, "AddInfo", code);
    }

    boost::intrusive_ptr<ItemHolder const> const itemHolder(gainInfo->CreateItemHolder());
    static_cast<NumericItem<U32Traits>&>(*itemHolder->GetItem()).SetVal(72);
    auto const failed = itemHolder->GetItem()->Validate(gainInfo->GetInfo());
    out << "  check of 72 against " << *gainInfo->GetInfo() << ": "
        << (failed ? "failed" : "passed") << "\n";
    code = dir.SetItem(itemHolder);
    out << "  SetItem(72): " << code << "\n";
    if (code != 0) {
        return Fail(err, "SetItem", code);
    }
    boost::intrusive_ptr<ItemBase> const wrongType(NumericItem<S16Traits>::Create(gainId, 1));
    out << "  SetItem of an S16 Item under the same id: "
        << dir.SetItem(boost::intrusive_ptr<ItemHolder const>(new ItemHolder(wrongType)))
        << " (refused: the type must match the Info)\n";

    auto const found = dir.FindItem("Audio/Input/Gain");
    if (!found) {
        return Fail(err, "FindItem by path", -25);
    }
    out << "  FindItem(\"Audio/Input/Gain\"): " << found->GetItem()->GetValAsString()
        << (found == dir.FindItem(gainId) ? ", the same holder as FindItem(id)" : "") << "\n";

    ItemBase::SerialStruct_t record;
    code = found->GetItem()->Serialize(&record);
    if (code != 0) {
        return Fail(err, "Serialize", code);
    }
    auto const flat = FlatRecord(record);
    ItemBase::ConstSerialStruct_t const view(record);
    boost::intrusive_ptr<ItemBase> back;
    code = ItemBase::Deserialize(&view, back);
    out << "  serial record: " << FlatRecordHex(flat) << "\n  reads back as ";
    if (code != 0) {
        out << "error " << code << "\n";
    } else {
        out << back->GetValAsString() << " under " << IdText(back->GetId())
            << (back->IsEqualValue(found->GetItem()) ? " (equal)" : " (changed on the wire)")
            << "\n";
    }

    // A change set: a new section with a new setting, and a new value for Gain.
    SectionId audio = dir.FindSection("Audio");
    SectionId const output = audio.CreateSectionId("Output", 1);
    unsigned int const volumeId = output.GetInfoItemSectionId().CreateInfoItemId(1);
    auto const delta = std::make_shared<InfoItemDirectoryDelta>();
    delta->AddSection(output);
    delta->AddInfo(U32Setting(volumeId, "Volume", 10, 5));
    delta->AddItem(U32Value(volumeId, 8));
    delta->AddItem(U32Value(gainId, 64));
    out << "  change set: section Audio/Output, info Volume, items Volume=8 and Gain=64\n";
    code = dir.UpdateFromDelta(delta, true, true);
    out << "  UpdateFromDelta: " << code << "\n";
    if (code != 0) {
        return Fail(err, "UpdateFromDelta", code);
    }

    std::vector<boost::intrusive_ptr<InfoItemHolder const>> settings;
    code = dir.FindInfoItems(audio.GetInfoItemSectionId(), settings);
    out << "  settings under Audio:\n";
    for (auto const& setting : settings) {
        out << "    ";
        auto const& item = setting->GetItemHolder();
        FormattedInfoItemDump(out, setting->GetInfoHolder()->GetInfo(),
                              item ? boost::intrusive_ptr<ItemBase const>(item->GetItem())
                                   : boost::intrusive_ptr<ItemBase const>());
        out << "\n";
    }
    return code == 0 ? 0 : Fail(err, "FindInfoItems", code);
}

}  // namespace OruTool

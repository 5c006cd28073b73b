// A user's program, and the README's tour: a directory with one setting whose
// value is set, checked, written as a serial record and read back. Exits 0
// when everything behaves. It includes the two headers the job needs rather
// than <legacy/oru/oru.h>, which holds everything at six times the cost.
#include <iostream>

#include <legacy/oru/infoitemdirectory.h>
#include <legacy/oru/numeric.h>

using namespace Legacy::Oru;

int main() {
    InfoItemDirectory directory;
    SectionId section;
    if (directory.AddSection("Audio/Input", section) != 0) {
        return 1;
    }

    // The setting: an unsigned 32-bit number from 0 to 100, default 50.
    unsigned int const id = section.GetInfoItemSectionId().CreateInfoItemId(5);
    boost::intrusive_ptr<NumericInfo<U32Traits>> info(
        new NumericInfo<U32Traits>(id, "Gain", Permission_t(3)));
    info->SetMax(100);
    info->SetDefault(50);
    directory.AddInfo(boost::intrusive_ptr<InfoHolder const>(new InfoHolder(info)));

    // A value, checked against the Info, then stored.
    boost::intrusive_ptr<NumericItem<U32Traits>> item(
        static_cast<NumericItem<U32Traits>*>(info->CreateItem()));
    item->SetVal(72);
    if (item->Validate(info)) {  // null when the value passes
        return 1;
    }
    directory.SetItem(boost::intrusive_ptr<ItemHolder const>(new ItemHolder(item)));

    // Found by path, written as a record, read back.
    boost::intrusive_ptr<ItemHolder const> found = directory.FindItem("Audio/Input/Gain");
    ItemBase::SerialStruct_t record;
    found->GetItem()->Serialize(&record);
    ItemBase::ConstSerialStruct_t view(record);
    boost::intrusive_ptr<ItemBase> back;
    if (ItemBase::Deserialize(&view, back) != 0 || !back->IsEqualValue(item)) {
        std::cerr << "consumer: the record did not read back\n";
        return 1;
    }
    FormattedInfoItemDump(std::cout, info, back);  // Gain  NumericU32  {72} {0 <= 50 <= 100}
    std::cout << "\nconsumer: ok\n";
    return 0;
}

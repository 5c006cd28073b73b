// A user's program: makes a setting, checks and serialises its value, reads
// it back. Exits 0 when everything behaves.
#include <iostream>

#include <legacy/oru/oru.h>
#include <vintor/vintor.h>

int main() {
    using namespace Legacy::Oru;
    boost::intrusive_ptr<NumericInfo<U32Traits>> info(
        new NumericInfo<U32Traits>(0x420C0005, "Gain", Permission_t(3)));
    info->SetMax(100);
    info->SetDefault(50);
    boost::intrusive_ptr<ItemBase> item(info->CreateItem());
    if (item->Validate(info)) {
        std::cerr << "consumer: a default value failed its check\n";
        return 1;
    }
    ItemBase::SerialStruct_t record;
    if (item->Serialize(&record) != 0) {
        return 1;
    }
    ItemBase::ConstSerialStruct_t const view(record);
    boost::intrusive_ptr<ItemBase> back;
    if (ItemBase::Deserialize(&view, back) != 0 || !back->IsEqualValue(item)) {
        std::cerr << "consumer: the record did not read back\n";
        return 1;
    }
    FormattedInfoItemDump(std::cout, info, back);
    std::cout << "\nconsumer: ok\n";
    return 0;
}

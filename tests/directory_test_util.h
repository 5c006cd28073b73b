// Helpers of the holder, container and directory tests: settings made in one
// line, and holders of them.
#ifndef ORU_TESTS_DIRECTORY_TEST_UTIL_H
#define ORU_TESTS_DIRECTORY_TEST_UTIL_H

#include <string>

#include <legacy/oru/infoitemholderdefs.h>
#include <legacy/oru/numeric.h>
#include <legacy/oru/stringvalue.h>

namespace OruTest {

using namespace Legacy::Oru;

using InfoHolderPtr = boost::intrusive_ptr<InfoHolder const>;
using ItemHolderPtr = boost::intrusive_ptr<ItemHolder const>;
using SlotPtr = boost::intrusive_ptr<InfoItemHolder const>;

inline boost::intrusive_ptr<NumericInfo<U32Traits>> U32Info(unsigned int id,
                                                            std::string const& name,
                                                            unsigned int max = 100) {
    boost::intrusive_ptr<NumericInfo<U32Traits>> info(
        new NumericInfo<U32Traits>(id, name, Permission_t(3)));
    info->SetMax(max);
    return info;
}

inline boost::intrusive_ptr<NumericItem<U32Traits>> U32Item(unsigned int id, unsigned int value) {
    return boost::intrusive_ptr<NumericItem<U32Traits>>(NumericItem<U32Traits>::Create(id, value));
}

inline boost::intrusive_ptr<InfoHolder> HoldInfo(boost::intrusive_ptr<InfoBase> const& info) {
    return boost::intrusive_ptr<InfoHolder>(new InfoHolder(info));
}

inline boost::intrusive_ptr<ItemHolder> HoldItem(boost::intrusive_ptr<ItemBase> const& item) {
    return boost::intrusive_ptr<ItemHolder>(new ItemHolder(item));
}

inline boost::intrusive_ptr<InfoHolder> U32InfoHolder(unsigned int id, std::string const& name,
                                                      unsigned int max = 100) {
    return HoldInfo(U32Info(id, name, max));
}

inline boost::intrusive_ptr<ItemHolder> U32ItemHolder(unsigned int id, unsigned int value) {
    return HoldItem(U32Item(id, value));
}

// The value of a held U32 item.
inline unsigned int U32Value(ItemHolder const& holder) {
    return static_cast<NumericItem<U32Traits> const&>(*holder.GetItem()).GetVal();
}

}  // namespace OruTest

#endif

// LocalizedStringInfo and LocalizedStringItem: a setting whose value is a
// LocalizedString, a message key with Item arguments turned into text late.
// The family lives in memory only: it has no serial form (records of its type
// are read by nobody), no text input and no bounds. An object may be read by
// several threads while nobody writes it; a writer must have it alone.
#ifndef LEGACY_ORU_LOCALIZEDSTRINGVALUE_H
#define LEGACY_ORU_LOCALIZEDSTRINGVALUE_H

#include <iosfwd>
#include <memory>
#include <string>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>
#include <legacy/oru/localizedstring.h>

namespace Legacy {
namespace Oru {

class ORU_API LocalizedStringInfo : public InfoBase {
public:
    // An empty default.
    LocalizedStringInfo(unsigned int const& id, std::string const& name,
                        Permission_t const& permission);
    LocalizedStringInfo(LocalizedStringInfo const& other);
    // Copies the default; the identity stays.
    LocalizedStringInfo& operator=(LocalizedStringInfo const& other);

    ~LocalizedStringInfo() override;
    // A new Info with that identity and a copy of the default; count 0.
    InfoBase* DeepCopy(unsigned int id, std::string const& name,
                       Permission_t const& permission) const override;
    // A new LocalizedStringItem holding a copy of the default; count 0.
    ItemBase* CreateItem() const override;
    OruType_t GetType() const override;
    // False always, even for the Info itself: the family has no bounds.
    bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const override;
    // -26 always: there is nothing to merge.
    int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) override;
    // Takes the default of another LocalizedStringInfo.
    int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) override;
    // The head lines and "default: " with the default's text.
    void DumpVal(std::ostream& out) const override;
    // A double quote and the default's text, with no closing quote.
    std::ostream& operator<<(std::ostream& out) const override;

    using InfoBase::DeepCopy;
    LocalizedStringInfo* DeepCopy() const;
    LocalizedStringInfo* DeepCopy(unsigned int id) const;

    void SetDefault(LocalizedString const& value) { default_ = value; }
    LocalizedString const& GetDefault() const noexcept { return default_; }

    static OruType_t GetTypeStatic() noexcept { return OruType_t::LocalizedString; }
    static NumericType_t GetNumericTypeStatic() noexcept { return NumericType_t::Undefined; }

private:
    LocalizedString default_;
};

class ORU_API LocalizedStringItem : public ItemBase {
public:
    explicit LocalizedStringItem(unsigned int id = 0);
    LocalizedStringItem(LocalizedStringItem const& other);
    // Copies the value; the id stays.
    LocalizedStringItem& operator=(LocalizedStringItem const& other);

    ~LocalizedStringItem() override;
    ItemBase* DeepCopy(unsigned int id) const override;
    OruType_t GetType() const override;
    // Same type and an equal LocalizedString: the same key and the very
    // same argument Items.
    bool IsEqualValue(boost::intrusive_ptr<ItemBase const> const& other) const override;
    // Takes the value of another LocalizedStringItem; the index is ignored.
    int AssignArrayValue(boost::intrusive_ptr<ItemBase const> const& source, unsigned int index,
                         bool* changed) override;
    // 0: the family has no serial form.
    unsigned int GetSerialDataSize() const override;
    // -26 always, the record untouched, a null one too.
    int Serialize(SerialStruct_t* record) const override;
    // -26 always, the value untouched.
    int Deserialize(ConstSerialStruct_t const* record) override;
    // Passes always, whatever the Info.
    std::shared_ptr<ResultElem const> Validate(
        boost::intrusive_ptr<InfoBase const> const& info) const override;
    // Writes "Impl. me" to errors and answers false: there is no text input.
    bool SetValFromStream(std::istream& in, std::ostream& errors,
                          boost::intrusive_ptr<InfoBase const> const& info) override;
    void DumpVal(std::ostream& out) const override;
    // The value's text.
    std::ostream& operator<<(std::ostream& out) const override;

    using ItemBase::Deserialize;
    LocalizedStringItem* DeepCopy() const;

    void SetVal(LocalizedString const& value) { value_ = value; }
    LocalizedString const& GetVal() const noexcept { return value_; }

private:
    LocalizedString value_;
};

}  // namespace Oru
}  // namespace Legacy

#endif

// InfoBase: the abstract base of every Info, the half of a setting that says
// what it is (id, name, permission, type, bounds, default). Infos live on the
// heap under boost::intrusive_ptr with the count inside the object; creating
// operations answer raw pointers with a count of 0. The count may be touched
// from any thread; everything else may be read by several threads while
// nobody writes.
#ifndef LEGACY_ORU_INFOBASE_H
#define LEGACY_ORU_INFOBASE_H

#include <iosfwd>
#include <string>

#include <vintor/atomic32.h>
#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/export.h>
#include <legacy/oru/types.h>

namespace Legacy {
namespace Oru {

class ItemBase;
class InfoBase;

ORU_API void intrusive_ptr_add_ref(InfoBase const* info) noexcept;
// Destroys the Info when the count before the release is below 2.
ORU_API void intrusive_ptr_release(InfoBase const* info) noexcept;

class ORU_API InfoBase {
public:
    InfoBase(unsigned int const& id, std::string const& name, Permission_t const& permission);
    // Copies id, name and permission; the copy's count is 0.
    InfoBase(InfoBase const& other);
    // Does nothing: an assigned Info keeps its id, name and permission, and
    // families copy only their own fields.
    InfoBase const& operator=(InfoBase const&) { return *this; }

    virtual ~InfoBase();
    // A new Info of the same class with the given identity; count 0.
    virtual InfoBase* DeepCopy(unsigned int id, std::string const& name,
                               Permission_t const& permission) const = 0;
    // A new Item of this Info's family, with its id and default; count 0.
    virtual ItemBase* CreateItem() const = 0;
    virtual OruType_t GetType() const = 0;
    // 0 for the non-numeric families.
    virtual NumericType_t GetNumericType() const;
    // True if the item has this Info's type and element type.
    virtual bool IsEqualType(boost::intrusive_ptr<ItemBase const> const& item) const;
    // True if the Info has this Info's type and element type.
    virtual bool IsEqualType(boost::intrusive_ptr<InfoBase const> const& info) const;
    virtual bool IsEqualBounds(boost::intrusive_ptr<InfoBase const> const& other) const = 0;
    // Narrows this Info's bounds to those it shares with other.
    virtual int MergeBounds(boost::intrusive_ptr<InfoBase const> const& other) = 0;
    // Takes over default and bounds of another Info, converting across families
    // where the family allows; *changed, if given, says whether anything differed.
    virtual int AssignValue(boost::intrusive_ptr<InfoBase const> const& source, bool* changed) = 0;
    // One labelled field per line.
    virtual void DumpVal(std::ostream& out) const = 0;
    // The compact text form.
    virtual std::ostream& operator<<(std::ostream& out) const = 0;

    InfoBase* DeepCopy() const { return DeepCopy(id_, name_, permission_); }
    InfoBase* DeepCopy(unsigned int id) const { return DeepCopy(id, name_, permission_); }
    InfoBase* DeepCopy(unsigned int id, std::string const& name) const {
        return DeepCopy(id, name, permission_);
    }

    unsigned int const& GetId() const noexcept { return id_; }
    std::string const& GetName() const noexcept { return name_; }
    Permission_t const& GetPermission() const noexcept { return permission_; }
    int GetRefCount() const noexcept;

    bool operator==(unsigned int id) const noexcept { return id_ == id; }
    bool operator==(InfoBase const& other) const noexcept { return id_ == other.id_; }
    bool operator<(unsigned int id) const noexcept { return id_ < id; }
    bool operator<(InfoBase const& other) const noexcept { return id_ < other.id_; }
    bool operator<=(InfoBase const& other) const noexcept { return id_ <= other.id_; }
    bool operator>(InfoBase const& other) const noexcept { return id_ > other.id_; }
    bool operator>=(InfoBase const& other) const noexcept { return id_ >= other.id_; }
    // Compares the names exactly.
    bool operator==(std::string const& name) const noexcept { return name_ == name; }

private:
    friend ORU_API void intrusive_ptr_add_ref(InfoBase const* info) noexcept;
    friend ORU_API void intrusive_ptr_release(InfoBase const* info) noexcept;

    unsigned int const id_;
    std::string name_;
    Permission_t permission_;
    mutable Vintor::Atomic32 count_;
};

// Writes the Info's compact text form.
ORU_API std::ostream& operator<<(std::ostream& out, InfoBase const& info);

}  // namespace Oru
}  // namespace Legacy

#endif

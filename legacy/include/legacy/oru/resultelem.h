// ResultElem: one failed check. It holds the severity and private copies of
// the offending Item and (never in practice) of an Info; it carries no text.
// Elements travel as std::shared_ptr<ResultElem const>, null meaning "passed".
//
// Threads: immutable once made; shared freely under std::shared_ptr.
#ifndef LEGACY_ORU_RESULTELEM_H
#define LEGACY_ORU_RESULTELEM_H

#include <string>

#include <vintor/severity.h>
#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>

namespace Legacy {
namespace Oru {

class ORU_API ResultElem {
public:
    // Stores the severity, then a DeepCopy of item and of info where given;
    // the arguments themselves are not retained.
    ResultElem(Vintor::SeverityLevel_t const& severity,
               boost::intrusive_ptr<ItemBase const> const& item,
               boost::intrusive_ptr<InfoBase const> const& info);
    // Copies share the two objects.
    ResultElem(ResultElem const& other) = default;
    ResultElem& operator=(ResultElem const& other) = default;
    virtual ~ResultElem();

    Vintor::SeverityLevel_t const& GetSeverityLevel() const noexcept { return severity_; }
    boost::intrusive_ptr<InfoBase const> const& GetInfo() const noexcept { return info_; }
    boost::intrusive_ptr<ItemBase const> const& GetItem() const noexcept { return item_; }
    // Always empty: the element holds no message text.
    std::string GetAsString() const;

private:
    Vintor::SeverityLevel_t severity_;
    boost::intrusive_ptr<InfoBase const> info_;
    boost::intrusive_ptr<ItemBase const> item_;
};

}  // namespace Oru
}  // namespace Legacy

#endif

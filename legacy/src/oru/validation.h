// Composition of failed checks, shared by every Validate: the message key
// with StringItem arguments, the copy of the offending item, and the
// ResultElem of severity 4. Passing checks never come here, so they allocate
// nothing.
#ifndef LEGACY_ORU_SRC_VALIDATION_H
#define LEGACY_ORU_SRC_VALIDATION_H

#include <initializer_list>
#include <memory>
#include <sstream>
#include <string>
#include <typeinfo>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>
#include <legacy/oru/resultelem.h>

namespace Legacy {
namespace Oru {
namespace Validation {

// The severity of every check of the model.
constexpr Vintor::SeverityLevel_t k_severity = static_cast<Vintor::SeverityLevel_t>(4);

// Composes the message of key with the texts as arguments, then answers the
// element for item. The message is dropped: elements carry no text.
std::shared_ptr<ResultElem const> Fail(ItemBase const& item, char const* key,
                                       std::initializer_list<std::string> arguments);

// "TypesSystemValidateTypeMismatch" for an Info of the wrong class or none.
std::shared_ptr<ResultElem const> TypeMismatch(ItemBase const& item, InfoBase const* info);

// "TypesSystemIllegalValidatationError": the family does not support the check.
std::shared_ptr<ResultElem const> Illegal(ItemBase const& item, InfoBase const* info);

// The Info as the family's own class, held for the duration of the check; null
// if it is null or of another class.
template <class InfoT>
boost::intrusive_ptr<InfoT const> CastInfo(boost::intrusive_ptr<InfoBase const> const& info) {
    return boost::intrusive_ptr<InfoT const>(dynamic_cast<InfoT const*>(info.get()));
}

// The Info as the family's own class, borrowed from the caller's pointer:
// checks that only read it take no reference. The exact class is recognised
// without the general cast, since that is the common case of a passing check.
template <class InfoT>
InfoT const* InfoAs(boost::intrusive_ptr<InfoBase const> const& info) {
    InfoBase const* const base = info.get();
    if (!base) {
        return nullptr;
    }
    if (typeid(*base) == typeid(InfoT)) {
        return static_cast<InfoT const*>(base);
    }
    return dynamic_cast<InfoT const*>(base);
}

// The stream text of a value in a fresh default stream.
template <class V>
std::string Text(V const& value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

}  // namespace Validation
}  // namespace Oru
}  // namespace Legacy

#endif

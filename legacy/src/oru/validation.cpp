#include "validation.h"

#include <legacy/oru/localizedstring.h>
#include <legacy/oru/stringvalue.h>

#include "typetext.h"

namespace Legacy {
namespace Oru {
namespace Validation {

std::shared_ptr<ResultElem const> Fail(ItemBase const& item, char const* key,
                                       std::initializer_list<std::string> arguments) {
    // The message is composed in full and then dropped with the elements'
    // missing text field; callers see severity and item only.
    LocalizedString message(key);
    for (std::string const& text : arguments) {
        boost::intrusive_ptr<ItemBase const> argument(StringItem::Create(0, text));
        message.AddArgument(argument);
    }
    boost::intrusive_ptr<ItemBase const> const copy(item.DeepCopy(item.GetId()));
    return std::make_shared<ResultElem const>(k_severity, copy,
                                              boost::intrusive_ptr<InfoBase const>());
}

std::shared_ptr<ResultElem const> TypeMismatch(ItemBase const& item, InfoBase const* info) {
    return Fail(item, "TypesSystemValidateTypeMismatch",
                {info ? info->GetName() : std::string("Unknown"),
                 info ? BracketedTypeText(info->GetType(), info->GetNumericType())
                      : std::string("NULL-Info"),
                 BracketedTypeText(item.GetType(), item.GetNumericType())});
}

std::shared_ptr<ResultElem const> Illegal(ItemBase const& item, InfoBase const* info) {
    return Fail(item, "TypesSystemIllegalValidatationError",
                {info ? info->GetName() : std::string("Unknown"),
                 BracketedTypeText(item.GetType(), item.GetNumericType())});
}

}  // namespace Validation
}  // namespace Oru
}  // namespace Legacy

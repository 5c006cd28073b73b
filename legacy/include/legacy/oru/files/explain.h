// Explain: why an Item fails its check against an Info, in words.
//
// A check of the model answers only that it failed: it composes its message
// and drops it, and that stays so. Explain answers the same message beside
// the check, from the public state of Item and Info, without changing what
// the check does or costs.
//
// Reads item and info only; several threads may explain at once if nobody
// writes them. The catalogue texts are those of Vintor::Localization.
#ifndef LEGACY_ORU_FILES_EXPLAIN_H
#define LEGACY_ORU_FILES_EXPLAIN_H

#include <optional>
#include <string>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/export.h>
#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>
#include <legacy/oru/localizedstring.h>

namespace Legacy {
namespace Oru {
namespace Files {

struct ORU_API Explanation {
    // The key and the StringItem arguments, as the failing check composes them.
    LocalizedString message;
    // The message rendered through the catalogue, for people:
    // "Setting 'Gain': the value is above the maximum 100".
    std::string text;
};

// Why item fails Check(item, info); nothing when it passes. Where the
// model's Validate refuses, message holds its key and arguments and text its
// catalogue text; where the files rule or the round trips refuse, message is
// empty and text names the setting, the element and the bound.
ORU_API std::optional<Explanation> Explain(ItemBase const& item,
                                           boost::intrusive_ptr<InfoBase const> const& info);

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif

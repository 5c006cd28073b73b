// Each family's keys in a description: an Info written as its JSON object,
// and an Info read from one, its default and table entries checked as values.
#ifndef LEGACY_ORU_FILES_INFOFORM_H
#define LEGACY_ORU_FILES_INFOFORM_H

#include <string>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/infobase.h>

#include "descriptionreader.h"
#include "families.h"

namespace Legacy {
namespace Oru {
namespace Files {
namespace DescriptionForm {

// Writes info's type, name, id, permission and its family's keys into out.
void Describe(InfoBase const& info, Json& out);

// One Info from its object: the top-level settings carry "path" and "id"
// (read by the caller), children "name" and "id". Null when it cannot be made.
// With permissionOut the Info is left unnamed and its permission is handed
// out, for the caller to make the one copy under its final identity.
boost::intrusive_ptr<InfoBase> ReadInfo(JsonValue const& object, std::string const& pointer,
                                        Reader& reader, bool child, Family const*& family,
                                        Permission_t* permissionOut = nullptr);

// A copy of info under another identity.
boost::intrusive_ptr<InfoBase> Renamed(InfoBase const& info, unsigned int id,
                                       std::string const& name, Permission_t const& permission);

}  // namespace DescriptionForm
}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif

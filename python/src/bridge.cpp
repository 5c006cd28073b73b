#include "bridge.h"

#include <legacy/oru/catalogue.h>
#include <legacy/oru/files/values.h>

namespace OruPython {

using namespace Legacy::Oru;

std::string FamilyOf(InfoBase const& info) {
    return Catalogue::FamilyName(info.GetType(), info.GetNumericType());
}

std::string FamilyOf(ItemBase const& item) {
    return Catalogue::FamilyName(item.GetType(), item.GetNumericType());
}

bool HoldsFloats(std::string const& family) {
    Catalogue::Family const* const found = Catalogue::FindFamily(family);
    return found && (found->numericType == NumericType_t::Float ||
                     found->numericType == NumericType_t::Double ||
                     found->type == OruType_t::Colour || found->type == OruType_t::Orientation);
}

Files::Problems DryRun(std::string const& json, InfoItemDirectory& directory) {
    return Files::ReadValues(json, directory, Files::Apply::Nothing).problems;
}

std::string PathOf(Files::Problem const& problem) {
    if (!problem.path.empty()) {
        return problem.path;
    }
    std::string const& pointer = problem.pointer;
    if (pointer.size() < 2 || pointer[0] != '/') {
        return std::string();
    }
    std::string path;
    for (std::size_t i = 1; i < pointer.size() && pointer[i] != '/'; ++i) {
        if (pointer[i] == '~' && i + 1 < pointer.size()) {
            path += pointer[i + 1] == '1' ? '/' : '~';
            ++i;
        } else {
            path += pointer[i];
        }
    }
    return path;
}

}  // namespace OruPython

#include "bridge.h"

#include <legacy/oru/files/description.h>
#include <legacy/oru/files/values.h>

// Until the files layer publishes its catalogue of families, the names come
// from the registry the program reads too.
#include "registry.h"
#include "typetext.h"

namespace OruPython {

using namespace Legacy::Oru;

namespace {

std::string FamilyName(OruType_t type, NumericType_t numericType) {
    Registry::Row const* const row =
        Registry::Find(static_cast<std::uint8_t>(type), static_cast<std::uint8_t>(numericType));
    std::string name = row ? row->family : OruTypeText(type);
    if (numericType != NumericType_t::Undefined) {
        name += ":";
        name += NumericTypeText(numericType);
    }
    return name;
}

}  // namespace

std::string FamilyOf(InfoBase const& info) {
    return FamilyName(info.GetType(), info.GetNumericType());
}

std::string FamilyOf(ItemBase const& item) {
    return FamilyName(item.GetType(), item.GetNumericType());
}

bool HoldsFloats(std::string const& family) {
    auto const endsWith = [&family](char const* tail) {
        std::string const end(tail);
        return family.size() >= end.size() &&
               family.compare(family.size() - end.size(), end.size(), end) == 0;
    };
    return endsWith(":Float") || endsWith(":Double") || family == "Colour";
}

Files::Problems DryRun(std::string const& json, InfoItemDirectory& directory) {
    // The same settings in a directory of their own take the values instead.
    InfoItemDirectory scratch;
    Files::Problems problems = Files::ReadDescription(Files::WriteDescription(directory), scratch);
    if (!problems.empty()) {
        return problems;
    }
    return Files::ReadValues(json, scratch, Files::Apply::AllOrNothing).problems;
}

std::string PathOf(Files::Problem const& problem) {
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

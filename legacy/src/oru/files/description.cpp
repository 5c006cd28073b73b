#include <legacy/oru/files/description.h>

#include <map>
#include <string>
#include <vector>

#include <legacy/oru/oru.h>

#include "descriptionreader.h"
#include "families.h"
#include "idplan.h"
#include "infoform.h"
#include "valuejson.h"

namespace Legacy {
namespace Oru {
namespace Files {

namespace {

using namespace DescriptionForm;

struct Planned {
    SectionId section;
    boost::intrusive_ptr<InfoBase> info;
};

}  // namespace

Problems ReadDescription(std::string const& json, InfoItemDirectory& directory) {
    Problems problems;
    JsonValue document;
    if (!ReadJsonValue(json, document, problems)) {
        return problems;
    }
    Reader reader(problems);
    if (!reader.Object(document, "")) {
        return problems;
    }
    Members top(document, "", reader);
    JsonValue const* const settings = top.Get("settings");
    top.RefuseUnknown();
    if (!settings) {
        reader.Add("", "settings is missing");
        return problems;
    }
    if (!reader.Array(*settings, "/settings")) {
        return problems;
    }

    Plan plan(directory);
    std::vector<Planned> planned;
    std::map<std::string, std::size_t> paths;
    for (std::size_t i = 0; i < settings->items.size(); ++i) {
        JsonValue const& object = settings->items[i];
        std::string const pointer = "/settings/" + std::to_string(i);
        JsonValue const* const named =
            Kind::Object == object.kind ? Member(object, "path") : nullptr;
        bool const pathShown =
            named && Kind::String == named->kind && named->text.size() <= k_maxPathLength;
        reader.SetPath(pathShown ? named->text : std::string());
        Family const* family = nullptr;
        Permission_t permission;
        boost::intrusive_ptr<InfoBase> info =
            ReadInfo(object, pointer, reader, false, family, &permission);
        if (Kind::Object != object.kind) {
            continue;
        }
        JsonValue const* const pathJson = Member(object, "path");
        std::string path;
        if (!pathJson) {
            reader.Add(pointer, "path is missing");
            continue;
        }
        MemberPointer const pathPointer(pointer, "path");
        MemberPointer const idPointer(pointer, "id");
        if (!reader.String(*pathJson, pathPointer, path)) {
            continue;
        }
        if (path.size() > k_maxPathLength) {
            reader.Add(PointerText(pathPointer),
                       "path is longer than " + std::to_string(k_maxPathLength) + " bytes");
            continue;
        }
        std::size_t const slash = path.rfind('/');
        if (slash == std::string::npos || slash == 0 || slash + 1 == path.size()) {
            reader.Add(PointerText(pathPointer),
                       "path " + Shown(path) + " needs a section and a name");
            continue;
        }
        if (!paths.emplace(path, i).second) {
            reader.Add(PointerText(pathPointer), Shown(path) + " is described twice");
            continue;
        }
        std::string const sectionPath = path.substr(0, slash);
        std::string const name = path.substr(slash + 1);
        if (directory.FindInfo(sectionPath, name)) {
            reader.Add(PointerText(pathPointer), Shown(path) + " exists already");
            continue;
        }
        unsigned int id = 0;
        JsonValue const* const idJson = Member(object, "id");
        SectionId section;
        if (idJson) {
            if (!reader.Id(*idJson, idPointer, id) ||
                !plan.SectionOf(id, sectionPath, idPointer, reader, section)) {
                continue;
            }
        } else if (!plan.Section(sectionPath, pathPointer, reader, section) ||
                   !plan.NextId(section, pathPointer, reader, id)) {
            continue;
        }
        // The document's own text, which outlives the plan.
        if (!plan.Claim(id, pathJson->text, idJson ? idPointer : pathPointer, reader) || !info) {
            continue;
        }
        planned.push_back(Planned{section, Renamed(*info, id, name, permission)});
    }
    reader.SetPath(std::string());
    if (!problems.empty()) {
        return problems;
    }

    // Everything was checked against the directory: apply.
    for (SectionId const& section : plan.PlannedSections()) {
        int const code = directory.AddSection(section);
        if (code != 0) {
            problems.push_back({"", "adding section " + Shown(section.GetSectionName()) +
                                        " failed with " + std::to_string(code)});
            return problems;
        }
    }
    for (Planned const& entry : planned) {
        int const code =
            directory.AddInfo(boost::intrusive_ptr<InfoHolder const>(new InfoHolder(entry.info)));
        if (code != 0) {
            problems.push_back({"", "adding " + Shown(entry.info->GetName()) + " failed with " +
                                        std::to_string(code)});
            return problems;
        }
    }
    return problems;
}

std::string WriteDescription(InfoItemDirectory const& directory) {
    std::vector<boost::intrusive_ptr<InfoItemHolder const>> holders;
    directory.GetAllInfoItems(holders);
    Json settings = Json::array();
    for (auto const& holder : holders) {
        if (!holder || !holder->GetInfoHolder() || !holder->GetInfoHolder()->GetInfo()) {
            continue;
        }
        InfoBase const& info = *holder->GetInfoHolder()->GetInfo();
        SectionId const section = directory.FindSection(InfoItemSectionId(info.GetId()));
        Json setting = Json::object();
        setting["path"] = section.GetSectionName() + "/" + info.GetName();
        setting["id"] = HexId(info.GetId());
        Json described = Json::object();
        Describe(info, described);
        // The top level names by path and always gives the id.
        for (auto& member : described.items()) {
            if (member.key() != "name" && member.key() != "id") {
                setting[member.key()] = std::move(member.value());
            }
        }
        settings.push_back(std::move(setting));
    }
    Json document = Json::object();
    document["settings"] = std::move(settings);
    // Names set in code may hold bytes that are no UTF-8: they are replaced
    // rather than refused, so that writing never fails.
    return document.dump(2, ' ', false, Json::error_handler_t::replace);
}

std::vector<std::string> DescribedFamilies() {
    std::vector<std::string> names;
    for (Family const& family : Families()) {
        names.push_back(family.name);
    }
    return names;
}

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

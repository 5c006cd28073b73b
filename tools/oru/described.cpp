#include "described.h"

#include <ostream>

#include <legacy/oru/files/description.h>

#include "util.h"

namespace OruTool {

using namespace Legacy::Oru;

bool LoadDescription(std::string const& command, std::string const& file,
                     InfoItemDirectory& directory, std::ostream& err) {
    std::string text;
    std::string problem;
    if (!ReadInput(file, text, problem)) {
        err << "oru " << command << ": " << problem << "\n";
        return false;
    }
    Files::Problems const problems = Files::ReadDescription(text, directory);
    for (Files::Problem const& each : problems) {
        err << "oru " << command << ": " << (file == "-" ? "standard input" : file) << ": "
            << Files::ToString(each) << "\n";
    }
    return problems.empty();
}

std::string SettingPath(InfoItemDirectory const& directory, unsigned int id) {
    auto const info = directory.FindInfo(id);
    InfoItemSectionId const packed(id);
    if (!info || !packed.IsValidInfoItemId()) {
        return std::string();
    }
    SectionId const section = directory.FindSection(packed.GetSectionId(packed.Depth()));
    return section.GetSectionName() + "/" + info->GetInfo()->GetName();
}

void SplitPointer(std::string const& pointer, std::string& path, std::string& inside) {
    std::size_t const end = pointer.find('/', 1);
    std::string const token = pointer.substr(
        pointer.empty() ? 0 : 1, end == std::string::npos ? std::string::npos : end - 1);
    inside = end == std::string::npos ? std::string() : pointer.substr(end);
    path.clear();
    for (std::size_t i = 0; i < token.size(); ++i) {
        if (token[i] == '~' && i + 1 < token.size() &&
            (token[i + 1] == '0' || token[i + 1] == '1')) {
            path += token[i + 1] == '0' ? '~' : '/';
            ++i;
        } else {
            path += token[i];
        }
    }
}

}  // namespace OruTool

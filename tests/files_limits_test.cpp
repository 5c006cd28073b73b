// The "Limits" section of docs/description-files.md: every number it states
// is read from the text and checked against what the library does.
#include <cstddef>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <legacy/oru/files/files.h>
#include <legacy/oru/oru.h>

#include "problem_print.h"

namespace {

using namespace Legacy::Oru;
using Files::Problem;
using Files::Problems;
using Files::ReadDescription;

// The rows of the section's table: the first cell, then the others.
std::map<std::string, std::vector<std::string>> LimitsTable() {
    std::ifstream file(ORU_SOURCE_DIR "/docs/description-files.md");
    std::stringstream text;
    text << file.rdbuf();
    std::string const doc = text.str();
    std::size_t const begin = doc.find("\n## Limits\n");
    std::size_t const end = doc.find("\n## ", begin + 1);
    std::map<std::string, std::vector<std::string>> rows;
    if (begin == std::string::npos) {
        return rows;
    }
    std::istringstream section(doc.substr(begin, end - begin));
    std::string line;
    while (std::getline(section, line)) {
        if (line.size() < 2 || line[0] != '|' || line.find("---") != std::string::npos) {
            continue;
        }
        std::vector<std::string> cells;
        std::size_t start = 1;
        for (std::size_t bar = line.find('|', start); bar != std::string::npos;
             bar = line.find('|', start)) {
            std::string cell = line.substr(start, bar - start);
            cell.erase(0, cell.find_first_not_of(' '));
            cell.erase(cell.find_last_not_of(' ') + 1);
            cells.push_back(cell);
            start = bar + 1;
        }
        if (!cells.empty()) {
            std::string const label = cells.front();
            cells.erase(cells.begin());
            rows[label] = cells;
        }
    }
    return rows;
}

// The numbers in a cell, in order ("6.5 reads back as 6" gives 6.5 and 6).
std::vector<double> Numbers(std::string const& cell) {
    std::vector<double> numbers;
    std::regex const number("[0-9]+(\\.[0-9]+)?");
    for (std::sregex_iterator it(cell.begin(), cell.end(), number), end; it != end; ++it) {
        numbers.push_back(std::stod(it->str()));
    }
    return numbers;
}

// The first number of column `column` of row `label`; fails the test when
// the row or the number is missing.
double Claimed(std::map<std::string, std::vector<std::string>> const& rows,
               std::string const& label, std::size_t column, std::size_t index = 0) {
    auto const row = rows.find(label);
    if (row == rows.end() || row->second.size() <= column) {
        ADD_FAILURE() << "the Limits table has no row \"" << label << "\"";
        return -1;
    }
    std::vector<double> const numbers = Numbers(row->second[column]);
    if (numbers.size() <= index) {
        ADD_FAILURE() << "row \"" << label << "\" states no number " << index;
        return -1;
    }
    return numbers[index];
}

std::string Setting(std::string const& path, std::string const& more = "") {
    return "{\"path\": \"" + path + "\", \"type\": \"Bool\"" + more + "}";
}

std::string Settings(std::vector<std::string> const& settings) {
    std::string body;
    for (std::string const& setting : settings) {
        body += (body.empty() ? "" : ",") + setting;
    }
    return "{\"settings\": [" + body + "]}";
}

std::string Hex(unsigned int id) {
    std::ostringstream text;
    text << "0x" << std::hex << std::uppercase;
    text.width(8);
    text.fill('0');
    text << id;
    return text.str();
}

TEST(FilesLimits, SectionLevelsAndSubsections) {
    auto const rows = LimitsTable();
    ASSERT_FALSE(rows.empty()) << "docs/description-files.md has no Limits section";

    std::size_t const levels = static_cast<std::size_t>(Claimed(rows, "section levels", 0));
    EXPECT_EQ(levels, InfoItemSectionId::MaxDepth());
    std::string path;
    for (std::size_t level = 0; level < levels; ++level) {
        path += "s" + std::to_string(level) + "/";
    }
    InfoItemDirectory deep;
    EXPECT_EQ(ReadDescription(Settings({Setting(path + "n")}), deep), Problems());
    EXPECT_EQ(ReadDescription(Settings({Setting(path + "x/n")}), deep),
              (Problems{{"/settings/0/path",
                         "the section path " + path + "x is deeper than " + std::to_string(levels) +
                             " levels",
                         path + "x/n"}}));

    // So many subsections fit at the top and under a parent; one more does not.
    std::size_t const subsections =
        static_cast<std::size_t>(Claimed(rows, "subsections per level", 0));
    for (std::string const parent : {"", "p/"}) {
        SCOPED_TRACE(parent.empty() ? "top level" : "under p");
        InfoItemDirectory directory;
        for (std::size_t i = 0; i < subsections; ++i) {
            SectionId section;
            ASSERT_EQ(directory.AddSection(parent + "s" + std::to_string(i), section), 0) << i;
        }
        EXPECT_EQ(
            ReadDescription(Settings({Setting(parent + "more/n")}), directory),
            (Problems{{"/settings/0/path",
                       "no section number is left for " + parent + "more: a level holds at most " +
                           std::to_string(subsections) + " sections",
                       parent + "more/n"}}));
    }
}

TEST(FilesLimits, InfoFieldsPerDepth) {
    auto const rows = LimitsTable();
    std::string path;
    for (std::size_t depth = 1; depth <= InfoItemSectionId::MaxDepth(); ++depth) {
        path += (depth > 1 ? "/" : "") + std::string(1, static_cast<char>('a' + depth - 1));
        std::string const label = "info field at depth " + std::to_string(depth);
        SCOPED_TRACE(label);
        unsigned int const bits = static_cast<unsigned int>(Claimed(rows, label, 0));
        unsigned int const last = static_cast<unsigned int>(Claimed(rows, label, 1));
        InfoItemDirectory directory;
        SectionId section;
        ASSERT_EQ(directory.AddSection(path, section), 0);
        InfoItemSectionId const sectionId = section.GetInfoItemSectionId();
        EXPECT_EQ(sectionId.MaxNumInfoItemsInSection(), (std::size_t(1) << bits) - 1);
        EXPECT_EQ(last, (1u << bits) - 2);

        // The last number is a setting's; the one above it is the section's own id.
        unsigned int const lastId = sectionId.CreateInfoItemId(last);
        unsigned int const above = sectionId.CreateInfoItemId(last + 1);
        EXPECT_EQ(above, static_cast<unsigned int>(sectionId));
        EXPECT_EQ(ReadDescription(
                      Settings({Setting(path + "/last", ", \"id\": \"" + Hex(lastId) + "\"")}),
                      directory),
                  Problems());
        EXPECT_EQ(
            ReadDescription(
                Settings({Setting(path + "/above", ", \"id\": \"" + Hex(above) + "\"")}),
                directory),
            (Problems{{"/settings/0/id", "id " + Hex(above) + " is no info id", path + "/above"}}));
    }

    // At depth 4 the whole field is filled by automatic ids: last + 1 settings.
    std::size_t const room = static_cast<std::size_t>(Claimed(rows, "info field at depth 4", 1, 2));
    EXPECT_EQ(room, static_cast<std::size_t>(Claimed(rows, "info field at depth 4", 1)) + 1);
    std::vector<std::string> settings;
    for (std::size_t i = 0; i < room; ++i) {
        settings.push_back(Setting("a/b/c/d/n" + std::to_string(i)));
    }
    InfoItemDirectory directory;
    ASSERT_EQ(ReadDescription(Settings(settings), directory), Problems());
    EXPECT_EQ(ReadDescription(Settings({Setting("a/b/c/d/more")}), directory),
              (Problems{{"/settings/0/path",
                         "no info number is left in section a/b/c/d: it holds at most " +
                             std::to_string(room) + " settings",
                         "a/b/c/d/more"}}));
}

TEST(FilesLimits, RecordsAndPermission) {
    auto const rows = LimitsTable();
    auto const roundTrip = [](ItemBase const& item) {
        ItemBase::SerialStruct_t record;
        EXPECT_EQ(item.Serialize(&record), 0);
        ItemBase::ConstSerialStruct_t view(record);
        boost::intrusive_ptr<ItemBase> back;
        EXPECT_EQ(ItemBase::Deserialize(&view, back), 0);
        return back;
    };

    // A StringSparse record keeps so many bytes of its string, and no more.
    std::size_t const bytes = static_cast<std::size_t>(Claimed(rows, "StringSparse record", 0));
    for (std::size_t length : {bytes, bytes + 1}) {
        SCOPED_TRACE(length);
        std::string const value(length, 'x');
        boost::intrusive_ptr<StringSparseItem> item(StringSparseItem::Create(0x01000001, value));
        auto const record = roundTrip(*item);
        ASSERT_TRUE(record && record->GetType() == OruType_t::StringSparse);
        auto const back = boost::static_pointer_cast<StringSparseItem>(record);
        EXPECT_EQ(back->GetVal(), value.substr(0, bytes));
    }

    // A Float record drops the fraction.
    float const given = static_cast<float>(Claimed(rows, "Float record", 0, 0));
    float const read = static_cast<float>(Claimed(rows, "Float record", 0, 1));
    for (float value : {given, read}) {
        SCOPED_TRACE(value);
        NumericItem<FloatTraits> item(0x01000002);
        item.SetVal(value);
        auto const record = roundTrip(item);
        ASSERT_TRUE(record && record->GetType() == OruType_t::Numeric &&
                    record->GetNumericType() == NumericType_t::Float);
        auto const back = boost::static_pointer_cast<NumericItem<FloatTraits>>(record);
        EXPECT_EQ(back->GetVal(), read);
    }

    // The permission word takes 16 bits, and a setting that grants nothing
    // takes its value like any other: the word means nothing to Oru.
    unsigned int const bits = static_cast<unsigned int>(Claimed(rows, "permission", 0));
    unsigned int const top = static_cast<unsigned int>(Claimed(rows, "permission", 1, 1));
    EXPECT_EQ(top, (1u << bits) - 1);
    EXPECT_EQ(top, static_cast<unsigned int>(Permission_t(0xFFFF).Value()));
    InfoItemDirectory directory;
    EXPECT_EQ(
        ReadDescription(Settings({Setting("p/top", ", \"permission\": " + std::to_string(top)),
                                  Setting("p/none", ", \"permission\": 0")}),
                        directory),
        Problems());
    EXPECT_EQ(directory.FindInfo("p", "top")->GetInfo()->GetPermission().Value(), top);
    Problems const over = ReadDescription(
        Settings({Setting("p/over", ", \"permission\": " + std::to_string(top + 1))}), directory);
    ASSERT_EQ(over.size(), 1u);
    EXPECT_EQ(over[0].pointer, "/settings/0/permission");
    Files::ValuesReport const report =
        Files::ReadValues(R"({"p/none": true, "p/top": true})", directory);
    EXPECT_EQ(report.problems, Problems());
    EXPECT_EQ(report.applied, 2u);
}

}  // namespace

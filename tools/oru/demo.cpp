// oru demo: a tour of the model on an embedded sample device. It needs no
// files and no arguments; everything it shows is made here.
#include <functional>
#include <iomanip>
#include <iostream>
#include <memory>
#include <ostream>
#include <sstream>
#include <type_traits>
#include <vector>

#include <CLI/CLI.hpp>

#include <legacy/oru/catalogue.h>
#include <legacy/oru/files/explain.h>
#include <legacy/oru/files/values.h>
#include <legacy/oru/oru.h>

#include "commands.h"
#include "demo_directory.h"
#include "hex.h"
#include "sample.h"
#include "util.h"

namespace OruTool {

namespace {

using namespace Legacy::Oru;

void Heading(std::ostream& out, char const* title) {
    out << "\n== " << title << " ==\n";
}

}  // namespace

int RunDemo(Args const& args, std::ostream& out, std::ostream& err) {
    if (!args.empty()) {
        if (args[0] == "--help" || args[0] == "-h") {
            out << "usage: oru demo\n\n"
                   "A tour of the settings model on a small sample device: Infos with\n"
                   "bounds and defaults, Items checked against them, serial records written\n"
                   "in hex and read back, and each setting printed on one line.\n\n"
                   "example:\n  oru demo\n";
            return 0;
        }
        err << "oru demo: takes no arguments (try 'oru demo --help')\n";
        return 2;
    }

    std::vector<Setting> const settings = SampleSettings();

    out << "oru demo: the settings of a small sample device\n";

    Heading(out, "Settings (name, type, {item} {info})");
    for (auto const& setting : settings) {
        out << "  ";
        if (!setting.info) {
            // Without an Info the line has no name of its own.
            out << std::left << std::setw(32) << setting.name << std::right << " ";
        }
        FormattedInfoItemDump(out, setting.info, setting.item);
        out << "\n";
    }

    Heading(out, "Checks of each value against its Info");
    for (auto const& setting : settings) {
        auto const failed = setting.item->Validate(setting.info);
        out << "  " << std::left << std::setw(22) << NameOf(setting) << std::right << " value "
            << setting.item->GetValAsString() << ": ";
        if (!failed) {
            out << "passed\n";
        } else {
            out << "failed (severity " << static_cast<int>(failed->GetSeverityLevel())
                << ", bounds ";
            if (setting.info) {
                out << *setting.info;
            }
            out << ")";
            // The check itself gives no words; Oru::files says why.
            auto const why = Legacy::Oru::Files::Explain(*setting.item, setting.info);
            if (why) {
                out << ": " << why->text;
            }
            out << "\n";
        }
    }

    Heading(out, "Serial records (header | payload) and what reads back");
    for (auto const& setting : settings) {
        ItemBase::SerialStruct_t record;
        if (setting.item->Serialize(&record) != 0) {
            err << "oru demo: could not write " << NameOf(setting) << "\n";
            return 1;
        }
        auto const flat = FlatRecord(record);
        ItemBase::ConstSerialStruct_t const view(record);
        boost::intrusive_ptr<ItemBase> back;
        int const code = ItemBase::Deserialize(&view, back);
        out << "  " << NameOf(setting) << "\n    " << FlatRecordHex(flat) << "\n    reads back as ";
        if (code != 0) {
            out << "error " << code << "\n";
        } else {
            out << back->GetValAsString()
                << (back->IsEqualValue(setting.item) ? " (equal)" : " (changed on the wire)")
                << "\n";
        }
    }

    Heading(out, "An endpoint setting as a URI, and read back from it");
    for (auto const& setting : settings) {
        Catalogue::VisitItem(*setting.item, [&](auto const& item) {
            using Item = std::decay_t<decltype(item)>;
            if constexpr (std::is_same<Item, AppEndpointItem>::value) {
                std::string const uri = item.GetVal().ToUri();
                auto const back = AppEndpoint<Net::Endpoint<Net::AddrStr>>::FromUri(uri);
                out << "  " << NameOf(setting) << "\n    URI " << uri << "\n    reads back as "
                    << back.ToString() << (back == item.GetVal() ? " (equal)" : " (changed)")
                    << "\n";
            }
        });
    }

    Heading(out, "One setting in full: its Info, then its Item");
    settings[0].info->DumpVal(out);
    out << "--\n";
    settings[0].item->DumpVal(out);
    return RunDirectoryDemo(out, err);
}

void AddDemo(CLI::App& program, int& status) {
    auto const values = std::make_shared<bool>(false);
    CLI::App* const command =
        program.add_subcommand("demo", "A tour of the model on a small sample device");
    command->add_flag("--values", *values,
                      "Write the sample device's values as a values file instead");
    command->footer(
        "A tour of the settings model on a small sample device: Infos with\n"
        "bounds and defaults, Items checked against them, serial records written\n"
        "in hex and read back, and each setting printed on one line.\n"
        "--values writes the values of the sample device as a values file (JSON), the\n"
        "counterpart of 'oru describe'.\n\n"
        "examples:\n  oru demo\n  oru demo --values > values.json\n");
    command->callback([values, &status] {
        if (*values) {
            InfoItemDirectory directory;
            SampleDirectory(directory);
            Legacy::Oru::Files::Problems problems;
            std::cout << WithNewline(Legacy::Oru::Files::WriteValues(directory, problems));
            std::cout.flush();
            for (auto const& problem : problems) {
                std::cerr << "oru demo: left out " << Legacy::Oru::Files::ToString(problem) << "\n";
            }
            status = std::cout && problems.empty() ? 0 : 1;
        } else {
            status = RunDemo(Args(), std::cout, std::cerr);
        }
    });
}

}  // namespace OruTool

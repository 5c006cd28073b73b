// oru describe and oru check: settings files. describe writes a description
// back as the library read it (or the sample device's); check reads a
// description and a values file and says which values their settings refuse,
// and why.
#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <legacy/oru/files/files.h>
#include <legacy/oru/oru.h>

#include "commands.h"
#include "described.h"
#include "sample.h"
#include "util.h"

namespace OruTool {

namespace {

using namespace Legacy::Oru;

struct CheckOptions {
    std::string description;
    std::string values;
    bool json = false;
};

int Check(CheckOptions const& options) {
    InfoItemDirectory directory;
    if (!LoadDescription("check", options.description, directory, std::cerr)) {
        return 1;
    }
    std::string text;
    std::string problem;
    if (!ReadInput(options.values, text, problem)) {
        std::cerr << "oru check: " << problem << "\n";
        return 1;
    }
    // The values go into a directory of this run only; nothing is written back.
    Files::ValuesReport const report = Files::ReadValues(text, directory);
    if (options.json) {
        nlohmann::ordered_json out;
        out["passed"] = report.problems.empty();
        out["applied"] = report.applied;
        out["problems"] = nlohmann::ordered_json::array();
        for (Files::Problem const& each : report.problems) {
            std::string path = each.path;
            if (path.empty()) {
                std::string inside;
                SplitPointer(each.pointer, path, inside);
            }
            out["problems"].push_back(
                {{"path", path}, {"pointer", each.pointer}, {"reason", each.message}});
        }
        std::cout << out.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace)
                  << "\n";
    } else {
        // Each problem as the files layer writes it, so that the program and
        // the library name a value the same way.
        for (Files::Problem const& each : report.problems) {
            std::cout << Files::ToString(each) << "\n";
        }
        if (report.problems.empty()) {
            std::cout << "all " << report.applied << " values pass\n";
        }
    }
    return report.problems.empty() ? 0 : 1;
}

char const* const k_checkFooter =
    "Reads the settings that DESCRIPTION declares and the values in VALUES (a\n"
    "JSON object of setting paths and values), checks every value against its\n"
    "setting, and prints one line per problem: where it lies, as a JSON pointer\n"
    "into VALUES (/Audio~1Input~1Gain/2 is the third element of Audio/Input/Gain),\n"
    "and why. A path the description lacks, a value of the wrong JSON type, one\n"
    "that its element type cannot hold and one that the device's record or text\n"
    "form would change are refused too. encode --names and decode --names apply\n"
    "the same check and print the same lines. Nothing is written.\n"
    "\n"
    "Exit status: 0 when every value passes, 1 when one does not or a file\n"
    "cannot be read, 2 for usage.\n"
    "\n"
    "examples:\n"
    "  $ oru describe > device.json\n"
    "  $ oru demo --values > values.json\n"
    "  $ oru check device.json values.json\n"
    "  /Video~1Brightness: 130 is above the maximum 100\n";

char const* const k_describeFooter =
    "Without FILE, writes the description of the sample device of 'oru demo' as\n"
    "JSON: each setting's path, family, permission, bounds and default. 'oru demo\n"
    "--values' writes its values; 'oru check' reads both.\n"
    "\n"
    "With FILE ('-': standard input), reads that description and writes it back\n"
    "as Oru understood it: every key filled in, defaults included, ids in hex as\n"
    "the other commands print them, settings in the order of their ids. A\n"
    "description with problems is not written: each problem is printed, and the\n"
    "exit status is 1. docs/description-files.md and docs/settings-files.md give\n"
    "the form of every family.\n"
    "\n"
    "examples:\n"
    "  $ oru describe > device.json\n"
    "  $ oru describe my-camera.json\n";

// The description in file as the library reads it, or the sample device's.
int Describe(std::string const& file) {
    InfoItemDirectory directory;
    if (file.empty()) {
        SampleDirectory(directory);
    } else if (!LoadDescription("describe", file, directory, std::cerr)) {
        return 1;
    }
    std::cout << WithNewline(Files::WriteDescription(directory));
    std::cout.flush();
    return std::cout ? 0 : 1;
}

}  // namespace

void AddDescribe(CLI::App& program, int& status) {
    auto const file = std::make_shared<std::string>();
    CLI::App* const command = program.add_subcommand(
        "describe", "Write a description as Oru reads it (the sample device's without FILE)");
    command->add_option("FILE", *file, "A description to read; '-': standard input");
    command->footer(k_describeFooter);
    command->callback([file, &status] { status = Describe(*file); });
}

void AddCheck(CLI::App& program, int& status) {
    auto const options = std::make_shared<CheckOptions>();
    CLI::App* const command =
        program.add_subcommand("check", "Check a values file against a description");
    command->add_option("DESCRIPTION", options->description, "The settings, as JSON")->required();
    command->add_option("VALUES", options->values, "The values, as JSON; '-': standard input")
        ->required();
    command->add_flag("--json", options->json, "Print the result as JSON");
    command->footer(k_checkFooter);
    command->callback([options, &status] { status = Check(*options); });
}

}  // namespace OruTool

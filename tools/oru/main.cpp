// oru: shows the settings model and inspects its serial records and ids.
#include <iostream>
#include <string>

#include <CLI/CLI.hpp>

#include <legacy/oru/version.h>

#include "commands.h"

namespace {

// The command named on the command line, or the program itself.
CLI::App const& Chosen(CLI::App const& program) {
    auto const chosen = program.get_subcommands();
    return chosen.empty() ? program : *chosen.front();
}

// The help of a command, with its usage line naming the program too. The
// program's own is made directly: App::help would describe the chosen command.
std::string HelpOf(CLI::App const& program, CLI::App const& command) {
    return &command == &program
               ? program.get_formatter()->make_help(&program, "oru", CLI::AppFormatMode::Normal)
               : command.help("oru");
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App program("Shows the typed settings model and explains what it writes.", "oru");
    program.set_version_flag("--version", std::string("oru ") + Legacy::Oru::Version(),
                             "Print the version of the loaded library and exit");
    // One command per run; a value word that happens to name a command stays
    // a value.
    program.require_subcommand(1, 1);
    // Commands are what this program calls its subcommands; the formatter is
    // shared by every command declared after this.
    program.get_formatter()->label("Usage", "usage");
    program.get_formatter()->label("SUBCOMMAND", "COMMAND");
    program.get_formatter()->label("SUBCOMMANDS", "COMMANDS");
    program.get_formatter()->label("Subcommands", "Commands");
    program.footer(
        "Run 'oru COMMAND --help' or 'oru help COMMAND' for the details of one command.\n"
        "Exit status: 0 success, 1 bad data, 2 bad usage.");

    int status = 0;
    OruTool::AddDemo(program, status);
    OruTool::AddDecode(program, status);
    OruTool::AddEncode(program, status);
    OruTool::AddId(program, status);
    OruTool::AddDescribe(program, status);
    OruTool::AddCheck(program, status);
    OruTool::AddServe(program, status);
    OruTool::AddGet(program, status);
    OruTool::AddSet(program, status);
    OruTool::AddWatch(program, status);

    std::string topic;
    CLI::App* const help = program.add_subcommand("help", "Explain a command: oru help COMMAND");
    help->add_option("COMMAND", topic, "The command to explain");
    help->callback([&] {
        if (topic.empty()) {
            std::cout << HelpOf(program, program);
            return;
        }
        try {
            CLI::App* const command = program.get_subcommand(topic);
            if (command == help) {
                throw CLI::OptionNotFound(topic);
            }
            std::cout << HelpOf(program, *command);
        } catch (CLI::OptionNotFound const&) {
            std::cerr << "oru help: unknown command '" << topic << "' (try 'oru --help')\n";
            status = 2;
        }
    });

    try {
        program.parse(argc, argv);
    } catch (CLI::CallForHelp const&) {
        std::cout << HelpOf(program, Chosen(program));
        return 0;
    } catch (CLI::CallForAllHelp const&) {
        std::cout << program.help("", CLI::AppFormatMode::All);
        return 0;
    } catch (CLI::CallForVersion const& version) {
        std::cout << version.what() << "\n";
        return 0;
    } catch (CLI::ParseError const& error) {
        if (program.get_subcommands().empty()) {
            if (argc < 2) {
                std::cerr << "oru: give a command (try 'oru --help')\n";
            } else if (argv[1][0] != '-') {
                std::cerr << "oru: unknown command '" << argv[1] << "' (try 'oru --help')\n";
            } else {
                std::cerr << "oru: " << error.what() << " (try 'oru --help')\n";
            }
            return 2;
        }
        CLI::App const& chosen = Chosen(program);
        std::string const name = chosen.get_name() == "oru" ? "oru" : "oru " + chosen.get_name();
        std::cerr << name << ": " << error.what() << " (try '" << name << " --help')\n";
        return 2;
    } catch (std::exception const& error) {
        // Whatever a command did not foresee ends as one line, never an abort.
        std::cerr << "oru: " << error.what() << "\n";
        return 1;
    }
    return status;
}

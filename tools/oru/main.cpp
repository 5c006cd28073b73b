// oru: shows the settings model and inspects its serial records and ids.
#include <cstring>
#include <iostream>
#include <string>

#include <legacy/oru/version.h>

#include "commands.h"

namespace {

void PrintUsage(std::ostream& out) {
    out << "usage: oru COMMAND [ARGS...]\n"
           "\n"
           "Shows the typed settings model and explains what it writes.\n"
           "\n"
           "commands:\n"
           "  demo                      a tour of the model on a small sample device\n"
           "  decode [--hex] [FILE]     explain serial records laid flat\n"
           "  encode TYPE ID VALUE...   write the serial record of a value\n"
           "  id ID                     explain a packed 32-bit section or setting id\n"
           "\n"
           "Run 'oru COMMAND --help' for the details of one command.\n";
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        PrintUsage(std::cerr);
        return 2;
    }
    std::string const command = argv[1];
    OruTool::Args args(argv + 2, argv + argc);
    if (command == "--help" || command == "-h" || command == "help") {
        PrintUsage(std::cout);
        return 0;
    }
    if (command == "--version" || command == "version") {
        std::cout << "oru " << Legacy::Oru::Version() << "\n";
        return 0;
    }
    if (command == "demo") {
        return OruTool::RunDemo(args, std::cout, std::cerr);
    }
    if (command == "id") {
        return OruTool::RunId(args, std::cout, std::cerr);
    }
    if (command == "decode") {
        return OruTool::RunDecode(args, std::cout, std::cerr);
    }
    if (command == "encode") {
        return OruTool::RunEncode(args, std::cout, std::cerr);
    }
    std::cerr << "oru: unknown command '" << command << "' (try 'oru --help')\n";
    return 2;
}

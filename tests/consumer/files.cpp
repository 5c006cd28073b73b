// The settings-file step of the README: describe a device, save its values,
// restore them into another directory, and say why a value was refused.
// Built against the installed package.
#include <iostream>

#include <legacy/oru/files/files.h>
#include <legacy/oru/oru.h>

using namespace Legacy::Oru;

int main() {
    InfoItemDirectory device;
    Files::Problems problems = Files::ReadDescription(R"({"settings": [
        {"path": "Audio/Input/Gain", "type": "Numeric:U32", "min": 0, "max": 100, "default": 50,
         "permission": 3},
        {"path": "Device/Name", "type": "String", "maxLength": 16, "default": "camera"}]})",
                                                      device);
    for (auto const& problem : problems) {
        std::cerr << Files::ToString(problem) << "\n";
    }
    Files::ValuesReport restored =
        Files::ReadValues(R"({"Audio/Input/Gain": 72, "Device/Name": "lobby"})", device);
    std::string const saved = Files::WriteValues(device);  // {"Audio/Input/Gain":72,...}

    // A value its setting refuses is reported in words, and not applied.
    Files::ValuesReport refused = Files::ReadValues(R"({"Audio/Input/Gain": 101})", device);
    for (auto const& problem : refused.problems) {
        std::cout << Files::ToString(problem) << "\n";  // /Audio~1Input~1Gain: Setting 'Gain': ...
    }
    bool const ok = problems.empty() && restored.applied == 2 && refused.applied == 0 &&
                    refused.problems.size() == 1 && Files::WriteValues(device) == saved;
    std::cout << saved << "\n" << (ok ? "ok" : "FAILED") << "\n";
    return ok ? 0 : 1;
}

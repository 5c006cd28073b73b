// Settings files from a hostile source. The first byte says which reader
// gets the rest: a description read into a directory that already holds the
// sample device, or a values file read for the sample device's settings.
// Whatever the text, nothing crashes; a refused description changes
// nothing; values are applied whole or, all-or-nothing, not at all; and what
// was read writes and reads back the same.
#include <cstdint>
#include <string>

#include <legacy/oru/files/files.h>
#include <legacy/oru/oru.h>

#include "sample.h"

using namespace Legacy::Oru;

namespace {

void Check(bool condition) {
    if (!condition) {
        __builtin_trap();
    }
}

// The directory's settings and values as text, to compare before and after.
std::string State(InfoItemDirectory const& directory) {
    return Files::WriteDescription(directory) + Files::WriteValues(directory);
}

void Description(std::string const& text) {
    InfoItemDirectory directory;
    OruTool::SampleDirectory(directory);
    std::string const before = State(directory);
    Files::Problems const problems = Files::ReadDescription(text, directory);
    if (!problems.empty()) {
        Check(State(directory) == before);
        return;
    }
    // What was read describes itself the same way again.
    std::string const written = Files::WriteDescription(directory);
    InfoItemDirectory again;
    Check(Files::ReadDescription(written, again).empty());
    Check(Files::WriteDescription(again) == written);
}

void Values(std::string const& text, bool whole) {
    InfoItemDirectory directory;
    OruTool::SampleDirectory(directory);
    std::string const before = State(directory);
    Files::ValuesReport const report = Files::ReadValues(
        text, directory, whole ? Files::Apply::AllOrNothing : Files::Apply::Passing);
    if (whole && !report.problems.empty()) {
        Check(report.applied == 0);
        Check(State(directory) == before);
    }
    if (report.applied == 0) {
        Check(State(directory) == before);
        return;
    }
    // The values now held write out and read back into a fresh sample device
    // without a problem, to the same values.
    std::string const written = Files::WriteValues(directory);
    InfoItemDirectory again;
    OruTool::SampleDirectory(again);
    Files::ReadValues(written, again);
    // A value that its check refuses (the sample holds one) stays in both as
    // the sample had it; any other value must have read back.
    Check(Files::WriteValues(again) == written);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    std::string const text(reinterpret_cast<char const*>(data) + 1, size - 1);
    switch (data[0] % 3) {
        case 0:
            Description(text);
            break;
        case 1:
            Values(text, false);
            break;
        default:
            Values(text, true);
            break;
    }
    return 0;
}

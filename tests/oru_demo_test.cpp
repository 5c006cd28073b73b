#include <gtest/gtest.h>

#include "tool_util.h"

namespace {

using OruTest::RunTool;

TEST(OruProgramTest, DemoShowsChecksRecordsAndDumps) {
    auto const run = RunTool("demo");
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    // One passing and one failing check.
    EXPECT_NE(run.out.find("value 72: passed"), std::string::npos);
    EXPECT_NE(run.out.find("value 130: failed (severity 4"), std::string::npos);
    // A record in hex, and every value reads back equal.
    EXPECT_NE(run.out.find("42 0C 00 05 00 00 00 04 02 05 | 00 00 00 48"), std::string::npos);
    EXPECT_EQ(run.out.find("error"), std::string::npos);
    EXPECT_EQ(run.out.find("changed on the wire"), std::string::npos);
    EXPECT_NE(run.out.find("NumericU32         {72} {0 <= 50 <= 100}"), std::string::npos);
}

TEST(OruProgramTest, DemoWalksOneSettingThroughADirectory) {
    auto const run = RunTool("demo");
    ASSERT_EQ(run.status, 0) << run.err;
    auto const start = run.out.find("== One setting's road through a directory ==");
    ASSERT_NE(start, std::string::npos);
    std::string const tour = run.out.substr(start);
    // Each change is reported once, after it is in place, in the order of the
    // change set: sections, then infos, then items by ascending id.
    std::string const expected[] = {
        "AddSection(\"Audio/Input\"): 0, section 0x4003FFFF at depth 2",
        "changed: info 0x40000005 Gain added, bounds 0 <= 50 <= 100",
        "AddInfo(Gain, 0x40000005): 0",
        "check of 72 against 0 <= 50 <= 100: passed",
        "changed: item 0x40000005 Gain (none) -> 72",
        "SetItem(72): 0",
        "SetItem of an S16 Item under the same id: -41",
        "FindItem(\"Audio/Input/Gain\"): 72, the same holder as FindItem(id)",
        "serial record: 40 00 00 05 00 00 00 04 02 05 | 00 00 00 48",
        "reads back as 72 under 0x40000005 (equal)",
        "changed: info 0x40040001 Volume added",
        "changed: item 0x40000005 Gain 72 -> 64",
        "changed: item 0x40040001 Volume (none) -> 8",
        "UpdateFromDelta: 0",
        "Gain                             NumericU32         {64} {0 <= 50 <= 100}",
        "Volume                           NumericU32         {8} {0 <= 5 <= 10}",
    };
    std::size_t at = 0;
    for (auto const& line : expected) {
        SCOPED_TRACE(line);
        auto const found = tour.find(line, at);
        ASSERT_NE(found, std::string::npos) << tour;
        at = found + line.size();
    }
}

TEST(OruProgramTest, UsageErrorsExitTwo) {
    auto const help = RunTool("--help");
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("usage: oru [OPTIONS] COMMAND"), std::string::npos);
    auto const none = RunTool("");
    EXPECT_EQ(none.status, 2);
    auto const unknown = RunTool("frobnicate");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_NE(unknown.err.find("unknown command 'frobnicate'"), std::string::npos);
    auto const extra = RunTool("demo extra");
    EXPECT_EQ(extra.status, 2);
    EXPECT_EQ(RunTool("demo --help").status, 0);
}

}  // namespace

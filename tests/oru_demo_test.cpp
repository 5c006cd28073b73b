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

TEST(OruProgramTest, UsageErrorsExitTwo) {
    auto const help = RunTool("--help");
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("usage: oru COMMAND"), std::string::npos);
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

#include <gtest/gtest.h>

#include <string>

#include <legacy/oru/version.h>

#include "tool_util.h"

namespace {

using OruTest::RunTool;

TEST(OruCliTest, HelpAndVersionAsUsersExpectThem) {
    auto const version = RunTool("--version");
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, std::string("oru ") + Legacy::Oru::Version() + "\n");
    for (char const* command : {"demo", "decode", "encode", "id", "describe", "check", "help"}) {
        SCOPED_TRACE(command);
        auto const asked = RunTool(std::string("help ") + command);
        auto const flag = RunTool(std::string(command) + " --help");
        EXPECT_EQ(asked.status, 0);
        EXPECT_EQ(asked.out, flag.out);
        EXPECT_NE(asked.out.find(std::string("usage: oru ") + command), std::string::npos);
    }
    EXPECT_EQ(RunTool("help").out, RunTool("--help").out);
    auto const unknown = RunTool("help frobnicate");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.err, "oru help: unknown command 'frobnicate' (try 'oru --help')\n");
}

// Every family's value syntax is in the help, with an example that works.
TEST(OruCliTest, EncodeHelpShowsEveryFamilysValueWithAWorkingExample) {
    std::string const help = RunTool("encode --help").out;
    std::string const families = RunTool("encode --families").out;
    std::size_t start = 0;
    for (std::size_t end; (end = families.find('\n', start)) != std::string::npos;
         start = end + 1) {
        std::string const family = families.substr(start, end - start);
        std::string const prefix = family.substr(0, family.find(':'));
        SCOPED_TRACE(family);
        // Families of one kind without an element range share one line.
        std::size_t line = help.find("e.g. oru encode " + family + " ");
        if (line == std::string::npos) {
            line = help.find("e.g. oru encode " + prefix + " ");
        }
        ASSERT_NE(line, std::string::npos);
        std::string const example = help.substr(line + 5, help.find('\n', line) - line - 5);
        auto const run = RunTool(example.substr(4));
        EXPECT_EQ(run.status, 0) << example << ": " << run.err;
    }
}

TEST(OruCliTest, IdPrintsJson) {
    auto const run = RunTool("id 0x420C0005 --json");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out,
              "{\"id\":\"0x420C0005\",\"decimal\":1108082693,\"class\":\"info-item\",\"depth\":2,"
              "\"subsections\":[2,3],\"info\":5,\"parents\":[\"0x02FFFFFF\",\"0x420FFFFF\"],"
              "\"maxInfosInSection\":262143}\n");
    EXPECT_NE(RunTool("id --json 0x02FFFFFF").out.find("\"class\":\"section\",\"depth\":1"),
              std::string::npos);
}

}  // namespace

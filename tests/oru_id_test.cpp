// Runs the built oru program: `oru id ID`.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Outcome {
    int status = -1;
    std::string out;
    std::string err;
};

std::string ReadAll(std::string const& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string MakeTemp() {
    char path[] = "/tmp/oru_id_test_XXXXXX";
    int const fd = mkstemp(path);
    if (fd >= 0) {
        close(fd);
    }
    return path;
}

// Single-quotes each argument for the shell.
Outcome RunId(std::vector<std::string> const& args) {
    std::string const outPath = MakeTemp();
    std::string const errPath = MakeTemp();
    std::string command = std::string("'") + ORU_TOOL_PATH + "' id";
    for (std::string const& arg : args) {
        command += " '";
        for (char c : arg) {
            command += c == '\'' ? std::string("'\\''") : std::string(1, c);
        }
        command += "'";
    }
    command += " >" + outPath + " 2>" + errPath;
    Outcome outcome;
    int const raw = std::system(command.c_str());
    outcome.status = raw != -1 && WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    outcome.out = ReadAll(outPath);
    outcome.err = ReadAll(errPath);
    std::remove(outPath.c_str());
    std::remove(errPath.c_str());
    return outcome;
}

char const k_info420C0005[] =
    "id                      0x420C0005 (1108082693)\n"
    "class                   info-item id\n"
    "depth                   2\n"
    "level 1 subsection      2\n"
    "level 2 subsection      3\n"
    "info number             5\n"
    "parent, level 1         0x02FFFFFF\n"
    "parent, level 2         0x420FFFFF (its section)\n"
    "max infos in section    262143\n";

}  // namespace

TEST(OruIdTest, ExplainsEachClassOfId) {
    Outcome const hex = RunId({"0x420C0005"});
    EXPECT_EQ(hex.status, 0);
    EXPECT_EQ(hex.out, k_info420C0005);
    EXPECT_EQ(hex.err, "");
    EXPECT_EQ(RunId({"1108082693"}).out, k_info420C0005);

    struct Row {
        char const* id;
        std::vector<char const*> lines;
    };
    Row const rows[] = {
        {"0xC20C727F",
         {"class                   section id\n", "level 4 subsection      9\n",
          "info number             none (info field all ones)\n",
          "parent, level 3         0x820C7FFF\n", "max infos in section    63\n"}},
        {"0x02FFFFFF", {"parent sections         none (top level)\n"}},
        {"0x42FFFFFF",
         {"class                   wildcard section id\n",
          "level 2 subsection      63 (wildcard: any subsection)\n"}},
        {"4294967295", {"class                   wildcard section id (also the cleared id)\n"}},
        {"0x3F000000",
         {"class                   invalid (level 1 field is 63 but the info field is not "
          "all ones)\n",
          "max infos in section    0\n"}},
        {"0X02000100", {"info number             256 (GetInfoItemSubsectionId answers 0)\n"}},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.id);
        Outcome const outcome = RunId({row.id});
        EXPECT_EQ(outcome.status, 0);
        for (char const* line : row.lines) {
            EXPECT_NE(outcome.out.find(line), std::string::npos) << line << outcome.out;
        }
    }
}

TEST(OruIdTest, RefusesBadInputOnOneLine) {
    std::vector<std::vector<std::string>> const cases = {
        {"4294967296"}, {"0x100000000"}, {"abc"},  {""}, {"-1"},     {"0x"},
        {"12abc"},      {" 7"},          {"a\nb"}, {},   {"1", "2"},
    };
    for (auto const& args : cases) {
        SCOPED_TRACE(args.empty() ? "(none)" : args[0]);
        Outcome const outcome = RunId(args);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err.rfind("oru id: ", 0), 0u) << outcome.err;
        EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
    }
    EXPECT_EQ(RunId({"4294967296"}).err, "oru id: '4294967296' does not fit in 32 bits\n");
}

TEST(OruIdTest, HelpShowsAWorkedExample) {
    Outcome const outcome = RunId({"--help"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find("usage: oru id [OPTIONS] ID\n"), std::string::npos);
    EXPECT_NE(outcome.out.find("$ oru id 0x420C0005\n"), std::string::npos);
    EXPECT_NE(outcome.out.find("  parent, level 2         0x420FFFFF (its section)\n"),
              std::string::npos);
}

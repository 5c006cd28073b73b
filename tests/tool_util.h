// Runs the oru program as a user would and captures what it prints.
#ifndef ORU_TESTS_TOOL_UTIL_H
#define ORU_TESTS_TOOL_UTIL_H

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace OruTest {

struct ToolRun {
    int status = -1;
    std::string out;
    std::string err;
};

inline std::string ReadFile(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Runs "oru ARGS" (ARGS already quoted for the shell) with stdin from input.
inline ToolRun RunTool(std::string const& args, std::string const& input = std::string()) {
    char dir[] = "/tmp/oru-tool-XXXXXX";
    ToolRun run;
    if (!mkdtemp(dir)) {
        return run;
    }
    std::string const base = dir;
    { std::ofstream(base + "/in", std::ios::binary) << input; }
    std::string const command = std::string("'") + ORU_TOOL_PATH + "' " + args + " <'" + base +
                                "/in' >'" + base + "/out' 2>'" + base + "/err'";
    int const raw = std::system(command.c_str());
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    run.out = ReadFile(base + "/out");
    run.err = ReadFile(base + "/err");
    std::system(("rm -rf '" + base + "'").c_str());
    return run;
}

}  // namespace OruTest

#endif

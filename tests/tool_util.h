// Runs the oru program as a user would and captures what it prints.
#ifndef ORU_TESTS_TOOL_UTIL_H
#define ORU_TESTS_TOOL_UTIL_H

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

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

// Runs oru with these arguments without a shell, so that an argument list
// longer than one shell command may hold reaches the program whole.
inline ToolRun RunToolArgs(std::vector<std::string> const& args) {
    char dir[] = "/tmp/oru-tool-XXXXXX";
    ToolRun run;
    if (!mkdtemp(dir)) {
        return run;
    }
    std::string const base = dir;
    std::vector<char*> argv;
    std::string program = ORU_TOOL_PATH;
    argv.push_back(&program[0]);
    std::vector<std::string> copies(args);
    for (std::string& arg : copies) {
        argv.push_back(&arg[0]);
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, (base + "/out").c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, (base + "/err").c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t pid = 0;
    int raw = 0;
    if (posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ) == 0 &&
        waitpid(pid, &raw, 0) == pid) {
        run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    run.out = ReadFile(base + "/out");
    run.err = ReadFile(base + "/err");
    std::system(("rm -rf '" + base + "'").c_str());
    return run;
}

}  // namespace OruTest

#endif

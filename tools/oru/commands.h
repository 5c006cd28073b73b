// The commands of the oru program. Each Add* function declares its command
// on the program's command line; when the command is chosen, its callback
// stores the exit status: 0 success, 1 bad data, 2 bad usage.
#ifndef ORU_TOOL_COMMANDS_H
#define ORU_TOOL_COMMANDS_H

#include <iosfwd>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace OruTool {

using Args = std::vector<std::string>;

void AddDemo(CLI::App& program, int& status);
void AddDecode(CLI::App& program, int& status);
void AddEncode(CLI::App& program, int& status);
void AddId(CLI::App& program, int& status);
void AddDescribe(CLI::App& program, int& status);
void AddCheck(CLI::App& program, int& status);
void AddServe(CLI::App& program, int& status);
void AddGet(CLI::App& program, int& status);
void AddSet(CLI::App& program, int& status);
void AddWatch(CLI::App& program, int& status);

// The tour itself, for AddDemo.
int RunDemo(Args const& args, std::ostream& out, std::ostream& err);

}  // namespace OruTool

#endif

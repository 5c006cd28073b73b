// The commands of the oru program. Each takes the arguments after its name and
// answers the process exit status: 0 success, 1 bad data, 2 bad usage.
#ifndef ORU_TOOL_COMMANDS_H
#define ORU_TOOL_COMMANDS_H

#include <iosfwd>
#include <string>
#include <vector>

namespace OruTool {

using Args = std::vector<std::string>;

int RunDemo(Args const& args, std::ostream& out, std::ostream& err);
int RunId(Args const& args, std::ostream& out, std::ostream& err);
int RunDecode(Args const& args, std::ostream& out, std::ostream& err);
int RunEncode(Args const& args, std::ostream& out, std::ostream& err);

}  // namespace OruTool

#endif

// The directory part of oru demo: one setting's road through a directory.
#ifndef ORU_TOOL_DEMO_DIRECTORY_H
#define ORU_TOOL_DEMO_DIRECTORY_H

#include <iosfwd>

namespace OruTool {

// Writes the tour; answers 0, or 1 (with a line on `err`) if a step the tour
// relies on fails.
int RunDirectoryDemo(std::ostream& out, std::ostream& err);

}  // namespace OruTool

#endif

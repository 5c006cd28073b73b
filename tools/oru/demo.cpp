// oru demo: a tour of the model on an embedded sample device.
#include <ostream>

#include "commands.h"

namespace OruTool {

int RunDemo(Args const& /*args*/, std::ostream& out, std::ostream& /*err*/) {
    out << "oru demo\n";
    return 0;
}

}  // namespace OruTool

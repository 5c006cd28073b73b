#include <ostream>

#include "commands.h"

namespace OruTool {

int RunId(Args const& /*args*/, std::ostream& /*out*/, std::ostream& err) {
    err << "oru id: not built yet\n";
    return 2;
}

}  // namespace OruTool

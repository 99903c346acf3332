// Compiled once per library: the row of the table that it serves.
#include "Plugin.h"

namespace sim {

const Function& self() noexcept {
    // With a name that the table lacks, this is no constant expression and does not compile.
    static constexpr const Function& row = *findFunction(SIM_FUNCTION);
    return row;
}

}  // namespace sim

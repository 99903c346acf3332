// The machine that the program runs on, as the model needs it.
#pragma once

#include "Model.h"

namespace settings {

// `store` outlives the result.
[[nodiscard]] Outside realOutside(IStore& store);

}  // namespace settings

#include "functions/Mute.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    return std::make_unique<CMute>(makeWindowsAudio());
}

}  // namespace win

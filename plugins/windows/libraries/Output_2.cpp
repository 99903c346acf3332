#include "functions/Output.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    return std::make_unique<COutputWithFavourites>(
        PictureTools{makeWindowsDisplays(), makeWindowsPictureQuestion(), makeWindowsLastGood()});
}

}  // namespace win

#include "Tray.h"

namespace settings {

int runTray(HINSTANCE /*instance*/) {
    return 0;
}

}  // namespace settings

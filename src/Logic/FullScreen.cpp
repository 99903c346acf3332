#include "Logic/FullScreen.h"

#include <windows.h>

#include <shellapi.h>

bool fullScreenProgramRuns() noexcept {
    QUERY_USER_NOTIFICATION_STATE state = QUNS_ACCEPTS_NOTIFICATIONS;
    if (FAILED(::SHQueryUserNotificationState(&state))) {
        return false;
    }
    return state == QUNS_BUSY || state == QUNS_RUNNING_D3D_FULL_SCREEN || state == QUNS_PRESENTATION_MODE;
}

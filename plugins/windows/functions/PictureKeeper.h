// Changes the arrangement of the screens and sees to it that there is a picture afterwards.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "keyboard/LibraryThread.h"
#include "system/Displays.h"
#include "system/LastGood.h"
#include "system/PictureQuestion.h"

namespace win {

// What a keeper works with. `settleMs`: how long a change may take until it is in force.
struct PictureTools {
    std::shared_ptr<IDisplays> pDisplays;
    std::unique_ptr<IPictureQuestion> pQuestion;
    std::unique_ptr<ILastGood> pLastGood;
    DWORD dwSettleMs = 5000;
};

// An arrangement (FENWYN_MODE_...), or certain screens at certain places.
using WantedPicture = std::variant<LONG, Layout>;

// One thread does everything that may take long, and owns the question's window; a call waits only where its comment
// says so. A change is verified, and reversed if it failed. If it succeeded, the question is asked, and unless the user
// keeps the picture, the previous arrangement is restored: when the time is up, when another change comes, when the
// keeper ends, or, if the process ended without notice, when the next keeper starts.
class CPictureKeeper {
 public:
    explicit CPictureKeeper(PictureTools tools);
    // Reverses an unconfirmed change. Waits for that, but at most kEndWaitMs; after that the thread finishes by itself.
    ~CPictureKeeper();
    CPictureKeeper(const CPictureKeeper&) = delete;
    CPictureKeeper& operator=(const CPictureKeeper&) = delete;

    // Called after each look at the screens, on the keeper's thread; it owns what it uses.
    void onLook(std::function<void(const DisplayState&)> look);

    // What is known of the screens. Reads them again first and waits at most that long; 0: no reading.
    [[nodiscard]] std::optional<DisplayState> state(DWORD dwWaitMs = 0) const;

    // If several changes wait, only the latest is made. False: there is no thread.
    bool change(WantedPicture wanted);

    // Brings a picture back without asking, and drops changes that wait: tries internal, extend, clone, external and
    // the last kept arrangement, verifies each, and stops at the first success. Any thread, which waits for the result.
    // False: none succeeded, or not in time.
    [[nodiscard]] bool panic(DWORD dwWaitMs);
    // The same without waiting. False: there is no thread.
    bool beginPanic();

    static constexpr DWORD kEndWaitMs = 800;

 private:
    class Core;

    std::shared_ptr<Core> m_pCore;
    keyboard::CLibraryThread m_thread;
    bool m_bStarted = false;
};

}  // namespace win

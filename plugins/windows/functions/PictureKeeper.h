// Changes the arrangement of the screens and sees to it that there is a picture afterwards.
#pragma once

#include <windows.h>

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

// One thread does everything that may take long, and has the question's window: whoever calls waits for nothing unless
// it says so. A change is verified, and goes back where it did not come about. Where it did, the question is asked, and
// without a "keep" the arrangement before goes into force again: after the question's time, when another change comes,
// with the end of the keeper, or, after an end without notice, when the next one begins.
class CPictureKeeper {
 public:
    explicit CPictureKeeper(PictureTools tools);
    // Takes an unconfirmed change back. Waits for it, but never longer than kEndWaitMs; the thread goes on alone then.
    ~CPictureKeeper();
    CPictureKeeper(const CPictureKeeper&) = delete;
    CPictureKeeper& operator=(const CPictureKeeper&) = delete;

    // What is known of the screens. Reads them anew and waits so long for the answer; 0 leaves them.
    [[nodiscard]] std::optional<DisplayState> state(DWORD dwWaitMs = 0) const;

    // Of several changes that wait only the latest is made. False: there is no thread.
    bool change(WantedPicture wanted);

    // Brings a picture back without asking, in place of whatever waits: internal, extend, clone, external, and last the
    // arrangement that was kept; each verified, the first one that comes about stays. Any thread, which waits for it.
    // False: none did, or not in time.
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

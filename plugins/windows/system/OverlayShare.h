// Which overlay is on in the session, and which process has its hook: a word in memory shared by all programs of the
// session. It exists as long as any process holds it, so if a process dies, its overlay ends too.
#pragma once

#include <windows.h>

#include "common/Handle.h"
#include "system/OverlayKeys.h"

namespace win {

class COverlayShare {
 public:
    COverlayShare();
    ~COverlayShare();
    COverlayShare(const COverlayShare&) = delete;
    COverlayShare& operator=(const COverlayShare&) = delete;

    // False: the system has no memory for it, and no overlay can be on.
    [[nodiscard]] bool valid() const noexcept { return m_pWord != nullptr; }

    // The overlay that is on; None if its process has ended.
    [[nodiscard]] OverlayKind current() const;
    // Whether this process has the hook of that overlay.
    [[nodiscard]] bool mine(OverlayKind kind) const;

    // Assigns it to this process, and notifies the previous holder.
    void take(OverlayKind kind);
    // Ends it, whoever holds it, and notifies the holder. Nothing happens if another is on.
    void end(OverlayKind kind);

    // Set whenever the holder of that overlay may have to end it. Auto-reset.
    [[nodiscard]] HANDLE changed(OverlayKind kind) const;

 private:
    [[nodiscard]] LONG64 _read() const;
    void _tell(OverlayKind kind) const;

    common::UniqueHandle m_hSection;
    common::UniqueHandle m_hCursorChanged;
    common::UniqueHandle m_hNumericChanged;
    volatile LONG64* m_pWord = nullptr;  // low half: the kind; high half: the process
};

}  // namespace win

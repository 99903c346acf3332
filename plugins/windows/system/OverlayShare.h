// Which overlay is on in the session, and which process holds its hook: a word in memory that all programs of the
// session share. It lives as long as anybody holds it, so a process that dies takes its overlay along.
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

    // The overlay that is on; None when the process that holds it is gone.
    [[nodiscard]] OverlayKind current() const;
    // Whether this process holds the hook of that overlay.
    [[nodiscard]] bool mine(OverlayKind kind) const;

    // Makes it this process's, and tells whoever held one.
    void take(OverlayKind kind);
    // Ends it, whoever holds it, and tells the holder. Nothing happens when another is on.
    void end(OverlayKind kind);

    // Set whenever the holder of that overlay may have to let go. Auto-reset.
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

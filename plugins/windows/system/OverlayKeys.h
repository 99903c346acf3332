// The rules of the two overlays: the substituted keys, and the treatment of a key that is held while an overlay is
// switched. Pure: the hook feeds it and sends its output.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>

namespace win {

enum class OverlayKind : LONG { None = 0, Cursor = 1, Numeric = 2 };

// A key by its scan code of set 1; `bExtended`: with the prefix E0.
struct ScanKey {
    WORD wScan;
    bool bExtended;
};

struct OverlayRow {
    WORD wScan;  // the key that is pressed; none of them is extended
    WORD wVirtualKey;
    ScanKey sent;
};

[[nodiscard]] std::span<const OverlayRow> overlayRows(OverlayKind kind);

class COverlayKeys {
 public:
    static constexpr std::size_t kMaxRows = 16;

    // A key that is to be sent in place of another.
    struct Output {
        WORD wVirtualKey;
        ScanKey key;
        bool bUp;
    };
    struct Answer {
        bool bSwallow;
        std::optional<Output> output;
    };

    // At most one up for each row, without memory from the heap: a hook must not throw.
    class Ups {
     public:
        [[nodiscard]] const Output* begin() const noexcept { return m_outputs.data(); }
        [[nodiscard]] const Output* end() const noexcept { return m_outputs.data() + m_uCount; }
        [[nodiscard]] bool empty() const noexcept { return m_uCount == 0; }
        [[nodiscard]] std::size_t size() const noexcept { return m_uCount; }
        [[nodiscard]] const Output& operator[](std::size_t uIndex) const noexcept { return m_outputs[uIndex]; }
        void add(const Output& up) noexcept { m_outputs[m_uCount++] = up; }

     private:
        std::array<Output, kMaxRows> m_outputs{};
        std::size_t m_uCount = 0;
    };

    // `isHeld` tells whether the key with a scan code is down at this moment: such a key keeps its meaning until it is
    // up.
    COverlayKeys(OverlayKind kind, const std::function<bool(WORD wScan)>& isHeld);

    // One event of a real key. `bModifier`: Ctrl, Alt or a Windows key is down, which makes the key a command.
    [[nodiscard]] Answer handle(ScanKey key, bool bUp, bool bModifier);

    // Ends the overlay: returns the ups of all keys that it holds down. Their own ups are swallowed later.
    [[nodiscard]] Ups end() noexcept;

    // Substitutes are down whose ups are still to be sent.
    [[nodiscard]] bool holds() const;

    // After end(): keys whose ups are to be swallowed are still held.
    [[nodiscard]] bool drains() const;

 private:
    enum class Held { No, Translated, AsItself, Ended };

    std::span<const OverlayRow> m_rows;
    std::array<Held, kMaxRows> m_held{};
    bool m_bOn = true;
};

}  // namespace win

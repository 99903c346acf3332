// The card configuration: seventeen settings of the user and the machine, read from the registry, never written.
#pragma once

#include <windows.h>

#include <atomic>

// One setting: used like a DWORD. The user-interface thread reloads it while the hotkey library's thread reads it; a
// reader gets the old or the new value, never a mixture.
class ConfigValue {
 public:
    ConfigValue() noexcept = default;
    ConfigValue(const ConfigValue& other) noexcept : m_value(static_cast<DWORD>(other)) {}
    ConfigValue& operator=(const ConfigValue& other) noexcept { return *this = static_cast<DWORD>(other); }
    ~ConfigValue() = default;

    ConfigValue& operator=(DWORD value) noexcept {
        m_value.store(value, std::memory_order_relaxed);
        return *this;
    }
    operator DWORD() const noexcept { return m_value.load(std::memory_order_relaxed); }

 private:
    std::atomic<DWORD> m_value{0};
};

// A new record contains the defaults. No value is range-checked; for a yes/no field every value but 0 means yes.
struct QrdConfig {
    QrdConfig() noexcept;

    // The user's own key, if it exists, overrides the machine's for these five and bMonitorOfActiveWindow.
    ConfigValue bDisable;         // hotkey events are ignored, and the hover strip stays hidden
    ConfigValue uPosition;        // 0: the strip is at the top of the work area, otherwise at its bottom
    ConfigValue bEnableHover;     // a hover strip brings up the cards while they are hidden
    ConfigValue uMouseEnterIdle;  // milliseconds the pointer rests on the hover strip before the cards appear
    ConfigValue bTopmost;         // the hover strip stays above other windows

    // Machine-wide only.
    ConfigValue bHideMainDlg;              // the strip itself stays hidden; large cards still show
    ConfigValue bIgnoreFnKey;              // the modifier alone shows nothing, and a latched Fn stays latched
    ConfigValue bAutoHide;                 // the cards hide automatically after uAutoHideDelayTime
    ConfigValue uAutoHideDelayTime;        // milliseconds
    ConfigValue bProgrammable;             // the button utility may assign keys to other programs
    ConfigValue bHideCaption;              // cards have no caption
    ConfigValue bShowQrdAtLaunch;          // cards show at start; a second start toggles them
    ConfigValue bAlwaysShowItemsCaption;   // every item shows its description, not only the chosen one
    ConfigValue uItemDescMaxWidth;         // widest item description, in pixels at image ratio 1
    ConfigValue uSliderThumbSize;          // length of the slider's thumb, in pixels at image ratio 1
    ConfigValue bHideMainUIWhenLostFocus;  // the cards hide when the strip loses the focus

    ConfigValue bLoaded;  // 0 until a load has completed

    // The user's own key, as above. After the flag, because everything before it keeps its place in the record.
    ConfigValue bMonitorOfActiveWindow;  // the cards appear on the monitor of the active window
};

class CZelConfig {
 public:
    // The only record of the process; any thread. Loads it first, again at every call until a load has completed.
    static QrdConfig& getQrdConfig();

    // Reads both keys into the record. A missing or unreadable value does not change the record; a key that cannot be
    // opened ends the load with its error and leaves bLoaded unchanged. User-interface thread.
    static HRESULT _initQrdConfig(QrdConfig& config);
};

// The card configuration: twenty settings of the user and the machine, read from the registry, never written.
#pragma once

#include <windows.h>

#include <atomic>

// One setting: used like a DWORD. The user-interface thread reloads it while the hotkey library's thread reads it; a
// reader gets the old or the new value, never a mixture.
class CConfigValue {
 public:
    CConfigValue() noexcept = default;
    CConfigValue(const CConfigValue& other) noexcept : m_value(static_cast<DWORD>(other)) {}
    CConfigValue& operator=(const CConfigValue& other) noexcept { return *this = static_cast<DWORD>(other); }
    ~CConfigValue() = default;

    CConfigValue& operator=(DWORD value) noexcept {
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

    // The user's own key, if it exists, overrides the machine's for these five and the last two of the record.
    CConfigValue bDisable;         // hotkey events are ignored, and the hover strip stays hidden
    CConfigValue uPosition;        // 0: the strip is at the top of the work area, otherwise at its bottom
    CConfigValue bEnableHover;     // a hover strip brings up the cards while they are hidden
    CConfigValue uMouseEnterIdle;  // milliseconds the pointer rests on the hover strip before the cards appear
    CConfigValue bTopmost;         // the hover strip stays above other windows

    // Machine-wide only.
    CConfigValue bHideMainDlg;              // the strip itself stays hidden; large cards still show
    CConfigValue bIgnoreFnKey;              // the modifier alone shows nothing, and a latched Fn stays latched
    CConfigValue bAutoHide;                 // the cards hide automatically after uAutoHideDelayTime
    CConfigValue uAutoHideDelayTime;        // milliseconds
    CConfigValue bProgrammable;             // the button utility may assign keys to other programs
    CConfigValue bHideCaption;              // cards have no caption
    CConfigValue bShowQrdAtLaunch;          // cards show at start; a second start toggles them
    CConfigValue bAlwaysShowItemsCaption;   // every item shows its description, not only the chosen one
    CConfigValue uItemDescMaxWidth;         // widest item description, in pixels at image ratio 1
    CConfigValue uSliderThumbSize;          // length of the slider's thumb, in pixels at image ratio 1
    CConfigValue bHideMainUIWhenLostFocus;  // the cards hide when the strip loses the focus

    CConfigValue bLoaded;  // 0 until a load has completed

    // The user's own key, as above. After the flag, because everything before it keeps its place in the record.
    CConfigValue bMonitorOfActiveWindow;  // the cards appear on the monitor of the active window
    CConfigValue bHideInFullScreen;       // the cards stay hidden while a full-screen program runs; keys work

    // Machine-wide again.
    CConfigValue uPluginPatience;  // milliseconds a plug-in may hold up the cards before the user is told
    CConfigValue uPluginEndTime;   // milliseconds after which the program ends itself and starts without it
};

class CZelConfig {
 public:
    // The only record of the process; any thread. Loads it first, again at every call until a load has completed.
    static QrdConfig& getQrdConfig();

    // Reads both keys into the record. A missing or unreadable value does not change the record; a key that cannot be
    // opened ends the load with its error and leaves bLoaded unchanged. User-interface thread.
    [[nodiscard]] static HRESULT _initQrdConfig(QrdConfig& config);
};

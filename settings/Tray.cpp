#include "Tray.h"

#include <shellapi.h>

#include <string>

#include "TrayStart.h"
#include "TrayWnd.h"
#include "common/Handle.h"
#include "common/ObjectSecurity.h"
#include "common/ProgramPath.h"

namespace settings {
namespace {

constexpr wchar_t kMutex[] = L"Local\\KESTOVA_Fenwyn_Tray";

class CTraySurroundings : public ITraySurroundings {
 public:
    explicit CTraySurroundings(HANDLE end) : m_hEnd(end) {}

    bool notify(DWORD message, NOTIFYICONDATAW& data) override { return ::Shell_NotifyIconW(message, &data) != FALSE; }
    bool isFenwynRunning() override { return frameOfFenwyn() != nullptr; }
    // Neither is waited for: the next menu shows what became of it.
    void startFenwyn() override { static_cast<void>(settings::startFenwyn(L"")); }
    void endFenwyn() override { static_cast<void>(settings::endFenwyn(0)); }
    CardsShown showCards() override { return settings::showCards(); }
    void releaseCards() override { settings::releaseCards(); }

    void openSettings() override {
        const std::wstring program = common::programPath();
        std::wstring commandLine = L'"' + program + L'"';
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION process{};
        if (::CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                             &startup, &process) != FALSE) {
            ::AllowSetForegroundWindow(process.dwProcessId);
            ::CloseHandle(process.hThread);
            ::CloseHandle(process.hProcess);
        }
    }

    // Without the foreground the menu would not close when the user clicks elsewhere, and would not hear keys; without a
    // message after it, the next menu would close at once.
    UINT choose(HWND owner, HMENU menu, POINT place) override {
        ::SetForegroundWindow(owner);
        const UINT side = ::GetSystemMetrics(SM_MENUDROPALIGNMENT) != 0 ? TPM_RIGHTALIGN : TPM_LEFTALIGN;
        const BOOL command = ::TrackPopupMenu(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON | TPM_BOTTOMALIGN | side, place.x,
                                              place.y, 0, owner, nullptr);
        ::PostMessageW(owner, WM_NULL, 0, 0);
        return static_cast<UINT>(command);
    }

    bool endWanted() override { return ::WaitForSingleObject(m_hEnd, 0) == WAIT_OBJECT_0; }

 private:
    HANDLE m_hEnd;  // not owned
};

// Until the event, or until the window is gone.
void handleMessages(HANDLE end, const CTrayWnd& window) {
    while (window.isWindow() &&
           ::MsgWaitForMultipleObjectsEx(1, &end, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE) == WAIT_OBJECT_0 + 1) {
        MSG message;
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
            if (message.message == WM_QUIT) {
                return;
            }
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
    }
}

}  // namespace

int runTray(HINSTANCE instance) {
    if (!isIconWanted()) {
        return 0;
    }
    const common::UniqueHandle mutex(::CreateMutexW(common::OnlyForTheUser().get(), FALSE, kMutex));
    if (!mutex || ::GetLastError() == ERROR_ALREADY_EXISTS) {
        return 0;
    }
    const common::UniqueHandle end(::CreateEventW(common::OnlyForTheUser().get(), TRUE, FALSE, kTrayEndEvent));
    if (!end) {
        return 1;
    }
    ::ResetEvent(end.get());  // one that was meant for an icon before this one
    CTraySurroundings surroundings(end.get());
    CTrayWnd window(surroundings);
    if (!window.open(instance)) {
        return 1;
    }
    handleMessages(end.get(), window);
    return 0;
}

}  // namespace settings

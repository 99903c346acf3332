#include "RunningFenwyn.h"

#include <shellapi.h>
#include <shlobj.h>

#include <string>

#include "Messages.h"
#include "ZelHotkey.h"
#include "common/Handle.h"
#include "common/ProgramPath.h"

namespace settings {
namespace {

constexpr DWORD kPollMs = 20;

bool open(const std::wstring& file, const wchar_t* arguments) {
    const std::wstring folder = common::programFolder();
    // More than 32 is success.
    return reinterpret_cast<INT_PTR>(
               ::ShellExecuteW(nullptr, nullptr, file.c_str(), arguments, folder.c_str(), SW_SHOWNORMAL)) > 32;
}

constexpr UINT kAnswerMs = 1000;

HWND strip() noexcept {
    return ::FindWindowW(kStripClass, nullptr);
}

void sendModifier(HWND hStrip, DWORD makeOrBreak) noexcept {
    DWORD_PTR answer = 0;
    ::SendMessageTimeoutW(hStrip, kMsgHotkey, ZEL_CODE_MODIFIER, static_cast<LPARAM>(makeOrBreak), SMTO_ABORTIFHUNG,
                          kAnswerMs, &answer);
}

}  // namespace

HWND frameOfFenwyn() {
    return ::FindWindowW(kFrameClass, kFrameTitle);
}

bool endFenwyn(DWORD patience) {
    const common::UniqueHandle event(::OpenEventW(EVENT_MODIFY_STATE, FALSE, ZEL_END_EVENT));
    if (event) {
        ::SetEvent(event.get());
    }
    const ULONGLONG deadline = ::GetTickCount64() + patience;
    while (frameOfFenwyn() != nullptr) {
        if (::GetTickCount64() >= deadline) {
            return false;
        }
        ::Sleep(kPollMs);
    }
    return true;
}

bool startFenwyn(const wchar_t* arguments) {
    const std::wstring program = common::programFolder() + L"\\Fenwyn.exe";
    if (::IsUserAnAdmin() == FALSE) {
        return open(program, arguments);
    }
    wchar_t windows[MAX_PATH] = L"";
    ::GetWindowsDirectoryW(windows, MAX_PATH);
    return open(std::wstring(windows) + L"\\explorer.exe", (L"\"" + program + L"\"").c_str());
}

CardsShown showCards() noexcept {
    const HWND hFrame = frameOfFenwyn();
    const HWND hStrip = strip();
    if (hFrame == nullptr || hStrip == nullptr) {
        return CardsShown::No;
    }
    if (::IsWindowVisible(hStrip) != FALSE) {
        return CardsShown::Itself;
    }
    sendModifier(hStrip, ZEL_MAKE);
    if (::IsWindowVisible(hStrip) != FALSE) {
        return CardsShown::Held;
    }
    DWORD_PTR answer = 0;
    return ::SendMessageTimeoutW(hFrame, kMsgSecondInstance, 0, 0, SMTO_ABORTIFHUNG, kAnswerMs, &answer) != 0
               ? CardsShown::Itself
               : CardsShown::No;
}

void releaseCards() noexcept {
    const HWND hStrip = strip();
    if (hStrip != nullptr && ::IsWindowVisible(hStrip) != FALSE) {
        sendModifier(hStrip, ZEL_BREAK);
    }
}

}  // namespace settings

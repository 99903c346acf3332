// A few sentences at the edge of the screen that say which function is at fault. It needs nothing of the cards and
// their thread: it is shown while they do not answer.
#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>

inline constexpr wchar_t kNoticeClass[] = L"FenwynNotice";

class CFaultNotice {
 public:
    // The window belongs to the calling thread. It takes no focus; a click closes it. Its title is the text, for screen
    // readers. Without a window the notice is silent.
    explicit CFaultNotice(const std::wstring& strText);
    ~CFaultNotice();
    CFaultNotice(const CFaultNotice&) = delete;
    CFaultNotice& operator=(const CFaultNotice&) = delete;

    // Handles the window's messages until one of the events is set, and returns its index; or until the time is over,
    // and returns the number of events. It goes on waiting when the user closes the
    // notice.
    [[nodiscard]] DWORD wait(std::initializer_list<HANDLE> events, DWORD dwMilliseconds) const;

 private:
    static LRESULT CALLBACK _wndProc(HWND hWnd, UINT uMessage, WPARAM wParam, LPARAM lParam) noexcept;

    HWND m_hWnd = nullptr;
};

// The application object: one global instance, its start, message loop and end.
#pragma once

#include <windows.h>

#include <atomic>

class CWnd;

class CWinApp {
 public:
    CWinApp();
    virtual ~CWinApp();
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;

    // The whole life of the program, called from the entry point: InitInstance, the message loop if that returned true,
    // and ExitInstance in every case. Returns the process's exit code. `commandLine` outlives the call.
    int Main(HINSTANCE instance, const wchar_t* commandLine);

    // The end of the main window ends the message loop.
    static void windowGone(const CWnd& window);

    // Notifies the application, if there is one, of an exception that is being caught: exceptionCaught().
    static void reportException() noexcept;

    HINSTANCE m_hInstance = nullptr;
    const wchar_t* m_lpCmdLine = L"";         // without the program's name
    std::atomic<CWnd*> m_pMainWnd = nullptr;  // not owned; other threads may check whether there is one

 protected:
    // False ends the program without a message loop.
    virtual bool InitInstance() { return true; }
    // The base destroys a remaining main window and returns the loop's exit code.
    virtual int ExitInstance();
    // Until WM_QUIT, or until the main window has been destroyed.
    virtual void Run();
    // Sees every message of the loop first. True: it has been handled, and reaches no window.
    virtual bool PreTranslateMessage(MSG& /*message*/) { return false; }
    // Called in a catch block: an exception reached a border that it must not cross (the start, the end, the message
    // loop, a window procedure or a hook), and stops there. The caller of the failed code gets a failure.
    virtual void exceptionCaught() noexcept {}

 private:
    [[nodiscard]] bool _start() noexcept;
    void _run() noexcept;
    [[nodiscard]] int _end() noexcept;
    [[nodiscard]] bool _nextMessage(MSG& message) const;
    void _handle(MSG& message) noexcept;
    bool _preTranslate(MSG& message);

    static CWinApp* s_pCurrent;
    int m_nExitCode = 0;
    bool m_bMainWndGone = false;
};

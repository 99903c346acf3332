// The thread of a display-output function that restores a picture: it waits for the named event "FnF5Panic", which a
// timer of the card strip sets when the output key was the last key pressed for three seconds. All such functions wait
// for the same event, and it wakes any one of them; that one passes it on to the function whose key was held. If no key
// of this program has set the event, it is for the one that it wakes.
#pragma once

#include <windows.h>

#include <atomic>

#include "common/Handle.h"

// start() and end() must be called on the user-interface thread.
class CPanicThread {
 public:
    // The action of the thread; called on that thread, never after end() has returned. An exception counts as a
    // failure.
    class IAction {
     public:
        // Before the first wait. A failure is logged and ends the thread.
        [[nodiscard]] virtual HRESULT preparePanic() { return S_OK; }
        // Each time the event is set. It calls the plug-in within a PluginCall, and may be terminated there.
        [[nodiscard]] virtual HRESULT panic() = 0;

     protected:
        ~IAction() = default;
    };

    // Encloses only the call of a plug-in's export: while one exists on a panic thread, end() may terminate the thread.
    // It has no effect on other threads.
    class PluginCall {
     public:
        PluginCall() noexcept;
        ~PluginCall();
        PluginCall(const PluginCall&) = delete;
        PluginCall& operator=(const PluginCall&) = delete;
    };

    struct Rules {
        DWORD dwEndWaitMs;              // how long end() waits for the thread
        bool bLogEvents;                // whether wake-ups are logged
        const wchar_t* pszFailureText;  // the expectation that a failed panic() violates; null: none is logged
    };

    struct EndResult {
        bool bEventFound;  // the named event could be opened
        bool bInTime;      // the thread ended by itself, or there was none
    };

    // The action outlives this object.
    CPanicThread(IAction& rAction, const Rules& rRules) : m_rAction(rAction), m_rules(rRules) {}
    ~CPanicThread();
    CPanicThread(const CPanicThread&) = delete;
    CPanicThread& operator=(const CPanicThread&) = delete;

    // No effect if the thread runs already. Without memory or an event name there is simply no panic help.
    void start();
    // Tells the thread to end and waits; a plug-in call that outlasts the wait is terminated. Harmless without a
    // thread.
    EndResult end();

    // Starts the timer of the card strip: a key of this function was pressed. `pfTimer` calls signalHeldKey().
    static constexpr UINT kHeldKeyMs = 3000;
    void arm(HWND hWnd, UINT_PTR uTimerId, TIMERPROC pfTimer);
    // Called by the timer when it fires: the timer ends, and the event triggers panic for the function that armed it
    // last. User-interface thread.
    static void signalHeldKey(HWND hWnd, UINT_PTR uTimerId) noexcept;

    // The thread itself; its argument is a CPanicThread.
    static DWORD WINAPI threadProcedure(void* pArgument) noexcept;

 private:
    DWORD _run();
    void _waitForPanic();
    [[nodiscard]] bool _isMeant();
    void _forget();
    void _panicOnce();
    void _cutOff() const;

    IAction& m_rAction;
    const Rules m_rules;
    common::UniqueHandle m_hEvent;     // the thread closes it when it ends
    common::UniqueHandle m_hOwnEvent;  // wakes only this thread: to end, or because another one took its event
    common::UniqueHandle m_hPanicThread;
    bool m_bHeld = false;  // this function's key was held, and its thread does not know yet
    std::atomic<bool> m_bExitPanicThread = false;
    std::atomic<bool> m_bInPlugin = false;
};

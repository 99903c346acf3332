#include "AppFixture.h"

#include <algorithm>

#include "Data/RegistryPaths.h"

namespace apptest {

LogTest::LogTest() {
    EXPECT_TRUE(m_registry.redirected());
    system_double::reset();
    siblings::reset();
}

std::size_t LogTest::timesLogged(const std::wstring& line) const {
    return m_log.count(line);
}

std::vector<std::wstring> LogTest::errors() const {
    return m_log.errors();
}

std::vector<std::wstring> LogTest::entered(const std::vector<std::wstring>& beginnings) const {
    std::vector<std::wstring> found;
    for (const std::wstring& line : m_log.lines()) {
        const std::size_t at = line.find(L"): ENTER ");
        const std::wstring name = at == std::wstring::npos ? std::wstring() : line.substr(at + 9);
        const bool wanted = std::any_of(beginnings.begin(), beginnings.end(),
                                        [&name](const std::wstring& beginning) { return name.starts_with(beginning); });
        if (wanted) {
            found.push_back(name);
        }
    }
    return found;
}

void LogTest::listFunction(const std::wstring& name, const std::vector<DWORD>& codes) {
    const std::wstring key = std::wstring(regpath::kHotkeyKey) + L"\\" + name;
    const auto* const bytes = reinterpret_cast<const BYTE*>(codes.data());
    support::RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, key, regpath::kCode,
                                     {bytes, bytes + codes.size() * sizeof(DWORD)});
    support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, key, regpath::kFuncDll, m_plugin.path());
    support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, key, regpath::kCaption, name);
    m_list += name + L";";
    support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, regpath::kHotkeyKey, regpath::kFuncList, m_list);
}

void LogTest::setConfig(const wchar_t* name, DWORD value) {
    support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, regpath::kConfigKey, name, value);
}

void LogTest::customise(DWORD code, const std::wstring& file) {
    const std::wstring number = std::to_wstring(code);
    const std::wstring button = std::wstring(regpath::kButtonsKey) + L"\\Button" + number;
    const std::wstring user = std::wstring(regpath::kUserSettingKey) + L"\\" + number;
    support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, button, regpath::kIsQrdControl, 1);
    support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, button, regpath::kMakeFunction, code);
    support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, button, regpath::kMakeValue, code);
    support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, user, regpath::kOption1, file);
    support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, user, regpath::kOption2, L"");
}

ShellTest::ShellTest() {
    ZelMainSeam::stripWnd() = stripWindow();
    m_log.clear();
}

ShellTest::~ShellTest() {
    ZelMainSeam::stripWnd() = nullptr;
    if (ZelMainSeam::frame() != nullptr) {
        ZelMainSeam::frame()->DestroyWindow();
        ZelMainSeam::frame().reset();
    }
    pump();  // also removes the quit message that the frame's end posts
}

CBlackCard& ShellTest::addCard(const wchar_t* function, const std::vector<DWORD>& codes) {
    CBlackCard& added = m_room.addCard();
    EXPECT_EQ(added.initialize(function, codes, L"Caption", m_plugin.path().c_str()), S_OK);
    return added;
}

void ShellTest::addThreeCards() {
    addCard(L"Mute", {kMuteKey});
    addCard(L"Lock", {kLockKey});
    addCard(L"Sleep", {kSleepKey});
    layOut();
    m_log.clear();
}

HWND ShellTest::makeFrame() {
    EXPECT_EQ(ZelMainSeam::createFrame(), S_OK);
    m_log.clear();
    return ZelMainSeam::frame()->m_hWnd;
}

void ShellTest::showStrip() {
    ASSERT_EQ(theApp.showMainDlg(TRUE, FALSE), S_OK);
    ASSERT_TRUE(stripShown());
}

bool ShellTest::largeShown(std::size_t index) const {
    const auto& large = BlackCardSeam::largeCard(card(index));
    return large != nullptr && shown(large->m_hWnd);
}

StartTest::StartTest() : m_windows(support::threadWindows()) {
    // All of them, because a missing value is an error in the log.
    for (const wchar_t* setting : {L"Disable",
                                   L"Position",
                                   L"EnableHover",
                                   L"MouseEnterIdle",
                                   L"Topmost",
                                   L"HideMainDlg",
                                   L"IgnoreFnKey",
                                   L"AutoHide",
                                   L"AutoHideDelayTime",
                                   L"HideCaption",
                                   L"Programmable",
                                   L"ShowQrdAtLaunch",
                                   L"AlwaysShowItemsCaption",
                                   L"ItemDescMaxWidth",
                                   L"SliderThumbSize",
                                   L"HideMainUIWhenLostFocus",
                                   L"MonitorOfActiveWindow",
                                   L"HideInFullScreen",
                                   L"PluginPatience",
                                   L"PluginEndTime"}) {
        setConfig(setting, 0);
    }
    for (const wchar_t* setting : {L"Disable", L"Position", L"EnableHover", L"MouseEnterIdle", L"Topmost",
                                   L"MonitorOfActiveWindow", L"HideInFullScreen"}) {
        support::RegistryRoom::setDword(HKEY_CURRENT_USER, regpath::kConfigKey, setting, 0);
    }
    listFunction(L"Mute", {kMuteKey});
    listFunction(L"Lock", {kLockKey});
    theApp.m_hInstance = ::GetModuleHandleW(nullptr);
}

StartTest::~StartTest() {
    end();
    ::UnregisterClassW(kStripClass, theApp.m_hInstance);
    CZelConfig::getQrdConfig() = QrdConfig();
    theApp.m_lpCmdLine = L"";
    ZelMainSeam::mouseOperating() = FALSE;
}

bool StartTest::start(const wchar_t* commandLine) {
    CZelConfig::getQrdConfig() = QrdConfig();
    theApp.m_lpCmdLine = commandLine;
    m_log.clear();
    m_started = true;
    return ZelMainSeam::initInstance();
}

void StartTest::end() {
    if (m_started) {
        m_started = false;
        ZelMainSeam::exitInstance();
        pump();
    }
}

MessageCounter::MessageCounter(const wchar_t* className, const wchar_t* title, UINT message)
    : m_className(className), m_message(message) {
    ::UnregisterClassW(className, ::GetModuleHandleW(nullptr));
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &MessageCounter::procedure;
    windowClass.hInstance = ::GetModuleHandleW(nullptr);
    windowClass.lpszClassName = className;
    ::RegisterClassW(&windowClass);
    m_hWnd =
        ::CreateWindowExW(0, className, title, WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, windowClass.hInstance, nullptr);
    ::SetWindowLongPtrW(m_hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

MessageCounter::~MessageCounter() {
    ::DestroyWindow(m_hWnd);
    ::UnregisterClassW(m_className.c_str(), ::GetModuleHandleW(nullptr));
}

LRESULT CALLBACK MessageCounter::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const self = reinterpret_cast<MessageCounter*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self != nullptr && message == self->m_message) {
        ++self->m_count;
        self->m_messages.push_back({window, message, wParam, lParam, 0, {}});
        return 0;
    }
    return ::DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace apptest

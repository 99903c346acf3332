// The window in this process, over a notebook of its own; what it would ask the person is recorded.
#pragma once

#include <commctrl.h>

#include <memory>

#include "Notebook.h"
#include "SettingsDlg.h"
#include "SettingsIds.h"
#include "Texts.h"
#include "common/DialogFont.h"

namespace settings {

class SettingsWindow : public Notebook {
 protected:
    void SetUp() override {
        Notebook::SetUp();
        const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_TAB_CLASSES | ICC_LISTVIEW_CLASSES | ICC_UPDOWN_CLASS};
        ::InitCommonControlsEx(&classes);
        m_surroundings = realSurroundings();
        m_surroundings.tell = [this](HWND, const std::wstring& words) { m_told.push_back(words); };
        m_surroundings.ask = [](HWND, const std::wstring&) { return false; };
        m_surroundings.chooseFile = [this](HWND, const FileQuestion&) { return m_file; };
        m_surroundings.askPlugin = [](const std::wstring&, const std::wstring&) { return PluginAnswer{}; };
        m_surroundings.font = [this](UINT) { return fontAt(m_nDpi); };
    }
    void TearDown() override {
        m_pWindow.reset();
        Notebook::TearDown();
    }

    void open() {
        m_pWindow = std::make_unique<CSettingsDlg>(m_model, m_surroundings);
        ASSERT_TRUE(m_pWindow->open());
    }
    static LOGFONTW fontAt(int dpi) {
        LOGFONTW font{};
        font.lfHeight = -::MulDiv(9, dpi, 72);
        std::wstring(L"Tahoma").copy(font.lfFaceName, LF_FACESIZE - 1);
        return font;
    }
    [[nodiscard]] HWND control(int id) const { return ::GetDlgItem(m_pWindow->m_hWnd, id); }
    void press(int id) const {
        ::SendMessageW(m_pWindow->m_hWnd, WM_COMMAND, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(control(id)));
    }
    [[nodiscard]] static std::wstring words(HWND window) {
        wchar_t text[512] = L"";
        ::GetWindowTextW(window, text, 512);
        return text;
    }
    [[nodiscard]] bool isEnabled(int id) const { return ::IsWindowEnabled(control(id)) != FALSE; }

    int m_nDpi = 96;
    Surroundings m_surroundings;
    std::vector<std::wstring> m_told;
    std::optional<std::wstring> m_file;
    std::unique_ptr<CSettingsDlg> m_pWindow;
};

}  // namespace settings

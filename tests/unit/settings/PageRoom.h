// A page in a window of its own, over a private registry, with a person who is simulated.
#pragma once

#include "Notebook.h"
#include "Pages.h"
#include "common/DialogFont.h"
#include "common/Handle.h"
#include "companions/keyboard/KeyboardRoom.h"

namespace settings {

using Maker = std::unique_ptr<CPage> (*)(CModel& model, const Surroundings& surroundings);

class PageRoom : public Notebook {
 protected:
    void open(Maker make) {
        m_surroundings.tell = [this](HWND, const std::wstring& words) { m_told.push_back(words); };
        m_surroundings.font = [](UINT dpi) { return common::messageFont(dpi); };
        m_surroundings.chooseFile = [this](HWND, const FileQuestion&) { return m_chosenFile; };
        m_host.reset(
            ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 600, 400, nullptr, nullptr, nullptr, nullptr));
        m_pPage = make(m_model, m_surroundings);
        ASSERT_TRUE(m_pPage->Create(m_host.get()));
        m_pPage->load();
    }
    void TearDown() override { m_pPage.reset(); }

    [[nodiscard]] HWND control(int id) const { return ::GetDlgItem(m_pPage->m_hWnd, id); }
    void press(int id, UINT code = BN_CLICKED) { m_pPage->onControl(static_cast<UINT>(id), code); }
    void timer(UINT_PTR id) const { ::SendMessageW(m_pPage->m_hWnd, WM_TIMER, id, 0); }
    [[nodiscard]] std::wstring words(int id) const {
        wchar_t buffer[1024] = L"";
        ::GetWindowTextW(control(id), buffer, 1024);
        return buffer;
    }
    void type(int id, const std::wstring& words) {
        ::SetWindowTextW(control(id), words.c_str());
        press(id, EN_CHANGE);
    }
    [[nodiscard]] bool says(int id, const std::wstring& part) const {
        return companions::waitUntil([&] { return words(id).find(part) != std::wstring::npos; });
    }
    [[nodiscard]] bool enabled(int id) const { return ::IsWindowEnabled(control(id)) != FALSE; }

    Surroundings m_surroundings;
    std::optional<std::wstring> m_chosenFile;
    std::vector<std::wstring> m_told;
    common::UniqueWindow m_host;
    std::unique_ptr<CPage> m_pPage;
};

}  // namespace settings

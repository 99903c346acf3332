#include "Page.h"

#include "FenwynFunctions.h"
#include "Texts.h"

namespace settings {

const MessageMap& CPage::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMessage<&CPage::OnControl>(WM_COMMAND),
        onMessage<&CPage::OnNotify>(WM_NOTIFY),
    };
    static const MessageMap kMap{&CDialog::messageMap(), kEntries};
    return kMap;
}

void CPage::setShown(bool shown) {
    ::ShowWindow(m_hWnd, shown ? SW_SHOW : SW_HIDE);
}

LRESULT CPage::onNotify(const NMHDR& /*header*/) {
    return Default();
}

void CPage::tell(const std::wstring& message) const {
    m_surroundings.tell(::GetAncestor(m_hWnd, GA_ROOT), message);
}

void CPage::goTo(UINT title, const std::wstring& function) const {
    if (const fenwyn::Function* const known = fenwyn::findFunction(function); known != nullptr) {
        ::SendMessageW(::GetParent(m_hWnd), kMsgGoTo, title, known - fenwyn::kFunctions);
    }
}

bool CPage::ask(const std::wstring& question) const {
    return m_surroundings.ask(::GetAncestor(m_hWnd, GA_ROOT), question);
}

LRESULT CPage::OnControl(WPARAM wParam, LPARAM /*lParam*/) {
    onControl(LOWORD(wParam), HIWORD(wParam));
    return 0;
}

LRESULT CPage::OnNotify(WPARAM /*wParam*/, LPARAM lParam) {
    return onNotify(*reinterpret_cast<const NMHDR*>(lParam));
}

void setControlTexts(HWND dialog) {
    for (HWND control = ::GetWindow(dialog, GW_CHILD); control != nullptr;
         control = ::GetWindow(control, GW_HWNDNEXT)) {
        if (const std::wstring words = text(static_cast<UINT>(::GetDlgCtrlID(control))); !words.empty()) {
            ::SetWindowTextW(control, words.c_str());
        }
    }
}

}  // namespace settings

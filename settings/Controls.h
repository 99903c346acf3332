// What the pages ask of common controls.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <initializer_list>
#include <string>

namespace settings {

[[nodiscard]] inline std::wstring windowText(HWND window) {
    std::wstring words(static_cast<std::size_t>(::GetWindowTextLengthW(window)) + 1, L'\0');
    words.resize(static_cast<std::size_t>(::GetWindowTextW(window, words.data(), static_cast<int>(words.size()))));
    return words;
}

[[nodiscard]] inline HFONT fontOf(HWND window) {
    return reinterpret_cast<HFONT>(::SendMessageW(window, WM_GETFONT, 0, 0));
}

// A check box.
[[nodiscard]] inline bool isChecked(HWND box) {
    return ::SendMessageW(box, BM_GETCHECK, 0, 0) == BST_CHECKED;
}
inline void setChecked(HWND box, bool checked) {
    ::SendMessageW(box, BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
}

// A drop-down list; -1: nothing is chosen.
inline void addChoice(HWND list, const std::wstring& words) {
    ::SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(words.c_str()));
}
[[nodiscard]] inline int chosen(HWND list) {
    return static_cast<int>(::SendMessageW(list, CB_GETCURSEL, 0, 0));
}
inline void choose(HWND list, int index) {
    ::SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

// Gives the columns of a list these shares of its width, in percent. Again when rows have come or gone, because a scroll bar
// takes room of it.
inline void shareWidth(HWND list, std::initializer_list<int> percents) {
    RECT area{};
    ::GetClientRect(list, &area);
    int column = 0;
    int left = 0;
    int share = 0;
    for (const int percent : percents) {
        share += percent;
        const int right = ::MulDiv(static_cast<int>(area.right), share, 100);
        ListView_SetColumnWidth(list, column++, right - left);
        left = right;
    }
}

// A text field: whether the person has changed it since its text was set.
[[nodiscard]] inline bool isEdited(HWND field) {
    return ::SendMessageW(field, EM_GETMODIFY, 0, 0) != 0;
}

}  // namespace settings

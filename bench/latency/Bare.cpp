// The least that a program has to do to show pictures upon a key: a keyboard hook, two layered windows, and pictures
// that are composed before the first key. What Fenwyn takes longer than this program is its own.
//
//   LatencyBare.exe CardArt.dll LEFT TOP RIGHT BOTTOM LEFT TOP RIGHT BOTTOM
//
// The first rectangle (screen pixels) is that of the strip, which the right Ctrl key shows while it is down; the second
// that of an enlarged card with its items: the space bar shows it instead of the strip, and each further press shows it
// with the next item selected. Ends with its process.
#include <windows.h>

#include <objidl.h>

#include <gdiplus.h>
#include <shlwapi.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <vector>

#include "common/FrameBitmap.h"

namespace {

constexpr UINT kMsgKey = WM_APP;  // wParam: virtual key; lParam: 1 if it went down
constexpr WORD kCards[] = {111, 131, 151, 181, 221, 321, 351, 471, 491, 511, 201, 531, 581, 551, 221};
constexpr WORD kLargeCard = 530;
constexpr WORD kSmallItems[] = {533, 535, 537};
constexpr WORD kLargeItems[] = {532, 534, 536};
constexpr std::size_t kItems = std::size(kSmallItems);
constexpr DWORD kExStyle = WS_EX_NOACTIVATE | WS_EX_LAYERED | WS_EX_TOOLWINDOW | WS_EX_TRANSPARENT | WS_EX_TOPMOST;

using Image = std::unique_ptr<Gdiplus::Image>;

Image load(HMODULE hArt, WORD id) {
    HRSRC hResource = ::FindResourceW(hArt, MAKEINTRESOURCEW(id), L"PNG");
    const auto* const bytes = static_cast<const BYTE*>(::LockResource(::LoadResource(hArt, hResource)));
    IStream* const stream = ::SHCreateMemStream(bytes, ::SizeofResource(hArt, hResource));
    auto image = std::make_unique<Gdiplus::Image>(stream);
    stream->Release();
    return image;
}

int width(const RECT& rect) {
    return rect.right - rect.left;
}

int height(const RECT& rect) {
    return rect.bottom - rect.top;
}

// A window and the pictures that it can show.
class CPictureWindow {
 public:
    CPictureWindow(const wchar_t* pszClass, const RECT& rect, std::size_t uPictures) : m_rect(rect) {
        m_hWnd = ::CreateWindowExW(kExStyle, pszClass, nullptr, WS_POPUP, rect.left, rect.top, width(rect),
                                   height(rect), nullptr, nullptr, ::GetModuleHandleW(nullptr), nullptr);
        for (std::size_t i = 0; i < uPictures; ++i) {
            m_pictures.push_back(std::make_unique<common::FrameBuffer>(width(rect), height(rect)));
        }
    }

    void draw(std::size_t uPicture, const Image& image, int x, int y, int size) {
        Gdiplus::Graphics graphics(m_pictures[uPicture]->dc());
        graphics.DrawImage(image.get(), x, y, size, size);
    }

    void show(std::size_t uPicture) {
        ::SetWindowPos(m_hWnd, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
        POINT place{m_rect.left, m_rect.top};
        SIZE size{width(m_rect), height(m_rect)};
        POINT source{};
        BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
        ::UpdateLayeredWindow(m_hWnd, nullptr, &place, &size, m_pictures[uPicture]->dc(), &source, 0, &blend,
                              ULW_ALPHA);
    }

    void hide() { ::ShowWindow(m_hWnd, SW_HIDE); }

 private:
    RECT m_rect;
    HWND m_hWnd = nullptr;
    std::vector<std::unique_ptr<common::FrameBuffer>> m_pictures;
};

class CBare {
 public:
    CBare(HMODULE hArt, const RECT& strip, const RECT& card)
        : m_strip(L"LatencyBare", strip, 1), m_card(L"LatencyBare", card, kItems) {
        const int side = width(strip) / static_cast<int>(std::size(kCards));
        int x = 0;
        for (const WORD id : kCards) {
            m_images.push_back(load(hArt, id));
            m_strip.draw(0, m_images.back(), x, 0, side);
            x += side;
        }
        m_images.push_back(load(hArt, kLargeCard));
        const Image& large = m_images.back();
        const int itemSide = width(card) / static_cast<int>(kItems);
        for (std::size_t picture = 0; picture < kItems; ++picture) {
            m_card.draw(picture, large, 0, 0, height(card) / 2);
            for (std::size_t item = 0; item < kItems; ++item) {
                m_images.push_back(load(hArt, item == picture ? kLargeItems[item] : kSmallItems[item]));
                m_card.draw(picture, m_images.back(), static_cast<int>(item) * itemSide, height(card) / 2, itemSide);
            }
        }
    }

    void onKey(WPARAM virtualKey, bool bDown) {
        if (virtualKey == VK_RCONTROL) {
            if (!bDown) {
                m_strip.hide();
                m_card.hide();
                m_uSelected = kItems;
            } else if (m_uSelected == kItems) {
                m_strip.show(0);
            }
        } else if (bDown) {
            m_uSelected = m_uSelected + 1 < kItems ? m_uSelected + 1 : 0;
            m_strip.hide();
            m_card.show(m_uSelected);
        }
    }

 private:
    CPictureWindow m_strip;
    CPictureWindow m_card;
    std::vector<Image> m_images;
    std::size_t m_uSelected = kItems;  // none
};

DWORD s_dwThread = 0;
bool s_bHeld = false;

LRESULT CALLBACK keyHook(int code, WPARAM wParam, LPARAM lParam) {
    const auto& key = *reinterpret_cast<const KBDLLHOOKSTRUCT*>(lParam);
    const bool bDown = wParam == WM_KEYDOWN || wParam == WM_SYSKEYDOWN;
    const bool bModifier = key.vkCode == VK_RCONTROL;
    if (code == HC_ACTION && (bModifier || (s_bHeld && key.vkCode == VK_SPACE))) {
        s_bHeld = bModifier ? bDown : s_bHeld;
        ::PostThreadMessageW(s_dwThread, kMsgKey, key.vkCode, bDown ? 1 : 0);
        return 1;
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

RECT rectOf(wchar_t** ppszWords) {
    RECT rect{};
    for (LONG* side : {&rect.left, &rect.top, &rect.right, &rect.bottom}) {
        *side = std::wcstol(*ppszWords++, nullptr, 10);
    }
    return rect;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE hInstance, HINSTANCE, LPWSTR, int) {
    constexpr int kWords = 10;
    if (__argc != kWords) {
        return 2;
    }
    ULONG_PTR token = 0;
    const Gdiplus::GdiplusStartupInput input;
    Gdiplus::GdiplusStartup(&token, &input, nullptr);
    HMODULE hArt = ::LoadLibraryExW(__wargv[1], nullptr, LOAD_LIBRARY_AS_DATAFILE);
    WNDCLASSW wndClass{};
    wndClass.lpfnWndProc = &::DefWindowProcW;
    wndClass.hInstance = hInstance;
    wndClass.lpszClassName = L"LatencyBare";
    ::RegisterClassW(&wndClass);
    CBare bare(hArt, rectOf(__wargv + 2), rectOf(__wargv + 6));
    s_dwThread = ::GetCurrentThreadId();
    ::SetWindowsHookExW(WH_KEYBOARD_LL, &keyHook, hInstance, 0);
    MSG message;
    while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (message.hwnd == nullptr && message.message == kMsgKey) {
            bare.onKey(message.wParam, message.lParam != 0);
        } else {
            ::DispatchMessageW(&message);
        }
    }
    return 0;
}

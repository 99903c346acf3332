#include "common/LayeredWnd.h"

#include <array>
#include <utility>

#include "common/FrameSurface.h"
#include "common/PictureStore.h"
#include "common/Status.h"
#include "common/SystemLoops.h"
#include "common/TryMake.h"

namespace {

constexpr wchar_t kClassPrefix[] = L"QRD_LayeredWnd";
constexpr DWORD kExStyle = WS_EX_NOACTIVATE | WS_EX_LAYERED | WS_EX_WINDOWEDGE | WS_EX_TOOLWINDOW | WS_EX_TRANSPARENT;
constexpr UINT kInPlace = SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE;
constexpr UINT kShowInPlace = kInPlace | SWP_SHOWWINDOW;
constexpr UINT kHideInPlace = kInPlace | SWP_HIDEWINDOW;

// There is no frame, which some systems find out slowly, at every move.
LRESULT CALLBACK defaultProcedure(HWND hWnd, UINT nMessage, WPARAM wParam, LPARAM lParam) noexcept {
    return nMessage == WM_NCCALCSIZE || common::startsSystemLoop(nMessage, wParam)
               ? 0
               : ::DefWindowProcW(hWnd, nMessage, wParam, lParam);
}

LONG width(const RECT& rect) noexcept {
    return rect.right - rect.left;
}

LONG height(const RECT& rect) noexcept {
    return rect.bottom - rect.top;
}

// Empty if the window no longer exists.
RECT screenRect(HWND hWnd) noexcept {
    RECT rect{};
    ::GetWindowRect(hWnd, &rect);
    return rect;
}

// Failures show when the window is created.
void registerWndClass(const std::wstring& strName) noexcept {
    WNDCLASSEXW wndClass{};
    wndClass.cbSize = sizeof(wndClass);
    wndClass.style = CS_HREDRAW | CS_VREDRAW;
    wndClass.lpfnWndProc = &defaultProcedure;
    wndClass.hInstance = ::GetModuleHandleW(nullptr);
    wndClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    wndClass.lpszClassName = strName.c_str();
    ::RegisterClassExW(&wndClass);
}

// Wine keeps what is painted until a thread of the process, any of them, waits for messages. If that was another
// thread, for the first time in the process and while this one was handing over a picture, each of the two waited for
// the other for ever. Waits for nothing and handles no message; doing it at each show would double the time to the
// picture.
void passOnFirstPaint() noexcept {
    static bool s_bDone = false;
    if (!std::exchange(s_bDone, true)) {
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 0, 0);
    }
}

}  // namespace

unsigned CLayeredWnd::s_nInstances = 0;

CLayeredWnd::CLayeredWnd(HWND hRealWnd, IDrawTextOnLayeredWnd* pTextPainter, contrast::Tone tone)
    : m_hRealWnd(hRealWnd),
      m_nInstance(++s_nInstances),
      m_strClassName(kClassPrefix + std::to_wstring(m_nInstance)),
      m_pTextPainter(pTextPainter),
      m_tone(tone) {
    if (::IsWindow(hRealWnd) == FALSE) {
        LOG_ASSERT(L"::IsWindow(hRealWnd)");
    }
}

CLayeredWnd::~CLayeredWnd() {
    static_cast<void>(destroyWnd());  // nobody is left to report to
}

HRESULT CLayeredWnd::createWnd() {
    const HRESULT status = destroyWnd();
    if (FAILED(status)) {
        RETURN_LOGGED(status);
    }
    m_shown.reset();
    registerWndClass(m_strClassName);
    const RECT rect = screenRect(m_hRealWnd);
    m_hWnd = ::CreateWindowExW(kExStyle, m_strClassName.c_str(), nullptr, WS_POPUP, rect.left, rect.top, width(rect),
                               height(rect), m_hRealWnd, nullptr, ::GetModuleHandleW(nullptr), nullptr);
    if (m_hWnd == nullptr) {
        RETURN_LOGGED(E_FAIL);
    }
    return status;
}

HRESULT CLayeredWnd::destroyWnd() {
    if (m_hWnd == nullptr) {
        return S_OK;
    }
    if (::IsWindow(m_hWnd) != FALSE && ::DestroyWindow(m_hWnd) == FALSE) {
        LOG_STATUS(common::statusFromLastError());
    }
    m_hWnd = nullptr;
    if (::UnregisterClassW(m_strClassName.c_str(), ::GetModuleHandleW(nullptr)) == FALSE) {
        RETURN_LOGGED(common::statusFromLastError());
    }
    return S_OK;
}

HRESULT CLayeredWnd::paint(const std::vector<Gdiplus::Image*>& vecImages, const std::vector<DWORD>& vecAlphas,
                           std::vector<const RECT*>& vecDrawRects, const POINT* pPosition, int nSourceTop,
                           int nSourceHeight) try {
    RETURN_IF_FAILED(_placeWnd(pPosition));
    _prepareFrame();
    if (m_pFrame == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    if (vecDrawRects.empty()) {
        vecDrawRects.resize(vecImages.size(), nullptr);
    }
    RETURN_UNLESS(vecImages.size() == vecDrawRects.size(), L"vecImages.size() == vecDrawRects.size()", E_FAIL);
    RETURN_UNLESS(vecImages.size() == vecAlphas.size(), L"vecImages.size() == vecAlphas.size()", E_FAIL);
    RETURN_IF_FAILED(_compose({vecImages, vecAlphas, vecDrawRects, nSourceTop, nSourceHeight}));
    const common::WindowDc screenDc(nullptr);
    if (::IsWindowVisible(m_hWnd) == FALSE) {
        passOnFirstPaint();
        m_shown.reset();
        ::SetWindowPos(m_hWnd, nullptr, 0, 0, 0, 0, kShowInPlace);
    }
    const HRESULT status = updateLyrWnd(screenDc.get(), m_pFrame->dc(), pPosition);
    if (FAILED(status)) {
        LOG_STATUS(status);
    }
    return status;
} catch (...) {
    RETURN_LOGGED(common::caughtStatus());
}

HRESULT CLayeredWnd::prepare(const std::vector<Gdiplus::Image*>& vecImages, const std::vector<DWORD>& vecAlphas,
                             const std::vector<const RECT*>& vecDrawRects, int nSourceTop, int nSourceHeight) try {
    const HRESULT status = _placeWnd(nullptr);
    if (FAILED(status)) {
        return status;
    }
    _prepareFrame();
    if (m_pFrame == nullptr) {
        return E_POINTER;
    }
    return _compose({vecImages, vecAlphas, vecDrawRects, nSourceTop, nSourceHeight});
} catch (...) {
    return common::caughtStatus();
}

HRESULT CLayeredWnd::_compose(const Content& content) {
    auto signature = _signature(content);
    if (signature && signature == m_composed) {
        return S_OK;
    }
    m_composed.reset();
    ++m_nCompositions;
    bool complete = true;
    const HRESULT status = _draw(content, complete);
    if (SUCCEEDED(status)) {
        contrast::recolour(m_pFrame->pixels(), m_tone);
        m_uPixels = m_pFrame->hash();
        m_composed = complete ? std::move(signature) : std::nullopt;
    }
    return status;
}

HRESULT CLayeredWnd::_draw(const Content& content, bool& rbComplete) const {
    m_pFrame->clear();
    for (std::size_t i = 0; i < content.vecImages.size(); ++i) {
        const HRESULT status = drawImage(content.vecImages[i], content.vecAlphas[i], content.nSourceHeight,
                                         content.nSourceTop, content.vecDrawRects[i]);
        if (FAILED(status)) {
            return status;
        }
    }
    if (m_pTextPainter == nullptr) {
        return S_OK;
    }
    Gdiplus::Graphics graphics(m_pFrame->dc());
    if (graphics.GetLastStatus() == Gdiplus::OutOfMemory) {
        return E_POINTER;
    }
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeNone);
    rbComplete = SUCCEEDED(m_pTextPainter->drawText(graphics));  // a frame without its text is shown anyway
    return S_OK;
}

// Empty if equal numbers would not mean an equal frame: images whose pixels have no number, or a text without a state.
std::optional<std::vector<std::size_t>> CLayeredWnd::_signature(const Content& content) const {
    std::vector<std::size_t> numbers{contrast::state(), static_cast<std::size_t>(content.nSourceTop),
                                     static_cast<std::size_t>(content.nSourceHeight)};
    if (m_pTextPainter != nullptr) {
        const auto text = m_pTextPainter->textState();
        if (!text) {
            return std::nullopt;
        }
        numbers.push_back(*text);
    }
    for (std::size_t i = 0; i < content.vecImages.size(); ++i) {
        const auto* const stored = dynamic_cast<const StoredImage*>(content.vecImages[i]);
        if (stored == nullptr && content.vecImages[i] != nullptr) {
            return std::nullopt;
        }
        numbers.insert(numbers.end(), {stored != nullptr ? stored->master().id() : 0, content.vecAlphas[i]});
        const RECT* const rect = content.vecDrawRects[i];
        numbers.push_back(rect != nullptr ? 1 : 0);
        for (const LONG side :
             rect != nullptr ? std::array{rect->left, rect->top, rect->right, rect->bottom} : std::array<LONG, 4>{}) {
            numbers.push_back(static_cast<std::size_t>(side));
        }
    }
    return numbers;
}

HRESULT CLayeredWnd::paint(Gdiplus::Image* pImage, DWORD dwAlpha, const POINT* pPosition, const RECT* pDrawRect) try {
    if (::IsWindowVisible(m_hRealWnd) == FALSE) {
        return S_FALSE;
    }
    std::vector<const RECT*> vecDrawRects{pDrawRect};
    return paint({pImage}, {dwAlpha}, vecDrawRects, pPosition, 0, 0);
} catch (...) {
    RETURN_LOGGED(common::caughtStatus());
}

void CLayeredWnd::hide() const {
    if (::IsWindowVisible(m_hWnd) != FALSE) {
        ::SetWindowPos(m_hWnd, nullptr, 0, 0, 0, 0, kHideInPlace);
    }
}

// Above the shadowed window, or with its corner at the position. A popup that was destroyed with its owner is created
// again.
HRESULT CLayeredWnd::_placeWnd(const POINT* pPosition) {
    if (::IsWindow(m_hWnd) == FALSE) {
        return createWnd();
    }
    RECT rect = screenRect(m_hRealWnd);
    if (pPosition != nullptr) {
        ::OffsetRect(&rect, pPosition->x - rect.left, pPosition->y - rect.top);
    }
    const RECT now = screenRect(m_hWnd);
    if (::EqualRect(&rect, &now) == FALSE) {
        ::MoveWindow(m_hWnd, rect.left, rect.top, width(rect), height(rect), FALSE);
    }
    return S_OK;
}

HRESULT CLayeredWnd::drawImage(Gdiplus::Image* pImage, DWORD dwAlpha, int nSourceHeight, int nSourceTop,
                               const RECT* pDrawRect) const {
    RECT destination{};
    if (pDrawRect != nullptr) {
        destination = *pDrawRect;
    } else {
        ::GetClientRect(m_hWnd, &destination);
    }
    PixelSurface surface(m_pFrame->pixels());
    constexpr DWORD kOpaque = 255;
    const HRESULT status =
        composeImage(surface, pImage, contrast::used() ? kOpaque : dwAlpha, {nSourceTop, nSourceHeight}, destination);
    if (FAILED(status)) {
        LOG_STATUS(status);
    }
    return status;
}

// Shows what has been composed in the memory device context. If the same frame is already on the screen at the same
// place, nothing is passed on: that would cost more than the rest of the paint. A popup that was hidden gets its frame
// again, even if the window system has kept it: some show it only upon a message that comes much later.
HRESULT CLayeredWnd::updateLyrWnd(HDC hScreenDc, HDC hMemoryDc, const POINT* pPosition) {
    const RECT rect = screenRect(m_hRealWnd);
    SIZE size{width(rect), height(rect)};
    POINT target = pPosition != nullptr ? *pPosition : POINT{rect.left, rect.top};
    const Shown shown{m_uPixels, target.x, target.y, size.cx, size.cy};
    // A frame with a place of its own was moved with its window meanwhile.
    const RECT now = screenRect(m_hWnd);
    if (m_shown && *m_shown == shown && now.left == target.x && now.top == target.y) {
        return S_OK;
    }
    m_shown.reset();
    POINT source{};
    BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    if (::UpdateLayeredWindow(m_hWnd, hScreenDc, &target, &size, hMemoryDc, &source, 0, &blend, ULW_ALPHA) == FALSE) {
        RETURN_LOGGED(E_FAIL);
    }
    m_shown = shown;
    return S_OK;
}

// As large as the popup.
void CLayeredWnd::_prepareFrame() {
    const RECT rect = screenRect(m_hWnd);
    if (m_pFrame != nullptr && m_pFrame->hasSize(width(rect), height(rect))) {
        return;
    }
    m_composed.reset();
    m_pFrame = common::tryMake<common::FrameBuffer>(width(rect), height(rect));
    if (m_pFrame != nullptr && !*m_pFrame) {
        m_pFrame.reset();
    }
}

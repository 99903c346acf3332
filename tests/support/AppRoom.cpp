#include "support/AppRoom.h"

#include <stdexcept>

#include "support/AppSeams.h"

namespace support {

namespace {

void require(bool condition, const char* what) {
    if (!condition) {
        throw std::runtime_error(what);
    }
}

std::wstring programFolder() {
    wchar_t path[MAX_PATH];
    const std::wstring program(path, ::GetModuleFileNameW(nullptr, path, MAX_PATH));
    return program.substr(0, program.rfind(L'\\') + 1);
}

// The defaults, which count as loaded, so that the registry is not read.
void restoreSettings() {
    QrdConfig& config = CZelConfig::getQrdConfig();
    config = QrdConfig();
    config.bLoaded = TRUE;
}

}  // namespace

AppRoom::AppRoom(double ratio) {
    restoreSettings();
    theApp.m_hInstance = ::GetModuleHandleW(nullptr);
    require(SUCCEEDED(ZelMainSeam::gdiplus().start()), "GDI+ does not start");
    ZelMainSeam::pngDll().reset(::LoadLibraryExW(artPath().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    require(static_cast<bool>(ZelMainSeam::pngDll()), "CardArt.dll is missing");

    ZelMainSeam::strip() = std::make_unique<CZelMainDlg>();
    setRatio(ratio);
    WNDCLASSW existing{};
    const bool registered = ::GetClassInfoW(theApp.m_hInstance, kStripClass, &existing) != FALSE ||
                            SUCCEEDED(ZelMainSeam::registerStripClass());
    require(registered, "the strip's class cannot be registered");
    require(strip().Create(nullptr), "the strip cannot be created");
    ZelMainSeam::hoverStrip() = std::make_unique<CZelHideDlg>(0);
    require(ZelMainSeam::hoverStrip()->Create(nullptr), "the hover strip cannot be created");
}

AppRoom::~AppRoom() {
    ZelMainSeam::strip().reset();
    ZelMainSeam::hoverStrip().reset();
    ZelMainSeam::pngDll().reset();
    ZelMainSeam::mouseOperating() = FALSE;
    pump();
    ZelMainSeam::gdiplus().stop();
    restoreSettings();
}

QrdConfig& AppRoom::config() const {
    return CZelConfig::getQrdConfig();
}

CZelMainDlg& AppRoom::strip() const {
    return *ZelMainSeam::strip();
}

HWND AppRoom::stripWindow() const {
    return strip().m_hWnd;
}

HWND AppRoom::hoverWindow() const {
    return ZelMainSeam::hoverStrip()->m_hWnd;
}

CBlackCard& AppRoom::addCard() {
    auto& cards = MainDlgSeam::cards(strip());
    cards.push_back(std::make_unique<CBlackCard>(&strip(), placement()));
    return *cards.back();
}

void AppRoom::setRatio(double ratio) {
    MainDlgSeam::placement(strip()).ratio = ratio;
}

const Placement& AppRoom::placement() const {
    return strip().placement();
}

void AppRoom::setBottom(bool bottom) {
    config().uPosition = bottom ? 1 : 0;
    MainDlgSeam::placement(strip()).bottom = bottom;
}

void AppRoom::setMouseOperating(bool operating) {
    ZelMainSeam::mouseOperating() = operating ? TRUE : FALSE;
}

void AppRoom::withoutPictures() {
    ZelMainSeam::pngDll().reset();
}

std::wstring AppRoom::artPath() {
    wchar_t path[MAX_PATH];
    const std::wstring relative = programFolder() + FENWYN_STAGE_FROM_UNIT + L"/CardArt.dll";
    return {path, ::GetFullPathNameW(relative.c_str(), MAX_PATH, path, nullptr)};
}

void pump() {
    MSG message{};
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
}

bool pumpUntil(const std::function<bool()>& condition, DWORD milliseconds) {
    for (const ULONGLONG end = ::GetTickCount64() + milliseconds; ::GetTickCount64() < end;) {
        pump();
        if (condition()) {
            return true;
        }
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
    return false;
}

std::size_t threadWindows() {
    std::size_t count = 0;
    const auto countIt = [](HWND window, LPARAM result) -> BOOL {
        wchar_t name[64] = {};
        ::GetClassNameW(window, name, 64);
        *reinterpret_cast<std::size_t*>(result) += ::lstrcmpW(name, L"IME") == 0 ? 0U : 1U;
        return TRUE;
    };
    ::EnumThreadWindows(::GetCurrentThreadId(), countIt, reinterpret_cast<LPARAM>(&count));
    return count;
}

RECT windowRect(HWND window) {
    RECT rect{};
    ::GetWindowRect(window, &rect);
    return rect;
}

HWND foreignWindow() {
    return ::GetDesktopWindow();
}

}  // namespace support

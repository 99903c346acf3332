#include "system/OverlayShare.h"

#include "common/ObjectSecurity.h"

namespace win {

namespace {

constexpr wchar_t kSectionName[] = L"Local\\FenwynOverlay";
constexpr wchar_t kCursorEventName[] = L"Local\\FenwynOverlayCursorChanged";
constexpr wchar_t kNumericEventName[] = L"Local\\FenwynOverlayNumericChanged";

constexpr unsigned kProcessShift = 32;

LONG64 wordOf(OverlayKind kind) {
    const auto process = static_cast<ULONGLONG>(::GetCurrentProcessId());
    return static_cast<LONG64>(process << kProcessShift | static_cast<ULONGLONG>(kind));
}
OverlayKind kindOf(LONG64 word) {
    return static_cast<OverlayKind>(static_cast<LONG>(word));
}
DWORD processOf(LONG64 word) {
    return static_cast<DWORD>(static_cast<ULONGLONG>(word) >> kProcessShift);
}

bool lives(DWORD dwProcess) {
    if (dwProcess == ::GetCurrentProcessId()) {
        return true;
    }
    const common::UniqueHandle hProcess(::OpenProcess(SYNCHRONIZE, FALSE, dwProcess));
    return hProcess && ::WaitForSingleObject(hProcess.get(), 0) == WAIT_TIMEOUT;
}

}  // namespace

COverlayShare::COverlayShare()
    : m_hSection(::CreateFileMappingW(INVALID_HANDLE_VALUE, common::OnlyForTheUser().get(), PAGE_READWRITE, 0,
                                      sizeof(LONG64), kSectionName)),
      m_hCursorChanged(::CreateEventW(common::OnlyForTheUser().get(), FALSE, FALSE, kCursorEventName)),
      m_hNumericChanged(::CreateEventW(common::OnlyForTheUser().get(), FALSE, FALSE, kNumericEventName)) {
    if (m_hSection) {
        m_pWord = static_cast<volatile LONG64*>(
            ::MapViewOfFile(m_hSection.get(), FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, sizeof(LONG64)));
    }
}

COverlayShare::~COverlayShare() {
    if (m_pWord != nullptr) {
        ::UnmapViewOfFile(const_cast<LONG64*>(m_pWord));
    }
}

LONG64 COverlayShare::_read() const {
    return ::InterlockedCompareExchange64(m_pWord, 0, 0);
}

OverlayKind COverlayShare::current() const {
    const LONG64 word = _read();
    return lives(processOf(word)) ? kindOf(word) : OverlayKind::None;
}

bool COverlayShare::mine(OverlayKind kind) const {
    return _read() == wordOf(kind);
}

void COverlayShare::take(OverlayKind kind) {
    ::InterlockedExchange64(m_pWord, wordOf(kind));
    _tell(OverlayKind::Cursor);
    _tell(OverlayKind::Numeric);
}

void COverlayShare::end(OverlayKind kind) {
    const LONG64 word = _read();
    if (kindOf(word) == kind && ::InterlockedCompareExchange64(m_pWord, 0, word) == word) {
        _tell(kind);
    }
}

HANDLE COverlayShare::changed(OverlayKind kind) const {
    return kind == OverlayKind::Cursor ? m_hCursorChanged.get() : m_hNumericChanged.get();
}

void COverlayShare::_tell(OverlayKind kind) const {
    ::SetEvent(changed(kind));
}

}  // namespace win

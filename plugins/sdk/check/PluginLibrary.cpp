#include "PluginLibrary.h"

#include <atomic>
#include <cmath>

#include "common/LibrarySearch.h"

namespace check {

namespace {

std::atomic<const char*> g_pszInProgress = nullptr;

std::wstring loadFailure(DWORD error) {
    switch (error) {
        case ERROR_MOD_NOT_FOUND:
            return L"the file, or a library that it needs, is not there";
        case ERROR_BAD_EXE_FORMAT:
            return sizeof(void*) == 8 ? L"it is no 64-bit library" : L"it is no 32-bit library";
        case ERROR_DLL_INIT_FAILED:
            return L"its DllMain refused";
        default:
            return L"system error " + std::to_wstring(error);
    }
}

// Whether a name is the wanted one with decoration: _Name@8, ?Name@@..., _Z10Name...
bool isDecorated(const std::string& name, const char* wanted) {
    const std::size_t at = name.find(wanted);
    if (at == std::string::npos || name == wanted) {
        return false;
    }
    const char after = name.c_str()[at + std::strlen(wanted)];
    const bool wholeWord = after == '\0' || after == '@' || name.starts_with("_Z");
    return wholeWord && (at > 0 ? name[0] == '_' || name[0] == '?' : after == '@');
}

}  // namespace

const char* exportInProgress() noexcept {
    return g_pszInProgress;
}

CPluginLibrary::CallScope::CallScope(CPluginLibrary& library, const char* exportName)
    : m_library(library), m_pszName(exportName) {
    g_pszInProgress = exportName;
    QueryPerformanceCounter(&m_start);
}

CPluginLibrary::CallScope::~CallScope() {
    LARGE_INTEGER end{};
    LARGE_INTEGER perSecond{};
    QueryPerformanceCounter(&end);
    QueryPerformanceFrequency(&perSecond);
    g_pszInProgress = nullptr;
    const double duration =
        static_cast<double>(end.QuadPart - m_start.QuadPart) * 1000.0 / static_cast<double>(perSecond.QuadPart);
    m_library.m_report.answers().calls.push_back({m_pszName, duration});
    if (duration > kSlowCall) {
        m_library.m_report.warning(wide(m_pszName) + L" took " + std::to_wstring(std::lround(duration)) +
                                   L" ms: the user interface stands still for that long.");
    }
}

bool CPluginLibrary::load(const std::wstring& path) {
    m_hModule = loadLibraryByPath(path);
    if (!m_hModule) {
        m_report.error(L"The library cannot be loaded: " + loadFailure(GetLastError()) + L".");
    }
    return static_cast<bool>(m_hModule);
}

void CPluginLibrary::unload() {
    g_pszInProgress = "FreeLibrary";
    m_hModule.reset();
    g_pszInProgress = nullptr;
}

bool CPluginLibrary::requireExports(const std::array<const char*, fenwyn::kMaxExports>& names) {
    bool complete = true;
    for (const char* const name : names) {
        if (name == nullptr || has(name)) {
            continue;
        }
        complete = false;
        const std::wstring similar = _similarName(name);
        m_report.error(L"The export " + wide(name) + L" is missing." +
                       (similar.empty() ? L""
                                        : L" There is \"" + similar +
                                              L"\": export the plain name (extern \"C\", and a .def file or "
                                              L"--kill-at on 32 bit)."));
    }
    return complete;
}

void CPluginLibrary::reportUnsupported(const char* initializeName, LONG result) {
    m_report.warning(wide(initializeName) + L" says that this machine does not support the function (" +
                     std::to_wstring(result) + L"): it gets no card, and nothing further was asked.");
    m_report.answers().declined = true;
    if (!has(FENWYN_GET_UNSUPPORTED_REASON)) {
        return;
    }
    CGuarded<BSTR> text(nullptr);
    CGuarded<ULONG> reserved(0);
    const LONG answer = call<FenwynGetUnsupportedReason>(FENWYN_GET_UNSUPPORTED_REASON, text.out(), reserved.out());
    text.checkGuard(m_report, FENWYN_GET_UNSUPPORTED_REASON, L"text");
    reserved.checkGuard(m_report, FENWYN_GET_UNSUPPORTED_REASON, L"reserved");
    const UINT length = SysStringLen(text.value());
    if (answer == FENWYN_OK && length != 0) {
        m_report.answers().reason = text.value();
        m_report.note(std::wstring(L"Its reason: ") + text.value());
    }
    if (length > kLongestReason) {
        m_report.warning(L"GetUnsupportedReason gives " + std::to_wstring(length) +
                         L" characters: the log cuts its lines, and the end is lost.");
    }
    SysFreeString(text.value());
}

std::wstring CPluginLibrary::_similarName(const char* exportName) const {
    for (const std::string& name : _exportedNames()) {
        if (isDecorated(name, exportName)) {
            return wide(name.c_str());
        }
    }
    return {};
}

// Reads the export directory of the loaded image, whose addresses the loader has checked.
std::vector<std::string> CPluginLibrary::_exportedNames() const {
    const auto* const base = reinterpret_cast<const BYTE*>(m_hModule.get());
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& place = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    std::vector<std::string> names;
    if (place.Size == 0) {
        return names;
    }
    const auto* const directory = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + place.VirtualAddress);
    const auto* const table = reinterpret_cast<const DWORD*>(base + directory->AddressOfNames);
    for (DWORD i = 0; i < directory->NumberOfNames; ++i) {
        names.emplace_back(reinterpret_cast<const char*>(base + table[i]));
    }
    return names;
}

}  // namespace check

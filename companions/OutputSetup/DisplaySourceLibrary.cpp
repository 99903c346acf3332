#include "DisplaySourceLibrary.h"

#include <algorithm>

#include "FunctionListRoot.h"
#include "common/LibrarySearch.h"

namespace setup {
namespace {

constexpr ULONG kMostDisplays = 16;

// Nobody promises that the library has ended its text.
template <std::size_t size>
std::wstring textOf(const wchar_t (&field)[size]) {
    return {field, std::find(field, field + size, L'\0')};
}

template <typename Function>
Function exportOf(const common::UniqueModule& module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module.get(), name)));
}

}  // namespace

std::wstring displaySourcePath() {
    wchar_t path[1024] = L"";
    DWORD bytes = sizeof path;
    DWORD type = REG_NONE;
    // Expanded here: RegGetValue of some systems does not return from a damaged text that it is to expand.
    const LSTATUS error = ::RegGetValueW(fenwyn::functionListRoot(), FENWYN_REG_PRODUCT, DISPLAY_SOURCE_VALUE,
                                         RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND, &type, path, &bytes);
    if (error != ERROR_SUCCESS || type != REG_EXPAND_SZ) {
        return error == ERROR_SUCCESS ? path : L"";
    }
    wchar_t expanded[1024] = L"";
    const DWORD length = ::ExpandEnvironmentStringsW(path, expanded, static_cast<DWORD>(std::size(expanded)));
    return length != 0 && length <= std::size(expanded) ? expanded : L"";
}

CDisplaySource::CDisplaySource(common::UniqueModule module)
    : m_module(std::move(module)),
      m_pfnGetDisplays(exportOf<DisplaySourceGetDisplays>(m_module, DISPLAY_SOURCE_GET_DISPLAYS)),
      m_pfnSetArrangement(exportOf<DisplaySourceSetArrangement>(m_module, DISPLAY_SOURCE_SET_ARRANGEMENT)) {}

std::shared_ptr<CDisplaySource> CDisplaySource::load(const std::wstring& path, DWORD& error) {
    common::UniqueModule module = loadLibraryByPath(path);
    if (!module) {
        error = ::GetLastError();
        return nullptr;
    }
    std::shared_ptr<CDisplaySource> source(new CDisplaySource(std::move(module)));
    if (source->m_pfnGetDisplays == nullptr || source->m_pfnSetArrangement == nullptr) {
        error = ERROR_PROC_NOT_FOUND;
        return nullptr;
    }
    return source;
}

std::vector<Display> CDisplaySource::displays() const {
    DisplaySourceDisplay written[kMostDisplays] = {};
    ULONG count = 0;
    if (m_pfnGetDisplays(written, kMostDisplays, &count) != ERROR_SUCCESS) {
        return {};
    }
    std::vector<Display> displays;
    for (ULONG i = 0; i < std::min(count, kMostDisplays); ++i) {
        const DisplaySourceDisplay& display = written[i];
        displays.push_back(
            {{},
             textOf(display.szName),
             textOf(display.szConnector),
             display.bBuiltIn != 0,
             {display.lLeft, display.lTop, display.lLeft + display.lWidth, display.lTop + display.lHeight}});
    }
    return displays;
}

LONG CDisplaySource::apply(LONG arrangement) const {
    return m_pfnSetArrangement(arrangement);
}

}  // namespace setup

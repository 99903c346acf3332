#include "Logic/Faults/CallSection.h"

#include "common/Handle.h"

namespace faults {

namespace {

constexpr DWORD kMagic = 0x31437746;

Section g_inMemory{};
Section* g_pSection = &g_inMemory;

void startNew(Section& rSection) noexcept {
    rSection = {};
    rSection.magic = kMagic;
    rSection.size = sizeof(Section);
    rSection.processId = ::GetCurrentProcessId();
    rSection.startTick = ::GetTickCount64();
    rSection.startTime = timeNow();
    rSection.running = TRUE;
}

}  // namespace

Section& section() noexcept {
    return *g_pSection;
}

bool mapSection(const wchar_t* pszFile, Section& rLeft) noexcept {
    rLeft = {};
    // Nobody else may write it: a second instance does not get it.
    common::UniqueFile file(::CreateFileW(pszFile, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        return false;
    }
    const common::UniqueHandle mapping(
        ::CreateFileMappingW(file.get(), nullptr, PAGE_READWRITE, 0, sizeof(Section), nullptr));
    void* const pView =
        mapping ? ::MapViewOfFile(mapping.get(), FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, sizeof(Section)) : nullptr;
    if (pView == nullptr) {
        return false;
    }
    // The handle is kept for the life of the process: it keeps others out.
    static_cast<void>(file.release());
    auto& rSection = *static_cast<Section*>(pView);
    if (rSection.magic == kMagic && rSection.size == sizeof(Section)) {
        rLeft = rSection;
    }
    startNew(rSection);
    g_pSection = &rSection;
    return true;
}

const CallEntry* newestCall(DWORD dwThread) noexcept {
    return newestCall(section(), dwThread);
}

const CallEntry* newestCall(const Section& rSection, DWORD dwThread) noexcept {
    const CallEntry* pNewest = nullptr;
    for (const CallEntry& call : rSection.calls) {
        const bool bMeant = call.thread != 0 && (dwThread == 0 || call.thread == static_cast<LONG>(dwThread));
        if (bMeant && (pNewest == nullptr || call.order - pNewest->order > 0)) {
            pNewest = &call;
        }
    }
    return pNewest;
}

void widen(const CallEntry& rCall, wchar_t (&rName)[kExportChars]) noexcept {
    for (std::size_t i = 0; i < kExportChars; ++i) {
        rName[i] = static_cast<wchar_t>(static_cast<unsigned char>(rCall.name[i]));
    }
    rName[kExportChars - 1] = L'\0';
}

ULONGLONG timeNow() noexcept {
    FILETIME now{};
    ::GetSystemTimeAsFileTime(&now);
    return static_cast<ULONGLONG>(now.dwHighDateTime) << 32 | now.dwLowDateTime;
}

}  // namespace faults

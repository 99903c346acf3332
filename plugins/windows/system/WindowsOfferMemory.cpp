#include <windows.h>

#include <string>

#include "FenwynRegistry.h"
#include "keyboard/OwnModule.h"
#include "system/OfferMemory.h"

namespace win {

namespace {

// The plug-in's file name without its ending.
std::wstring ownName() {
    wchar_t path[MAX_PATH];
    const std::wstring name(path, ::GetModuleFileNameW(keyboard::ownModule(), path, MAX_PATH));
    const std::size_t start = name.rfind(L'\\') + 1;
    return name.substr(start, name.rfind(L'.') - start);
}

class CWindowsOfferMemory final : public IOfferMemory {
 public:
    std::optional<bool> offered() override {
        DWORD dwOffered = 0;
        DWORD dwBytes = sizeof(dwOffered);
        return ::RegGetValueW(HKEY_CURRENT_USER, FENWYN_REG_OFFERED, m_strName.c_str(), RRF_RT_REG_DWORD | RRF_NOEXPAND,
                              nullptr, &dwOffered, &dwBytes) == ERROR_SUCCESS
                   ? std::optional<bool>(dwOffered != 0)
                   : std::nullopt;
    }

    void store(bool bOffered) override {
        const DWORD dwOffered = bOffered ? 1 : 0;
        ::RegSetKeyValueW(HKEY_CURRENT_USER, FENWYN_REG_OFFERED, m_strName.c_str(), REG_DWORD, &dwOffered,
                          sizeof(dwOffered));
    }

 private:
    const std::wstring m_strName = ownName();
};

}  // namespace

std::shared_ptr<IOfferMemory> makeWindowsOfferMemory() {
    return std::make_shared<CWindowsOfferMemory>();
}

}  // namespace win

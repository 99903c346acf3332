#include <windows.h>

#include <cwchar>
#include <string>

#include "DisplayQuestion.h"
#include "FenwynRegistry.h"
#include "common/Handle.h"
#include "common/ObjectSecurity.h"
#include "system/LastGood.h"

namespace win {

namespace {

// LastGood, REG_MULTI_SZ: a text for each screen, "left top right bottom path". Unsettled, REG_DWORD: 1 while a change
// waits for its confirmation.
constexpr wchar_t kKey[] = FENWYN_REG_PRODUCT L"\\Displays";
constexpr wchar_t kLastGood[] = L"LastGood";
constexpr wchar_t kUnsettled[] = L"Unsettled";

void writeUnsettled(DWORD dwUnsettled) {
    ::RegSetKeyValueW(HKEY_CURRENT_USER, kKey, kUnsettled, REG_DWORD, &dwUnsettled, sizeof(dwUnsettled));
}

std::wstring textOf(const PlacedScreen& rScreen) {
    std::wstring text;
    for (const LONG lNumber : {rScreen.place.left, rScreen.place.top, rScreen.place.right, rScreen.place.bottom}) {
        text += std::to_wstring(lNumber) + L" ";
    }
    return text + rScreen.path;
}

std::optional<PlacedScreen> screenOf(const wchar_t* pszText) {
    LONG numbers[4]{};
    const wchar_t* pszNext = pszText;
    for (LONG& rNumber : numbers) {
        wchar_t* pszEnd = nullptr;
        rNumber = std::wcstol(pszNext, &pszEnd, 10);
        if (pszEnd == pszNext || *pszEnd != L' ') {
            return std::nullopt;
        }
        pszNext = pszEnd + 1;
    }
    return PlacedScreen{pszNext, {numbers[0], numbers[1], numbers[2], numbers[3]}};
}

class CWindowsLastGood final : public ILastGood {
 public:
    void save(const Layout& rLayout) override {
        std::wstring texts;
        for (const PlacedScreen& screen : rLayout) {
            texts += textOf(screen) + L'\0';
        }
        // The text's own zero ends the list.
        ::RegSetKeyValueW(HKEY_CURRENT_USER, kKey, kLastGood, REG_MULTI_SZ, texts.c_str(),
                          static_cast<DWORD>((texts.size() + 1) * sizeof(wchar_t)));
        m_hAsking.reset(::CreateEventW(common::OnlyForTheUser().get(), TRUE, FALSE, fenwyn::kDisplayQuestionEvent));
        writeUnsettled(1);
    }

    void settle() override {
        writeUnsettled(0);
        m_hAsking.reset();
    }

    std::optional<Layout> load() override {
        DWORD dwBytes = 0;
        if (::RegGetValueW(HKEY_CURRENT_USER, kKey, kLastGood, RRF_RT_REG_MULTI_SZ | RRF_NOEXPAND, nullptr, nullptr,
                           &dwBytes) != ERROR_SUCCESS) {
            return std::nullopt;
        }
        std::wstring texts(dwBytes / sizeof(wchar_t) + 2, L'\0');
        dwBytes = static_cast<DWORD>(texts.size() * sizeof(wchar_t));
        if (::RegGetValueW(HKEY_CURRENT_USER, kKey, kLastGood, RRF_RT_REG_MULTI_SZ | RRF_NOEXPAND, nullptr,
                           texts.data(), &dwBytes) != ERROR_SUCCESS) {
            return std::nullopt;
        }
        Layout layout;
        for (const wchar_t* psz = texts.c_str(); *psz != L'\0'; psz += std::wcslen(psz) + 1) {
            std::optional<PlacedScreen> screen = screenOf(psz);
            if (!screen) {
                return std::nullopt;
            }
            layout.push_back(std::move(*screen));
        }
        return layout.empty() ? std::nullopt : std::optional<Layout>(std::move(layout));
    }

    bool wasLeftUnsettled() override {
        DWORD dwUnsettled = 0;
        DWORD dwBytes = sizeof(dwUnsettled);
        if (::RegGetValueW(HKEY_CURRENT_USER, kKey, kUnsettled, RRF_RT_REG_DWORD | RRF_NOEXPAND, nullptr, &dwUnsettled,
                           &dwBytes) != ERROR_SUCCESS ||
            dwUnsettled == 0) {
            return false;
        }
        const common::UniqueHandle hAsking(::OpenEventW(SYNCHRONIZE, FALSE, fenwyn::kDisplayQuestionEvent));
        return !hAsking;
    }

 private:
    common::UniqueHandle m_hAsking;
};

}  // namespace

std::unique_ptr<ILastGood> makeWindowsLastGood() {
    return std::make_unique<CWindowsLastGood>();
}

}  // namespace win

#include <windows.h>

#include <oleauto.h>
#include <wbemidl.h>

#include <string>

#include "common/Handle.h"
#include "system/Backlight.h"
#include "system/Com.h"

namespace win {

namespace {

constexpr CLSID kLocator = {0x4590F811, 0x1D3A, 0x11D0, {0x89, 0x1F, 0x00, 0xAA, 0x00, 0x4B, 0x2E, 0x24}};
constexpr IID kIidLocator = {0xDC12A687, 0x737F, 0x11CF, {0x88, 0x4D, 0x00, 0xAA, 0x00, 0x4B, 0x2E, 0x24}};

constexpr long kAnswerMs = 2000;   // of the service, for each object
constexpr ULONG kFadeSeconds = 0;  // at once: every step of the slider must be visible

struct BstrTraits : common::NullIsNone<BSTR> {
    static void close(type value) noexcept { ::SysFreeString(value); }
};
using UniqueBstr = common::UniqueAny<BstrTraits>;

UniqueBstr bstr(const wchar_t* pszText) {
    return UniqueBstr(::SysAllocString(pszText));
}

class CVariant {
 public:
    CVariant() { ::VariantInit(&m_value); }
    ~CVariant() { ::VariantClear(&m_value); }
    CVariant(const CVariant&) = delete;
    CVariant& operator=(const CVariant&) = delete;

    [[nodiscard]] VARIANT* put() { return &m_value; }
    [[nodiscard]] const VARIANT& get() const { return m_value; }

 private:
    VARIANT m_value{};
};

CComRef<IWbemServices> connect() {
    CComRef<IWbemLocator> locator;
    CComRef<IWbemServices> services;
    if (SUCCEEDED(::CoCreateInstance(kLocator, nullptr, CLSCTX_INPROC_SERVER, kIidLocator, locator.putVoid())) &&
        SUCCEEDED(locator->ConnectServer(bstr(L"root\\wmi").get(), nullptr, nullptr, nullptr, 0, nullptr, nullptr,
                                         services.put()))) {
        // The service works in the name of the user.
        ::CoSetProxyBlanket(services.get(), RPC_C_AUTHN_WINNT, RPC_C_AUTHZ_NONE, nullptr, RPC_C_AUTHN_LEVEL_CALL,
                            RPC_C_IMP_LEVEL_IMPERSONATE, nullptr, EOAC_NONE);
    }
    return services;
}

// The first active instance of a class: the built-in screen. There may be inactive ones of former screens.
CComRef<IWbemClassObject> activeInstance(IWbemServices& rServices, const wchar_t* pszClass) {
    CComRef<IEnumWbemClassObject> found;
    CComRef<IWbemClassObject> instance;
    const std::wstring query = std::wstring(L"SELECT * FROM ") + pszClass + L" WHERE Active = TRUE";
    if (SUCCEEDED(rServices.ExecQuery(bstr(L"WQL").get(), bstr(query.c_str()).get(),
                                      WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY, nullptr, found.put())) &&
        found) {
        ULONG uReturned = 0;
        found->Next(kAnswerMs, 1, instance.put(), &uReturned);
    }
    return instance;
}

std::optional<std::vector<BYTE>> byteArray(const VARIANT& rValue) {
    if (rValue.vt != (VT_ARRAY | VT_UI1) || rValue.parray == nullptr) {
        return std::nullopt;
    }
    LONG lFirst = 0;
    LONG lLast = -1;
    ::SafeArrayGetLBound(rValue.parray, 1, &lFirst);
    ::SafeArrayGetUBound(rValue.parray, 1, &lLast);
    std::vector<BYTE> bytes;
    for (LONG i = lFirst; i <= lLast; ++i) {
        BYTE nByte = 0;
        if (SUCCEEDED(::SafeArrayGetElement(rValue.parray, &i, &nByte))) {
            bytes.push_back(nByte);
        }
    }
    return bytes;
}

class CWindowsBacklight final : public IBacklight {
 public:
    std::optional<Backlight> read() override {
        const CComScope com(COINIT_MULTITHREADED);
        const CComRef<IWbemServices> services = connect();
        const CComRef<IWbemClassObject> screen =
            services ? activeInstance(*services.get(), L"WmiMonitorBrightness") : CComRef<IWbemClassObject>();
        CVariant now;
        CVariant levels;
        if (!screen || FAILED(screen->Get(L"CurrentBrightness", 0, now.put(), nullptr, nullptr)) ||
            FAILED(screen->Get(L"Level", 0, levels.put(), nullptr, nullptr)) || now.get().vt != VT_UI1) {
            return std::nullopt;
        }
        std::optional<std::vector<BYTE>> percentages = byteArray(levels.get());
        if (!percentages || percentages->empty()) {
            return std::nullopt;
        }
        return Backlight{std::move(*percentages), now.get().bVal};
    }

    void set(BYTE nPercent) override {
        const CComScope com(COINIT_MULTITHREADED);
        const CComRef<IWbemServices> services = connect();
        if (!services) {
            return;
        }
        const CComRef<IWbemClassObject> screen = activeInstance(*services.get(), kMethods);
        const CComRef<IWbemClassObject> arguments = _arguments(*services.get(), nPercent);
        CVariant path;
        if (screen && arguments && SUCCEEDED(screen->Get(L"__PATH", 0, path.put(), nullptr, nullptr)) &&
            path.get().vt == VT_BSTR) {
            services->ExecMethod(path.get().bstrVal, bstr(kSet).get(), 0, nullptr, arguments.get(), nullptr, nullptr);
        }
    }

 private:
    static constexpr wchar_t kMethods[] = L"WmiMonitorBrightnessMethods";
    static constexpr wchar_t kSet[] = L"WmiSetBrightness";

    static CComRef<IWbemClassObject> _arguments(IWbemServices& rServices, BYTE nPercent) {
        CComRef<IWbemClassObject> methods;
        CComRef<IWbemClassObject> signature;
        CComRef<IWbemClassObject> arguments;
        if (FAILED(rServices.GetObject(bstr(kMethods).get(), 0, nullptr, methods.put(), nullptr)) || !methods ||
            FAILED(methods->GetMethod(kSet, 0, signature.put(), nullptr)) || !signature ||
            FAILED(signature->SpawnInstance(0, arguments.put()))) {
            return {};
        }
        CVariant timeout;
        timeout.put()->vt = VT_I4;  // the service's representation of a 32-bit number
        timeout.put()->lVal = static_cast<LONG>(kFadeSeconds);
        CVariant brightness;
        brightness.put()->vt = VT_UI1;
        brightness.put()->bVal = nPercent;
        arguments->Put(L"Timeout", 0, timeout.put(), 0);
        arguments->Put(L"Brightness", 0, brightness.put(), 0);
        return arguments;
    }
};

}  // namespace

std::shared_ptr<IBacklight> makeWindowsBacklight() {
    return std::make_shared<CWindowsBacklight>();
}

}  // namespace win

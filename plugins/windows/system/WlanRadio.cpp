#include "system/WlanRadio.h"

#include <windows.h>

#include <wlanapi.h>

#include <algorithm>
#include <functional>

#include "system/RuntimeLibrary.h"

namespace win {

namespace {

constexpr DWORD kClientVersion = 2;

// Server editions lack the library.
struct WlanLibrary {
    CRuntimeLibrary library{L"wlanapi.dll"};
    decltype(&::WlanOpenHandle) open = library.find<decltype(&::WlanOpenHandle)>("WlanOpenHandle");
    decltype(&::WlanCloseHandle) close = library.find<decltype(&::WlanCloseHandle)>("WlanCloseHandle");
    decltype(&::WlanEnumInterfaces) enumerate = library.find<decltype(&::WlanEnumInterfaces)>("WlanEnumInterfaces");
    decltype(&::WlanQueryInterface) query = library.find<decltype(&::WlanQueryInterface)>("WlanQueryInterface");
    decltype(&::WlanSetInterface) set = library.find<decltype(&::WlanSetInterface)>("WlanSetInterface");
    decltype(&::WlanFreeMemory) free = library.find<decltype(&::WlanFreeMemory)>("WlanFreeMemory");

    [[nodiscard]] bool complete() const {
        return open != nullptr && close != nullptr && enumerate != nullptr && query != nullptr && set != nullptr &&
               free != nullptr;
    }
};

using Visit = std::function<void(const WlanLibrary& rWlan, HANDLE hClient, const GUID& rInterface)>;

// Every interface, over its own connection to the service.
void forEachInterface(const Visit& visit) {
    const WlanLibrary wlan;
    HANDLE hClient = nullptr;
    DWORD dwVersion = 0;
    if (!wlan.complete() || wlan.open(kClientVersion, nullptr, &dwVersion, &hClient) != ERROR_SUCCESS) {
        return;
    }
    WLAN_INTERFACE_INFO_LIST* pList = nullptr;
    if (wlan.enumerate(hClient, nullptr, &pList) == ERROR_SUCCESS && pList != nullptr) {
        for (DWORD i = 0; i < pList->dwNumberOfItems; ++i) {
            visit(wlan, hClient, pList->InterfaceInfo[i].InterfaceGuid);
        }
        wlan.free(pList);
    }
    wlan.close(hClient, nullptr);
}

std::optional<WLAN_RADIO_STATE> stateOf(const WlanLibrary& rWlan, HANDLE hClient, const GUID& rInterface) {
    DWORD dwBytes = 0;
    void* pData = nullptr;
    if (rWlan.query(hClient, &rInterface, wlan_intf_opcode_radio_state, nullptr, &dwBytes, &pData, nullptr) !=
            ERROR_SUCCESS ||
        pData == nullptr) {
        return std::nullopt;
    }
    std::optional<WLAN_RADIO_STATE> state;
    if (dwBytes >= sizeof(WLAN_RADIO_STATE)) {
        state = *static_cast<const WLAN_RADIO_STATE*>(pData);
        state->dwNumberOfPhys = std::min(state->dwNumberOfPhys, static_cast<DWORD>(std::size(state->PhyRadioState)));
    }
    rWlan.free(pData);
    return state;
}

}  // namespace

std::optional<Radio> wlanRadio() {
    std::optional<Radio> radio;
    forEachInterface([&radio](const WlanLibrary& rWlan, HANDLE hClient, const GUID& rInterface) {
        const std::optional<WLAN_RADIO_STATE> state = stateOf(rWlan, hClient, rInterface);
        for (DWORD i = 0; state && i < state->dwNumberOfPhys; ++i) {
            const WLAN_PHY_RADIO_STATE& rPhy = state->PhyRadioState[i];
            const bool bHardware = rPhy.dot11HardwareRadioState != dot11_radio_state_off;
            const bool bOn = bHardware && rPhy.dot11SoftwareRadioState == dot11_radio_state_on;
            radio = Radio{RadioKind::Wlan, (radio && radio->bOn) || bOn, (radio && radio->bSwitchable) || bHardware};
        }
    });
    return radio;
}

void setWlanRadio(bool bOn) {
    forEachInterface([bOn](const WlanLibrary& rWlan, HANDLE hClient, const GUID& rInterface) {
        const std::optional<WLAN_RADIO_STATE> state = stateOf(rWlan, hClient, rInterface);
        for (DWORD i = 0; state && i < state->dwNumberOfPhys; ++i) {
            WLAN_PHY_RADIO_STATE phy = state->PhyRadioState[i];
            phy.dot11SoftwareRadioState = bOn ? dot11_radio_state_on : dot11_radio_state_off;
            rWlan.set(hClient, &rInterface, wlan_intf_opcode_radio_state, sizeof(phy), &phy, nullptr);
        }
    });
}

}  // namespace win

#include "system/BluetoothRadio.h"

#include <windows.h>

#include <inspectable.h>

#include <functional>
#include <string_view>

#include "system/Com.h"
#include "system/RuntimeLibrary.h"

namespace win {

// Not in an unnamed namespace: there the compiler would see that nobody implements them, and drop every call.
namespace radios {

// Such objects end with Release(); a virtual destructor would add an entry to their table.
// NOLINTBEGIN(cppcoreguidelines-virtual-class-destructor)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// The few required interfaces of Windows.Devices.Radios, as documented; the compiler's headers lack them. Methods that
// are not called only hold their place in the table.

enum class State : INT32 { Unknown = 0, On = 1, Off = 2, Disabled = 3 };
enum class Kind : INT32 { Other = 0, WiFi = 1, MobileBroadband = 2, Bluetooth = 3 };
enum class AsyncStatus : INT32 { Started = 0, Completed = 1, Canceled = 2, Error = 3 };

struct IAsyncState : IInspectable {
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE getId(UINT32* puId) = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE getStatus(AsyncStatus* pStatus) = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE getErrorCode(HRESULT* pResult) = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE cancel() = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE close() = 0;
};
constexpr IID kIidAsyncState = {0x00000036, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

template <typename Result>
struct IAsyncResult : IInspectable {
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE putCompleted(void* pHandler) = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE getCompleted(void** ppHandler) = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE getResults(Result* pResult) = 0;
};

struct IRadio : IInspectable {
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE setStateAsync(State state, IAsyncResult<INT32>** ppOperation) = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE addStateChanged(void* pHandler, INT64* pToken) = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE removeStateChanged(INT64 token) = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE getState(State* pState) = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE getName(void** phName) = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE getKind(Kind* pKind) = 0;
};

struct IRadioList : IInspectable {
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE getAt(UINT32 uIndex, IRadio** ppRadio) = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE getSize(UINT32* puSize) = 0;
};

struct IRadioStatics : IInspectable {
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE getRadiosAsync(IAsyncResult<IRadioList*>** ppOperation) = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE getDeviceSelector(void** phSelector) = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE fromIdAsync(void* hId, void** ppOperation) = 0;
    [[nodiscard]] virtual HRESULT STDMETHODCALLTYPE requestAccessAsync(IAsyncResult<INT32>** ppOperation) = 0;
};
constexpr IID kIidRadioStatics = {0x5FB6A12E, 0x67CB, 0x46AE, {0xAA, 0xE9, 0x65, 0x91, 0x9F, 0x86, 0xEF, 0xF4}};
constexpr std::wstring_view kRadioClass = L"Windows.Devices.Radios.Radio";

#pragma GCC diagnostic pop
// NOLINTEND(cppcoreguidelines-virtual-class-destructor)

}  // namespace radios

namespace {

using namespace radios;

constexpr INT32 kAllowed = 1;  // of the access that a program must request
constexpr int kLooks = 100;    // at a pending call, one every kLookMs
constexpr DWORD kLookMs = 20;

// The result of an asynchronous call; a failure if it does not arrive in time.
template <typename Result>
[[nodiscard]] HRESULT await(IAsyncResult<Result>& rOperation, Result* pResult) {
    CComRef<IAsyncState> state;
    HRESULT status = rOperation.QueryInterface(kIidAsyncState, state.putVoid());
    AsyncStatus progress = AsyncStatus::Started;
    for (int i = 0; SUCCEEDED(status) && progress == AsyncStatus::Started && i < kLooks; ++i) {
        status = state->getStatus(&progress);
        if (SUCCEEDED(status) && progress == AsyncStatus::Started) {
            ::Sleep(kLookMs);
        }
    }
    if (FAILED(status)) {
        return status;
    }
    return progress == AsyncStatus::Completed ? rOperation.getResults(pResult) : E_FAIL;
}

// The functions of newer systems that create such objects.
struct RuntimeLibraries {
    CRuntimeLibrary library{L"combase.dll"};
    using Create = HRESULT(WINAPI*)(const WCHAR*, UINT32, void**);
    using Delete = HRESULT(WINAPI*)(void*);
    using Factory = HRESULT(WINAPI*)(void*, REFIID, void**);
    Create createString = library.find<Create>("WindowsCreateString");
    Delete deleteString = library.find<Delete>("WindowsDeleteString");
    Factory factory = library.find<Factory>("RoGetActivationFactory");

    [[nodiscard]] bool complete() const {
        return createString != nullptr && deleteString != nullptr && factory != nullptr;
    }
};

CComRef<IRadioStatics> radioStatics(const RuntimeLibraries& rRuntime) {
    CComRef<IRadioStatics> statics;
    void* hClass = nullptr;
    if (rRuntime.complete() &&
        SUCCEEDED(rRuntime.createString(kRadioClass.data(), static_cast<UINT32>(kRadioClass.size()), &hClass))) {
        rRuntime.factory(hClass, kIidRadioStatics, statics.putVoid());
        rRuntime.deleteString(hClass);
    }
    return statics;
}

bool mayChange(IRadioStatics& rStatics) {
    CComRef<IAsyncResult<INT32>> operation;
    INT32 nAccess = 0;
    return SUCCEEDED(rStatics.requestAccessAsync(operation.put())) && operation &&
           SUCCEEDED(await(*operation.get(), &nAccess)) && nAccess == kAllowed;
}

// Calls `visit` with each Bluetooth radio.
void forEachRadio(IRadioStatics& rStatics, const std::function<void(IRadio&)>& visit) {
    CComRef<IAsyncResult<IRadioList*>> operation;
    CComRef<IRadioList> list;
    UINT32 uSize = 0;
    if (FAILED(rStatics.getRadiosAsync(operation.put())) || !operation || FAILED(await(*operation.get(), list.put())) ||
        !list || FAILED(list->getSize(&uSize))) {
        return;
    }
    for (UINT32 i = 0; i < uSize; ++i) {
        CComRef<IRadio> radio;
        Kind kind = Kind::Other;
        if (SUCCEEDED(list->getAt(i, radio.put())) && radio && SUCCEEDED(radio->getKind(&kind)) &&
            kind == Kind::Bluetooth) {
            visit(*radio.get());
        }
    }
}

}  // namespace

std::optional<Radio> bluetoothRadio() {
    const CComScope com(COINIT_MULTITHREADED);
    const RuntimeLibraries runtime;
    const CComRef<IRadioStatics> statics = radioStatics(runtime);
    std::optional<Radio> found;
    if (statics) {
        forEachRadio(*statics.get(), [&found](IRadio& rRadio) {
            State state = State::Unknown;
            rRadio.getState(&state);
            const bool bOn = state == State::On;
            const bool bSwitchable = bOn || state == State::Off;
            found =
                Radio{RadioKind::Bluetooth, (found && found->bOn) || bOn, (found && found->bSwitchable) || bSwitchable};
        });
    }
    return found;
}

void setBluetoothRadio(bool bOn) {
    const CComScope com(COINIT_MULTITHREADED);
    const RuntimeLibraries runtime;
    const CComRef<IRadioStatics> statics = radioStatics(runtime);
    if (!statics || !mayChange(*statics.get())) {
        return;
    }
    forEachRadio(*statics.get(), [bOn](IRadio& rRadio) {
        CComRef<IAsyncResult<INT32>> operation;
        INT32 nResult = 0;
        if (SUCCEEDED(rRadio.setStateAsync(bOn ? State::On : State::Off, operation.put())) && operation) {
            // The result is read afterwards.
            static_cast<void>(await(*operation.get(), &nResult));
        }
    });
}

}  // namespace win

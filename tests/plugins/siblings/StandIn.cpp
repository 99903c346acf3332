#include "StandIn.h"

#include "CallRecord.h"

namespace standin {

namespace {

constexpr wchar_t kKey[] = L"SOFTWARE\\KESTOVA\\Fenwyn Test\\Sibling\\" STANDIN_NAME;

Control g_control{};

LONG configuredResult(const wchar_t* exportName, LONG fallback) {
    DWORD result = 0;
    DWORD bytes = sizeof result;
    const std::wstring value = std::wstring(exportName) + L".Result";
    const LSTATUS error =
        RegGetValueW(HKEY_CURRENT_USER, kKey, value.c_str(), RRF_RT_REG_DWORD, nullptr, &result, &bytes);
    return error == ERROR_SUCCESS ? static_cast<LONG>(result) : fallback;
}

std::wstring recordFile() {
    wchar_t file[1024];
    DWORD bytes = sizeof file;
    const LSTATUS error = RegGetValueW(HKEY_CURRENT_USER, kKey, L"RecordFile", RRF_RT_REG_SZ, nullptr, file, &bytes);
    return error == ERROR_SUCCESS ? std::wstring(file) : std::wstring();
}

void initialise() {
    g_control = {};
    g_control.start.result = configuredResult(L"Start", 0);
    g_control.enableHotkey.result = configuredResult(L"EnableHotkey", 0);
    g_control.stop.result = configuredResult(L"Stop", 0);
    g_control.cancelQueryEvent.result = configuredResult(L"CancelQueryEvent", 0);
    g_control.installHook.result = configuredResult(L"InstallHook", TRUE);
}

}  // namespace

Control& control() {
    return g_control;
}

LONG answer(Export& entry, const wchar_t* exportName) {
    InterlockedIncrement(&entry.calls);
    if (g_control.called != nullptr) {
        g_control.called(exportName);
    }
    if (const std::wstring file = recordFile(); !file.empty()) {
        sim::appendCall(file, {STANDIN_NAME, exportName, {L"mode " + std::to_wstring(::GetErrorMode())}, entry.result});
    }
    return entry.result;
}

}  // namespace standin

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*);
standin::Control* WINAPI StandInControl();

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
    if (reason == DLL_PROCESS_ATTACH) {
        standin::initialise();
    }
    return TRUE;
}

standin::Control* WINAPI StandInControl() {
    return &standin::control();
}

}  // extern "C"

// What a plug-in leaves changed is put back, with a line that names it.
#include <objbase.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Logic/Faults/PluginCall.h"
#include "support/LogCapture.h"

namespace {

using DpiContext = HANDLE(WINAPI*)(HANDLE);

DpiContext setDpiContext() {
    return reinterpret_cast<DpiContext>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"user32.dll"), "SetThreadDpiAwarenessContext")));
}

HRESULT ownApartment() {
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    return ::CoGetApartmentType(&type, &qualifier);
}

std::wstring folderNow() {
    wchar_t folder[MAX_PATH] = L"";
    ::GetCurrentDirectoryW(MAX_PATH, folder);
    return folder;
}

using Lines = std::vector<std::wstring>;

class CallerState : public testing::Test {
 protected:
    using Spoil = LONG(WINAPI*)(LONG, ULONG*);
    using Export = faults::CPluginExport<Spoil>;

    // The lines about what was put back.
    Lines call(Spoil pfSpoil, const char* pszName = "SelectItem") {
        m_log.clear();
        const faults::PluginId plugin = faults::knowPlugin(L"C:\\x\\State.dll", L"Mute", L"Ton");
        ULONG uReserved = 0;
        EXPECT_EQ(Export(reinterpret_cast<FARPROC>(reinterpret_cast<void*>(pfSpoil)), plugin, pszName)(0, &uReserved),
                  7);
        const std::wstring name(pszName, pszName + std::string(pszName).size());
        Lines found;
        for (const std::wstring& line : m_log.lines()) {
            const std::wstring who = name + L" of function Mute, plug-in C:\\x\\State.dll, ";
            EXPECT_NE(line.find(who), std::wstring::npos) << std::string(line.begin(), line.end());
            found.push_back(line.substr(line.find(who) + who.size()));
        }
        return found;
    }

    support::LogCapture m_log{1};
};

TEST_F(CallerState, NothingIsSaidOfACallThatLeavesEverythingAsItWas) {
    EXPECT_EQ(call([](LONG, ULONG*) -> LONG { return 7; }), Lines{});
}

TEST_F(CallerState, PriorityIsPutBack) {
    const int before = ::GetThreadPriority(::GetCurrentThread());
    EXPECT_EQ(call([](LONG, ULONG*) -> LONG {
                  ::SetThreadPriority(::GetCurrentThread(), THREAD_PRIORITY_ABOVE_NORMAL);
                  return 7;
              }),
              Lines{L"has changed the priority of the thread. It is put back."});
    EXPECT_EQ(::GetThreadPriority(::GetCurrentThread()), before);
}

TEST_F(CallerState, ErrorModesArePutBack) {
    const DWORD ofThread = ::GetThreadErrorMode();
    const UINT ofProcess = ::GetErrorMode();
    EXPECT_EQ(call([](LONG, ULONG*) -> LONG {
                  ::SetThreadErrorMode(SEM_NOGPFAULTERRORBOX, nullptr);
                  ::SetErrorMode(SEM_NOOPENFILEERRORBOX);
                  return 7;
              }),
              (Lines{L"has changed the error mode of the thread. It is put back.",
                     L"has changed the error mode of the process. It is put back."}));
    EXPECT_EQ(::GetThreadErrorMode(), ofThread);
    EXPECT_EQ(::GetErrorMode(), ofProcess);
}

TEST_F(CallerState, FolderIsPutBack) {
    const std::wstring before = folderNow();
    EXPECT_EQ(call([](LONG, ULONG*) -> LONG {
                  ::SetCurrentDirectoryW(L"C:\\");
                  return 7;
              }),
              Lines{L"has changed the current folder. It is put back."});
    EXPECT_EQ(folderNow(), before);
}

TEST_F(CallerState, DpiAwarenessIsPutBack) {
    if (setDpiContext() == nullptr) {
        GTEST_SKIP() << "this system has one for the whole process only";
    }
    const HANDLE before = setDpiContext()(reinterpret_cast<HANDLE>(-2));  // that of the system
    EXPECT_EQ(call([](LONG, ULONG*) -> LONG {
                  setDpiContext()(reinterpret_cast<HANDLE>(-3));  // that of each monitor
                  return 7;
              }),
              Lines{L"has changed the DPI awareness of the thread. It is put back."});
    EXPECT_EQ(call([](LONG, ULONG*) -> LONG { return 7; }), Lines{});
    setDpiContext()(before);
}

TEST_F(CallerState, ApartmentIsLeftAndEnteredAgain) {
    ASSERT_EQ(ownApartment(), CO_E_NOTINITIALIZED);
    const Lines changed{L"has changed the COM apartment of the thread. It is put back."};
    EXPECT_EQ(call([](LONG, ULONG*) -> LONG {
                  static_cast<void>(::CoInitializeEx(nullptr, COINIT_MULTITHREADED));
                  static_cast<void>(::CoInitializeEx(nullptr, COINIT_MULTITHREADED));
                  return 7;
              }),
              changed);
    EXPECT_EQ(ownApartment(), CO_E_NOTINITIALIZED);
    ASSERT_EQ(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    EXPECT_EQ(call([](LONG, ULONG*) -> LONG {
                  ::CoUninitialize();
                  return 7;
              }),
              changed);
    EXPECT_EQ(ownApartment(), S_OK);
    ::CoUninitialize();
    EXPECT_EQ(ownApartment(), CO_E_NOTINITIALIZED);
}

TEST_F(CallerState, PluginMayHaveAnApartmentFromItsInitialisationToItsEnd) {
    EXPECT_EQ(
        call([](LONG, ULONG*) -> LONG { return SUCCEEDED(::CoInitialize(nullptr)) ? 7 : 0; }, "InitializeHotkeyDll"),
        Lines{});
    EXPECT_EQ(ownApartment(), S_OK);
    EXPECT_EQ(call([](LONG, ULONG*) -> LONG { return 7; }), Lines{});
    EXPECT_EQ(ownApartment(), S_OK);
    const auto leave = [](LONG, ULONG*) -> LONG {
        ::CoUninitialize();
        return 7;
    };
    EXPECT_EQ(call(leave, "FinalizeHotkeyDll"), Lines{});
    EXPECT_EQ(ownApartment(), CO_E_NOTINITIALIZED);
}

TEST_F(CallerState, WideWriteIsAbsorbedAndReported) {
    const Lines said{L"has written more than its out value has room for."};
    EXPECT_EQ(call([](LONG, ULONG* pOut) -> LONG {
                  ::FillMemory(pOut + 1, 4, 0xEE);
                  return 7;
              }),
              said);
    EXPECT_EQ(call([](LONG, ULONG* pOut) -> LONG {
                  *(reinterpret_cast<BYTE*>(pOut) - 1) = 1;
                  return 7;
              }),
              said);
}

TEST_F(CallerState, OutValuesArriveAndAByteHasRoomForALargerBoolean) {
    using Get = LONG(WINAPI*)(BYTE*, ULONGLONG*, ULONG*);
    const Get get = [](BYTE* pByte, ULONGLONG* pLarge, ULONG* pNone) -> LONG {
        const LONG lTrue = 1;
        LONG lBefore = 0;
        ::CopyMemory(&lBefore, pByte, sizeof(lBefore));
        ::CopyMemory(pByte, &lTrue, sizeof(lTrue));
        *pLarge += 1;
        return pNone == nullptr ? lBefore : -1;
    };
    const faults::CPluginExport<Get> exported(reinterpret_cast<FARPROC>(reinterpret_cast<void*>(get)), 0,
                                              "IsDualBrtCtrl");
    BYTE bByte = 0;
    ULONGLONG ullLarge = 1ULL << 40U;
    EXPECT_EQ(exported(&bByte, &ullLarge, nullptr), 0);
    EXPECT_EQ(bByte, 1);
    EXPECT_EQ(ullLarge, (1ULL << 40U) + 1);
    EXPECT_TRUE(m_log.lines().empty());
}

}  // namespace

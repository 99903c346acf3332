// ZelMain.dll, loaded and called as the program does it.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <set>
#include <string>

#include "ZelHotkey.h"
#include "companions/keyboard/KeyboardRoom.h"
#include "support/RegistryRoom.h"

namespace companions {

// The arguments of the callbacks, from any thread. One at a time, because callbacks have no context.
class CCallbackRecord {
 public:
    CCallbackRecord() { s_pRecord = this; }
    ~CCallbackRecord() { s_pRecord = nullptr; }
    CCallbackRecord(const CCallbackRecord&) = delete;
    CCallbackRecord& operator=(const CCallbackRecord&) = delete;

    // "0 3b /3b /0": code in hexadecimal, breaks with a slash.
    [[nodiscard]] std::string keys() {
        const Lock lock(*this);
        return m_strKeys;
    }
    [[nodiscard]] int configCount(DWORD code) {
        const Lock lock(*this);
        return static_cast<int>(m_setConfig.count(code));
    }
    [[nodiscard]] int configTotal() {
        const Lock lock(*this);
        return static_cast<int>(m_setConfig.size());
    }
    [[nodiscard]] std::set<DWORD> threads() {
        const Lock lock(*this);
        return m_setThreads;
    }
    void clear() {
        const Lock lock(*this);
        m_strKeys.clear();
        m_setConfig.clear();
        m_setThreads.clear();
    }

    // Runs inside the hotkey callback, after the call was recorded.
    std::function<void()> onKey;

    static void WINAPI hotkeyCallback(DWORD code, DWORD modifier) {
        CCallbackRecord& self = *s_pRecord;
        {
            const Lock lock(self);
            char buffer[32];
            std::snprintf(buffer, sizeof(buffer), "%s%s%lx", self.m_strKeys.empty() ? "" : " ",
                          modifier == ZEL_MAKE ? "" : (modifier == ZEL_BREAK ? "/" : "?"), code);
            self.m_strKeys += buffer;
            self.m_setThreads.insert(::GetCurrentThreadId());
        }
        if (self.onKey) {
            self.onKey();
        }
    }
    static void WINAPI configCallback(DWORD code) {
        const Lock lock(*s_pRecord);
        s_pRecord->m_setConfig.insert(code);
        s_pRecord->m_setThreads.insert(::GetCurrentThreadId());
    }

 private:
    struct Lock {
        explicit Lock(CCallbackRecord& record) : lock(record.m_lock) { ::AcquireSRWLockExclusive(&lock); }
        ~Lock() { ::ReleaseSRWLockExclusive(&lock); }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;
        SRWLOCK& lock;
    };
    static inline CCallbackRecord* s_pRecord = nullptr;

    SRWLOCK m_lock = SRWLOCK_INIT;
    std::string m_strKeys;
    std::multiset<DWORD> m_setConfig;
    std::set<DWORD> m_setThreads;
};

// F1 and the left arrow are in the function list.
class HotkeyLibraryTest : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(m_room.redirected());
        ASSERT_TRUE(m_window.prepare());
        support::RegistryRoom::makeKey(HKEY_CURRENT_USER, L"SOFTWARE");  // as in every real hive
        setFunction(L"Mute", 0x3B);
        setFunction(L"Lock", 0xE04B);
        setList(L"Mute;Lock;");
        m_library = loadBuilt(ZEL_MAIN_FILE);
        ASSERT_TRUE(m_library);
        m_pfnStart = exportOf<ZelStart>(m_library, ZEL_START);
        m_pfnEnable = exportOf<ZelEnableHotkey>(m_library, ZEL_ENABLE_HOTKEY);
        m_pfnStop = exportOf<ZelStop>(m_library, ZEL_STOP);
        ASSERT_TRUE(m_pfnStart != nullptr && m_pfnEnable != nullptr && m_pfnStop != nullptr);
    }
    void TearDown() override {
        if (m_pfnStop != nullptr) {
            m_pfnStop();
        }
    }

    void startAndEnable() {
        ASSERT_EQ(start(), 0);
        ASSERT_EQ(m_pfnEnable(), 0);
    }
    LONG start() { return m_pfnStart(&CCallbackRecord::hotkeyCallback, &CCallbackRecord::configCallback); }

    // False if the callbacks report something else, or nothing more within five seconds.
    testing::AssertionResult reports(const std::string& expected) {
        if (waitUntil([&] { return m_record.keys() == expected; })) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << "expected \"" << expected << "\", got \"" << m_record.keys() << '"';
    }
    // Until then a change of the configuration may still be pending.
    bool waitForConfig(int count) {
        return waitUntil([&] { return m_record.configCount(ZEL_CONFIG_CHANGED) >= count; });
    }

    static void setFunction(const std::wstring& name, DWORD code) {
        const std::wstring key = ZEL_REG_HOTKEY + (L"\\" + name);
        support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, key, ZEL_VALUE_CODE, code);
        support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, key, ZEL_VALUE_FUNC_DLL, L"any.dll");
    }
    static void setList(const std::wstring& list) {
        support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, list);
    }
    static void setNumber(const wchar_t* name, DWORD value) {
        support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, name, value);
    }

    support::RegistryRoom m_room;
    CFocusWindow& m_window = CFocusWindow::instance();
    CCallbackRecord m_record;
    common::UniqueModule m_library;
    ZelStart m_pfnStart = nullptr;
    ZelEnableHotkey m_pfnEnable = nullptr;
    ZelStop m_pfnStop = nullptr;
};

}  // namespace companions

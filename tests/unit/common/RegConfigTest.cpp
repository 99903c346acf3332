#include "common/RegConfig.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/LogCapture.h"
#include "support/RegistryRoom.h"

namespace {

using support::kFileNotFound;
using support::LogCapture;
using support::RegistryRoom;
using Lines = std::vector<std::wstring>;

constexpr wchar_t kKey[] = L"SOFTWARE\\Sample";
constexpr HRESULT kMoreData = static_cast<HRESULT>(0x800700EAU);

class RegConfig : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(m_room.redirected());
        RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, kKey);
    }
    void set(const wchar_t* name, DWORD type, const std::vector<BYTE>& bytes) {
        RegistryRoom::set(HKEY_LOCAL_MACHINE, kKey, name, type, bytes.data(), bytes.size());
    }
    void openKey() { ASSERT_EQ(m_access.Open(HKEY_LOCAL_MACHINE, kKey, KEY_READ), S_OK); }

    RegistryRoom m_room;
    RegConfigAccess m_access;
};

TEST_F(RegConfig, NumberReadsADword) {
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, kKey, L"Number", 0xFEDCBA98U);
    openKey();
    DWORD number = 5;
    EXPECT_EQ(m_access.GetValue(L"Number", number), S_OK);
    EXPECT_EQ(number, 0xFEDCBA98U);
}

TEST_F(RegConfig, MissingNumberKeepsTheDefault) {
    openKey();
    DWORD number = 2000;
    EXPECT_EQ(m_access.GetValue(L"Missing", number), kFileNotFound);
    EXPECT_EQ(number, 2000U);
}

TEST_F(RegConfig, TextReadAsANumberIsItsFirstTwoUnits) {
    RegistryRoom::setText(HKEY_LOCAL_MACHINE, kKey, L"Text", L"AB");
    openKey();
    DWORD number = 0;
    EXPECT_EQ(m_access.GetValue(L"Text", number), S_OK);
    EXPECT_EQ(number, 0x00420041U);
}

TEST_F(RegConfig, BinaryReadAsANumberIsItsFirstFourBytes) {
    set(L"Binary", REG_BINARY, {1, 2, 3, 4, 5, 6, 7, 8});
    openKey();
    DWORD number = 0;
    EXPECT_EQ(m_access.GetValue(L"Binary", number), S_OK);
    EXPECT_EQ(number, 0x04030201U);
}

TEST_F(RegConfig, ValueBelowFourBytesHoldsNoNumber) {
    for (std::size_t size = 0; size < 4; ++size) {
        set(L"Short", REG_BINARY, std::vector<BYTE>(size, 0xFF));
        RegConfigAccess access;
        ASSERT_EQ(access.Open(HKEY_LOCAL_MACHINE, kKey, KEY_READ), S_OK);
        DWORD number = 77;
        EXPECT_EQ(access.GetValue(L"Short", number), S_OK) << size;
        EXPECT_EQ(number, 77U) << size;
    }
}

TEST_F(RegConfig, NumbersAreTheWholeFoursOfAnyType) {
    set(L"Codes", REG_BINARY, {1, 0, 0, 0, 2, 0, 0, 0x80, 9, 9, 9});
    openKey();
    std::vector<DWORD> numbers{1, 2, 3, 4, 5};
    EXPECT_EQ(m_access.GetValue(L"Codes", numbers), S_OK);
    EXPECT_EQ(numbers, (std::vector<DWORD>{1, 0x80000002U}));
}

TEST_F(RegConfig, EmptyValueGivesNoNumbers) {
    set(L"Empty", REG_BINARY, {});
    openKey();
    std::vector<DWORD> numbers{1};
    EXPECT_EQ(m_access.GetValue(L"Empty", numbers), S_OK);
    EXPECT_TRUE(numbers.empty());
}

TEST_F(RegConfig, TextKeepsItsTerminator) {
    RegistryRoom::setText(HKEY_LOCAL_MACHINE, kKey, L"Text", L"ab");
    openKey();
    std::vector<wchar_t> text;
    EXPECT_EQ(m_access.GetValue(L"Text", text), S_OK);
    EXPECT_EQ(text, (std::vector<wchar_t>{L'a', L'b', L'\0'}));
}

TEST_F(RegConfig, TextOfAnOddSizeLosesTheHalfUnit) {
    set(L"Text", REG_BINARY, {'a', 0, 'b'});
    openKey();
    std::vector<wchar_t> text;
    EXPECT_EQ(m_access.GetValue(L"Text", text), S_OK);
    EXPECT_EQ(text, std::vector<wchar_t>{L'a'});
}

TEST_F(RegConfig, FailedReadLeavesTheOutValueAlone) {
    openKey();
    std::vector<DWORD> numbers{1, 2};
    EXPECT_EQ(m_access.GetValue(L"Missing", numbers), kFileNotFound);
    EXPECT_EQ(numbers, (std::vector<DWORD>{1, 2}));
    std::vector<wchar_t> text{L'x'};
    EXPECT_EQ(m_access.GetValue(L"Missing", text), kFileNotFound);
    EXPECT_EQ(text, std::vector<wchar_t>{L'x'});
}

TEST_F(RegConfig, LargeValueIsReadWhole) {
    set(L"Large", REG_BINARY, std::vector<BYTE>(std::size_t{1} << 20, 7));
    openKey();
    std::vector<DWORD> numbers;
    EXPECT_EQ(m_access.GetValue(L"Large", numbers), S_OK);
    EXPECT_EQ(numbers.size(), std::size_t{1} << 18);
    EXPECT_EQ(numbers.back(), 0x07070707U);
}

TEST_F(RegConfig, NothingCanBeReadFromAClosedKey) {
    std::vector<DWORD> numbers;
    std::vector<wchar_t> text;
    DWORD number = 3;
    EXPECT_EQ(m_access.GetValue(L"x", numbers), E_HANDLE);
    EXPECT_EQ(m_access.GetValue(L"x", text), E_HANDLE);
    EXPECT_EQ(m_access.GetValue(L"x", number), E_HANDLE);
    EXPECT_EQ(number, 3U);
}

TEST_F(RegConfig, NullNamesAreRefused) {
    openKey();
    std::vector<DWORD> numbers;
    std::vector<wchar_t> text;
    DWORD number = 3;
    EXPECT_EQ(m_access.GetValue(nullptr, numbers), E_POINTER);
    EXPECT_EQ(m_access.GetValue(nullptr, text), E_POINTER);
    EXPECT_EQ(m_access.GetValue(nullptr, number), E_POINTER);
}

TEST_F(RegConfig, SecondOpenFailsAndKeepsTheFirstKey) {
    openKey();
    const HKEY first = m_access.key();
    EXPECT_EQ(m_access.Open(HKEY_LOCAL_MACHINE, L"SOFTWARE", KEY_READ), E_HANDLE);
    EXPECT_EQ(m_access.Open(HKEY_LOCAL_MACHINE, nullptr, KEY_READ), E_HANDLE) << "the open key is noticed first";
    EXPECT_EQ(m_access.key(), first);
}

TEST_F(RegConfig, OpenOfANullPathIsRefused) {
    EXPECT_EQ(m_access.Open(HKEY_LOCAL_MACHINE, nullptr, KEY_READ), E_POINTER);
    EXPECT_EQ(m_access.key(), nullptr);
}

TEST_F(RegConfig, OpenOfAMissingKeyIsTheSystemsError) {
    EXPECT_EQ(m_access.Open(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Missing", KEY_READ), kFileNotFound);
    EXPECT_EQ(m_access.key(), nullptr);
    EXPECT_EQ(m_access.Open(nullptr, kKey, KEY_READ), E_HANDLE) << "invalid handle, error 6";
}

TEST_F(RegConfig, CanBeOpenedAgainAfterClose) {
    openKey();
    EXPECT_EQ(m_access.Close(), S_OK);
    EXPECT_EQ(m_access.key(), nullptr);
    EXPECT_EQ(m_access.Close(), E_HANDLE);
    openKey();
    EXPECT_NE(m_access.key(), nullptr);
}

// Errors only.
Lines errorsOf(void (*action)()) {
    const LogCapture capture(0);
    action();
    return capture.lines();
}

TEST_F(RegConfig, DestroyingANeverOpenedOrClosedObjectLogsOneLine) {
    const Lines expected{L"[ERR] (RegConfigAccess::Close): Error Code: 0x80070006"};
    EXPECT_EQ(errorsOf([] { const RegConfigAccess unused; }), expected);
    EXPECT_EQ(errorsOf([] {
                  RegConfigAccess access;
                  EXPECT_EQ(access.Open(HKEY_LOCAL_MACHINE, kKey, KEY_READ), S_OK);
                  EXPECT_EQ(access.Close(), S_OK);
              }),
              expected);
    EXPECT_EQ(errorsOf([] {
                  RegConfigAccess access;
                  EXPECT_EQ(access.Open(HKEY_LOCAL_MACHINE, kKey, KEY_READ), S_OK);
              }),
              Lines{});
}

TEST_F(RegConfig, OpenLogsItsPathAndEveryFailure) {
    const LogCapture capture;
    EXPECT_EQ(m_access.Open(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Missing", KEY_READ), kFileNotFound);
    EXPECT_EQ(m_access.Open(HKEY_LOCAL_MACHINE, nullptr, KEY_READ), E_POINTER);
    EXPECT_EQ(capture.lines(), (Lines{
                                   L"[TRC] (RegConfigAccess::Open): ENTER RegConfigAccess::Open",
                                   L"[TRC] (RegConfigAccess::Open): pszSubKey = SOFTWARE\\Missing",
                                   L"[ERR] (RegConfigAccess::Open): Error Code: 0x80070002",
                                   L"[TRC] (RegConfigAccess::Open): LEAVE RegConfigAccess::Open",
                                   L"[TRC] (RegConfigAccess::Open): ENTER RegConfigAccess::Open",
                                   L"[ERR] (RegConfigAccess::Open): Error Code: 0x80004003",
                                   L"[TRC] (RegConfigAccess::Open): LEAVE RegConfigAccess::Open",
                               }));
}

TEST_F(RegConfig, MissingNumberIsLoggedByBothReads) {
    openKey();
    const LogCapture capture;
    DWORD number = 0;
    EXPECT_EQ(m_access.GetValue(L"Missing", number), kFileNotFound);
    EXPECT_EQ(capture.lines(), (Lines{
                                   L"[TRC] (RegConfigAccess::GetValue): ENTER RegConfigAccess::GetValue",
                                   L"[TRC] (RegConfigAccess::GetValue): ENTER RegConfigAccess::GetValue",
                                   L"[TRC] (RegConfigAccess::GetValue): pszName = Missing",
                                   L"[ERR] (RegConfigAccess::GetValue): Error Code: 0x80070002",
                                   L"[TRC] (RegConfigAccess::GetValue): LEAVE RegConfigAccess::GetValue",
                                   L"[ERR] (RegConfigAccess::GetValue): Error Code: 0x80070002",
                                   L"[TRC] (RegConfigAccess::GetValue): LEAVE RegConfigAccess::GetValue",
                               }));
}

TEST_F(RegConfig, ReadOfATextIsTraced) {
    RegistryRoom::setText(HKEY_LOCAL_MACHINE, kKey, L"Text", L"a");
    openKey();
    const LogCapture capture;
    std::vector<wchar_t> units;
    EXPECT_EQ(m_access.GetValue(L"Text", units), S_OK);
    EXPECT_EQ(capture.lines(), (Lines{
                                   L"[TRC] (RegConfigAccess::GetValue): ENTER RegConfigAccess::GetValue",
                                   L"[TRC] (RegConfigAccess::GetValue): pszName = Text",
                                   L"[TRC] (RegConfigAccess::GetValue): LEAVE RegConfigAccess::GetValue",
                               }));
}

// Another program changes the size all the time: every read returns a complete old or new value, or the system's error
// that it grew between the two calls.
TEST_F(RegConfig, ValueThatChangesMeanwhileIsReadWholeOrRefused) {
    set(L"Moving", REG_BINARY, std::vector<BYTE>(4, 1));
    openKey();
    std::atomic<bool> stop{false};
    std::thread writer([&] {
        for (BYTE i = 0; !stop; ++i) {
            set(L"Moving", REG_BINARY, std::vector<BYTE>(i % 2 == 0 ? 4096 : 4, 1));
        }
    });
    for (int i = 0; i < 2000; ++i) {
        std::vector<DWORD> numbers;
        const HRESULT status = m_access.GetValue(L"Moving", numbers);
        EXPECT_TRUE(status == S_OK || status == kMoreData) << status;
        EXPECT_EQ(std::count(numbers.begin(), numbers.end(), 0x01010101U), std::ssize(numbers));
    }
    stop = true;
    writer.join();
}

}  // namespace

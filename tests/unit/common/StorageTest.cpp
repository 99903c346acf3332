#include "common/Storage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <string>
#include <vector>

#include "common/RegistryStorage.h"
#include "support/RegistryRoom.h"

namespace {

using storage::Policy;
using storage::RegistryStorage;
using storage::Storage;
using storage::StorageException;
using support::RegistryRoom;
using Names = std::vector<std::wstring>;

constexpr wchar_t kStorageKey[] = L"SOFTWARE\\Sample";

class RegistryStorageTest : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(m_room.redirected());
        RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, kStorageKey);
        ASSERT_TRUE(m_storage.open(HKEY_LOCAL_MACHINE, kStorageKey, KEY_ALL_ACCESS));
    }
    // The stored bytes and type.
    std::vector<BYTE> stored(const wchar_t* name, DWORD& type) {
        DWORD size = 0;
        ::RegGetValueW(HKEY_LOCAL_MACHINE, kStorageKey, name, RRF_RT_ANY, &type, nullptr, &size);
        std::vector<BYTE> bytes(size + 8);
        size = static_cast<DWORD>(bytes.size());
        HKEY key = nullptr;
        ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, kStorageKey, 0, KEY_READ, &key);
        ::RegQueryValueExW(key, name, nullptr, &type, bytes.data(), &size);
        ::RegCloseKey(key);
        bytes.resize(size);
        return bytes;
    }

    RegistryRoom m_room;
    RegistryStorage m_storage;
};

TEST_F(RegistryStorageTest, ClosedStorageAnswersFalseToEverything) {
    m_storage.close();
    EXPECT_FALSE(m_storage.isOpen());
    EXPECT_EQ(m_storage.access(), 0U);
    DWORD number = 1;
    std::wstring text = L"x";
    std::vector<BYTE> bytes{1};
    Names names;
    EXPECT_EQ(m_storage.openSubStorage(L""), nullptr);
    EXPECT_EQ(m_storage.createSubStorage(L"new"), nullptr);
    EXPECT_FALSE(m_storage.setDword(L"n", 1));
    EXPECT_FALSE(m_storage.getDword(L"n", number));
    EXPECT_FALSE(m_storage.setString(L"n", L""));
    EXPECT_FALSE(m_storage.getString(L"n", text));
    EXPECT_FALSE(m_storage.setBinary(L"n", bytes));
    EXPECT_FALSE(m_storage.getBinary(L"n", bytes));
    EXPECT_FALSE(m_storage.enumSubKeys(names));
    EXPECT_FALSE(m_storage.enumValues(names));
    EXPECT_FALSE(m_storage.deleteSubKey(L"n"));
    EXPECT_FALSE(m_storage.deleteValue(L"n"));
    m_storage.close();
}

TEST_F(RegistryStorageTest, OpenOfAMissingKeyFails) {
    RegistryStorage missing;
    EXPECT_FALSE(missing.open(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Missing", KEY_READ));
    EXPECT_FALSE(missing.isOpen());
    EXPECT_EQ(missing.access(), 0U);
}

TEST_F(RegistryStorageTest, ChildrenInheritTheAccessMask) {
    const auto created = m_storage.createSubStorage(L"Child");
    ASSERT_NE(created, nullptr);
    EXPECT_TRUE(created->setDword(L"n", 1));
    EXPECT_EQ(dynamic_cast<RegistryStorage&>(*created).access(), static_cast<REGSAM>(KEY_ALL_ACCESS));

    RegistryStorage readOnly;
    ASSERT_TRUE(readOnly.open(HKEY_LOCAL_MACHINE, kStorageKey, KEY_READ));
    const auto child = readOnly.openSubStorage(L"Child");
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(dynamic_cast<RegistryStorage&>(*child).access(), static_cast<REGSAM>(KEY_READ));
    DWORD number = 0;
    EXPECT_TRUE(child->getDword(L"n", number));
    EXPECT_FALSE(child->setDword(L"n", 2)) << "a child of a read-only key cannot be written";
    EXPECT_EQ(readOnly.openSubStorage(L"Missing"), nullptr);
}

TEST_F(RegistryStorageTest, NumbersAreFourBytes) {
    EXPECT_TRUE(m_storage.setDword(L"n", 0x01020304U));
    DWORD type = 0;
    EXPECT_EQ(stored(L"n", type), (std::vector<BYTE>{4, 3, 2, 1}));
    EXPECT_EQ(type, static_cast<DWORD>(REG_DWORD));
    DWORD number = 0;
    EXPECT_TRUE(m_storage.getDword(L"n", number));
    EXPECT_EQ(number, 0x01020304U);
}

TEST_F(RegistryStorageTest, NumberOfAnyTypeIsReadUpToFourBytes) {
    DWORD number = 7;
    EXPECT_TRUE(m_storage.setBinary(L"two", {0x34, 0x12}));
    EXPECT_TRUE(m_storage.getDword(L"two", number));
    EXPECT_EQ(number, 0x1234U);
    number = 7;
    EXPECT_TRUE(m_storage.setBinary(L"five", {1, 2, 3, 4, 5}));
    EXPECT_FALSE(m_storage.getDword(L"five", number));
    EXPECT_FALSE(m_storage.getDword(L"missing", number));
    EXPECT_EQ(number, 7U);
}

TEST_F(RegistryStorageTest, TextIsStoredWithoutTerminator) {
    EXPECT_TRUE(m_storage.setString(L"t", L"ab"));
    DWORD type = 0;
    EXPECT_EQ(stored(L"t", type), (std::vector<BYTE>{'a', 0, 'b', 0}));
    EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
    std::wstring text;
    EXPECT_TRUE(m_storage.getString(L"t", text));
    EXPECT_EQ(text, L"ab");
}

TEST_F(RegistryStorageTest, TextEndsAtItsFirstNul) {
    RegistryRoom::setText(HKEY_LOCAL_MACHINE, kStorageKey, L"t", std::wstring(L"ab\0cd", 5));
    std::wstring text = L"longer than what is stored";
    EXPECT_TRUE(m_storage.getString(L"t", text));
    EXPECT_EQ(text, L"ab");
}

TEST_F(RegistryStorageTest, EmptyAndMissingTexts) {
    EXPECT_TRUE(m_storage.setString(L"t", L""));
    std::wstring text = L"x";
    EXPECT_TRUE(m_storage.getString(L"t", text));
    EXPECT_EQ(text, L"");
    text = L"kept";
    EXPECT_FALSE(m_storage.getString(L"missing", text));
    EXPECT_EQ(text, L"kept");
}

TEST_F(RegistryStorageTest, LongTextIsReadWhole) {
    const std::wstring longText(100000, L'y');
    EXPECT_TRUE(m_storage.setString(L"t", longText));
    std::wstring text;
    EXPECT_TRUE(m_storage.getString(L"t", text));
    EXPECT_EQ(text, longText);
}

TEST_F(RegistryStorageTest, BytesComeBackAsTheyWere) {
    const std::vector<BYTE> bytes{0, 1, 2, 0xFF, 0};
    EXPECT_TRUE(m_storage.setBinary(L"b", bytes));
    std::vector<BYTE> out(100, 9);
    EXPECT_TRUE(m_storage.getBinary(L"b", out));
    EXPECT_EQ(out, bytes);
    EXPECT_FALSE(m_storage.getBinary(L"missing", out));
    EXPECT_EQ(out, bytes);
}

TEST_F(RegistryStorageTest, EmptyBytesAreNotWritten) {
    EXPECT_FALSE(m_storage.setBinary(L"b", {}));
    Names names;
    EXPECT_TRUE(m_storage.enumValues(names));
    EXPECT_TRUE(names.empty());
}

TEST_F(RegistryStorageTest, EnumerationsAppendEveryName) {
    for (const wchar_t* name : {L"One", L"Two", L"Three"}) {
        ASSERT_NE(m_storage.createSubStorage(name), nullptr);
        ASSERT_TRUE(m_storage.setDword(name, 1));
    }
    const Names expected{L"before", L"One", L"Three", L"Two"};
    Names keys{L"before"};
    EXPECT_TRUE(m_storage.enumSubKeys(keys));
    std::sort(keys.begin() + 1, keys.end());
    EXPECT_EQ(keys, expected);
    Names values{L"before"};
    EXPECT_TRUE(m_storage.enumValues(values));
    std::sort(values.begin() + 1, values.end());
    EXPECT_EQ(values, expected);
}

TEST_F(RegistryStorageTest, LongNamesAreEnumeratedWhole) {
    const std::wstring longKey(255, L'k');
    const std::wstring longValue(3000, L'v');
    ASSERT_NE(m_storage.createSubStorage(longKey), nullptr);
    ASSERT_TRUE(m_storage.setDword(longValue, 1));
    ASSERT_TRUE(m_storage.setDword(L"short", 1));
    Names keys;
    EXPECT_TRUE(m_storage.enumSubKeys(keys));
    EXPECT_EQ(keys, Names{longKey});
    Names values;
    EXPECT_TRUE(m_storage.enumValues(values));
    EXPECT_NE(std::find(values.begin(), values.end(), longValue), values.end());
    EXPECT_NE(std::find(values.begin(), values.end(), L"short"), values.end());
}

// A registry that allows names of any length.
TEST(EnumerateNames, DoublesTheBufferAndAsksForTheSameIndexAgain) {
    const Names stored{L"a", std::wstring(256, L'b'), std::wstring(5000, L'c'), L"d"};
    std::vector<std::pair<DWORD, DWORD>> calls;
    Names names;
    EXPECT_TRUE(storage::enumerateNames(
        [&](DWORD index, wchar_t* buffer, DWORD* chars) -> LSTATUS {
            calls.emplace_back(index, *chars);
            if (index >= stored.size()) {
                return ERROR_NO_MORE_ITEMS;
            }
            if (stored[index].size() + 1 > *chars) {
                return ERROR_MORE_DATA;
            }
            std::copy(stored[index].c_str(), stored[index].c_str() + stored[index].size() + 1, buffer);
            *chars = static_cast<DWORD>(stored[index].size());
            return ERROR_SUCCESS;
        },
        names));
    EXPECT_EQ(names, stored);
    const std::vector<std::pair<DWORD, DWORD>> expected{{0, 256},  {1, 256},  {1, 512},  {2, 256}, {2, 512}, {2, 1024},
                                                        {2, 2048}, {2, 4096}, {2, 8192}, {3, 256}, {4, 256}};
    EXPECT_EQ(calls, expected);
}

TEST(EnumerateNames, OtherErrorsStopAndKeepWhatWasFound) {
    Names names;
    EXPECT_FALSE(storage::enumerateNames(
        [](DWORD index, wchar_t* buffer, DWORD*) -> LSTATUS {
            buffer[0] = L'x';
            buffer[1] = L'\0';
            return index < 2 ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
        },
        names));
    EXPECT_EQ(names, (Names{L"x", L"x"}));
}

TEST(EnumerateNames, EndlessWishForMoreRoomEnds) {
    Names names;
    EXPECT_FALSE(storage::enumerateNames([](DWORD, wchar_t*, DWORD*) -> LSTATUS { return ERROR_MORE_DATA; }, names));
}

TEST_F(RegistryStorageTest, DeletingWhatIsNotThereSucceeds) {
    EXPECT_TRUE(m_storage.deleteValue(L"missing"));
    EXPECT_TRUE(m_storage.deleteSubKey(L"missing"));
}

TEST_F(RegistryStorageTest, SubKeysGoWithAllTheyHold) {
    auto child = m_storage.createSubStorage(L"Child");
    ASSERT_NE(child, nullptr);
    ASSERT_NE(child->createSubStorage(L"Deep"), nullptr);
    ASSERT_TRUE(child->setDword(L"n", 1));
    child.reset();
    EXPECT_TRUE(m_storage.deleteSubKey(L"Child"));
    EXPECT_EQ(m_storage.openSubStorage(L"Child"), nullptr);
}

TEST_F(RegistryStorageTest, EmptySubKeyNameDeletesNothing) {
    ASSERT_TRUE(m_storage.setDword(L"n", 1));
    EXPECT_FALSE(m_storage.deleteSubKey(L""));
    DWORD number = 0;
    EXPECT_TRUE(m_storage.getDword(L"n", number));
}

TEST_F(RegistryStorageTest, ValuesAreDeleted) {
    ASSERT_TRUE(m_storage.setDword(L"n", 1));
    EXPECT_TRUE(m_storage.deleteValue(L"n"));
    DWORD number = 0;
    EXPECT_FALSE(m_storage.getDword(L"n", number));
}

class StorageHandle : public RegistryStorageTest {};

// The text of the exception, or "" if there was none.
template <typename Action>
std::wstring thrownBy(Action action) {
    try {
        action();
    } catch (const StorageException& exception) {
        return exception.message();
    }
    return L"";
}

void expectMessage(const std::wstring& message, const wchar_t* what) {
    const std::wregex pattern(L"\\.\\\\common\\\\Storage\\.cpp\\([0-9]+\\) : StorageException : " + std::wstring(what) +
                              L"\n");
    EXPECT_TRUE(std::regex_match(message, pattern)) << std::string(message.begin(), message.end());
}

TEST_F(StorageHandle, QuietFailuresAreEmptyHandlesAndFalse) {
    const Storage missing = Storage::open(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Missing", Policy::Quiet);
    EXPECT_FALSE(missing.isOpen());
    EXPECT_EQ(missing.policy(), Policy::Quiet);
    DWORD number = 0;
    std::wstring text;
    Names names;
    EXPECT_FALSE(missing.getDword(L"n", number));
    EXPECT_FALSE(missing.getString(L"n", text));
    EXPECT_FALSE(missing.enumSubKeys(names));
    EXPECT_FALSE(missing.enumValues(names));
    EXPECT_FALSE(missing.openSub(L"x").isOpen());
}

TEST_F(StorageHandle, ThrowingPolicyNamesTheFailedOpen) {
    expectMessage(thrownBy([] {
                      const Storage missing = Storage::open(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Missing", Policy::Throw);
                  }),
                  L"Open");
    const Storage handle = Storage::open(HKEY_LOCAL_MACHINE, kStorageKey, Policy::Throw);
    EXPECT_EQ(handle.policy(), Policy::Throw);
    expectMessage(thrownBy([&handle] { const Storage missing = handle.openSub(L"Missing"); }), L"Open");
}

TEST_F(StorageHandle, ThrowingPolicyNamesTheFailedRead) {
    const Storage handle = Storage::open(HKEY_LOCAL_MACHINE, kStorageKey, Policy::Throw);
    expectMessage(thrownBy([&handle] {
                      DWORD number = 0;
                      handle.getDword(L"missing", number);
                  }),
                  L"Read");
    expectMessage(thrownBy([&handle] {
                      std::wstring text;
                      handle.getString(L"missing", text);
                  }),
                  L"Read");
}

TEST_F(StorageHandle, ChildrenCarryThePolicyOn) {
    ASSERT_NE(m_storage.createSubStorage(L"Child"), nullptr);
    EXPECT_EQ(Storage::open(HKEY_LOCAL_MACHINE, kStorageKey, Policy::Throw).openSub(L"Child").policy(), Policy::Throw);
    const Storage quiet = Storage::open(HKEY_LOCAL_MACHINE, kStorageKey, Policy::Quiet);
    EXPECT_TRUE(quiet.openSub(L"Child").isOpen());
    EXPECT_EQ(quiet.openSub(L"Child").policy(), Policy::Quiet);
    EXPECT_EQ(Storage().openSub(L"Child").policy(), Policy::Quiet);
}

TEST_F(StorageHandle, CopiesShareTheKeyBeyondTheFirstHandle) {
    ASSERT_TRUE(m_storage.setDword(L"n", 42));
    Storage copy;
    {
        const Storage first = Storage::open(HKEY_LOCAL_MACHINE, kStorageKey, Policy::Quiet);
        copy = first;
    }
    DWORD number = 0;
    EXPECT_TRUE(copy.getDword(L"n", number));
    EXPECT_EQ(number, 42U);
}

TEST_F(StorageHandle, OpensKeysForReadingOnly) {
    ASSERT_TRUE(m_storage.setString(L"t", L"text"));
    const Storage handle = Storage::open(HKEY_LOCAL_MACHINE, kStorageKey, Policy::Quiet);
    std::wstring text;
    EXPECT_TRUE(handle.getString(L"t", text));
    EXPECT_EQ(text, L"text");
    Names names;
    EXPECT_TRUE(handle.enumValues(names));
    EXPECT_EQ(names, Names{L"t"});
}

}  // namespace

// A private registry and log settings file, and a model over them whose way to the world outside is recorded.
#pragma once

#include <gtest/gtest.h>

#include "Data/RegistryPaths.h"
#include "Model.h"
#include "support/RegistryRoom.h"
#include "support/TempFolder.h"

namespace settings {

// The real store, which can be told to refuse a root.
class CTestStore : public CSystemStore {
 public:
    using CSystemStore::CSystemStore;

    [[nodiscard]] bool mayWrite(Root root) const override {
        return (root != Root::Machine || machineMayBeWritten) && CSystemStore::mayWrite(root);
    }
    [[nodiscard]] LSTATUS write(const Place& place, const Content& content) override {
        ++writes;
        return place.root == Root::Machine && !machineMayBeWritten ? LSTATUS{ERROR_ACCESS_DENIED}
                                                                   : CSystemStore::write(place, content);
    }

    bool machineMayBeWritten = true;
    int writes = 0;
};

class Notebook : public testing::Test {
 protected:
    void SetUp() override { ASSERT_TRUE(m_room.redirected()); }

    static void give(Root root, const wchar_t* name, DWORD number, const wchar_t* key = regpath::kConfigKey) {
        support::RegistryRoom::setDword(root == Root::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE, key, name, number);
    }
    static void giveText(Root root, const std::wstring& key, const wchar_t* name, const std::wstring& text) {
        support::RegistryRoom::setText(root == Root::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE, key, name, text);
    }
    [[nodiscard]] std::optional<DWORD> number(Root root, const wchar_t* name,
                                              const wchar_t* key = regpath::kConfigKey) const {
        const Content content = m_store.read({root, key, name});
        return content ? numberOf(*content) : std::nullopt;
    }
    [[nodiscard]] std::wstring storedText(Root root, const std::wstring& key, const wchar_t* name) const {
        const Content content = m_store.read({root, key, name});
        return content ? textOf(*content) : L"(nothing)";
    }
    static const Value& value(const wchar_t* name) { return *findValue(name); }

    support::RegistryRoom m_room;
    support::TempFolder m_folder;
    CTestStore m_store{(m_folder / L"DbgLog.ini").wstring()};
    Changes m_elevated;
    LSTATUS m_elevatedResult = ERROR_SUCCESS;
    bool m_bRuns = false;
    bool m_bStarts = true;
    int m_nRestarts = 0;
    int m_nSettles = 0;
    int m_nAnnouncements = 0;
    int m_nIconChanges = 0;
    std::vector<std::optional<DWORD>> m_seenWhileSettling;
    CModel m_model{{&m_store,
                    [this](const Changes& changes) {
                        m_elevated = changes;
                        return m_elevatedResult;
                    },
                    [this] { return m_bRuns; },
                    [this] {
                        ++m_nRestarts;
                        return m_bStarts;
                    },
                    [this] {
                        ++m_nSettles;
                        m_seenWhileSettling.push_back(number(Root::User, L"Position"));
                    },
                    [this] { ++m_nAnnouncements; }, [this] { ++m_nIconChanges; }}};
};

}  // namespace settings

#include <gtest/gtest.h>
#include <windows.h>

#include "ZelHotkey.h"
#include "companions/keyboard/KeyboardRoom.h"

namespace companions {

class CancelQuery : public testing::Test {
 protected:
    void SetUp() override {
        m_library = loadBuilt(ZEL_EVNT_FILE);
        ASSERT_TRUE(m_library);
        m_pfnCancel = exportOf<ZelCancelQueryEvent>(m_library, ZEL_CANCEL_QUERY_EXPORT);
        ASSERT_NE(m_pfnCancel, nullptr);
    }
    common::UniqueModule m_library;
    ZelCancelQueryEvent m_pfnCancel = nullptr;
};

TEST_F(CancelQuery, WithoutAQuerySucceeds) {
    EXPECT_EQ(m_pfnCancel(), 0);
}

TEST_F(CancelQuery, TellsThePendingQueryOnce) {
    const common::UniqueHandle query(::CreateEventW(nullptr, FALSE, FALSE, ZEL_CANCEL_QUERY_EVENT));
    EXPECT_EQ(m_pfnCancel(), 0);
    EXPECT_EQ(::WaitForSingleObject(query.get(), 0), WAIT_OBJECT_0);
    EXPECT_EQ(::WaitForSingleObject(query.get(), 0), static_cast<DWORD>(WAIT_TIMEOUT));
}

TEST_F(CancelQuery, NameTakenBySomethingElseFails) {
    const common::UniqueHandle mutex(::CreateMutexW(nullptr, FALSE, ZEL_CANCEL_QUERY_EVENT));
    EXPECT_LT(m_pfnCancel(), 0);
}

}  // namespace companions

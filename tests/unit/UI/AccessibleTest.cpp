// The accessible objects of the windows, asked as a program of the same thread asks them: what they answer while a
// plug-in is at work, without memory, and after the end of their windows.
#include "UI/Accessible.h"
#include "UI/InUseFixture.h"
#include "support/FailingAllocation.h"

namespace {

using namespace apptest;

VARIANT part(LONG number) {
    VARIANT result{};
    result.vt = VT_I4;
    result.lVal = number;
    return result;
}

// Holds a reference.
class Object {
 public:
    explicit Object(accessible::ITarget& target) : m_object(target.accessibleObject()) {}
    ~Object() {
        if (m_object != nullptr) {
            m_object->Release();
        }
    }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    IAccessible* operator->() const { return m_object; }
    [[nodiscard]] IAccessible* get() const { return m_object; }

    [[nodiscard]] HRESULT name(LONG number, std::wstring& text) const {
        BSTR value = nullptr;
        const HRESULT status = m_object->get_accName(part(number), &value);
        text = value == nullptr ? L"" : value;
        ::SysFreeString(value);
        return status;
    }
    [[nodiscard]] LONG state(LONG number) const {
        VARIANT value{};
        EXPECT_EQ(m_object->get_accState(part(number), &value), S_OK);
        return value.lVal;
    }

 private:
    IAccessible* m_object;
};

class AccessibleTest : public InUseTest {
 protected:
    static CZelMainDlg& strip() { return *ZelMainSeam::strip(); }
    static accessible::ITarget& item(std::size_t index) { return *card(0).accessibleItems().at(index); }
    // Mute's card, with its second item selected.
    static void openMute() {
        send(kModifier, kMake);
        send(kMuteKey, kMake);
    }
};

TEST_F(AccessibleTest, ObjectsAnswerThatTheirWindowIsGone) {
    ASSERT_TRUE(start());
    const Object object(strip());
    std::wstring text;
    EXPECT_EQ(object.name(CHILDID_SELF, text), S_OK);
    EXPECT_EQ(text, L"Fenwyn");
    end();
    EXPECT_EQ(object.name(CHILDID_SELF, text), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(object->accDoDefaultAction(part(1)), CO_E_OBJNOTCONNECTED);
    VARIANT value{};
    EXPECT_EQ(object->accHitTest(0, 0, &value), CO_E_OBJNOTCONNECTED);
    HWND window = nullptr;
    IOleWindow* whose = nullptr;
    ASSERT_EQ(object->QueryInterface(__uuidof(IOleWindow), reinterpret_cast<void**>(&whose)), S_OK);
    EXPECT_EQ(whose->GetWindow(&window), CO_E_OBJNOTCONNECTED);
    whose->Release();
}

TEST_F(AccessibleTest, ItemsAnswerThatTheyWereReplaced) {
    ASSERT_TRUE(start());
    openMute();
    const Object object(item(0));
    std::wstring text;
    EXPECT_EQ(object.name(CHILDID_SELF, text), S_OK);
    EXPECT_FALSE(text.empty());
    send(kModifier, kBreak);
    openMute();  // makes the items anew
    EXPECT_EQ(object.name(CHILDID_SELF, text), CO_E_OBJNOTCONNECTED);
}

TEST_F(AccessibleTest, PartsBeyondTheLastAreRefused) {
    ASSERT_TRUE(start());
    const Object object(strip());
    std::wstring text;
    EXPECT_EQ(object.name(3, text), S_OK);
    for (const LONG wrong : {4L, -1L}) {
        EXPECT_EQ(object.name(wrong, text), E_INVALIDARG);
    }
    VARIANT name{};
    name.vt = VT_BSTR;
    BSTR value = nullptr;
    EXPECT_EQ(object->get_accName(name, &value), E_INVALIDARG);
    EXPECT_EQ(object->get_accName(part(0), nullptr), E_POINTER);
}

TEST_F(AccessibleTest, OneGoesFromCardToCardAndFromItemToItem) {
    ASSERT_TRUE(start());
    const Object object(strip());
    const auto from = [](const Object& at, long direction, LONG number) {
        VARIANT end{};
        const HRESULT status = at->accNavigate(direction, part(number), &end);
        return status == S_OK && end.vt == VT_I4 ? end.lVal : -1L;
    };
    EXPECT_EQ(from(object, NAVDIR_FIRSTCHILD, CHILDID_SELF), 1);
    EXPECT_EQ(from(object, NAVDIR_LASTCHILD, CHILDID_SELF), 3);
    EXPECT_EQ(from(object, NAVDIR_NEXT, 2), 3);
    EXPECT_EQ(from(object, NAVDIR_NEXT, 3), -1);
    EXPECT_EQ(from(object, NAVDIR_LEFT, 2), 1);
    EXPECT_EQ(from(object, NAVDIR_PREVIOUS, 1), -1);
    EXPECT_EQ(from(object, NAVDIR_UP, 2), -1);

    openMute();
    const Object second(item(1));
    VARIANT end{};
    EXPECT_EQ(second->accNavigate(NAVDIR_NEXT, part(CHILDID_SELF), &end), S_FALSE);
    ASSERT_EQ(second->accNavigate(NAVDIR_PREVIOUS, part(CHILDID_SELF), &end), S_OK);
    const Object first(item(0));
    EXPECT_EQ(end.pdispVal, first.get());
    end.pdispVal->Release();
    IDispatch* above = nullptr;
    ASSERT_EQ(first->get_accParent(&above), S_OK);
    const Object enlarged(*card(0).accessibleCard());
    EXPECT_EQ(above, enlarged.get());
    above->Release();
    VARIANT selected{};
    ASSERT_EQ(enlarged->get_accSelection(&selected), S_OK);
    EXPECT_EQ(selected.pdispVal, BlackCardSeam::selected(card(0)) == 0 ? first.get() : second.get());
    selected.pdispVal->Release();
}

TEST_F(AccessibleTest, PointsFindCardsAndItems) {
    ASSERT_TRUE(start());
    const Object object(strip());
    const RECT place = strip().accessiblePlace(2);
    VARIANT hit{};
    EXPECT_EQ(object->accHitTest(place.left + 1, place.top + 1, &hit), S_OK);
    EXPECT_EQ(hit.lVal, 2);
    EXPECT_EQ(object->accHitTest(place.left + 1, place.bottom + 1, &hit), S_OK);
    EXPECT_EQ(hit.lVal, CHILDID_SELF) << "below the picture";
    EXPECT_EQ(object->accHitTest(-9, -9, &hit), S_FALSE);
    EXPECT_EQ(hit.vt, VT_EMPTY);
}

TEST_F(AccessibleTest, LatchedModifierIsAPressedToolBar) {
    ASSERT_TRUE(start());
    const Object object(strip());
    EXPECT_EQ(object.state(CHILDID_SELF) & STATE_SYSTEM_PRESSED, 0);
    ::SendMessageW(stripWindow(), kMsgLatch, 1, 0);
    EXPECT_NE(object.state(CHILDID_SELF) & STATE_SYSTEM_PRESSED, 0);
}

// Everything is read in the message loop of an export, and nothing of it enters a plug-in.
TEST_F(AccessibleTest, PluginAtWorkIsNotEnteredAgain) {
    ASSERT_TRUE(start());
    openMute();
    m_plugin->exports[instr::SelectItemId].pumps = TRUE;
    int callsBefore = 0;
    int callsAfter = -1;
    HRESULT press = S_OK;
    const auto calls = [this] {
        int all = 0;
        for (const auto& count : m_plugin->counts) {
            all += static_cast<int>(count);
        }
        return all;
    };
    const Object first(item(0));
    const Object enlarged(*card(0).accessibleCard());
    const Object object(strip());
    const Meanwhile meanwhile([&] {
        callsBefore = calls();
        std::wstring text;
        for (const Object* each : {&first, &enlarged, &object}) {
            EXPECT_EQ(each->name(CHILDID_SELF, text), S_OK);
            static_cast<void>(each->state(CHILDID_SELF));
            BSTR value = nullptr;
            EXPECT_GE((*each)->get_accValue(part(CHILDID_SELF), &value), 0);
            ::SysFreeString(value);
        }
        press = first->accDoDefaultAction(part(CHILDID_SELF));
        callsAfter = calls();
    });
    send(kModifier, kBreak);
    ASSERT_TRUE(meanwhile.ran());
    EXPECT_EQ(callsAfter, callsBefore);
    EXPECT_EQ(press, HRESULT_FROM_WIN32(ERROR_BUSY));
    forgetPumping();
    pump();
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 1) << "a refused press has no late effect";
}

// A press that was accepted before, and arrives in the message loop of an export.
TEST_F(AccessibleTest, PressThatArrivesDuringAPluginCallHasNoEffect) {
    ASSERT_TRUE(start());
    openMute();
    const Object first(item(0));
    m_plugin->exports[instr::SelectItemId].pumps = TRUE;
    EXPECT_EQ(first->accDoDefaultAction(part(CHILDID_SELF)), S_OK);
    send(kModifier, kBreak);
    forgetPumping();
    pump();
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 1);
}

TEST_F(AccessibleTest, CallsOfOtherThreadsAreRefused) {
    ASSERT_TRUE(start());
    const Object object(strip());
    struct Call {
        const Object& object;
        HRESULT status = S_OK;
    } call{object};
    const HANDLE thread = ::CreateThread(
        nullptr, 0,
        [](void* parameter) -> DWORD {
            auto& own = *static_cast<Call*>(parameter);
            long count = 0;
            own.status = own.object->get_accChildCount(&count);
            return 0;
        },
        &call, 0, nullptr);
    ASSERT_NE(thread, nullptr);
    ::WaitForSingleObject(thread, INFINITE);
    ::CloseHandle(thread);
    EXPECT_EQ(call.status, RPC_E_WRONG_THREAD);
}

TEST_F(AccessibleTest, WithoutMemoryACallFailsAndTheNextOneWorks) {
    ASSERT_TRUE(start());
    openMute();
    const Object object(*card(0).accessibleCard());
    const long failures = support::forEachFailure(support::FailingAllocation::Extent::Once, [&] {
        long count = 0;
        BSTR text = nullptr;
        VARIANT selected{};
        for (const HRESULT status : {object->get_accChildCount(&count), object->get_accName(part(CHILDID_SELF), &text),
                                     object->get_accSelection(&selected)}) {
            EXPECT_TRUE(SUCCEEDED(status) || status == E_OUTOFMEMORY);
        }
        ::SysFreeString(text);
        if (selected.vt == VT_DISPATCH) {
            selected.pdispVal->Release();
        }
    });
    EXPECT_GT(failures, 0);
    std::wstring text;
    EXPECT_EQ(object.name(CHILDID_SELF, text), S_OK);
}

}  // namespace

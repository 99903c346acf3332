// Message maps: which handler is called, with which parameters, and what Default() does.
#include <string>
#include <vector>

#include <framework/SliderCtrl.h>

#include "Support.h"

namespace {

using test::create;

constexpr UINT kOwn = WM_USER + 101;
constexpr UINT kBaseOnly = WM_USER + 102;
constexpr UINT kNested = WM_USER + 103;

class MapBaseWnd : public CWnd {
 public:
    std::vector<std::string> heard;

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override { return kMap; }
    LRESULT OnBase(WPARAM, LPARAM) {
        heard.emplace_back("base");
        return 7;
    }
    static constexpr MessageEntry kEntries[] = {
        onMessage<&MapBaseWnd::OnBase>(kOwn),
        onMessage<&MapBaseWnd::OnBase>(kBaseOnly),
    };
    static constexpr MessageMap kMap{nullptr, kEntries};
};

class MapWnd : public MapBaseWnd {
 public:
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    UINT_PTR timer = 0;
    POINT point{};
    HWND other = nullptr;
    bool shown = false;

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override { return kMap; }

    LRESULT OnOwn(WPARAM w, LPARAM l) {
        heard.emplace_back("own");
        wParam = w;
        lParam = l;
        return -5;
    }
    void OnTimer(UINT_PTR id) { timer = id; }
    void OnMouse(POINT client) { point = client; }
    void OnFocus(HWND window) { other = window; }
    void OnShowWindow(bool visible) { shown = visible; }
    void OnPaint() { heard.emplace_back("paint"); }
    void OnSize() { heard.emplace_back("size"); }
    void OnMouseLeave() { heard.emplace_back("leave"); }
    void OnEvent() { heard.emplace_back("event"); }

    static constexpr MessageEntry kEntries[] = {
        onMessage<&MapWnd::OnOwn>(kOwn),
        onTimer<&MapWnd::OnTimer>(),
        onMouse<&MapWnd::OnMouse>(WM_MOUSEMOVE),
        onFocus<&MapWnd::OnFocus>(WM_KILLFOCUS),
        onShowWindow<&MapWnd::OnShowWindow>(),
        onPaint<&MapWnd::OnPaint>(),
        onSize<&MapWnd::OnSize>(),
        onMouseLeave<&MapWnd::OnMouseLeave>(),
        onEvent<&MapWnd::OnEvent>(WM_DISPLAYCHANGE),
    };
    static constexpr MessageMap kMap{&MapBaseWnd::kMap, kEntries};
};

class Dispatch : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(create(m_wnd));
        m_wnd.heard.clear();
    }
    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return ::SendMessageW(m_wnd.m_hWnd, message, wParam, lParam);
    }
    MapWnd m_wnd;
};

using Heard = std::vector<std::string>;

}  // namespace

TEST_F(Dispatch, ParametersAndResultAreHandedThrough) {
    EXPECT_EQ(send(kOwn, 0xFFFFFFFFFFFFFFFFULL, -3), -5);
    EXPECT_EQ(m_wnd.wParam, 0xFFFFFFFFFFFFFFFFULL);
    EXPECT_EQ(m_wnd.lParam, -3);
}

TEST_F(Dispatch, OwnEntryHidesTheBaseEntry) {
    send(kOwn);
    EXPECT_EQ(m_wnd.heard, Heard{"own"});
}

TEST_F(Dispatch, WhatTheClassDoesNotNameGoesToItsBase) {
    EXPECT_EQ(send(kBaseOnly), 7);
    EXPECT_EQ(m_wnd.heard, Heard{"base"});
}

TEST_F(Dispatch, WhatNobodyNamesGoesToTheWindowClass) {
    ::SetWindowTextW(m_wnd.m_hWnd, L"title");
    wchar_t title[16] = {};
    EXPECT_EQ(::GetWindowTextW(m_wnd.m_hWnd, title, 16), 5);
    EXPECT_EQ(send(WM_USER + 999), 0);
    EXPECT_TRUE(m_wnd.heard.empty());
}

TEST_F(Dispatch, TimerIdKeepsAllItsBits) {
    send(WM_TIMER, 0x123456789ULL);
    EXPECT_EQ(m_wnd.timer, 0x123456789ULL);
}

TEST_F(Dispatch, MouseCoordinatesAreSigned) {
    send(WM_MOUSEMOVE, 0, MAKELPARAM(static_cast<WORD>(-3), static_cast<WORD>(-32768)));
    EXPECT_EQ(m_wnd.point.x, -3);
    EXPECT_EQ(m_wnd.point.y, -32768);
    send(WM_MOUSEMOVE, 0, MAKELPARAM(32767, 5));
    EXPECT_EQ(m_wnd.point.x, 32767);
}

TEST_F(Dispatch, FocusHandlerGetsTheOtherWindow) {
    send(WM_KILLFOCUS, reinterpret_cast<WPARAM>(m_wnd.m_hWnd));
    EXPECT_EQ(m_wnd.other, m_wnd.m_hWnd);
}

TEST_F(Dispatch, ShowHandlerHearsBothDirections) {
    ::ShowWindow(m_wnd.m_hWnd, SW_SHOWNOACTIVATE);
    EXPECT_TRUE(m_wnd.shown);
    ::ShowWindow(m_wnd.m_hWnd, SW_HIDE);
    EXPECT_FALSE(m_wnd.shown);
}

TEST_F(Dispatch, EventsWithoutParameters) {
    send(WM_PAINT);
    send(WM_SIZE);
    send(WM_MOUSELEAVE);
    send(WM_DISPLAYCHANGE);
    EXPECT_EQ(m_wnd.heard, (Heard{"paint", "size", "leave", "event"}));
}

TEST_F(Dispatch, GarbageParametersAreHarmless) {
    for (const UINT message :
         {static_cast<UINT>(WM_TIMER), static_cast<UINT>(WM_MOUSEMOVE), static_cast<UINT>(WM_COMMAND),
          static_cast<UINT>(WM_KILLFOCUS), static_cast<UINT>(WM_SIZE), 0xFFFFFFFFU}) {
        send(message, ~WPARAM{0}, ~LPARAM{0});
    }
    send(WM_NOTIFY, 0, 0);
    SUCCEED();
}

TEST(Default, MeansTheInnermostMessageAndThenTheOuterAgain) {
    test::ScriptedWnd window;
    LRESULT nestedResult = -1;
    window.on(kNested, [](test::ScriptedWnd& self) { return self.passOn(); });
    window.on(WM_SETTEXT, [&](test::ScriptedWnd& self) {
        nestedResult = ::SendMessageW(self.m_hWnd, kNested, 0, 0);
        return self.passOn();  // the text, not the nested message
    });
    ASSERT_TRUE(create(window));
    ::SetWindowTextW(window.m_hWnd, L"outer");
    EXPECT_EQ(nestedResult, 0);
    EXPECT_EQ(::GetWindowTextLengthW(window.m_hWnd), 5);
}

TEST(Default, OutsideOfAnyMessageDoesNothing) {
    test::ScriptedWnd window;
    EXPECT_EQ(window.passOn(), 0);
    ASSERT_TRUE(create(window));
    EXPECT_EQ(window.passOn(), 0);
}

TEST(Default, AfterTheWindowIsGoneDoesNothing) {
    test::ScriptedWnd window;
    LRESULT result = -1;
    window.on(kOwn, [&](test::ScriptedWnd& self) {
        self.DestroyWindow();
        result = self.passOn();
        return LRESULT{3};
    });
    ASSERT_TRUE(create(window));
    EXPECT_EQ(::SendMessageW(window.m_hWnd, kOwn, 0, 0), 3);
    EXPECT_EQ(result, 0);
}

namespace {

// A control that handles one of its own notifications with Default() and another one itself.
class ReflectingCtrl : public CSliderCtrl {
 public:
    int drawn = 0;
    int paints = 0;
    int released = 0;

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override { return kMap; }
    LRESULT OnCustomDraw(NMHDR* header) {
        ++drawn;
        return header->idFrom == 99 ? CDRF_SKIPDEFAULT : Default();
    }
    void OnReleased(NMHDR*) { ++released; }
    void OnPaint() {
        ++paints;
        Default();
    }
    static constexpr MessageEntry kEntries[] = {
        onReflectedNotify<&ReflectingCtrl::OnCustomDraw>(NM_CUSTOMDRAW),
        onReflectedNotify<&ReflectingCtrl::OnReleased>(static_cast<UINT>(NM_RELEASEDCAPTURE)),
        onPaint<&ReflectingCtrl::OnPaint>(),
    };
    static constexpr MessageMap kMap{nullptr, kEntries};
};

class Reflection : public testing::Test {
 protected:
    void SetUp() override {
        const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_BAR_CLASSES};
        ::InitCommonControlsEx(&classes);
        ASSERT_TRUE(create(m_parent));
        m_hTrack = ::CreateWindowExW(0, TRACKBAR_CLASSW, L"", WS_CHILD | WS_VISIBLE | TBS_NOTICKS, 0, 0, 180, 40,
                                     m_parent.m_hWnd, nullptr, nullptr, nullptr);
        ASSERT_TRUE(m_control.SubclassWindow(m_hTrack));
    }
    LRESULT notify(UINT code, UINT_PTR id = 0, HWND from = nullptr) {
        NMHDR header{from == nullptr ? m_hTrack : from, id, code};
        return ::SendMessageW(m_parent.m_hWnd, WM_NOTIFY, id, reinterpret_cast<LPARAM>(&header));
    }
    CWnd m_parent;
    ReflectingCtrl m_control;
    HWND m_hTrack = nullptr;
};

}  // namespace

TEST_F(Reflection, NotificationComesBackToTheControlAndItsAnswerCounts) {
    EXPECT_EQ(notify(static_cast<UINT>(NM_CUSTOMDRAW), 99), CDRF_SKIPDEFAULT);
    EXPECT_EQ(m_control.drawn, 1);
    EXPECT_EQ(notify(static_cast<UINT>(NM_RELEASEDCAPTURE)), 0);
    EXPECT_EQ(m_control.released, 1);
}

TEST_F(Reflection, OnlyTheNamedCodeAndTheSendersObject) {
    notify(static_cast<UINT>(NM_CLICK));
    notify(static_cast<UINT>(NM_CUSTOMDRAW), 0, m_parent.m_hWnd);
    notify(static_cast<UINT>(NM_CUSTOMDRAW), 0, ::GetDesktopWindow());
    EXPECT_EQ(m_control.drawn, 0);
}

TEST_F(Reflection, DefaultInsideMeansTheNotificationNotThePaintingAroundIt) {
    ::ShowWindow(m_parent.m_hWnd, SW_SHOWNOACTIVATE);
    m_control.drawn = m_control.paints = 0;
    ::RedrawWindow(m_hTrack, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    EXPECT_GE(m_control.drawn, 1);
    EXPECT_EQ(m_control.paints, 1);
}

TEST_F(Reflection, DefaultInsideDoesNotRepeatTheMessageThatTheControlIsIn) {
    // The control refuses the text and notifies its parent instead, whose reflection calls the default processing.
    struct Control : ReflectingCtrl {
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
            if (message != WM_SETTEXT) {
                return ReflectingCtrl::WindowProc(message, wParam, lParam);
            }
            NMHDR header{m_hWnd, 0, static_cast<UINT>(NM_CUSTOMDRAW)};
            ::SendMessageW(::GetParent(m_hWnd), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&header));
            return FALSE;
        }
    } control;
    ASSERT_TRUE(create(control, m_parent.m_hWnd));
    ::SetWindowTextW(control.m_hWnd, L"refused");
    EXPECT_EQ(control.drawn, 1);
    EXPECT_EQ(::GetWindowTextLengthW(control.m_hWnd), 0);
}

TEST_F(Reflection, WithoutAnObjectTheParentHearsAsUsual) {
    int heard = 0;
    test::ScriptedWnd parent;
    parent.on(WM_NOTIFY, [&](test::ScriptedWnd&) {
        ++heard;
        return LRESULT{5};
    });
    ASSERT_TRUE(create(parent));
    NMHDR header{parent.m_hWnd, 0, static_cast<UINT>(NM_CLICK)};
    EXPECT_EQ(::SendMessageW(parent.m_hWnd, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&header)), 5);
    EXPECT_EQ(heard, 1);
}

TEST_F(Reflection, NumberInPlaceOfAnAddressIsHarmless) {
    const int drawn = m_control.drawn;
    for (const LPARAM number : {LPARAM{0}, LPARAM{1}, LPARAM{0x7F667C49}, LPARAM{-1}}) {
        EXPECT_EQ(::SendMessageW(m_parent.m_hWnd, WM_NOTIFY, 1, number), 0);
    }
    EXPECT_EQ(m_control.drawn, drawn);
}

TEST_F(Reflection, SliderMembersReachTheTrackbar) {
    m_control.SetRangeMin(1);
    m_control.SetRangeMax(9, true);
    m_control.SetPos(4);
    EXPECT_EQ(m_control.GetPos(), 4);
    m_control.SetPos(1000);
    EXPECT_EQ(m_control.GetPos(), 9);
    m_control.SetPos(-1000);
    EXPECT_EQ(m_control.GetPos(), 1);
    ::SetWindowLongPtrW(m_hTrack, GWL_STYLE, ::GetWindowLongPtrW(m_hTrack, GWL_STYLE) | TBS_FIXEDLENGTH);
    m_control.SetThumbLength(25);
    EXPECT_EQ(::SendMessageW(m_hTrack, TBM_GETTHUMBLENGTH, 0, 0), 25);
    const RECT channel = m_control.GetChannelRect();
    EXPECT_GT(channel.right, channel.left);
}

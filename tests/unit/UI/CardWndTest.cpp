#include "UI/CardWnd.h"

#include "UI/CardStyle.h"
#include "UI/ItemDlg/ItemsFixture.h"
#include "res/DialogIds.h"

namespace cards {
namespace {

using items::shown;

// A pair of each kind, with everything that derived classes use.
class CAnyCardWnd : public CCardWnd, public IDrawTextOnLayeredWnd {
 public:
    using CCardWnd::dropPictures;
    using CCardWnd::hidePictures;
    using CCardWnd::makePictures;
    using CCardWnd::paintPicture;
    using CCardWnd::picture;
    using CCardWnd::Takes;

    explicit CAnyCardWnd(Takes takes, std::size_t pictures = 1)
        : CCardWnd({IDD_ERROR_ITEM, takes, WS_EX_TOOLWINDOW, pictures}, this) {}

    HRESULT drawText(Gdiplus::Graphics& /*graphics*/) override {
        ++m_drawn;
        return S_OK;
    }
    [[nodiscard]] HWND pictureWindow(std::size_t index = 0) const {
        return picture(index) == nullptr ? nullptr : picture(index)->m_hWnd;
    }
    [[nodiscard]] int drawn() const { return m_drawn; }
    // How often it was moved, raised or shown.
    [[nodiscard]] int moves() const { return m_moves; }

 protected:
    LRESULT WindowProc(UINT nMessage, WPARAM wParam, LPARAM lParam) override {
        m_moves += nMessage == WM_WINDOWPOSCHANGING ? 1 : 0;
        return CCardWnd::WindowProc(nMessage, wParam, lParam);
    }

 private:
    int m_drawn = 0;
    int m_moves = 0;
};

using Takes = CAnyCardWnd::Takes;

class CardWnd : public items::ItemTest {
 protected:
    // With a window for each picture, all visible.
    static void paintAll(const CAnyCardWnd& wnd) {
        wnd.show(true);
        for (std::size_t i = 0; wnd.picture(i) != nullptr; ++i) {
            EXPECT_EQ(wnd.picture(i)->paint(nullptr, 255, nullptr, nullptr), S_OK);
            EXPECT_TRUE(shown(wnd.pictureWindow(i)));
        }
    }
};

TEST_F(CardWnd, AllOfItIsClientAreaWhateverItsStyle) {
    CAnyCardWnd wnd(Takes::Everything);
    ASSERT_TRUE(wnd.Create(nullptr));
    wnd.addExStyle(WS_EX_DLGMODALFRAME);
    ::SetWindowPos(wnd.m_hWnd, nullptr, 10, 10, 80, 60, SWP_FRAMECHANGED | SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(wnd.clientRect(), items::rect(0, 0, 80, 60));
}

TEST_F(CardWnd, IsNotPlacedWhereItIsHiddenAlready) {
    CAnyCardWnd wnd(Takes::Everything);
    ASSERT_TRUE(wnd.Create(nullptr));
    const RECT here{10, 10, 90, 70};
    EXPECT_TRUE(wnd.place(here));
    EXPECT_TRUE((items::exStyle(wnd.m_hWnd) & WS_EX_TOPMOST) != 0);
    int moves = wnd.moves();
    EXPECT_TRUE(wnd.place(here));
    EXPECT_EQ(wnd.moves(), moves);
    EXPECT_TRUE(wnd.place({11, 10, 91, 70}));
    EXPECT_GT(wnd.moves(), moves) << "another place";
    wnd.show(true);
    moves = wnd.moves();
    EXPECT_TRUE(wnd.place({11, 10, 91, 70}));
    EXPECT_GT(wnd.moves(), moves) << "visible: it may have to be raised";
}

TEST_F(CardWnd, SurfaceTakesWhatItsKindSays) {
    struct Row {
        Takes takes;
        BYTE alpha;
        DWORD flags;
    };
    for (const Row& row :
         {Row{Takes::Everything, 1, LWA_ALPHA}, Row{Takes::AllButColourKey, 1, LWA_ALPHA | LWA_COLORKEY},
          Row{Takes::VisiblePixels, 0, LWA_COLORKEY}}) {
        CAnyCardWnd wnd(row.takes);
        ASSERT_TRUE(wnd.Create(nullptr));
        EXPECT_EQ(items::exStyle(wnd.m_hWnd) & (WS_EX_LAYERED | WS_EX_TOOLWINDOW),
                  static_cast<DWORD>(WS_EX_LAYERED | WS_EX_TOOLWINDOW));
        const items::Layer layer = items::layerOf(wnd.m_hWnd);
        EXPECT_EQ(layer.flags, row.flags);
        if ((row.flags & LWA_ALPHA) != 0) {
            EXPECT_EQ(layer.alpha, row.alpha);
        }
        if ((row.flags & LWA_COLORKEY) != 0) {
            EXPECT_EQ(layer.key, kColourKey);
        }
    }
}

TEST_F(CardWnd, HasAsManyPicturesAsItsKindSaysWhileItIsThere) {
    CAnyCardWnd none(Takes::VisiblePixels, 0);
    ASSERT_TRUE(none.Create(nullptr));
    EXPECT_EQ(none.picture(), nullptr);
    EXPECT_EQ(none.paintPicture(nullptr), S_FALSE);

    CAnyCardWnd two(Takes::Everything, 2);
    EXPECT_EQ(two.picture(), nullptr);
    ASSERT_TRUE(two.Create(nullptr));
    EXPECT_NE(two.picture(0), nullptr);
    EXPECT_NE(two.picture(1), nullptr);
    EXPECT_EQ(two.picture(2), nullptr);
    EXPECT_EQ(two.pictureWindow(0), nullptr) << "not before it is painted";
    two.DestroyWindow();
    EXPECT_EQ(two.picture(0), nullptr);
}

TEST_F(CardWnd, PaintsWithTheTextsOfItsOwner) {
    CAnyCardWnd wnd(Takes::Everything);
    ASSERT_TRUE(wnd.Create(nullptr));
    EXPECT_EQ(wnd.paintPicture(nullptr), S_FALSE) << "hidden";
    EXPECT_EQ(wnd.drawn(), 0);
    wnd.show(true);
    EXPECT_EQ(wnd.paintPicture(nullptr), S_OK);
    EXPECT_EQ(wnd.drawn(), 1);
    EXPECT_TRUE(shown(wnd.pictureWindow()));
}

TEST_F(CardWnd, HidesItsPicturesWithItself) {
    CAnyCardWnd wnd(Takes::Everything, 2);
    ASSERT_TRUE(wnd.Create(nullptr));
    paintAll(wnd);
    wnd.show(false);
    EXPECT_FALSE(shown(wnd.m_hWnd));
    EXPECT_FALSE(shown(wnd.pictureWindow(0)));
    EXPECT_FALSE(shown(wnd.pictureWindow(1)));
    paintAll(wnd);
    ::ShowWindow(wnd.m_hWnd, SW_HIDE);  // whoever hides it
    EXPECT_FALSE(shown(wnd.pictureWindow(0)));
}

TEST_F(CardWnd, PicturesCanBeMadeAnew) {
    CAnyCardWnd wnd(Takes::Everything);
    ASSERT_TRUE(wnd.Create(nullptr));
    paintAll(wnd);
    const HWND before = wnd.pictureWindow();
    wnd.dropPictures();
    EXPECT_FALSE(::IsWindow(before));
    EXPECT_TRUE(::IsWindow(wnd.m_hWnd));
    wnd.makePictures();
    wnd.makePictures();
    EXPECT_EQ(wnd.picture(1), nullptr) << "one is enough";
    EXPECT_EQ(wnd.paintPicture(nullptr), S_OK);
}

TEST_F(CardWnd, ItsEndIsTheirEndDestroyedOrDeleted) {
    for (const bool destroy : {true, false}) {
        auto wnd = std::make_unique<CAnyCardWnd>(Takes::Everything, 2);
        ASSERT_TRUE(wnd->Create(nullptr));
        paintAll(*wnd);
        const HWND surface = wnd->m_hWnd;
        const HWND first = wnd->pictureWindow(0);
        const HWND second = wnd->pictureWindow(1);
        const std::wstring className = wnd->picture()->className();
        if (destroy) {
            EXPECT_TRUE(wnd->DestroyWindow());
        } else {
            wnd.reset();
        }
        EXPECT_FALSE(::IsWindow(surface));
        EXPECT_FALSE(::IsWindow(first));
        EXPECT_FALSE(::IsWindow(second));
        WNDCLASSW known{};
        EXPECT_FALSE(::GetClassInfoW(::GetModuleHandleW(nullptr), className.c_str(), &known));
    }
    EXPECT_TRUE(errors().empty());
}

TEST_F(CardWnd, MovesAndShowsWithoutTakingTheFocus) {
    const HWND before = ::SetFocus(nullptr);
    CAnyCardWnd wnd(Takes::Everything);
    ASSERT_TRUE(wnd.Create(nullptr));
    wnd.show(true);
    EXPECT_TRUE(wnd.place({200, 100, 260, 140}));
    EXPECT_EQ(support::windowRect(wnd.m_hWnd), items::rect(200, 100, 260, 140));
    EXPECT_NE(items::exStyle(wnd.m_hWnd) & WS_EX_TOPMOST, 0U);
    EXPECT_TRUE(wnd.place({200, 100, 260, 140}, HWND_NOTOPMOST));
    EXPECT_EQ(items::exStyle(wnd.m_hWnd) & WS_EX_TOPMOST, 0U);
    EXPECT_NE(::GetFocus(), wnd.m_hWnd);
    wnd.DestroyWindow();
    EXPECT_FALSE(wnd.place({0, 0, 1, 1}));
    ::SetFocus(before);
}

}  // namespace
}  // namespace cards

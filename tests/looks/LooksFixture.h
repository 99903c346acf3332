// The program's windows in every state, at the ratio and the edge that a test wants.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "UI/CardGeometry.h"
#include "UI/ItemDlg/ItemsFixture.h"
#include "looks/Looks.h"

namespace looks {

inline constexpr DWORD kKey = 0x3B;
inline constexpr DWORD kSecondKey = 0x3C;

struct Offer {
    const wchar_t* function;
    const wchar_t* caption;
    DWORD info;  // what the plug-in says of its items
};
inline constexpr Offer kMute{L"Mute", L"Mute", 3};
inline constexpr Offer kPlans{L"PowerPlan", L"Power plan", 0xF};
inline constexpr Offer kBrightness{L"Brightness", L"Brightness", 10};
inline constexpr Offer kRadios{L"Wireless", L"Wireless", 0x4000};

class LooksTest : public items::ItemTest {
 protected:
    // A strip of cards for these functions, shown.
    void showStrip(double ratio, bool bottom, const std::vector<Offer>& offers) {
        closeAll();
        m_room.setRatio(ratio);
        m_room.setBottom(bottom);
        const geometry::Strip strip =
            geometry::cardStrip(m_room.placement().workArea, static_cast<int>(offers.size()), ratio, bottom);
        const RECT& place = strip.place;
        items::place(m_room.stripWindow(), place.left, place.top, place.right - place.left, place.bottom - place.top);
        int index = 0;
        for (const Offer& offer : offers) {
            m_plugin->info = offer.info;
            CBlackCard& card = m_room.addCard();
            ASSERT_EQ(card.initialize(offer.function, {kKey, kSecondKey}, offer.caption, m_plugin.path().c_str()),
                      S_OK);
            card.setCardRect(geometry::cardRect(strip, index++));
        }
        ::ShowWindow(m_room.stripWindow(), SW_SHOWNOACTIVATE);
        paintAll();
    }
    // The enlarged card of the strip's card in the middle, after some presses of its key.
    CBlackCard& openCard(double ratio, bool bottom, const Offer& offer, int presses = 1) {
        showStrip(ratio, bottom, {kMute, offer, kPlans});
        m_plugin->info = offer.info;
        ::ShowWindow(m_room.stripWindow(), SW_HIDE);
        CBlackCard& card = *MainDlgSeam::cards(m_room.strip())[1];
        for (int press = 0; press < presses; ++press) {
            EXPECT_GE(card.notifyHotkey(kKey, FALSE, false), 0);
        }
        paintAll();
        return card;
    }
    void closeAll() {
        ::ShowWindow(m_room.stripWindow(), SW_HIDE);
        MainDlgSeam::cards(m_room.strip()).clear();
        support::pump();
    }
    static void paintAll() {
        for (int round = 0; round < 3; ++round) {
            support::pump();
        }
    }
    [[nodiscard]] Layer stripLayer() const { return layerOf(MainDlgSeam::layered(m_room.strip())->m_hWnd); }
    [[nodiscard]] CBlackCard& card(std::size_t index) const { return *MainDlgSeam::cards(m_room.strip())[index]; }
    // What is on the screen, cut out with a margin, over a backdrop.
    [[nodiscard]] static Picture shot(Backdrop backdrop) {
        constexpr int kMargin = 6;
        const std::vector<Layer> layers = visibleLayers();
        RECT all{100000, 100000, -100000, -100000};
        for (const Layer& layer : layers) {
            all.left = std::min(all.left, layer.place.x);
            all.top = std::min(all.top, layer.place.y);
            all.right = std::max<LONG>(all.right, layer.place.x + layer.picture.width);
            all.bottom = std::max<LONG>(all.bottom, layer.place.y + layer.picture.height);
        }
        if (layers.empty()) {
            return {};
        }
        ::InflateRect(&all, kMargin, kMargin);
        return onBackdrop(onScreen(layers, all), backdrop);
    }
};

}  // namespace looks

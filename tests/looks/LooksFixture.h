// The program's windows in every state, at the ratio and the edge that a test wants.
#pragma once

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "Data/RegistryPaths.h"
#include "Logic/ZelCommonFunc.h"
#include "UI/CardGeometry.h"
#include "UI/ItemDlg/ErrorItemDlg.h"
#include "UI/ItemDlg/ItemsFixture.h"
#include "looks/Looks.h"
#include "support/RegistryRoom.h"

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
inline constexpr Offer kRadios{L"Wireless", L"Wireless", 0x5009};
inline constexpr Offer kDisplays{L"Output_2", L"Display output", 0};

// The name of its function in small letters.
inline std::string lowerName(const Offer& offer) {
    std::string name;
    for (const wchar_t* letter = offer.function; *letter != L'\0'; ++letter) {
        name += static_cast<char>(*letter | 0x20);
    }
    return name;
}

inline constexpr UINT kVolumeLargeCard = 110;
inline constexpr UINT kKeyboardLightLargeCard = 580;
// As long as the description of an enlarged card may be.
inline constexpr wchar_t kThreeLines[] = L"Switch the light of the keys on, off or to a timer";

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
    // What an enlarged card with that picture and these texts shows, at the ratio that was set.
    [[nodiscard]] Picture describedCard(UINT uImageId, const wchar_t* pszDesc, const wchar_t* pszStatus) const {
        CLargeCardDlg card(uImageId, L"Caption", pszDesc, nullptr, m_room.placement());
        EXPECT_EQ(card.initialize(), S_OK);
        EXPECT_TRUE(card.Create(nullptr));
        const double ratio = m_room.placement().ratio;
        items::place(card.m_hWnd, 400, 100, truncToInt(96 * ratio), truncToInt(144 * ratio));
        card.setText(pszStatus);
        ::ShowWindow(card.m_hWnd, SW_SHOWNOACTIVATE);
        paintAll();
        return layerOf(LargeCardSeam::layered(card)->m_hWnd).picture;
    }
    // The card of a machine without radios: its only item is the notice.
    CErrorItemDlg& openNotice(double ratio, bool bottom) {
        m_plugin->exports[instr::GetDisplayItemInfoId].result = -1;
        CBlackCard& card = openCard(ratio, bottom, kRadios);
        m_plugin->exports[instr::GetDisplayItemInfoId].result = 0;
        return dynamic_cast<CErrorItemDlg&>(*BlackCardSeam::items(card).at(0));
    }
    // The choices of a machine with two displays; `chosen` of them is enlarged, with its preview. The first is "this
    // screen", the others use both, all with or without resolutions.
    CBlackCard& openDisplays(double ratio, bool bottom, bool resolutions, LONG chosen) {
        support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, regpath::kProgramKey, regpath::kInstallPath, L"C:\\Nowhere");
        constexpr LONG kModes[] = {FENWYN_MODE_INTERNAL, FENWYN_MODE_CLONE, FENWYN_MODE_EXTEND_RIGHT,
                                   FENWYN_MODE_EXTERNAL};
        m_plugin->itemCount = std::size(kModes);
        for (std::size_t i = 0; i < std::size(kModes); ++i) {
            instr::Entry& entry = m_plugin->entries[i];
            entry.mode = kModes[i];
            entry.flags = resolutions ? FENWYN_ENTRY_SHOW_RESOLUTION : 0;
            entry.recordCount = i == 0 ? 1 : 2;
            entry.records[0] = display(L"LCD", 0, 1920, 1080);
            entry.records[1] = display(L"HDMI 1", 1, 2560, 1440);
        }
        m_plugin->currentItem = chosen;
        CBlackCard& card = openCard(ratio, bottom, kDisplays);
        // A window manager may have put the preview first in the system's order, although not on the screen.
        ::SetWindowPos(CircleItemSeam::box(choice(card, chosen)).m_hWnd, HWND_TOPMOST, 0, 0, 0, 0,
                       SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        return card;
    }
    static CFxOutputItemDlg& choice(CBlackCard& card, LONG index) {
        return dynamic_cast<CFxOutputItemDlg&>(*BlackCardSeam::items(card).at(static_cast<std::size_t>(index)));
    }
    // The thin strip of three cards that are hidden.
    Layer showHoverStrip(double ratio, bool bottom) {
        closeAll();
        m_room.setRatio(ratio);
        m_room.setBottom(bottom);
        EXPECT_EQ(ZelMainSeam::hoverStrip()->refresh(3), S_OK);
        ::ShowWindow(m_room.hoverWindow(), SW_SHOWNOACTIVATE);
        paintAll();
        return layerOf(HideDlgSeam::layered(*ZelMainSeam::hoverStrip())->m_hWnd);
    }
    static FenwynDisplayRecord display(const wchar_t* connector, ULONG index, ULONG width, ULONG height) {
        FenwynDisplayRecord record{};
        ::lstrcpynW(record.szConnector, connector, FENWYN_CONNECTOR_CHARS);
        record.uDisplayIndex = index;
        record.uWidth = width;
        record.uHeight = height;
        return record;
    }
    void closeAll() {
        ::ShowWindow(m_room.stripWindow(), SW_HIDE);
        ::ShowWindow(m_room.hoverWindow(), SW_HIDE);
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

 private:
    support::RegistryRoom m_registry;
};

}  // namespace looks

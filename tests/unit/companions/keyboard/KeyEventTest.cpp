// Key events as a hook reports them, converted to what the libraries use, and the numbers of keys.
#include "keyboard/KeyEvent.h"

#include <gtest/gtest.h>

using keyboard::codeOfSlot;
using keyboard::KeyEvent;
using keyboard::keyEventOf;
using keyboard::slotOfCode;

namespace companions {

TEST(KeyCodes, SlotsAndCodesMapOntoEachOther) {
    for (std::size_t slot = 1; slot < keyboard::kKeySlots; ++slot) {
        if (slot != keyboard::kExtendedSlot && slot != keyboard::kVirtualKeySlot) {
            EXPECT_EQ(slotOfCode(codeOfSlot(slot)), slot);
        }
    }
    EXPECT_EQ(codeOfSlot(0x3B), 0x3Bu);
    EXPECT_EQ(codeOfSlot(0x14B), 0xE04Bu);
    EXPECT_EQ(codeOfSlot(0x2B7), 0xF0B7u);
}

TEST(KeyCodes, NumbersThatNoKeyHasMapToNothing) {
    for (const DWORD code :
         {0u, 0x100u, 0x1C1u, 0xE000u, 0xF000u, 0xE100u, 0xE11Du, 0x1E04Bu, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(slotOfCode(code), 0u) << std::hex << code;
    }
}

TEST(KeyEvent, CarriesWhatTheHookWasTold) {
    const KeyEvent event = keyEventOf({VK_F1, 0x3B, 0, 77, 0});
    EXPECT_EQ(event.virtualKey, DWORD{VK_F1});
    EXPECT_EQ(event.slot, 0x3Bu);
    EXPECT_TRUE(event.down);
    EXPECT_EQ(event.time, 77u);
    EXPECT_FALSE(keyEventOf({VK_F1, 0x3B, LLKHF_UP, 77, 0}).down);
}

TEST(KeyEvent, ExtendedKeysHaveSlotsOfTheirOwn) {
    EXPECT_EQ(keyEventOf({VK_LEFT, 0x4B, LLKHF_EXTENDED, 0, 0}).slot, 0x14Bu);
    EXPECT_EQ(keyEventOf({VK_NUMPAD4, 0x4B, 0, 0, 0}).slot, 0x4Bu);
}

TEST(KeyEvent, InjectedKeyWithoutAScanCodeGetsTheLayouts) {
    EXPECT_EQ(keyEventOf({VK_F1, 0, LLKHF_INJECTED, 0, 0}).slot, 0x3Bu);
    EXPECT_EQ(keyEventOf({VK_RCONTROL, 0, LLKHF_INJECTED, 0, 0}).slot, 0x11Du);
}

TEST(KeyEvent, KeyThatHasNoScanCodeAnywhereIsKnownByItsVirtualKey) {
    constexpr DWORD kUnassigned = 0xB9;
    ASSERT_EQ(::MapVirtualKeyW(kUnassigned, MAPVK_VK_TO_VSC_EX), 0u);
    EXPECT_EQ(keyEventOf({kUnassigned, 0, 0, 0, 0}).slot, 0x2B9u);
    EXPECT_EQ(keyEventOf({kUnassigned, 0, LLKHF_EXTENDED | LLKHF_UP, 0, 0}).slot, 0x2B9u);
    EXPECT_EQ(keyEventOf({kUnassigned, 0x55, 0, 0, 0}).slot, 0x55u) << "it came with a scan code";
    EXPECT_EQ(keyEventOf({0xFF, 0, 0, 0, 0}).slot, 0u) << "what no layout knows";
    EXPECT_EQ(keyEventOf({0, 0, 0, 0, 0}).slot, 0u);
}

TEST(KeyEvent, InjectedCharacterIsNoKey) {
    EXPECT_EQ(keyEventOf({VK_PACKET, 0x41, LLKHF_INJECTED, 0, 0}).slot, 0u);
}

}  // namespace companions

// Every value that is read from the registry, with any type, size and content.
#include "ConfigDigest.h"
#include "Data/FaultMemory.h"
#include "Data/HotkeyConfig.h"
#include "Data/RegistryPaths.h"
#include "Data/ZelConfig.h"
#include "Fuzz.h"
#include "HotkeySettings.h"
#include "Logic/CustomHotkey.h"
#include "OutputFavourites.h"
#include "common/RegConfig.h"
#include "common/RegistryStorage.h"
#include "common/UiLanguage.h"
#include "companions/include/FenwynRegistry.h"
#include "plugins/InstrumentedPlugin.h"
#include "support/AppRoom.h"
#include "support/AppSeams.h"
#include "support/LogCapture.h"
#include "support/RegistryRoom.h"

namespace {

using fuzz::CRandom;
using support::RegistryRoom;

constexpr const wchar_t* kSettings[] = {L"Disable",
                                        L"Position",
                                        L"EnableHover",
                                        L"MouseEnterIdle",
                                        L"Topmost",
                                        L"HideMainDlg",
                                        L"HideInFullScreen",
                                        L"IgnoreFnKey",
                                        L"AutoHide",
                                        L"AutoHideDelayTime",
                                        L"HideCaption",
                                        L"Programmable",
                                        L"ShowQrdAtLaunch",
                                        L"AlwaysShowItemsCaption",
                                        L"ItemDescMaxWidth",
                                        L"SliderThumbSize",
                                        L"HideMainUIWhenLostFocus",
                                        L"MonitorOfActiveWindow",
                                        L"PluginPatience",
                                        L"PluginEndTime"};
constexpr const wchar_t* kListed[] = {L"Mute",       L"Lock",     L"PowerPlan", L"Sleep", L"Output", L"Output_2",
                                      L"Brightness", L"Wireless", L"Zoom",      L"KBB",   L"ODD",    L"CursorOverlay"};

HKEY anyRoot(CRandom& random) {
    return random.oneIn(2) ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

// Nonsense, or now and then what belongs there.
void write(CRandom& random, HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& good) {
    static constexpr DWORD kTypes[] = {REG_NONE,  REG_SZ,       REG_EXPAND_SZ, REG_BINARY, REG_DWORD,
                                       REG_QWORD, REG_MULTI_SZ, REG_LINK,      0x7777};
    switch (random.below(5)) {
        case 0:
            return;
        case 1:
            return RegistryRoom::setText(root, key, name, random.oneIn(2) ? good : random.text());
        case 2:
            return RegistryRoom::setDword(root, key, name, random.number());
        default: {
            const std::vector<BYTE> bytes = random.bytes();
            return RegistryRoom::set(root, key, name, random.oneOf(kTypes), bytes.data(), bytes.size());
        }
    }
}

void clear() {
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        RegistryRoom::removeKey(root, L"SOFTWARE");
    }
}

void writeSettings(CRandom& random) {
    for (unsigned n = random.below(8); n > 0; --n) {
        write(random, anyRoot(random), regpath::kConfigKey, random.oneOf(kSettings), L"1");
    }
    RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, regpath::kConfigKey);
}

// A list of functions that exist, with whatever belongs to them.
void writeFunctions(CRandom& random, const std::wstring& library) {
    const HKEY root = anyRoot(random);
    std::wstring list = random.oneIn(8) ? random.text() : std::wstring();
    for (unsigned n = random.below(6); n > 0; --n) {
        const std::wstring name = random.oneIn(8) ? random.text(400) : std::wstring(random.oneOf(kListed));
        const std::wstring key = std::wstring(regpath::kHotkeyKey) + L"\\" + name;
        const std::vector<BYTE> codes = random.bytes();
        RegistryRoom::setBinary(root, key, regpath::kCode, codes);
        write(random, root, key, regpath::kCode, L"60");
        write(random, root, key, regpath::kCaption, L"Caption");
        RegistryRoom::setText(root, key, regpath::kFuncDll, library);
        write(random, root, key, regpath::kFuncDll, library);
        list += name + (random.oneIn(9) ? L"" : L";");
    }
    RegistryRoom::setText(root, regpath::kHotkeyKey, regpath::kFuncList, list);
    if (random.oneIn(3)) {
        write(random, root, regpath::kHotkeyKey, regpath::kFuncList, L"Mute;");
    }
    write(random, root, regpath::kProgramKey, regpath::kInstallPath, L"C:\\Fenwyn");
    for (const wchar_t* const value : {L"ModifierKey", L"StickyModifier", L"ReleaseDelay"}) {
        write(random, root, regpath::kHotkeyKey, value, L"1");
    }
}

void writeButtons(CRandom& random) {
    RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, regpath::kButtonsKey);
    RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, regpath::kUserSettingKey);
    for (unsigned n = random.below(5); n > 0; --n) {
        const DWORD number = random.oneIn(3) ? random.number() : random.below(4);
        const std::wstring button = std::wstring(regpath::kButtonsKey) + L"\\" + std::to_wstring(n);
        const std::wstring user =
            std::wstring(regpath::kUserSettingKey) + L"\\" + std::to_wstring(static_cast<int>(number));
        RegistryRoom::setDword(HKEY_LOCAL_MACHINE, button, regpath::kIsQrdControl, 1);
        RegistryRoom::setDword(HKEY_LOCAL_MACHINE, button, regpath::kMakeFunction, number);
        RegistryRoom::setDword(HKEY_LOCAL_MACHINE, button, regpath::kMakeValue, random.number());
        const wchar_t* const names[] = {regpath::kIsQrdControl, regpath::kMakeFunction, regpath::kMakeValue};
        write(random, HKEY_LOCAL_MACHINE, button, random.oneOf(names), L"1");
        write(random, HKEY_LOCAL_MACHINE, user, regpath::kOption1, L"C:\\none.exe");
        write(random, HKEY_LOCAL_MACHINE, user, regpath::kOption2, L"-x");
    }
}

class RegistryFuzz : public testing::Test {
 protected:
    RegistryFuzz() { EXPECT_TRUE(m_registry.redirected()); }

    RegistryRoom m_registry;
    instr::InstrumentedPlugin m_plugin;
};

TEST_F(RegistryFuzz, ValuesThroughEveryReader) {
    static const std::wstring kFuzzKey = L"SOFTWARE\\Fuzz";
    fuzz::run(10, [](CRandom& random) {
        clear();
        RegistryRoom::makeKey(HKEY_CURRENT_USER, kFuzzKey);
        write(random, HKEY_CURRENT_USER, kFuzzKey, L"Value", L"text");
        storage::RegistryStorage key;
        ASSERT_TRUE(key.open(HKEY_CURRENT_USER, kFuzzKey, KEY_READ));
        DWORD number = 0;
        std::wstring text;
        std::vector<BYTE> bytes;
        std::vector<std::wstring> names;
        static_cast<void>(key.getDword(L"Value", number));
        static_cast<void>(key.getBinary(L"Value", bytes));
        if (key.getString(L"Value", text)) {
            EXPECT_EQ(text.find(L'\0'), std::wstring::npos);
        }
        EXPECT_TRUE(key.enumValues(names));
        RegConfigAccess config;
        ASSERT_EQ(config.Open(HKEY_CURRENT_USER, kFuzzKey.c_str(), KEY_READ), S_OK);
        std::vector<DWORD> numbers;
        std::vector<wchar_t> units;
        static_cast<void>(config.GetValue(L"Value", number));
        static_cast<void>(config.GetValue(L"Value", numbers));
        static_cast<void>(config.GetValue(L"Value", units));
        EXPECT_LE(units.size() * sizeof(wchar_t), bytes.size());
    });
}

TEST_F(RegistryFuzz, KeysOfTheHotkeyLibrary) {
    fuzz::run(10, [this](CRandom& random) {
        clear();
        writeSettings(random);
        writeFunctions(random, m_plugin.path());
        const std::uint64_t before = hotkey::digestConfiguration();
        const auto settings = hotkey::readTrackerSettings();
        EXPECT_LE(settings.releaseDelay, 60000U);
        EXPECT_FALSE(settings.listed.test(0));
        EXPECT_EQ(hotkey::digestConfiguration(), before);
    });
}

TEST_F(RegistryFuzz, CustomisedKeys) {
    fuzz::run(10, [](CRandom& random) {
        clear();
        writeButtons(random);
        CCustomHotkey keys;
        static_cast<void>(keys.getCustomizedHotkeys());
        for (DWORD code = 0; code < 0x80; code += 7) {
            static_cast<void>(keys.isHotkeyCustomized(code));
        }
    });
}

TEST_F(RegistryFuzz, FaultsFavouritesAndTheLanguage) {
    fuzz::run(10, [](CRandom& random) {
        clear();
        const std::wstring plugin = random.oneIn(2) ? L"C:\\x\\A.dll" : random.text(600);
        const std::wstring fault = fenwyn::faultKeyOf(plugin);
        for (const wchar_t* const name : {FENWYN_VALUE_FAULT_FUNCTION, FENWYN_VALUE_FAULT_TIME, FENWYN_VALUE_SET_ASIDE,
                                          FENWYN_VALUE_FAULT_REASON, FENWYN_VALUE_FAULT_WHEN}) {
            write(random, HKEY_CURRENT_USER, fault, name, L"Mute");
        }
        fenwyn::PluginFault read;
        static_cast<void>(CFaultMemory::isSetAside(plugin, read));

        for (unsigned n = 0; n < random.below(4); ++n) {
            const std::wstring key = OUTPUT_SETUP_REG_FAVOURITES L"\\" + std::to_wstring(n);
            for (const wchar_t* const name :
                 {OUTPUT_SETUP_VALUE_TEXT, OUTPUT_SETUP_VALUE_MODE, OUTPUT_SETUP_VALUE_DISPLAYS,
                  OUTPUT_SETUP_VALUE_MONITORS, OUTPUT_SETUP_VALUE_CORNERS}) {
                write(random, HKEY_CURRENT_USER, key, name, L"Desk");
            }
        }
        for (const auto& favourite : favourites::load()) {
            EXPECT_LE(favourite.text.size(), favourites::kMostTextChars);
            EXPECT_LE(favourite.displays.size(), favourites::kMostDisplays);
        }
        write(random, anyRoot(random), FENWYN_REG_PRODUCT, FENWYN_VALUE_LANGUAGE, L"de-DE");
        static_cast<void>(common::wantedLanguage());
    });
}

// The real strip with real plug-ins, from whatever the registry says: it is built, shown, used and hidden.
TEST_F(RegistryFuzz, CardsFromAnyConfiguration) {
    support::AppRoom room;
    ZelMainSeam::stripWnd() = room.stripWindow();
    fuzz::run(10,
              [this, &room](CRandom& random) {
                  clear();
                  m_plugin.reset();
                  writeSettings(random);
                  writeFunctions(random, m_plugin.path());
                  writeButtons(random);
                  CZelConfig::getQrdConfig() = QrdConfig();
                  static_cast<void>(theApp.refreshCards(TRUE));
                  static_cast<void>(theApp.showMainDlg(TRUE, TRUE));
                  support::pump();
                  for (unsigned n = random.below(4); n > 0; --n) {
                      static_cast<void>(room.strip().handleHotkey(random.number() | 0x80U, random.oneIn(3)));
                      support::pump();
                  }
                  static_cast<void>(theApp.showMainDlg(FALSE, TRUE));
                  support::pump();
              },
              {L"instrplugin.dll"});
    MainDlgSeam::cards(room.strip()).clear();
    ZelMainSeam::stripWnd() = nullptr;
}

}  // namespace

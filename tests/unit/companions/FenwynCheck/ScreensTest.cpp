#include "Screens.h"

#include <gtest/gtest.h>

#include <map>

#include "Outside.h"
#include "ScreenBrightness.h"
#include "support/RegistryRoom.h"

namespace {

using machine::BrightnessRange;

class CFakeControl final : public machine::IScreenControl {
 public:
    std::vector<machine::ActiveScreen> screens() override { return list; }
    std::optional<BrightnessRange> brightness(const std::wstring& path) override {
        ++asked;
        const auto found = ranges.find(path);
        return found != ranges.end() ? std::optional(found->second) : std::nullopt;
    }
    bool setBrightness(const std::wstring& path, DWORD value) override {
        ranges[path].now = value;
        return !refuses;
    }

    std::vector<machine::ActiveScreen> list{{L"\\\\?\\one", L"Desk screen"}, {L"\\\\?\\two", L"Projector"}};
    std::map<std::wstring, BrightnessRange> ranges{{L"\\\\?\\one", {10, 35, 60}}};
    bool refuses = false;
    int asked = 0;
};

TEST(ScreenPercentage, IsAPlaceInTheScreensOwnRange) {
    EXPECT_EQ(machine::percentageOf({10, 35, 60}), 50U);
    EXPECT_EQ(machine::percentageOf({0, 0, 100}), 0U);
    EXPECT_EQ(machine::percentageOf({0, 200, 100}), 100U) << "a screen that says nonsense";
    EXPECT_EQ(machine::percentageOf({5, 5, 5}), std::nullopt);
    EXPECT_EQ(machine::percentageOf({9, 5, 1}), std::nullopt);
    EXPECT_EQ(machine::valueAt(0, {10, 0, 60}), 10U);
    EXPECT_EQ(machine::valueAt(50, {10, 0, 60}), 35U);
    EXPECT_EQ(machine::valueAt(100, {10, 0, 60}), 60U);
}

class Screens : public testing::Test {
 protected:
    void SetUp() override { ASSERT_TRUE(m_registry.redirected()); }

    int allow(const std::wstring& screen, bool allowed = true) {
        return machine::allowScreen(m_control, screen, allowed, [this](const std::wstring& text) { m_said += text; });
    }

    support::RegistryRoom m_registry;
    CFakeControl m_control;
    std::wstring m_said;
};

TEST_F(Screens, AreLeftAloneUntilTheirOwnerAllowsEachOfThem) {
    EXPECT_EQ(machine::screenBrightness(m_control, L"\\\\?\\one", std::nullopt), fenwyn::kScreenNotAllowed);
    EXPECT_EQ(machine::screenBrightness(m_control, L"\\\\?\\one", 80), fenwyn::kScreenNotAllowed);
    EXPECT_EQ(m_control.asked, 0) << "a screen is not even asked";
    EXPECT_EQ(allow(L"1"), machine::kWell);
    EXPECT_EQ(machine::screenBrightness(m_control, L"\\\\?\\one", std::nullopt), 50U);
    EXPECT_EQ(machine::screenBrightness(m_control, L"\\\\?\\two", std::nullopt), fenwyn::kScreenNotAllowed);
    EXPECT_EQ(allow(L"\\\\?\\one", false), machine::kWell);
    EXPECT_EQ(machine::screenBrightness(m_control, L"\\\\?\\one", 80), fenwyn::kScreenNotAllowed);
}

TEST_F(Screens, GetTheBrightnessOfTheirOwnRange) {
    ASSERT_EQ(allow(L"\\\\?\\one"), machine::kWell);
    EXPECT_EQ(machine::screenBrightness(m_control, L"\\\\?\\one", 80), 0U);
    EXPECT_EQ(m_control.ranges[L"\\\\?\\one"].now, 50U);
    m_control.refuses = true;
    EXPECT_EQ(machine::screenBrightness(m_control, L"\\\\?\\one", 90), fenwyn::kScreenRefuses);
}

TEST_F(Screens, ThatAreNotThereOrNotToBeToldApartAreNotTouched) {
    ASSERT_EQ(allow(L"2"), machine::kWell);
    EXPECT_EQ(machine::screenBrightness(m_control, L"\\\\?\\two", std::nullopt), fenwyn::kScreenRefuses)
        << "it has no range";
    m_control.list.push_back(m_control.list[1]);
    EXPECT_EQ(machine::screenBrightness(m_control, L"\\\\?\\two", 80), fenwyn::kScreenNotThere) << "two of one path";
    m_control.list.clear();
    EXPECT_EQ(machine::screenBrightness(m_control, L"\\\\?\\two", 80), fenwyn::kScreenNotThere);
    EXPECT_EQ(allow(L"\\\\?\\two", false), machine::kWell) << "a permission can be taken back without the screen";
}

TEST_F(Screens, AreListedWithTheirPermission) {
    ASSERT_EQ(allow(L"2"), machine::kWell);
    m_said.clear();
    EXPECT_EQ(machine::listScreens(m_control, [this](const std::wstring& text) { m_said += text; }), machine::kWell);
    EXPECT_EQ(m_said, L"1  Desk screen\n   \\\\?\\one\n2  Projector  allowed\n   \\\\?\\two\n");
    EXPECT_EQ(m_control.asked, 0);
    m_control.list.clear();
    EXPECT_EQ(machine::listScreens(m_control, [](const std::wstring& /*text*/) {}), machine::kNothingToDo);
}

TEST_F(Screens, NumbersAndPathsThatAreNotListedAreRefused) {
    for (const wchar_t* const screen : {L"0", L"3", L"1x", L"\\\\?\\three"}) {
        EXPECT_EQ(allow(screen), machine::kNothingToDo) << std::wstring(screen).size();
        EXPECT_FALSE(machine::screenAllowed(screen));
    }
}

// Without this one, an answer that comes late would count for less than that of the start before.
TEST_F(Screens, PermissionMakesTheNextStartAskWhetherThereIsABrightness) {
    for (const bool allowed : {true, false}) {
        const DWORD missing = 0;
        ::RegSetKeyValueW(HKEY_CURRENT_USER, FENWYN_REG_OFFERED, L"WinBrightness", REG_DWORD, &missing, sizeof missing);
        ASSERT_EQ(allow(L"2", allowed), machine::kWell);
        EXPECT_EQ(::RegGetValueW(HKEY_CURRENT_USER, FENWYN_REG_OFFERED, L"WinBrightness", RRF_RT_ANY, nullptr, nullptr,
                                 nullptr),
                  ERROR_FILE_NOT_FOUND);
    }
}

// The system of the tests has a screen, and no way to its brightness.
TEST_F(Screens, RealOnesAreToldAndWithoutAWayToThemNothingHappens) {
    const std::unique_ptr<machine::IScreenControl> control = machine::makeScreenControl();
    const std::vector<machine::ActiveScreen> screens = control->screens();
    ASSERT_FALSE(screens.empty());
    EXPECT_TRUE(screens[0].path.starts_with(L"\\\\?\\DISPLAY#"));
    EXPECT_FALSE(screens[0].name.empty());
    EXPECT_EQ(machine::allowScreen(*control, L"1", true, [](const std::wstring& /*text*/) {}), machine::kWell);
    EXPECT_EQ(machine::screenBrightness(*control, screens[0].path, std::nullopt), fenwyn::kScreenRefuses);
    EXPECT_EQ(machine::screenBrightness(*control, screens[0].path, 50), fenwyn::kScreenRefuses);
}

// This program once more, as the process that a screen keeps.
TEST(ScreenProcess, EndsItselfWhenNobodyWaitsForIt) {
    constexpr wchar_t kChild[] = L"FENWYN_TEST_SCREEN_PROCESS";
    if (GetEnvironmentVariableW(kChild, nullptr, 0) != 0) {
        machine::limitOwnLife(50);
        Sleep(INFINITE);
    }
    SetEnvironmentVariableW(kChild, L"1");
    const machine::ChildResult child =
        machine::runSelf(L"--gtest_filter=ScreenProcess.EndsItselfWhenNobodyWaitsForIt", 20000);
    SetEnvironmentVariableW(kChild, nullptr);
    EXPECT_TRUE(child.ended);
    EXPECT_EQ(child.exitCode, fenwyn::kScreenTookTooLong);
}

}  // namespace

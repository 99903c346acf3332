#include "Logic/FuncX/FunctionFixture.h"

#include <algorithm>
#include <utility>

#include "Logic/FuncX/FuncXFactory.h"
#include "Logic/ZelCommonFunc.h"
#include "support/AppSeams.h"

namespace functest {

namespace {

ItemView viewOf(CCircleItemDlg& item) {
    return {ItemDescSeam::text(CircleItemSeam::box(item)), CircleItemSeam::smallImageId(item),
            CircleItemSeam::largeImageId(item)};
}

// There is no strip, and the registry contains no settings.
constexpr const wchar_t* kOthers[] = {L"(CZelMainApp::", L"(CZelConfig::", L"(RegConfigAccess::"};

std::wstring programFolder() {
    wchar_t path[MAX_PATH];
    const std::wstring program(path, ::GetModuleFileNameW(nullptr, path, MAX_PATH));
    return program.substr(0, program.rfind(L'\\'));
}

}  // namespace

void Items::clear() {
    for (CQrdItem*& rpItem : m_vecItems) {
        const std::unique_ptr<CQrdItem> pItem(std::exchange(rpItem, nullptr));
        if (pItem != nullptr) {
            pItem->destroyItem();
        }
    }
    m_vecItems.clear();
}

std::vector<ItemView> Items::views() const {
    std::vector<ItemView> views;
    for (CQrdItem* pItem : m_vecItems) {
        auto* const pCircle = dynamic_cast<CCircleItemDlg*>(pItem);
        views.push_back(pCircle != nullptr ? viewOf(*pCircle) : ItemView{});
    }
    return views;
}

std::vector<double> Items::scales() const {
    std::vector<double> scales;
    for (CQrdItem* pItem : m_vecItems) {
        const auto* const pCircle = dynamic_cast<CCircleItemDlg*>(pItem);
        scales.push_back(pCircle != nullptr ? CircleItemSeam::scale(*pCircle) : 0.0);
    }
    return scales;
}

std::size_t Items::alive() const {
    return static_cast<std::size_t>(
        std::count_if(m_vecItems.begin(), m_vecItems.end(), [](const CQrdItem* pItem) { return pItem != nullptr; }));
}

FunctionTest::FunctionTest() {
    EXPECT_EQ(getWorkArea(m_placement.workArea), S_OK);
    EXPECT_TRUE(m_registry.redirected());
    EXPECT_EQ(m_gdiplus.start(), S_OK);
    const std::wstring strArt = programFolder() + L"\\" FENWYN_STAGE_FROM_UNIT L"\\CardArt.dll";
    const HMODULE hArt = ::LoadLibraryExW(strArt.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    EXPECT_NE(hArt, nullptr) << "CardArt.dll is missing";
    ZelMainSeam::pngDll().reset(hArt);
    EXPECT_TRUE(m_plugin.loaded());
    m_log.clear();
}

FunctionTest::~FunctionTest() {
    setMouseOperating(false);
    ZelMainSeam::pngDll().reset();
}

std::unique_ptr<CFuncX> FunctionTest::load(const wchar_t* pszName, const std::wstring& strPlugin) {
    std::unique_ptr<CFuncX> pFunction = CFuncXFactory::createFunx(pszName, {kCode}, L"Caption");
    if (pFunction != nullptr) {
        pFunction->setPlacement(m_placement);
        EXPECT_EQ(pFunction->initHotkeyDll(instr::InstrumentedPlugin::pathOf(strPlugin).c_str()), S_OK);
    }
    return pFunction;
}

std::size_t FunctionTest::timesLogged(const std::wstring& line) const {
    return m_log.count(line);
}

std::vector<std::wstring> FunctionTest::errors() const {
    std::vector<std::wstring> errors;
    for (const std::wstring& line : m_log.lines()) {
        const bool bOfOthers = std::any_of(std::begin(kOthers), std::end(kOthers), [&line](const wchar_t* pszTag) {
            return line.find(pszTag) != std::wstring::npos;
        });
        if (line.starts_with(L"[ERR]") && !bOfOthers) {
            errors.push_back(line);
        }
    }
    return errors;
}

void FunctionTest::setMouseOperating(bool bOperating) {
    ZelMainSeam::mouseOperating() = bOperating ? TRUE : FALSE;
}

void FunctionTest::withoutPictures() {
    ZelMainSeam::pngDll().reset();
}

}  // namespace functest

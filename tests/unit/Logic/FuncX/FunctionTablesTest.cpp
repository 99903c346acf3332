// The functions' tables compared with the existing pictures and texts.
#include "Logic/FuncX/FunctionTables.h"

#include <gmock/gmock.h>

#include "Logic/FuncX/AskedIds.h"
#include "Logic/FuncX/FunctionFixture.h"

namespace functest {

namespace {

BOOL CALLBACK addName(HMODULE, const wchar_t*, wchar_t* pszName, LONG_PTR lParam) {
    if (IS_INTRESOURCE(pszName)) {
        reinterpret_cast<std::set<UINT>*>(lParam)->insert(static_cast<UINT>(reinterpret_cast<ULONG_PTR>(pszName)));
    }
    return TRUE;
}

// The string ids of a language that a block of sixteen contains.
std::set<UINT> stringsOf(UINT uBlock, WORD wLanguage) {
    std::set<UINT> ids;
    const HRSRC hFound = ::FindResourceExW(nullptr, RT_STRING, MAKEINTRESOURCEW(uBlock), wLanguage);
    const HGLOBAL hBlock = hFound != nullptr ? ::LoadResource(nullptr, hFound) : nullptr;
    if (hBlock == nullptr) {
        return ids;
    }
    const auto* pText = static_cast<const WORD*>(::LockResource(hBlock));
    for (UINT i = 0; i < 16; ++i) {
        const WORD wLength = *pText;
        if (wLength != 0) {
            ids.insert((uBlock - 1) * 16 + i);
        }
        pText += wLength + 1;
    }
    return ids;
}

// Pictures that other parts of the program request: the connectors of the output preview. 60 is the mark of a latched
// modifier.
constexpr UINT kOtherImages[] = {60, 296, 297, 298, 299, 300};

}  // namespace

using FunctionTables = FunctionTest;

TEST_F(FunctionTables, TheImageLibraryHoldsExactlyWhatCanBeAskedFor) {
    std::set<UINT> asked = askedIds().images;
    asked.insert(std::begin(kOtherImages), std::end(kOtherImages));
    std::set<UINT> held;
    const std::wstring strArt = instr::InstrumentedPlugin::pathOf(L"..\\" FENWYN_STAGE_FROM_UNIT L"\\CardArt");
    const common::UniqueModule hArt(::LoadLibraryExW(strArt.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    ASSERT_TRUE(hArt);
    ::EnumResourceNamesW(hArt.get(), L"PNG", &addName, reinterpret_cast<LONG_PTR>(&held));
    EXPECT_EQ(held, asked);
}

TEST_F(FunctionTables, EveryLanguageHoldsExactlyWhatCanBeAskedFor) {
    for (const WORD wLanguage : {WORD{0x409}, WORD{0x407}}) {
        std::set<UINT> held;
        for (UINT uBlock = 1; uBlock <= 100; ++uBlock) {
            held.merge(stringsOf(uBlock, wLanguage));
        }
        EXPECT_EQ(held, askedIds().strings) << wLanguage;
    }
}

}  // namespace functest

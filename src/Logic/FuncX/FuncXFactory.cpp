#include "Logic/FuncX/FuncXFactory.h"

#include <array>
#include <span>
#include <string_view>
#include <utility>

#include "Logic/FuncX/CircleFunction.h"
#include "Logic/FuncX/FxBrightness.h"
#include "Logic/FuncX/FxKBB.h"
#include "Logic/FuncX/FxODD.h"
#include "Logic/FuncX/FxOutput.h"
#include "Logic/FuncX/FxOutput_2.h"
#include "Logic/FuncX/FxOverlay.h"
#include "Logic/FuncX/FxPowerPlan.h"
#include "Logic/FuncX/FxWireless.h"
#include "common/Status.h"
#include "common/TryMake.h"

namespace {

using Maker = std::unique_ptr<CFuncX> (*)(std::vector<DWORD>&&, std::wstring&&);

template <typename Function>
std::unique_ptr<CFuncX> make(std::vector<DWORD>&& vecHotkeyCodes, std::wstring&& strCaption) {
    return common::tryMake<Function>(std::move(vecHotkeyCodes), std::move(strCaption));
}

struct Row {
    std::wstring_view name;
    Maker maker;
};

// The functions with their own class.
constexpr Row kOwnClasses[] = {
    {L"PowerPlan", &make<CFxPowerPlan>},
    {L"Output", &make<CFxOutput>},
    {L"Output_2", &make<CFxOutput_2>},
    {L"Brightness", &make<CFxBrightness>},
    {L"Wireless", &make<CFxWireless>},
    {L"CursorOverlay", &make<CFxCursorOverlay>},
    {L"NumericOverlay", &make<CFxNumOverlay>},
    {L"ODD", &make<CFxODD>},
    {L"KBB", &make<CFxKBB>},
};

template <std::size_t... I>
constexpr std::array<Row, sizeof...(I)> describedRows(std::index_sequence<I...>) {
    using functiontables::kDescribedFunctions;
    return {Row{kDescribedFunctions[I]->pszName, &make<CDescribedFunction<*kDescribedFunctions[I]>>}...};
}
constexpr auto kDescribed = describedRows(std::make_index_sequence<functiontables::kDescribedFunctions.size()>());

// The maker of a function of the contract; null if there is none.
constexpr Maker findMaker(std::wstring_view name) {
    for (const auto rows : {std::span<const Row>(kOwnClasses), std::span<const Row>(kDescribed)}) {
        for (const Row& row : rows) {
            if (fenwyn::equalNames(name, row.name)) {
                return row.maker;
            }
        }
    }
    return nullptr;
}

// Every function of the contract has exactly one maker, and there are no other makers.
consteval bool makersFitTheContract() {
    for (const fenwyn::Function& function : fenwyn::kFunctions) {
        if (findMaker(function.name) == nullptr) {
            return false;
        }
    }
    return std::size(kOwnClasses) + kDescribed.size() == std::size(fenwyn::kFunctions);
}
static_assert(makersFitTheContract());

}  // namespace

std::unique_ptr<CFuncX> CFuncXFactory::createFunx(const wchar_t* pszFuncName, std::vector<DWORD> vecHotkeyCodes,
                                                  std::wstring strCaption) {
    const Maker maker = pszFuncName != nullptr ? findMaker(pszFuncName) : nullptr;
    if (maker != nullptr) {
        return maker(std::move(vecHotkeyCodes), std::move(strCaption));
    }
    LOG_ASSERT(L"!\"Error hotkey function!\"");
    return nullptr;
}

#include "Logic/FuncX/FuncXFactory.h"

#include <array>
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

constexpr std::array<Row, 15> kFunctions{{
    {L"Mute", &make<CFxMute>},
    {L"Lock", &make<CFxLock>},
    {L"PowerPlan", &make<CFxPowerPlan>},
    {L"Sleep", &make<CFxSleep>},
    {L"Hibernate", &make<CFxHibernate>},
    {L"Output", &make<CFxOutput>},
    {L"Output_2", &make<CFxOutput_2>},
    {L"Brightness", &make<CFxBrightness>},
    {L"Wireless", &make<CFxWireless>},
    {L"Touchpad", &make<CFxTouchpad>},
    {L"Zoom", &make<CFxZoom>},
    {L"CursorOverlay", &make<CFxCursorOverlay>},
    {L"NumericOverlay", &make<CFxNumOverlay>},
    {L"ODD", &make<CFxODD>},
    {L"KBB", &make<CFxKBB>},
}};

constexpr wchar_t toLowerAscii(wchar_t c) {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

constexpr bool equalNames(std::wstring_view left, std::wstring_view right) {
    if (left.size() != right.size()) {
        return false;
    }
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (toLowerAscii(left[i]) != toLowerAscii(right[i])) {
            return false;
        }
    }
    return true;
}

consteval bool namesAreUnique() {
    for (std::size_t i = 0; i < kFunctions.size(); ++i) {
        for (std::size_t j = i + 1; j < kFunctions.size(); ++j) {
            if (equalNames(kFunctions[i].name, kFunctions[j].name)) {
                return false;
            }
        }
    }
    return true;
}
static_assert(namesAreUnique());

}  // namespace

std::unique_ptr<CFuncX> CFuncXFactory::createFunx(const wchar_t* pszFuncName, std::vector<DWORD> vecHotkeyCodes,
                                                  std::wstring strCaption) {
    for (const Row& row : kFunctions) {
        if (pszFuncName != nullptr && equalNames(pszFuncName, row.name)) {
            return row.maker(std::move(vecHotkeyCodes), std::move(strCaption));
        }
    }
    LOG_ASSERT(L"!\"Error hotkey function!\"");
    return nullptr;
}

#include "PluginChecker.h"

#include "OutputChecker.h"
#include "PluginLibrary.h"

namespace check {

namespace {

using fenwyn::CurrentRule;
using fenwyn::InfoRule;

constexpr DWORD kManyLevels = 100;

bool hasBit(DWORD mask, LONG bit) {
    return bit >= 0 && bit < 32 && ((mask >> bit) & 1U) != 0;
}

// The checks of all functions but the display output with favourites.
class CBasicChecker {
 public:
    CBasicChecker(const fenwyn::Function& rule, CPluginLibrary& library, CReport& report)
        : m_rule(rule), m_library(library), m_report(report) {}

    void run(std::optional<long> item) {
        if (!_initialize()) {
            return;
        }
        const bool offers = _itemInfo();
        if (m_library.has(FENWYN_IS_DUAL_BRT_CTRL) && m_rule.infoRule == InfoRule::Levels) {
            _dualControl();
        }
        if (offers && m_rule.currentRule != CurrentRule::NotAsked) {
            _currentItem();
        }
        if (offers && m_rule.currentRule == CurrentRule::BitOf && m_library.has(FENWYN_GET_CUSTOM_ITEM_TEXT)) {
            _planNames();
        }
        if (item) {
            _choose(*item);
        }
    }

 private:
    bool _initialize() {
        CGuarded<ULONG> reserved(0);
        const LONG result = m_library.call<FenwynInitializeHotkeyDll>(FENWYN_INITIALIZE, 0L, reserved.out());
        reserved.checkGuard(m_report, FENWYN_INITIALIZE, L"reserved");
        if (result != FENWYN_OK) {
            m_library.reportUnsupported(FENWYN_INITIALIZE, result);
        }
        m_report.answers().initialized = result == FENWYN_OK;
        return result == FENWYN_OK;
    }

    bool _itemInfo() {
        CGuarded<ULONG> info(0);
        CGuarded<ULONG> info2(0);
        CGuarded<ULONG> reserved(0);
        const LONG result = m_library.call<FenwynGetDisplayItemInfo>(FENWYN_GET_DISPLAY_ITEM_INFO, info.out(),
                                                                     info2.out(), reserved.out());
        info.checkGuard(m_report, FENWYN_GET_DISPLAY_ITEM_INFO, L"info");
        info2.checkGuard(m_report, FENWYN_GET_DISPLAY_ITEM_INFO, L"info 2");
        reserved.checkGuard(m_report, FENWYN_GET_DISPLAY_ITEM_INFO, L"reserved");
        m_uInfo = info.value();
        m_uInfo2 = info2.value();
        m_report.answers().info = m_uInfo;
        m_report.answers().info2 = m_uInfo2;
        if (result < 0) {
            _infoFailed(result);
            return false;
        }
        return _checkInfo();
    }

    void _infoFailed(LONG result) {
        const std::wstring number = L"GetDisplayItemInfo failed (" + std::to_wstring(result) + L"): ";
        if (std::wstring_view(m_rule.name) == L"Wireless") {
            m_report.warning(number + L"the card shows its error notice.");
        } else {
            m_report.error(number + L"the card shows no items.");
        }
    }

    bool _checkInfo() {
        switch (m_rule.infoRule) {
            case InfoRule::Exact:
                return _checkExactInfo();
            case InfoRule::Levels:
                return _checkLevels();
            case InfoRule::Mask:
            case InfoRule::TwoMasks:
            case InfoRule::Entries:
                break;
        }
        return _checkMasks();
    }

    bool _checkExactInfo() {
        if (m_uInfo == m_rule.info) {
            return true;
        }
        m_report.error(L"GetDisplayItemInfo gives " + std::to_wstring(m_uInfo) + L" as info; this function needs " +
                       std::to_wstring(m_rule.info) + L", or the card shows no items.");
        return false;
    }

    bool _checkLevels() {
        if (m_uInfo == 0 || m_uInfo > static_cast<ULONG>(MAXLONG)) {
            m_report.error(L"GetDisplayItemInfo gives " + std::to_wstring(m_uInfo) +
                           L" brightness levels; it needs 1 at least.");
            return false;
        }
        m_report.note(L"There are " + std::to_wstring(m_uInfo) + L" brightness levels.");
        if (m_uInfo > kManyLevels) {
            m_report.warning(L"So many levels make one press of a key hardly visible.");
        }
        return true;
    }

    bool _checkMasks() {
        _warnOfExtraBits(m_uInfo & ~m_rule.info, L"info");
        if (m_rule.infoRule == InfoRule::TwoMasks) {
            _warnOfExtraBits(m_uInfo2 & ~m_rule.info2, L"info 2");
        }
        const DWORD offered = m_uInfo & m_rule.info;
        const DWORD offered2 = m_uInfo2 & m_rule.info2;
        if (offered == 0 && offered2 == 0) {
            m_report.error(L"GetDisplayItemInfo offers no items.");
            return false;
        }
        m_report.note(L"Items offered: info " + hex(m_uInfo) + L", info 2 " + hex(m_uInfo2) + L".");
        if (m_rule.choosesPositions() && offered != m_rule.info) {
            m_report.warning(
                L"Some items are left out: SelectItem gets positions among the items that exist, but GetCurrentItem "
                L"counts all states, and so does Fenwyn when it looks for the item that the first press selects.");
        }
        return true;
    }

    void _warnOfExtraBits(DWORD extra, const wchar_t* value) {
        if (extra != 0) {
            m_report.warning(std::wstring(L"Bits ") + hex(extra) + L" of \"" + value +
                             L"\" mean nothing and are ignored.");
        }
    }

    void _dualControl() {
        CGuarded<BYTE> dual(0);
        const LONG result = m_library.call<FenwynIsDualBrtCtrl>(FENWYN_IS_DUAL_BRT_CTRL, dual.out());
        dual.checkGuard(m_report, FENWYN_IS_DUAL_BRT_CTRL, L"dual");
        m_bDual = dual.value() != 0;
        m_report.answers().dual = m_bDual;
        if (result != FENWYN_OK) {
            m_report.error(L"IsDualBrtCtrl failed (" + std::to_wstring(result) + L"): the card shows no slider.");
        } else if (m_bDual) {
            m_report.note(L"The screens are adjusted separately: the card shows both levels and no slider.");
        }
    }

    void _currentItem() {
        CGuarded<LONG> item(-1);
        CGuarded<ULONG> reserved(0);
        const LONG result = m_library.call<FenwynGetCurrentItem>(FENWYN_GET_CURRENT_ITEM, item.out(), reserved.out());
        item.checkGuard(m_report, FENWYN_GET_CURRENT_ITEM, L"item");
        reserved.checkGuard(m_report, FENWYN_GET_CURRENT_ITEM, L"reserved");
        if (result != FENWYN_OK) {
            m_report.error(L"GetCurrentItem failed (" + std::to_wstring(result) +
                           L"): any result but 0 is a failure, and the card shows no items.");
        } else if (!_itemMakesSense(item.value())) {
            m_report.error(L"GetCurrentItem gives " + std::to_wstring(item.value()) +
                           L", which is none of this function's items.");
        } else {
            m_report.answers().current = item.value();
            m_report.note(L"The current item is " + std::to_wstring(item.value()) + L" (" +
                          hex(static_cast<ULONG>(item.value())) + L").");
            const LONG state = item.value() & 0xFFFF;
            if (m_rule.choosesPositions() && !hasBit(m_uInfo, state)) {
                m_report.warning(L"No item stands for the current state " + std::to_wstring(state) +
                                 L": the first press selects the item of another state.");
            }
        }
    }

    [[nodiscard]] bool _itemMakesSense(LONG item) const {
        const LONG levels = static_cast<LONG>(m_uInfo);
        switch (m_rule.currentRule) {
            case CurrentRule::NotAsked:
                return true;
            case CurrentRule::State:
                return item >= 0 && item < m_rule.states;
            case CurrentRule::LowHalf:
                return (item & 0xFFFF) < m_rule.states;
            case CurrentRule::BitOf:
                return hasBit(m_uInfo & m_rule.info, item);
            case CurrentRule::Level:
                return m_bDual ? (item & 0xFF) <= levels && (item >> 8 & 0xFF) <= levels : item >= 0 && item <= levels;
            case CurrentRule::Arrangement:
                return hasBit(m_uInfo & m_rule.info, item) || hasBit(m_uInfo2 & m_rule.info2, item - 32);
            case CurrentRule::Entry:
                break;
        }
        return false;
    }

    void _planNames() {
        for (LONG plan = 0; plan < 4; ++plan) {
            if (hasBit(m_uInfo, plan)) {
                _planName(static_cast<ULONG>(plan));
            }
        }
    }

    void _planName(ULONG plan) {
        CGuarded<BSTR> text(nullptr);
        CGuarded<ULONGLONG> reserved(0);
        const LONG result =
            m_library.call<FenwynGetCustomItemText>(FENWYN_GET_CUSTOM_ITEM_TEXT, plan, text.out(), reserved.out());
        reserved.checkGuard(m_report, FENWYN_GET_CUSTOM_ITEM_TEXT, L"reserved");
        const std::wstring who = L"GetCustomItemText for plan " + std::to_wstring(plan);
        if (result != FENWYN_OK) {
            m_report.error(who + L" failed (" + std::to_wstring(result) + L"): the card shows no items.");
        } else if (SysStringLen(text.value()) == 0) {
            m_report.error(who + L" gives no text.");
        } else {
            m_report.answers().planNames.at(plan) = text.value();
            m_report.note(L"Plan " + std::to_wstring(plan) + L" is \"" + text.value() + L"\".");
        }
        SysFreeString(text.value());
    }

    void _choose(long item) {
        const bool slider = m_rule.infoRule == InfoRule::Levels;
        const char* const name = slider ? FENWYN_FOCUS_ITEM : FENWYN_SELECT_ITEM;
        CGuarded<ULONG> reserved(0);
        const LONG result = m_library.call<FenwynSelectItem>(name, static_cast<LONG>(item), reserved.out());
        reserved.checkGuard(m_report, name, L"reserved");
        const std::wstring call = wide(name) + L"(" + std::to_wstring(item) + L")";
        if (result != FENWYN_OK) {
            m_report.error(call + L" failed (" + std::to_wstring(result) + L").");
        } else {
            m_report.note(call + L" succeeded.");
        }
    }

    const fenwyn::Function& m_rule;
    CPluginLibrary& m_library;
    CReport& m_report;
    ULONG m_uInfo = 0;
    ULONG m_uInfo2 = 0;
    bool m_bDual = false;
};

}  // namespace

CReport checkPlugin(const std::wstring& path, const std::wstring& function, std::optional<long> item) {
    CReport report;
    const fenwyn::Function* const rule = fenwyn::findFunction(function);
    if (rule == nullptr) {
        report.error(L"Fenwyn knows no function \"" + function + L"\". It knows: " + knownFunctions() + L".");
        return report;
    }
    CPluginLibrary library(report);
    if (!library.load(path) || !library.requireExports(rule->exports)) {
        return report;
    }
    if (rule->infoRule == InfoRule::Entries) {
        checkOutput(library, report, item);
    } else {
        CBasicChecker(*rule, library, report).run(item);
    }
    library.call<FenwynFinalizeHotkeyDll>(FENWYN_FINALIZE);
    library.unload();
    return report;
}

std::wstring knownFunctions() {
    std::wstring names;
    for (const fenwyn::Function& function : fenwyn::kFunctions) {
        names += (names.empty() ? L"" : L" ") + std::wstring(function.name);
    }
    return names;
}

}  // namespace check

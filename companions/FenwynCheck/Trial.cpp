#include "Trial.h"

#include <windows.h>

#include <optional>

#include "FenwynFunctions.h"
#include "Words.h"
#include "plugins/sdk/check/PluginLibrary.h"

namespace machine {

namespace {

struct Trial {
    const wchar_t* function;
    const wchar_t* question;
};
constexpr Trial kTrials[] = {
    {L"Mute", L"switch the sound off or on, and back"},
    {L"Brightness", L"make the screen one step darker or brighter, and back"},
    {L"Zoom", L"resize the icons of the desktop, and back"},
    {L"CursorOverlay", L"switch the cursor keys on or off, and back"},
    {L"NumericOverlay", L"switch the number pad on or off, and back"},
};

constexpr DWORD kPatience = 3000;   // ms until a change has to show
constexpr DWORD kSteadiness = 700;  // ms for which it has to stay: a plug-in may answer with a choice still on its way
constexpr DWORD kPause = 20;        // ms between two questions

class CTrial {
 public:
    CTrial(const fenwyn::Function& rule, check::CPluginLibrary& library, check::CReport& report)
        : m_rule(rule), m_library(library), m_report(report) {}

    Finding run() {
        ULONG reserved = 0;
        if (m_library.call<FenwynInitializeHotkeyDll>(FENWYN_INITIALIZE, 0L, &reserved) != FENWYN_OK) {
            return {Outcome::Declined, L"not tried: it is not offered.\n"};
        }
        const std::optional<LONG> before = _state();
        const std::optional<LONG> other = before ? _neighbour(*before) : std::nullopt;
        if (!other) {
            return {Outcome::Faulty, L"FAULT: not tried: there is no state to change.\n"};
        }
        const bool there = _change(*before, *other);
        const bool back = _change(*other, *before);
        return {there && back ? Outcome::Offered : Outcome::Faulty, m_strText};
    }

 private:
    [[nodiscard]] bool _isSlider() const { return m_rule.infoRule == fenwyn::InfoRule::Levels; }

    // Asked as Fenwyn asks when a card opens.
    std::optional<LONG> _state() {
        check::Answers& answers = m_report.answers();
        ULONG reserved = 0;
        LONG item = -1;
        const bool known = m_library.call<FenwynGetDisplayItemInfo>(FENWYN_GET_DISPLAY_ITEM_INFO, &answers.info,
                                                                    &answers.info2, &reserved) >= 0 &&
                           m_library.call<FenwynGetCurrentItem>(FENWYN_GET_CURRENT_ITEM, &item, &reserved) == FENWYN_OK;
        return known ? std::optional<LONG>(item) : std::nullopt;
    }

    // The state beside `item`. Two screens with levels of their own have no neighbour that FocusItem could name.
    std::optional<LONG> _neighbour(LONG item) {
        const auto levels = static_cast<LONG>(m_report.answers().info);
        if (!_isSlider()) {
            // Where items are left out, SelectItem counts others than GetCurrentItem.
            const bool whole = m_report.answers().info == m_rule.info;
            return whole ? std::optional<LONG>((item + 1) % m_rule.states) : std::nullopt;
        }
        BYTE dual = 0;
        if (m_library.call<FenwynIsDualBrtCtrl>(FENWYN_IS_DUAL_BRT_CTRL, &dual) != FENWYN_OK || dual != 0 ||
            levels < 2) {
            return std::nullopt;
        }
        return item > 1 ? item - 1 : item + 1;
    }

    bool _change(LONG from, LONG to) {
        m_strText += _nameOf(from) + L" -> " + _nameOf(to) + L": ";
        ULONG reserved = 0;
        const LONG result =
            m_library.call<FenwynSelectItem>(_isSlider() ? FENWYN_FOCUS_ITEM : FENWYN_SELECT_ITEM, to, &reserved);
        if (result != FENWYN_OK) {
            m_strText += L"FAULT: refused (" + std::to_wstring(result) + L").\n";
            return false;
        }
        const ULONGLONG start = GetTickCount64();
        const std::optional<ULONGLONG> seen = _waitFor(to, start);
        m_strText += seen ? L"in effect after " + std::to_wstring(*seen) + L" ms.\n"
                          : L"FAULT: no effect; the state is " + _nameOf(_state().value_or(-1)) + L".\n";
        return seen.has_value();
    }

    // After how many milliseconds the state came to stay; nothing when it did not.
    std::optional<ULONGLONG> _waitFor(LONG wanted, ULONGLONG start) {
        std::optional<ULONGLONG> since;
        while (GetTickCount64() - start < kPatience + kSteadiness) {
            const ULONGLONG now = GetTickCount64() - start;
            if (_state() != wanted) {
                since.reset();
            } else if (!since) {
                since = now;
            } else if (now - *since >= kSteadiness) {
                return since;
            }
            Sleep(kPause);
        }
        return std::nullopt;
    }

    [[nodiscard]] std::wstring _nameOf(LONG item) const { return itemText(m_rule, m_report.answers(), item); }

    const fenwyn::Function& m_rule;
    check::CPluginLibrary& m_library;
    check::CReport& m_report;
    std::wstring m_strText;
};

}  // namespace

const wchar_t* trialQuestion(const std::wstring& function) {
    for (const Trial& trial : kTrials) {
        if (fenwyn::equalNames(trial.function, function)) {
            return trial.question;
        }
    }
    return nullptr;
}

Finding tryChange(const std::wstring& function, const std::wstring& plugin) {
    const fenwyn::Function* const rule = fenwyn::findFunction(function);
    check::CReport report;
    check::CPluginLibrary library(report);
    if (rule == nullptr || trialQuestion(function) == nullptr || !library.load(plugin) ||
        !library.requireExports(rule->exports)) {
        return {Outcome::Faulty, L"FAULT: it cannot be tried.\n"};
    }
    Finding finding = CTrial(*rule, library, report).run();
    library.call<FenwynFinalizeHotkeyDll>(FENWYN_FINALIZE);
    library.unload();
    return finding;
}

}  // namespace machine

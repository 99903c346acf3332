#include "Inspection.h"

#include "FenwynFunctions.h"
#include "FenwynRegistry.h"
#include "Words.h"
#include "plugins/sdk/check/PluginChecker.h"

namespace machine {

namespace {

// "InitializeHotkeyDll 0.42 ms, GetCurrentItem 0.01 ms"
std::wstring callTimes(const check::Answers& answers) {
    std::wstring text;
    for (const check::TimedCall& call : answers.calls) {
        text += (text.empty() ? L"" : L", ") + check::wide(call.exportName) + L" " + milliseconds(call.milliseconds);
    }
    return text;
}

std::wstring faults(const check::CReport& report) {
    std::wstring text;
    for (const check::Finding& finding : report.findings()) {
        if (finding.weight == check::Weight::Error) {
            text += L"FAULT: " + finding.text + L"\n";
        } else if (finding.weight == check::Weight::Warning && !report.answers().declined) {
            text += L"note: " + finding.text + L"\n";
        }
    }
    return text;
}

std::wstring offer(const check::Answers& answers) {
    if (answers.declined) {
        return L"not offered: " + (answers.reason.empty() ? L"it does not say why." : answers.reason) + L"\n";
    }
    return answers.initialized ? L"offered\n" : L"";
}

// The plug-ins for real machines take what they remember for a late answer; a check wants the machine's own.
void forgetAnswer(const std::wstring& plugin) {
    const std::size_t start = plugin.find_last_of(L"\\/") + 1;
    const std::wstring name = plugin.substr(start, plugin.rfind(L'.') - start);
    forgetOffer(name.c_str());
}

}  // namespace

void forgetOffer(const wchar_t* name) {
    ::RegDeleteKeyValueW(HKEY_CURRENT_USER, FENWYN_REG_OFFERED, name);
}

Finding inspect(const std::wstring& function, const std::wstring& plugin) {
    forgetAnswer(plugin);
    const check::CReport report = check::checkPlugin(plugin, function);
    const check::Answers& answers = report.answers();
    std::wstring text = offer(answers);
    const fenwyn::Function* const rule = fenwyn::findFunction(function);
    const std::wstring state = rule != nullptr ? stateText(*rule, answers) : std::wstring();
    if (!state.empty()) {
        text += L"state: " + state + L"\n";
    }
    text += faults(report);
    if (!answers.calls.empty()) {
        text += L"calls: " + callTimes(answers) + L"\n";
    }
    if (report.count(check::Weight::Error) != 0) {
        return {Outcome::Faulty, text};
    }
    return {answers.declined ? Outcome::Declined : Outcome::Offered, text};
}

}  // namespace machine

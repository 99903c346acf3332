// The page Log and help: the diagnostic log, the report about the machine, plug-ins that were set aside, version and
// licences.
#include <optional>

#include "Allowed.h"
#include "Controls.h"
#include "PluginState.h"
#include "Pages.h"
#include "SettingsIds.h"
#include "Store.h"
#include "Texts.h"
#include "res/Version.h"
#include "common/Handle.h"
#include "common/LogSettings.h"
#include "common/ProgramPath.h"
#include "common/StartByShell.h"
#include "companions/include/PluginFaults.h"

#include <windowsx.h>  // after the framework, whose names its macros would change

namespace settings {
namespace {

constexpr wchar_t kLevel[] = L"Level";
constexpr wchar_t kDestination[] = L"Destination";

constexpr UINT_PTR kTimerReport = 1;  // is the report ready?
constexpr UINT kReportPollMs = 200;
constexpr ULONGLONG kReportPatienceMs = 60000;

// What a number of the log's settings means; the numbers begin with 0.
constexpr UINT kLevels[] = {IDS_LOG_LEVEL_0, IDS_LOG_LEVEL_1, IDS_LOG_LEVEL_2, IDS_LOG_LEVEL_3};
constexpr UINT kDestinations[] = {IDS_LOG_DESTINATION_0, IDS_LOG_DESTINATION_1, IDS_LOG_DESTINATION_2,
                                  IDS_LOG_DESTINATION_3, IDS_LOG_DESTINATION_4};

// A file that another program is to show, in the user's folder for such files.
std::wstring temporaryFile(const wchar_t* name) {
    wchar_t folder[MAX_PATH + 1] = L"";
    ::GetTempPathW(MAX_PATH + 1, folder);
    return std::wstring(folder) + name;
}

bool writeFile(const std::wstring& path, const std::string& bytes) {
    const common::UniqueFile file(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                                FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    return file && ::WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != FALSE &&
           written == bytes.size();
}

// A text that is linked into the program.
std::string linkedText(UINT id) {
    const HMODULE module = ::GetModuleHandleW(nullptr);
    const HRSRC found = ::FindResourceW(module, MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(10));  // RT_RCDATA
    const HGLOBAL loaded = found != nullptr ? ::LoadResource(module, found) : nullptr;
    const auto* bytes = static_cast<const char*>(loaded != nullptr ? ::LockResource(loaded) : nullptr);
    return bytes != nullptr ? std::string(bytes, ::SizeofResource(module, found)) : std::string();
}

class CLogPage : public CPage {
 public:
    CLogPage(CModel& model, const Surroundings& surroundings) : CPage(IDD_PAGE_LOG, model, surroundings) {}

    void load() override;
    void setShown(bool shown) override;
    void scaleChanged() override;
    void onControl(UINT id, UINT code) override;

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;
    bool OnInitDialog() override;
    LRESULT onNotify(const NMHDR& header) override;

 private:
    void OnTimer(UINT_PTR uId);

    void _loadChoice(int id, const wchar_t* name, std::span<const UINT> choices, int standard) const;
    void _storeChoice(int id, const wchar_t* name) const;
    void _loadFaults();
    void _enableButtons() const;
    void _open(const std::wstring& file) const;
    void _openLog() const;
    void _forgive();
    void _report(const std::wstring& file, bool show);
    void _askForReport();
    void _showLicences() const;

    std::vector<fenwyn::PluginFault> m_vecFaults;  // those that are set aside
    common::UniqueHandle m_report;                 // the process that writes the report; none: nothing is being written
    std::wstring m_strReport;
    bool m_bShowReport = false;
    ULONGLONG m_nReportStart = 0;
};

const MessageMap& CLogPage::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onTimer<&CLogPage::OnTimer>(),
    };
    static const MessageMap kMap{&CPage::messageMap(), kEntries};
    return kMap;
}

bool CLogPage::OnInitDialog() {
    ListView_SetExtendedListViewStyle(control(IDC_LOG_FAULTS), LVS_EX_FULLROWSELECT | LVS_EX_INFOTIP | LVS_EX_LABELTIP);
    int index = 0;
    for (const int title : {IDS_LOG_COLUMN_PLUGIN, IDS_LOG_COLUMN_WHEN, IDS_LOG_COLUMN_REASON}) {
        std::wstring words = text(static_cast<UINT>(title));
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT;
        column.pszText = words.data();
        ListView_InsertColumn(control(IDC_LOG_FAULTS), index++, &column);
    }
    ::SetWindowTextW(control(IDC_LOG_VERSION), text(IDS_LOG_VERSION, {L"" FENWYN_VERSION_TEXT}).c_str());
    return true;
}

void CLogPage::scaleChanged() {
    shareWidth(control(IDC_LOG_FAULTS), {30, 30, 40});
}

// Plug-ins may have been set aside since the page was shown last.
void CLogPage::setShown(bool shown) {
    if (shown) {
        _loadFaults();
    }
    CPage::setShown(shown);
}

void CLogPage::load() {
    const dbglog::Settings standard;
    _loadChoice(IDC_LOG_LEVEL, kLevel, kLevels, standard.level);
    _loadChoice(IDC_LOG_DESTINATION, kDestination, kDestinations, standard.destination);
    ::SetWindowTextW(control(IDC_LOG_WHERE), text(IDS_LOG_WHERE, {dbglog::settingsPath().data()}).c_str());
    _loadFaults();
}

// What is stored and no choice is shown as what it is, and counts as the default.
void CLogPage::_loadChoice(int id, const wchar_t* name, std::span<const UINT> choices, int standard) const {
    const HWND box = control(id);
    ComboBox_ResetContent(box);
    for (const UINT choice : choices) {
        ComboBox_AddString(box, text(choice).c_str());
    }
    int selected = standard;
    if (const Content content = model().content({Root::LogFile, kLogSection, name})) {
        const std::wstring stored = textOf(*content);
        selected = stored.size() == 1 && stored[0] >= L'0' ? stored[0] - L'0' : static_cast<int>(choices.size());
        if (static_cast<std::size_t>(selected) >= choices.size()) {
            selected = ComboBox_AddString(box, stored.c_str());
        }
    }
    ComboBox_SetCurSel(box, selected);
}

void CLogPage::_storeChoice(int id, const wchar_t* name) const {
    model().set({Root::LogFile, kLogSection, name}, textData(std::to_wstring(ComboBox_GetCurSel(control(id)))));
}

void CLogPage::_loadFaults() {
    const HWND list = control(IDC_LOG_FAULTS);
    ListView_DeleteAllItems(list);
    m_vecFaults = fenwyn::readFaults();
    std::erase_if(m_vecFaults, [](const fenwyn::PluginFault& fault) { return !fault.setAside; });
    for (std::size_t i = 0; i < m_vecFaults.size(); ++i) {
        fenwyn::PluginFault& fault = m_vecFaults[i];
        std::wstring file = fault.plugin.substr(fault.plugin.rfind(L'\\') + 1);
        LVITEMW item{};
        item.mask = LVIF_TEXT;
        item.iItem = static_cast<int>(i);
        item.pszText = file.data();
        ListView_InsertItem(list, &item);
        ListView_SetItemText(list, item.iItem, 1, fault.when.data());
        ListView_SetItemText(list, item.iItem, 2, fault.reason.data());
    }
    scaleChanged();
    ListView_SetItemState(list, 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    _enableButtons();
}

void CLogPage::_enableButtons() const {
    const bool chosen = ListView_GetNextItem(control(IDC_LOG_FAULTS), -1, LVNI_SELECTED) >= 0;
    const std::pair<int, bool> states[] = {
        {IDS_LOG_FORGIVE, chosen}, {IDS_LOG_SHOW_REPORT, !m_report}, {IDS_LOG_SAVE_REPORT, !m_report}};
    for (const auto& [id, enabled] : states) {
        if (!enabled && ::GetFocus() == control(id)) {
            ::SetFocus(control(IDC_LOG_FAULTS));  // a disabled button must not keep it
        }
        ::EnableWindow(control(id), enabled ? TRUE : FALSE);
    }
}

LRESULT CLogPage::onNotify(const NMHDR& header) {
    if (header.idFrom == IDC_LOG_FAULTS && header.code == LVN_ITEMCHANGED) {
        _enableButtons();
    }
    return 0;
}

void CLogPage::onControl(UINT id, UINT code) {
    switch (id) {
        case IDC_LOG_LEVEL:
            if (code == CBN_SELCHANGE) {
                _storeChoice(IDC_LOG_LEVEL, kLevel);
            }
            break;
        case IDC_LOG_DESTINATION:
            if (code == CBN_SELCHANGE) {
                _storeChoice(IDC_LOG_DESTINATION, kDestination);
            }
            break;
        case IDS_LOG_OPEN:
            _openLog();
            break;
        case IDS_LOG_FORGIVE:
            _forgive();
            break;
        case IDS_LOG_SHOW_REPORT:
            _report(temporaryFile(L"Fenwyn-report.txt"), true);
            break;
        case IDS_LOG_SAVE_REPORT:
            _askForReport();
            break;
        case IDS_LOG_LICENCES:
            _showLicences();
            break;
        default:
            break;
    }
}

void CLogPage::_open(const std::wstring& file) const {
    if (const DWORD error = common::startByShell(file, L""); error != ERROR_SUCCESS) {
        tell(text(IDS_LOG_NOT_OPENED, {file, systemErrorText(error)}));
    }
}

void CLogPage::_openLog() const {
    const dbglog::Path file = dbglog::expandedLogFile(dbglog::readSettings(dbglog::settingsPath().data()));
    if (::GetFileAttributesW(file.data()) == INVALID_FILE_ATTRIBUTES) {
        tell(text(IDS_LOG_NO_FILE, {file.data()}));
        return;
    }
    _open(file.data());
}

void CLogPage::_forgive() {
    const int row = ListView_GetNextItem(control(IDC_LOG_FAULTS), -1, LVNI_SELECTED);
    if (row < 0 || static_cast<std::size_t>(row) >= m_vecFaults.size()) {
        return;
    }
    const LSTATUS error = forgivePlugin(m_vecFaults[static_cast<std::size_t>(row)].plugin);
    _loadFaults();
    tell(error == ERROR_SUCCESS ? text(IDS_LOG_FORGIVEN)
                                : text(IDS_ERROR_WRITE, {systemErrorText(static_cast<DWORD>(error))}));
}

void CLogPage::_askForReport() {
    const std::wstring kinds = text(IDS_LOG_TEXT_FILES) + L'\0' + L"*.txt" + L'\0';
    const FileQuestion question{text(IDS_LOG_REPORT_TITLE), kinds, L"txt", true};
    if (const auto file = surroundings().chooseFile(::GetAncestor(m_hWnd, GA_ROOT), question)) {
        _report(*file, false);
    }
}

// Asked in a process of its own, because a bad plug-in may end it.
void CLogPage::_report(const std::wstring& file, bool show) {
    const std::wstring program = common::programFolder() + L"\\FenwynCheck.exe";
    std::wstring commandLine = L'"' + program + L"\" --machine --report \"" + file + L'"';
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (::CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                         nullptr, &startup, &process) == FALSE) {
        tell(text(IDS_LOG_NO_REPORT, {systemErrorText(::GetLastError())}));
        return;
    }
    ::CloseHandle(process.hThread);
    m_report.reset(process.hProcess);
    m_strReport = file;
    m_bShowReport = show;
    m_nReportStart = ::GetTickCount64();
    ::SetWindowTextW(control(IDC_LOG_SAID), text(IDS_LOG_ASKING).c_str());
    ::SetTimer(m_hWnd, kTimerReport, kReportPollMs, nullptr);
    _enableButtons();
}

void CLogPage::OnTimer(UINT_PTR /*uId*/) {
    const bool ended = m_report && ::WaitForSingleObject(m_report.get(), 0) == WAIT_OBJECT_0;
    const bool late = ::GetTickCount64() - m_nReportStart > kReportPatienceMs;
    if (!ended && !late) {
        return;
    }
    ::KillTimer(m_hWnd, kTimerReport);
    m_report.reset();
    _enableButtons();
    const bool there = ended && ::GetFileAttributesW(m_strReport.c_str()) != INVALID_FILE_ATTRIBUTES;
    ::SetWindowTextW(control(IDC_LOG_SAID), text(there ? IDS_LOG_REPORT_THERE : IDS_LOG_REPORT_MISSING,
                                                 {m_strReport}).c_str());
    if (there && m_bShowReport) {
        _open(m_strReport);
    }
}

void CLogPage::_showLicences() const {
    std::string words = linkedText(IDR_LICENSE) + "\n\n" + linkedText(IDR_NOTICE);
    for (std::size_t at = words.find('\n'); at != std::string::npos; at = words.find('\n', at + 2)) {
        words.insert(at, 1, '\r');  // as all editors of Windows take it
    }
    const std::wstring file = temporaryFile(L"Fenwyn-licenses.txt");
    if (writeFile(file, words)) {
        _open(file);
    } else {
        tell(text(IDS_LOG_NOT_OPENED, {file, systemErrorText(::GetLastError())}));
    }
}

}  // namespace

std::unique_ptr<CPage> makeLogPage(CModel& model, const Surroundings& surroundings) {
    return std::make_unique<CLogPage>(model, surroundings);
}

}  // namespace settings

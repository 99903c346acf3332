#include "FaultCare.h"

#include <shlobj.h>

#include <atomic>
#include <string>
#include <utility>

#include "Data/FaultMemory.h"
#include "Data/ZelConfig.h"
#include "Logic/Faults/CallerState.h"
#include "Logic/Faults/FaultHandler.h"
#include "Logic/Faults/HangWatch.h"
#include "Logic/Faults/PluginGate.h"
#include "Logic/Faults/Succession.h"
#include "Logic/HotkeyEventHandler.h"
#include "Messages.h"
#include "UI/FaultNotice.h"
#include "UI/StuckCards.h"
#include "ZelMain.h"
#include "common/DebugLog.h"
#include "common/Handle.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"
#include "res/StringIds.h"

namespace faultcare {

namespace {

constexpr DWORD kNewsMs = 15000;  // how long the news of the last run is shown
constexpr DWORD kHideMs = 1000;   // how long the cards may take to hide

// The thread that does what may take long or wait for others.
struct Care {
    common::UniqueHandle call;   // a successor is wanted
    common::UniqueHandle comes;  // and is about to be started
    common::UniqueHandle hangs;  // the cards hang
    common::UniqueHandle over;   // they answer again
    std::atomic<bool> goOn = true;
    DWORD thread = ::GetCurrentThreadId();  // of the cards
    faults::PluginEntry plugin{};           // whose call hangs; written before `hangs` is set
    std::wstring news;
};

// Never destroyed: its thread runs until the process has ended.
Care& care() {
    static Care* const pCare = new Care;
    return *pCare;
}

std::wstring filled(UINT uTextId, const std::wstring& strFunction, const std::wstring& strFile) {
    std::wstring text = loadResString(uTextId);
    for (const auto& [mark, value] : {std::pair{L"%1", strFunction}, std::pair{L"%2", strFile}}) {
        if (const std::size_t at = text.find(mark); at != std::wstring::npos) {
            text.replace(at, 2, value);
        }
    }
    return text;
}

std::wstring fileOf(const std::wstring& strPath) {
    return strPath.substr(strPath.find_last_of(L"\\/") + 1);
}

std::wstring hangText(const faults::PluginEntry& plugin) {
    const std::wstring strName = plugin.caption[0] != L'\0' ? plugin.caption : plugin.function;
    return filled(IDS_FAULT_HANGS, strName, fileOf(plugin.path));
}

// Starting a process needs the heap. Whoever lost its lock has stopped this thread here at the latest; then the keeper
// ends the process.
void callSuccessor() noexcept {
    faults::touchHeap();
    ::SetEvent(care().comes.get());
    if (!faults::startSuccessor(care().goOn)) {
        ::TerminateProcess(::GetCurrentProcess(), 3);
    }
    ::Sleep(INFINITE);  // until it ends this process
}

void attendToHang() {
    Care& rCare = care();
    CHotkeyEventHandler::handBackKeys();
    const CStuckCards hidden(rCare.thread);
    const CFaultNotice notice(hangText(rCare.plugin));
    faults::section().fault.told = TRUE;
    if (notice.wait({rCare.call.get(), rCare.over.get()}, INFINITE) == 0) {
        callSuccessor();
    }
    faults::section().fault.told = FALSE;
    // The cards would come back with what the plug-in was called for; nobody waits for that any more. They are hidden
    // before what is left of them can be seen again.
    theApp.sendToFrame(kMsgHideStrip, kHideMs);
    CHotkeyEventHandler::takeKeysAgain();
}

DWORD WINAPI careThread(void* /*unused*/) noexcept {
    Care& rCare = care();
    try {
        if (!rCare.news.empty()) {
            const CFaultNotice notice(rCare.news);
            // A further fault, or a hang, is more urgent; its event stays set.
            static_cast<void>(notice.wait({rCare.call.get(), rCare.hangs.get()}, kNewsMs));
        }
    } catch (...) {
        rCare.news.clear();  // without memory nothing is told
    }
    for (;;) {
        const HANDLE handles[] = {rCare.call.get(), rCare.hangs.get()};
        if (::WaitForMultipleObjects(ARRAYSIZE(handles), handles, FALSE, INFINITE) != WAIT_OBJECT_0 + 1) {
            callSuccessor();
        }
        ::ResetEvent(rCare.hangs.get());
        try {
            attendToHang();
        } catch (...) {
            continue;  // without memory the user is not told; the rest goes on
        }
    }
}

void askForSuccessor(bool bGoOn) noexcept {
    care().goOn = bGoOn;
    ::SetEvent(care().call.get());
}

bool successorComes(DWORD dwMilliseconds) noexcept {
    return ::WaitForSingleObject(care().comes.get(), dwMilliseconds) == WAIT_OBJECT_0;
}

void ping() noexcept {
    theApp.postToFrame(kMsgAlive);
}

void hangs(const faults::CallEntry& /*call*/, const faults::PluginEntry& plugin) noexcept {
    care().plugin = plugin;
    ::ResetEvent(care().over.get());
    ::SetEvent(care().hangs.get());
}

void over() noexcept {
    ::SetEvent(care().over.get());
}

// With two or more faults, or with one at the start, the plug-in is set aside.
void rememberFault(const faults::Section& left) {
    auto fault = faults::faultLeftIn(left, ::GetTickCount64());
    if (!fault) {
        return;
    }
    CFaultMemory::remember(*fault);
    LOG_LINE(::dbglog::Level::Error, L"The last run ended in %s of function %s, plug-in %s: %s. The plug-in is %s.",
             fault->exportName.c_str(), fault->function.c_str(), fault->plugin.c_str(), fault->reason.c_str(),
             fault->setAside ? L"set aside" : L"loaded again");
    if (left.fault.told == FALSE) {
        const bool bCaption = left.fault.known != FALSE && left.fault.plugin.caption[0] != L'\0';
        const std::wstring strName = bCaption ? std::wstring(left.fault.plugin.caption) : fault->function;
        care().news =
            filled(fault->setAside ? IDS_FAULT_SET_ASIDE : IDS_FAULT_RESTARTED, strName, fileOf(fault->plugin));
    }
}

void startThread() {
    Care& rCare = care();
    rCare.call.reset(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    rCare.comes.reset(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    rCare.hangs.reset(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    rCare.over.reset(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const common::UniqueHandle thread(::CreateThread(nullptr, 0, &careThread, nullptr, 0, nullptr));
}

// The system starts the program again where this process cannot: after a fault that ends it without asking its
// handlers, or after an update. Windows Vista has it; other systems may not.
void registerRestart() {
    using Register = HRESULT(WINAPI*)(PCWSTR, DWORD);
    const auto pfRegister = reinterpret_cast<Register>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "RegisterApplicationRestart")));
    if (pfRegister != nullptr) {
        pfRegister(faults::kQuietSwitch, 0);
    }
}

bool startCare() {
    const std::wstring strLogFile = dbglog::logFile().data();
    const std::wstring strFolder = faults::folderOf(strLogFile);
    const faults::Predecessor predecessor = faults::takeOver(strLogFile);
    if (predecessor.existed && !predecessor.goOn) {
        return false;
    }
    faults::Section left{};
    if (!strFolder.empty()) {
        ::SHCreateDirectoryExW(nullptr, strFolder.c_str(), nullptr);
    }
    if (!strFolder.empty() && faults::mapSection((strFolder + faults::kSectionFile).c_str(), left)) {
        rememberFault(left);
        faults::section().ownRestart = predecessor.existed && left.fault.known == FALSE ? TRUE : FALSE;
    }
    if (faults::installFaultHandlers({&askForSuccessor, &successorComes}) &&
        faults::startKeeper({&ping, &hangs, &over})) {
        startThread();
        registerRestart();
    }
    return true;
}

}  // namespace

bool start(const wchar_t* pszCommandLine) noexcept {
    if (faults::isSwitch(pszCommandLine, faults::kSafeSwitch)) {
        faults::closeGate();
    }
    try {
        return startCare();
    } catch (...) {
        LOG_STATUS(common::caughtStatus());
        return true;
    }
}

void readPatience() noexcept {
    const QrdConfig& config = CZelConfig::getQrdConfig();
    faults::setPatience({config.uPluginPatience, config.uPluginEndTime});
}

void end() noexcept {
    faults::endIsReached();
}

}  // namespace faultcare

#include "Logic/Faults/PluginGate.h"

#include "Data/FaultMemory.h"
#include "common/DebugLog.h"

namespace faults {

namespace {

bool g_bClosed = false;

}  // namespace

void closeGate() noexcept {
    g_bClosed = true;
}

bool mayLoad(const std::wstring& strPath) {
    if (g_bClosed) {
        LOG_WARNING(L"A start without plug-ins: %s is not loaded.", strPath.c_str());
        return false;
    }
    fenwyn::PluginFault fault;
    if (!CFaultMemory::isSetAside(strPath, fault)) {
        return true;
    }
    LOG_LINE(::dbglog::Level::Error,
             L"Plug-in %s is set aside since %s: %s in %s. FenwynCheck --forgive allows it again.", strPath.c_str(),
             fault.when.c_str(), fault.reason.c_str(), fault.exportName.c_str());
    return false;
}

}  // namespace faults

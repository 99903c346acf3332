#include "common/StartByShell.h"

#include <shellapi.h>

#include "common/DebugLog.h"

namespace common {
namespace {

constexpr INT_PTR kLastShellError = 32;

}  // namespace

DWORD startByShell(const std::wstring& file, const std::wstring& param) {
    if (file.size() > kMostFileChars) {
        LOG_LINE(::dbglog::Level::Error, L"%u characters are more than the shell takes as a file.",
                 static_cast<unsigned>(file.size()));
        return SE_ERR_FNF;
    }
    const auto result =
        reinterpret_cast<INT_PTR>(::ShellExecuteW(nullptr, nullptr, file.c_str(), param.c_str(), nullptr, SW_SHOW));
    if (result > kLastShellError) {
        return ERROR_SUCCESS;
    }
    return result == 0 ? DWORD{SE_ERR_OOM} : static_cast<DWORD>(result);
}

}  // namespace common

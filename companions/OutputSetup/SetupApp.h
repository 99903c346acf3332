// The application object: one window per start, chosen by the command line; a second start of the same window brings
// the first to the front.
#pragma once

#include <memory>

#include "CommandLine.h"
#include "SetupDlg.h"
#include "Surroundings.h"
#include "common/Handle.h"
#include "framework/WinApp.h"

namespace setup {

class CSetupApp : public CWinApp {
 public:
    explicit CSetupApp(Surroundings surroundings) : m_surroundings(std::move(surroundings)) {}

 protected:
    bool InitInstance() override;
    // 1 if the program could not carry out the request.
    int ExitInstance() override;
    void exceptionCaught() noexcept override { m_bFailed = true; }

 private:
    bool _fail(const std::wstring& message);
    bool _isSecondStart(const wchar_t* className, const Request& request);

    Surroundings m_surroundings;
    std::unique_ptr<CSetupDlg> m_pDlg;
    common::UniqueHandle m_mutex;
    bool m_bFailed = false;
};

}  // namespace setup

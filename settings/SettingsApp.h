// The application object: one window per session; a second start brings it to the front.
#pragma once

#include <memory>

#include "Store.h"
#include "Surroundings.h"
#include "common/Handle.h"
#include "framework/WinApp.h"

namespace settings {

class CModel;
class CSettingsDlg;

class CSettingsApp : public CWinApp {
 public:
    explicit CSettingsApp(Surroundings surroundings);
    ~CSettingsApp() override;

 protected:
    bool InitInstance() override;
    // 1 if the window could not be opened.
    int ExitInstance() override;
    void exceptionCaught() noexcept override { m_bFailed = true; }

 private:
    [[nodiscard]] bool _isSecondStart();

    Surroundings m_surroundings;
    CSystemStore m_store;
    std::unique_ptr<CModel> m_pModel;
    std::unique_ptr<CSettingsDlg> m_pDlg;
    common::UniqueHandle m_mutex;
    bool m_bFailed = false;
};

}  // namespace settings

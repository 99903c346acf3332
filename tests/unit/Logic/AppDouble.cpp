#include "AppDouble.h"

#include "ZelMain.h"

class CZelMainDlg {};
class CSysMsgHandlerFrame {};
class CZelHideDlg {};

namespace {

double g_ratio = 1.0;

}

CZelMainApp::CZelMainApp() = default;
CZelMainApp::~CZelMainApp() = default;

double CZelMainApp::getPngRatio() const {
    return g_ratio;
}

bool CZelMainApp::InitInstance() {
    return false;
}

bool CZelMainApp::PreTranslateMessage(MSG& /*message*/) {
    return false;
}
void CZelMainApp::exceptionCaught() noexcept {}
int CZelMainApp::ExitInstance() {
    return 0;
}

CZelMainApp theApp;

void rendering::setImageRatio(double ratio) {
    g_ratio = ratio;
}

// Creates the function object for a name of the function list: the only place that knows all functions.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Logic/FuncX/FuncX.h"

class CFuncXFactory {
 public:
    // Null for an unknown name (logged) or if memory runs out. Letter case (A-Z) does not matter.
    [[nodiscard]] static std::unique_ptr<CFuncX> createFunx(const wchar_t* pszFuncName,
                                                            std::vector<DWORD> vecHotkeyCodes, std::wstring strCaption);
};

// Optical drives for tests.
#pragma once

#include <windows.h>

#include <mutex>
#include <string>

#include "system/Drives.h"

namespace win {

class CFakeDrives final : public IDrives {
 public:
    std::vector<OpticalDrive> opticalDrives() override {
        ::Sleep(dwReadMs);
        return drives;
    }
    void eject(wchar_t chLetter) override { _record(L'e', chLetter); }
    void makeQuiet(wchar_t chLetter) override { _record(L'q', chLetter); }

    // The calls, as "eD" (eject D:) and "qD" (quiet).
    [[nodiscard]] std::wstring done() const {
        const std::lock_guard<std::mutex> guard(m_mutex);
        return m_strDone;
    }

    DWORD dwReadMs = 0;                // how long an answer takes
    std::vector<OpticalDrive> drives;  // set before the function under test gets it

 private:
    void _record(wchar_t chWhat, wchar_t chLetter) {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_strDone += {chWhat, chLetter};
    }

    mutable std::mutex m_mutex;
    std::wstring m_strDone;
};

}  // namespace win

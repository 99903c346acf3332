#include <windows.h>

#include <winioctl.h>

#include <array>
#include <string>

#include "common/Handle.h"
#include "system/Drives.h"

namespace win {

namespace {

// Bus types by their documented numbers; not every set of headers has the names.
constexpr int kBusVirtual = 0x0E;
constexpr int kBusFileBacked = 0x0F;

// The control for the speed. Its argument: a type of request, and speeds in units of 1000 bytes per second.
struct SpeedRequest {
    ULONG uType;  // 0: set the speed
    USHORT uReadSpeed;
    USHORT uWriteSpeed;
    ULONG uRotation;  // 0: the drive decides
};
constexpr DWORD kSetSpeed = CTL_CODE(FILE_DEVICE_CD_ROM, 0x0018, METHOD_BUFFERED, FILE_READ_ACCESS);
constexpr USHORT kQuietSpeed = 706;        // four times the speed of music
constexpr USHORT kAnyWriteSpeed = 0xFFFF;  // the writing speed is not changed

common::UniqueFile open(wchar_t chLetter, DWORD dwAccess) {
    const std::wstring path = std::wstring(L"\\\\.\\") + chLetter + L":";
    return common::UniqueFile(
        ::CreateFileW(path.c_str(), dwAccess, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
}

bool isOptical(wchar_t chLetter) {
    const std::array<wchar_t, 4> root{chLetter, L':', L'\\', L'\0'};
    return ::GetDriveTypeW(root.data()) == DRIVE_CDROM;
}

// The drive's bus; nothing if the drive does not tell.
std::optional<int> busOf(wchar_t chLetter) {
    const common::UniqueFile hDrive = open(chLetter, 0);
    STORAGE_PROPERTY_QUERY query{};
    query.PropertyId = StorageDeviceProperty;
    query.QueryType = PropertyStandardQuery;
    STORAGE_DEVICE_DESCRIPTOR description{};
    DWORD dwBytes = 0;
    if (!hDrive || !::DeviceIoControl(hDrive.get(), IOCTL_STORAGE_QUERY_PROPERTY, &query, sizeof(query), &description,
                                      sizeof(description), &dwBytes, nullptr)) {
        return std::nullopt;
    }
    return static_cast<int>(description.BusType);
}

void control(wchar_t chLetter, DWORD dwCode, void* pInput, DWORD dwInputBytes) {
    const common::UniqueFile hDrive = open(chLetter, GENERIC_READ);
    DWORD dwBytes = 0;
    if (hDrive) {
        ::DeviceIoControl(hDrive.get(), dwCode, pInput, dwInputBytes, nullptr, 0, &dwBytes, nullptr);
    }
}

class CWindowsDrives final : public IDrives {
 public:
    std::vector<OpticalDrive> opticalDrives() override {
        std::vector<OpticalDrive> drives;
        DWORD dwDrives = ::GetLogicalDrives();
        for (wchar_t chLetter = L'A'; dwDrives != 0; ++chLetter, dwDrives >>= 1U) {
            if ((dwDrives & 1U) == 0 || !isOptical(chLetter)) {
                continue;
            }
            if (const std::optional<int> bus = busOf(chLetter)) {
                drives.push_back({chLetter, *bus == kBusVirtual || *bus == kBusFileBacked});
            }
        }
        return drives;
    }

    void eject(wchar_t chLetter) override { control(chLetter, IOCTL_STORAGE_EJECT_MEDIA, nullptr, 0); }

    void makeQuiet(wchar_t chLetter) override {
        SpeedRequest request{0, kQuietSpeed, kAnyWriteSpeed, 0};
        control(chLetter, kSetSpeed, &request, sizeof(request));
    }
};

}  // namespace

std::shared_ptr<IDrives> makeWindowsDrives() {
    return std::make_shared<CWindowsDrives>();
}

}  // namespace win

#include "functions/OpticalDisc.h"

#include <algorithm>
#include <utility>

namespace win {

namespace {

// The numbers of the offered items.
constexpr LONG kEject = 0;
constexpr LONG kQuiet = 3;
constexpr LONG kCancel = 4;

constexpr ULONG kOffered = 1U << kEject | 1U << kQuiet | 1U << kCancel;

}  // namespace

std::optional<wchar_t> realDrive(const std::vector<OpticalDrive>& rDrives) {
    const auto found =
        std::find_if(rDrives.begin(), rDrives.end(), [](const OpticalDrive& rDrive) { return !rDrive.bMountedImage; });
    return found != rDrives.end() ? std::optional<wchar_t>(found->chLetter) : std::nullopt;
}

COpticalDisc::COpticalDisc(std::shared_ptr<IDrives> pDrives)
    : m_pDrives(std::move(pDrives)), m_drive([pDrives = m_pDrives] { return realDrive(pDrives->opticalDrives()); }) {}

std::wstring COpticalDisc::initialize() {
    return m_drive.waitForFirst(L"There is no optical drive (mounted images are none).");
}

std::optional<ULONG> COpticalDisc::items() {
    m_drive.refresh();
    return kOffered;
}

// A drive has no state to query; with "cancel" as the current item the card begins with "eject".
std::optional<LONG> COpticalDisc::currentItem() {
    return kCancel;
}

bool COpticalDisc::select(LONG lItem) {
    if (lItem == kCancel) {
        return true;
    }
    const std::optional<wchar_t> drive = m_drive.known();
    if (!drive || (lItem != kEject && lItem != kQuiet)) {
        return false;
    }
    return m_drive.change(
        [pDrives = m_pDrives, chLetter = *drive, lItem] {
            if (lItem == kEject) {
                pDrives->eject(chLetter);
            } else {
                pDrives->makeQuiet(chLetter);
            }
        },
        *drive);
}

}  // namespace win

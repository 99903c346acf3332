#include "functions/Zoom.h"

#include <utility>

namespace win {

namespace {

constexpr ULONG kAllSizes = (1U << kZoomSizes) - 1;

}  // namespace

CZoom::CZoom(std::shared_ptr<IDesktopIcons> pIcons)
    : m_pIcons(std::move(pIcons)), m_state([pIcons = m_pIcons] { return pIcons->size(); }) {}

std::wstring CZoom::initialize() {
    return m_state.waitForFirst(L"There is no desktop with icons.");
}

std::optional<ULONG> CZoom::items() {
    m_state.refresh();
    return kAllSizes;
}

std::optional<LONG> CZoom::currentItem() {
    const std::optional<std::size_t> size = m_state.fresh();
    return size ? std::optional<LONG>(static_cast<LONG>(*size)) : std::nullopt;
}

bool CZoom::select(LONG lItem) {
    if (lItem < 0 || lItem >= static_cast<LONG>(kZoomSizes)) {
        return false;
    }
    const auto size = static_cast<std::size_t>(lItem);
    return m_state.change([pIcons = m_pIcons, size] { pIcons->resize(size); }, size);
}

}  // namespace win

#include "UI/ItemDlg/OutputPreviewWnd.h"

#include <algorithm>
#include <cwchar>

#include "Logic/ZelCommonFunc.h"
#include "UI/BufferedPaint.h"
#include "UI/CardStyle.h"
#include "ZelMain.h"
#include "common/FrameSurface.h"
#include "common/GdiPlusFunc.h"
#include "common/Handle.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"
#include "res/DialogIds.h"
#include "res/Pictures.h"

namespace {

constexpr int kWidth = 120;  // pixels, not scaled, like all sizes here
constexpr int kRowHeight = 40;
constexpr int kGapBelowItem = 10;
constexpr int kAboveBottomStrip = 310;
constexpr int kImageSize = 32;
constexpr Gdiplus::ARGB kLine = 0xFFA9A9A9;
constexpr Gdiplus::ARGB kFace = 0xFFF4F4F4;  // like the caption box

// The first word that the connector's name contains is used.
struct ConnectorImage {
    const wchar_t* word;
    UINT imageId;
};
constexpr ConnectorImage kConnectorImages[] = {
    {L"LCD", kConnectorPanelImageId},
    {L"RGB", kConnectorAnalogImageId},
    {L"DVI", kConnectorDviImageId},
    {L"HDMI", kConnectorHdmiImageId},
    {L"DisplayPort", kConnectorDisplayPortImageId},
};

// The name within its field: an unterminated name ends with the field.
std::wstring connectorName(const FenwynDisplayRecord& record) {
    return {record.szConnector, ::wcsnlen(record.szConnector, FENWYN_CONNECTOR_CHARS)};
}

// Signed; the texts have always been like this.
std::wstring numberText(ULONG value) {
    return std::to_wstring(static_cast<LONG>(value));
}

std::unique_ptr<PreviewDisplayRow> makeRow(const FenwynDisplayRecord& record) {
    auto row = std::make_unique<PreviewDisplayRow>();
    row->strConnector = connectorName(record);
    UINT imageId = 0;
    if (FAILED(COutputPreviewWnd::getConnectorImageID(row->strConnector.c_str(), &imageId)) ||
        FAILED(
            getImageFromRes(theApp.getPngDll(), static_cast<WORD>(imageId), kPngResourceType, row->pConnectorImage))) {
        return nullptr;
    }
    if (row->pConnectorImage->GetLastStatus() != Gdiplus::Ok) {
        LOG_LINE(::dbglog::Level::Error, L"The picture %u cannot be decoded.", imageId);
        return nullptr;
    }
    row->strNumber = numberText(record.uDisplayIndex + 1).substr(0, 5);
    row->strResolution = (numberText(record.uWidth) + L"x" + numberText(record.uHeight)).substr(0, 20);
    return row;
}

}  // namespace

COutputPreviewWnd::COutputPreviewWnd(const FenwynDisplayRecord* pRecords, DWORD dwCount, bool bShowResolution)
    : CNoteWnd(IDD_OUTPUT_PREVIEW), m_bShowResolution(bShowResolution) {
    const DWORD count = pRecords == nullptr ? 0 : std::min<DWORD>(dwCount, FENWYN_MAX_RECORDS);
    for (DWORD i = 0; i < count; ++i) {
        if (auto row = makeRow(pRecords[i]); row != nullptr) {
            m_vecRows.push_back(std::move(row));
        }
    }
}

HRESULT COutputPreviewWnd::getConnectorImageID(const wchar_t* pszConnectorName, UINT* puImageID) {
    RETURN_UNLESS(pszConnectorName != nullptr && puImageID != nullptr,
                  L"(NULL != pszConnectorName) && (NULL != puImageID)", E_POINTER);
    for (const ConnectorImage& candidate : kConnectorImages) {
        if (std::wcsstr(pszConnectorName, candidate.word) != nullptr) {
            *puImageID = candidate.imageId;
            return S_OK;
        }
    }
    LOG_LINE(::dbglog::Level::Error, L"Cannot find the connector type: %s.",
             std::wstring(pszConnectorName).substr(0, 49).c_str());
    LOG_ASSERT(L"!\"Cannot find the connector type.\"");
    return E_FAIL;
}

HRESULT COutputPreviewWnd::setWndPos(const RECT* pItemRect, const Placement& placement) {
    LOG_ENTER_LEAVE();
    if (pItemRect == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    const int height = kRowHeight * static_cast<int>(m_vecRows.size());
    const int x = (pItemRect->left + pItemRect->right) / 2 - kWidth / 2;
    int y = pItemRect->bottom + kGapBelowItem;
    if (placement.bottom) {
        if (!placement.known()) {
            RETURN_LOGGED(E_FAIL);
        }
        y = placement.workArea.bottom - height - kAboveBottomStrip;
    }
    place({x, y, x + kWidth, y + height});
    return S_OK;
}

std::wstring COutputPreviewWnd::text() const {
    std::wstring all;
    for (const auto& row : m_vecRows) {
        all += (all.empty() ? L"" : L", ") + row->strNumber + L" " + row->strConnector;
        if (m_bShowResolution) {
            all += L" " + row->strResolution;
        }
    }
    return all;
}

void COutputPreviewWnd::OnPaint() {
    const RECT client = clientRect();
    const CBufferedPaint paint(m_hWnd, client);
    Gdiplus::Graphics graphics(paint.get());
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeNone);
    const Gdiplus::SolidBrush face(Gdiplus::Color{kFace});
    graphics.FillRectangle(&face, toRectF(client));
    const Gdiplus::Pen line(Gdiplus::Color{kLine}, 1.0F);
    Gdiplus::RectF border = toRectF(client);
    border.Width -= 1.0F;
    border.Height -= 1.0F;
    graphics.DrawRectangle(&line, border);

    std::unique_ptr<Gdiplus::Font> font;
    const HRESULT status = getNormalDPIWndFont(this, graphics, font);
    if (FAILED(status)) {
        LOG_STATUS(status);
        return;
    }
    int top = client.top;
    for (const auto& row : m_vecRows) {
        graphics.DrawLine(&line, static_cast<INT>(client.left + 4), top, static_cast<INT>(client.right - 4), top);
        const RECT band{client.left, top, client.right, top + kRowHeight};
        _drawRow(graphics, *font, *row, band);
        graphics.Flush(Gdiplus::FlushIntentionSync);
        _drawConnector(paint.pixels(), *row, band);
        top += kRowHeight;
    }
}

void COutputPreviewWnd::_drawRow(Gdiplus::Graphics& graphics, const Gdiplus::Font& font, const PreviewDisplayRow& row,
                                 const RECT& band) const {
    Gdiplus::StringFormat format;
    format.SetAlignment(Gdiplus::StringAlignmentNear);
    const auto draw = [&](const std::wstring& text, const RECT& box, Gdiplus::StringAlignment alignment) {
        format.SetLineAlignment(alignment);
        drawOutlineText(graphics, toRectF(box), text.c_str(), font, &format, 0.0, kBlack, kBlack);
    };
    const RECT number{band.left + 4, band.top, band.right, band.bottom};
    const RECT text{band.left + 18, band.top + 4, band.right, band.bottom - 4};
    draw(row.strNumber, number, Gdiplus::StringAlignmentCenter);
    draw(row.strConnector, text, m_bShowResolution ? Gdiplus::StringAlignmentNear : Gdiplus::StringAlignmentCenter);
    if (m_bShowResolution) {
        draw(row.strResolution, text, Gdiplus::StringAlignmentFar);
    }
}

// Its own square at the right end of the band. A picture that cannot be drawn is omitted.
void COutputPreviewWnd::_drawConnector(const FramePixels& frame, const PreviewDisplayRow& row, const RECT& band) {
    const RECT place{band.right - kImageSize - 4, band.top + 4, band.right - 4, band.top + 4 + kImageSize};
    PixelSurface surface(frame);
    static_cast<void>(composeImage(surface, row.pConnectorImage.get(), 255, {}, place));
}

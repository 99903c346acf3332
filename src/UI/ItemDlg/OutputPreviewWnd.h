// The preview below an enlarged output item: one row per display that the choice would use.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Logic/Placement.h"
#include "UI/ItemDlg/NoteWnd.h"
#include "common/GdiPlus.h"
#include "common/Picture.h"
#include "plugins/sdk/FenwynPlugin.h"

// One row of the preview.
struct PreviewDisplayRow {
    std::wstring strNumber;      // the display's index + 1, at most 5 characters
    std::wstring strConnector;   // as in the record
    std::wstring strResolution;  // "1920x1080", at most 20 characters
    std::unique_ptr<Gdiplus::Image> pConnectorImage;
};

class COutputPreviewWnd : public CNoteWnd {
 public:
    // Copies what it needs: the records must be valid during the call only. Records whose connector has no picture are
    // omitted.
    COutputPreviewWnd(const FenwynDisplayRecord* pRecords, DWORD dwCount, bool bShowResolution);

    // Places the window below the item (screen coordinates), or above the cards if the strip is at the bottom.
    [[nodiscard]] HRESULT setWndPos(const RECT* pItemRect, const Placement& placement);

    // What it shows, in one line.
    [[nodiscard]] std::wstring text() const;
    [[nodiscard]] accessible::Facts accessibleFacts(LONG /*nPart*/) const override { return {text(), {}, {}, 0}; }

    // The image id of a connector's picture; E_FAIL if the name contains none of the known words.
    [[nodiscard]] static HRESULT getConnectorImageID(const wchar_t* pszConnectorName, UINT* puImageID);

 private:
    friend struct OutputPreviewSeam;
    void _drawRow(Gdiplus::Graphics& graphics, const Gdiplus::Font& font, const PreviewDisplayRow& row,
                  const RECT& band) const;
    static void _drawConnector(const FramePixels& frame, const PreviewDisplayRow& row, const RECT& band);
    void OnPaint() override;

    std::vector<std::unique_ptr<PreviewDisplayRow>> m_vecRows;
    bool m_bShowResolution;
};

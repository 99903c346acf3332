// The enlarged card that a card shows while its key is held: a picture with caption, description and status text.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "UI/CardGeometry.h"
#include "UI/CardWnd.h"
#include "common/GdiPlus.h"
#include "common/GdiPlusFunc.h"
#include "common/LayeredWnd.h"

class CBlackCard;
struct Placement;

class CLargeCardDlg : public CCardWnd, public IDrawTextOnLayeredWnd {
 public:
    // The card owns the dialog; it and the placement outlive it.
    CLargeCardDlg(UINT uImageId, std::wstring strCaption, std::wstring strDesc, CBlackCard* pBlackCard,
                  const Placement& placement);

    [[nodiscard]] HRESULT initialize();
    // Sets the status text and repaints the part that shows it.
    void setText(std::wstring strText);
    // The strip had the focus and is gone. A window manager that notices this late passes the focus to another program
    // although the card has it by then: once, and within kFocusSettlesMs, the card takes it back.
    void expectLateFocusLoss();

    [[nodiscard]] HRESULT drawText(Gdiplus::Graphics& graphics) override;
    [[nodiscard]] std::optional<std::size_t> textState() const override;

    // The items are below it.
    [[nodiscard]] const accessible::Kind& accessibleKind() const override { return accessible::kEnlargedCard; }
    [[nodiscard]] accessible::Facts accessibleFacts(LONG nPart) const override;
    [[nodiscard]] std::vector<accessible::ITarget*> accessibleChildren() const override;

 protected:
    bool OnInitDialog() override;
    [[nodiscard]] const MessageMap& messageMap() const override;

 private:
    friend struct LargeCardSeam;

    void OnSize();
    void OnPaint() override;
    void OnSetFocus(HWND hOldWnd);
    void OnKillFocus(HWND hNewWnd);
    void OnTimer(UINT_PTR uId);
    LRESULT OnTakeFocusBack(WPARAM wParam, LPARAM lParam);
    [[nodiscard]] bool _isLateFocusLoss(HWND hNewWnd);

    geometry::LargeCardTexts m_rects{};
    std::wstring m_strCaption;
    std::wstring m_strDesc;
    std::wstring m_strText;
    UINT m_uImageId;
    std::unique_ptr<Gdiplus::Image> m_pImage;
    OutlineText m_captionText;
    OutlineText m_descText;
    OutlineText m_statusText;
    CBlackCard* m_pBlackCard;
    const Placement& m_placement;
    bool m_bFocusSettles = false;  // the timer kTimerFocusSettled runs
};

// The functions whose items, texts and pictures are data: one class interprets a function's description. The log names
// the described class, so that its readers see "CFxMute::initItems" although there is one implementation.
#pragma once

#include "Logic/FuncX/FuncXUseCircleItem.h"
#include "Logic/FuncX/FunctionTables.h"

class CCircleFunction : public CFuncXUseCircleItem {
 public:
    using CFuncX::selectItem;

    [[nodiscard]] UINT getSmallPngID() override { return m_rDescription.look.uSmallPngId; }
    [[nodiscard]] UINT getLargePngID() override { return m_rDescription.look.uLargePngId; }
    [[nodiscard]] std::wstring getDesc() const override { return textOnce(m_rDescription.look.uDescId); }
    [[nodiscard]] HRESULT initItems(std::vector<CQrdItem*>& rVecItems) override;
    [[nodiscard]] HRESULT getDefaultSelectItem(LONG& rlItem) override;
    [[nodiscard]] std::wstring getCurrentStatus() override;
    [[nodiscard]] LONG getSubstituteItem() const override;

 protected:
    // The description outlives the function.
    CCircleFunction(const functiontables::CircleDescription& rDescription, std::vector<DWORD> vecHotkeyCodes,
                    std::wstring strCaption);

    // Called when the plug-in has reported its items, before the first is created, and for each item created.
    virtual void onItemsReported() {}
    virtual void onItemAdded(const functiontables::Item& /*rItem*/) {}

    // The current item without the bits that mean something else.
    [[nodiscard]] LONG state() const { return m_lCurrentItem & m_rDescription.lStateMask; }
    // " (CFxMute::method)"
    [[nodiscard]] std::wstring logTag(const char* pszMethod) const;

    const functiontables::CircleDescription& m_rDescription;

 private:
    DWORD m_dwItemBits = 0;  // of the items that exist
};

// A function that its description specifies completely.
template <const functiontables::CircleDescription& kDescription>
class CDescribedFunction final : public CCircleFunction {
 public:
    CDescribedFunction(std::vector<DWORD> vecHotkeyCodes, std::wstring strCaption)
        : CCircleFunction(kDescription, std::move(vecHotkeyCodes), std::move(strCaption)) {}
};

using CFxMute = CDescribedFunction<functiontables::kMute>;
using CFxLock = CDescribedFunction<functiontables::kLock>;
using CFxSleep = CDescribedFunction<functiontables::kSleep>;
using CFxHibernate = CDescribedFunction<functiontables::kHibernate>;
using CFxTouchpad = CDescribedFunction<functiontables::kTouchpad>;
using CFxZoom = CDescribedFunction<functiontables::kZoom>;

// Statements that log from the enclosing method of a CCircleFunction under the name of the described class.
#define LOG_DESCRIBED(severity, ...)                                                                                  \
    do {                                                                                                              \
        if (::dbglog::enabled(severity)) {                                                                            \
            static constexpr auto logPath_ = ::dbglog::sourcePath(__FILE__);                                          \
            const std::wstring logTag_ = logTag(__func__);                                                            \
            ::dbglog::log(::dbglog::Record{logPath_.c_str(), __LINE__, logTag_.c_str(), L"", severity}, __VA_ARGS__); \
        }                                                                                                             \
    } while (false)

#define LOG_DESCRIBED_STATUS(status) \
    LOG_DESCRIBED(::dbglog::Level::Error, L"Error Code: 0x%x", static_cast<unsigned>(status))
#define LOG_DESCRIBED_ASSERT(text) LOG_DESCRIBED(::dbglog::Level::Error, L"ASSERT( %s )", text)

#define RETURN_DESCRIBED_IF_FAILED(call)       \
    do {                                       \
        const HRESULT callStatus_ = (call);    \
        if (FAILED(callStatus_)) {             \
            LOG_DESCRIBED_STATUS(callStatus_); \
            return callStatus_;                \
        }                                      \
    } while (false)

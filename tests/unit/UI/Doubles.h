// Doubles of a function and of items, for card rules that real plug-ins cannot trigger.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Logic/FuncX/FuncX.h"
#include "UI/ItemDlg/QrdItem.h"

namespace cards {

inline constexpr DWORD kKey = 0x3B;  // F1, which opens the card
constexpr UINT kSmallPng = 111;
constexpr UINT kLargePng = 110;

struct Switch {
    int item;
    DWORD key;
    bool firstTime;
    bool selected;

    bool operator==(const Switch&) const = default;
};

// The calls of the doubles, in order.
struct Record {
    std::vector<Switch> switches;
    std::vector<std::string> calls;
    int alive = 0;  // items not deleted yet
};

class PlainItem : public CQrdItem {
 public:
    PlainItem(int number, Record& record, HRESULT switched)
        : m_nNumber(number), m_record(record), m_switched(switched) {
        ++record.alive;
        m_hWnd = ::CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr,
                                   nullptr);
    }
    ~PlainItem() override { --m_record.alive; }

    HRESULT initialize() override { return S_OK; }
    HRESULT destroyItem() override {
        ::DestroyWindow(m_hWnd);
        m_record.calls.push_back("destroy " + std::to_string(m_nNumber));
        return S_OK;
    }
    [[nodiscard]] int width() const override { return 72 + m_nNumber; }  // only the first one's size counts
    [[nodiscard]] int height() const override { return 50 + m_nNumber; }
    [[nodiscard]] HWND windowHandle() const override { return m_hWnd; }
    HRESULT showItem(bool show) override {
        ::ShowWindow(m_hWnd, show ? SW_SHOWNOACTIVATE : SW_HIDE);
        return S_OK;
    }
    [[nodiscard]] int descOverhang() const override { return m_nNumber == 0 ? 14 : 1000; }
    HRESULT switchItem(DWORD key, bool firstTime, bool selected) override {
        m_record.switches.push_back({m_nNumber, key, firstTime, selected});
        return m_switched;
    }
    [[nodiscard]] CBlackCard* card() const { return m_pBlackCard; }

 private:
    int m_nNumber;
    Record& m_record;
    HRESULT m_switched;
    HWND m_hWnd;
};

class PlainFunction : public CFuncX {
 public:
    explicit PlainFunction(Record& record) : CFuncX({0x3B}, L"Fn+F1"), m_record(record) {}
    ~PlainFunction() override { m_record.calls.push_back("delete function"); }

    [[nodiscard]] UINT getSmallPngID() override { return m_uSmall; }
    [[nodiscard]] bool needRefreshSmallPng() override { return m_bRefresh; }
    [[nodiscard]] UINT getLargePngID() override { return m_uLarge; }
    [[nodiscard]] std::wstring getDesc() const override { return L"Description"; }
    [[nodiscard]] std::wstring getCurrentStatus() override {
        run(m_duringStatus);
        return L"Status";
    }
    [[nodiscard]] HRESULT initItems(std::vector<CQrdItem*>& items) override {
        m_record.calls.push_back("items");
        run(m_duringItems);
        for (int i = 0; i < m_nItems && SUCCEEDED(m_itemsStatus); ++i) {
            items.push_back(i == m_nNullItem ? nullptr : new PlainItem(i, m_record, m_mapSwitched[i]));
        }
        return m_itemsStatus;
    }
    [[nodiscard]] HRESULT getDefaultSelectItem(LONG& item) override {
        m_record.calls.push_back("default");
        run(m_duringDefault);
        if (SUCCEEDED(m_defaultStatus)) {
            item = m_lDefault;
        }
        return m_defaultStatus;
    }
    [[nodiscard]] HRESULT selectItem(LONG item, bool* hide, LONG parameter) override {
        m_record.calls.push_back("select " + std::to_string(item) + " " + std::to_string(parameter) + " " +
                                 (*hide ? "hide" : "stay"));
        *hide = *hide && m_bHide;
        return m_selectStatus;
    }
    [[nodiscard]] HRESULT selectItem(LONG, LONG) override { return E_NOTIMPL; }
    void finalize() override { m_record.calls.push_back("finalize"); }
    void armPanicTimer(HWND window, UINT_PTR timer) override {
        m_hTimerWnd = window;
        m_record.calls.push_back("timer " + std::to_string(timer));
    }

    Record& m_record;
    UINT m_uSmall = kSmallPng;
    UINT m_uLarge = kLargePng;
    bool m_bRefresh = false;
    int m_nItems = 3;
    int m_nNullItem = -1;
    std::map<int, HRESULT> m_mapSwitched;
    HRESULT m_itemsStatus = S_OK;
    LONG m_lDefault = 1;
    HRESULT m_defaultStatus = S_OK;
    HRESULT m_selectStatus = S_OK;
    bool m_bHide = true;
    HWND m_hTimerWnd = nullptr;
    // The messages that arrive while the plug-in is asked.
    std::function<void()> m_duringItems;
    std::function<void()> m_duringStatus;
    std::function<void()> m_duringDefault;

 private:
    static void run(const std::function<void()>& meanwhile) {
        if (meanwhile) {
            meanwhile();
        }
    }
};

}  // namespace cards

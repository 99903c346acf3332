#include "UI/Accessible.h"

#include <algorithm>
#include <cwchar>
#include <optional>
#include <utility>

#include "Messages.h"
#include "UI/CardsInUse.h"
#include "common/Caught.h"
#include "common/Handle.h"
#include "common/NeverDestroyed.h"
#include "common/ResourceFunc.h"
#include "common/SystemLibrary.h"
#include "res/StringIds.h"

namespace accessible {

namespace {

// The system's library for this interface and the thread's apartment, from the first request on: programs that nobody
// reads need neither.
class CService {
 public:
    CService()
        : m_status(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)), m_library(loadSystemLibrary(L"oleacc.dll")) {}
    ~CService() {
        m_library.reset();
        if (SUCCEEDED(m_status)) {
            ::CoUninitialize();
        }
    }
    CService(const CService&) = delete;
    CService& operator=(const CService&) = delete;

    // A plug-in may have put the thread into the other kind of apartment, where calls arrive on any thread.
    [[nodiscard]] bool usable() const { return SUCCEEDED(m_status) && m_library; }

    [[nodiscard]] LRESULT toResult(WPARAM wParam, IAccessible* pObject) const {
        const auto call = _find<decltype(&::LresultFromObject)>("LresultFromObject");
        return call == nullptr ? 0 : call(__uuidof(IAccessible), wParam, pObject);
    }
    // The system's object for the window as a whole, to which its client area belongs.
    [[nodiscard]] HRESULT wholeWindow(HWND hWnd, IDispatch** ppObject) const {
        const auto call = _find<decltype(&::AccessibleObjectFromWindow)>("AccessibleObjectFromWindow");
        return call == nullptr ? E_NOTIMPL
                               : call(hWnd, static_cast<DWORD>(OBJID_WINDOW), __uuidof(IDispatch),
                                      reinterpret_cast<void**>(ppObject));
    }

 private:
    template <typename Function>
    [[nodiscard]] Function _find(const char* pszName) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(m_library.get(), pszName)));
    }

    HRESULT m_status;
    common::UniqueModule m_library;
};

// Ended by stop() only: at the very end of the process it is too late for that.
std::optional<CService>& service() {
    static common::NeverDestroyed<std::optional<CService>> only;
    return only.get();
}

bool g_bFocusAnnounced = false;

[[nodiscard]] HRESULT giveText(const std::wstring& strText, BSTR* pResult) {
    if (strText.empty()) {
        return S_FALSE;
    }
    *pResult = ::SysAllocStringLen(strText.data(), static_cast<UINT>(strText.size()));
    return *pResult == nullptr ? E_OUTOFMEMORY : S_OK;
}

[[nodiscard]] HRESULT giveNumber(LONG nValue, VARIANT* pResult) {
    pResult->vt = VT_I4;
    pResult->lVal = nValue;
    return S_OK;
}

// The object of a window, which is a child or a sibling.
[[nodiscard]] HRESULT giveObject(ITarget& target, VARIANT* pResult) {
    pResult->pdispVal = target.accessibleObject();
    if (pResult->pdispVal == nullptr) {
        return E_OUTOFMEMORY;
    }
    pResult->vt = VT_DISPATCH;
    return S_OK;
}

HWND windowWithFocus() {
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    const bool known = ::GetGUIThreadInfo(0, &info) != FALSE && info.hwndFocus != nullptr;
    return known ? info.hwndFocus : ::GetForegroundWindow();
}

}  // namespace

// The system's interfaces have no virtual destructors: an object ends with Release().
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor)
class CObject final : public IAccessible, public IOleWindow {
 public:
    explicit CObject(ITarget& target) : m_pTarget(&target) {}
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

    void detach() noexcept { m_pTarget = nullptr; }

    // IUnknown
    [[nodiscard]] HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppObject) noexcept override {
        if (ppObject == nullptr) {
            return E_POINTER;
        }
        *ppObject = nullptr;
        if (riid == __uuidof(IUnknown) || riid == __uuidof(IDispatch) || riid == __uuidof(IAccessible)) {
            *ppObject = static_cast<IAccessible*>(this);
        } else if (riid == __uuidof(IOleWindow)) {
            *ppObject = static_cast<IOleWindow*>(this);
        } else {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override {
        return static_cast<ULONG>(::InterlockedIncrement(&m_nReferences));
    }
    ULONG STDMETHODCALLTYPE Release() noexcept override {
        const LONG nLeft = ::InterlockedDecrement(&m_nReferences);
        if (nLeft == 0) {
            delete this;
        }
        return static_cast<ULONG>(nLeft);
    }

    // IDispatch: only the interface itself is offered, without names.
    [[nodiscard]] HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pCount) noexcept override {
        if (pCount == nullptr) {
            return E_POINTER;
        }
        *pCount = 0;
        return S_OK;
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override {
        return E_NOTIMPL;
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                                   UINT*) noexcept override {
        return E_NOTIMPL;
    }

    // IOleWindow
    [[nodiscard]] HRESULT STDMETHODCALLTYPE GetWindow(HWND* phWnd) noexcept override {
        return _answer(phWnd, [&] {
            *phWnd = m_pTarget->accessibleWindow();
            return S_OK;
        });
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) noexcept override { return E_NOTIMPL; }

    // The tree
    [[nodiscard]] HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** ppParent) noexcept override {
        return _answer(ppParent, [&] {
            if (ITarget* pParent = m_pTarget->accessibleParent(); pParent != nullptr) {
                *ppParent = pParent->accessibleObject();
                return *ppParent == nullptr ? E_OUTOFMEMORY : S_OK;
            }
            return service() ? service()->wholeWindow(m_pTarget->accessibleWindow(), ppParent) : S_FALSE;
        });
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE get_accChildCount(long* pCount) noexcept override {
        return _answer(pCount, [&] {
            *pCount = _childCount();
            return S_OK;
        });
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** ppChild) noexcept override {
        return _answer(ppChild, [&]() -> HRESULT {
            if (!_isChild(child) || child.lVal == CHILDID_SELF) {
                return E_INVALIDARG;
            }
            if (child.lVal <= m_pTarget->accessibleParts()) {
                return S_FALSE;  // a part is no object of its own
            }
            *ppChild = _windowAt(child.lVal)->accessibleObject();
            return *ppChild == nullptr ? E_OUTOFMEMORY : S_OK;
        });
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE accNavigate(long nDirection, VARIANT start,
                                                        VARIANT* pEnd) noexcept override {
        return _answer(pEnd, [&]() -> HRESULT {
            if (!_isPart(start)) {
                return E_INVALIDARG;
            }
            switch (nDirection) {
                case NAVDIR_FIRSTCHILD:
                    return start.lVal == CHILDID_SELF ? _giveChild(1, pEnd) : S_FALSE;
                case NAVDIR_LASTCHILD:
                    return start.lVal == CHILDID_SELF ? _giveChild(_childCount(), pEnd) : S_FALSE;
                case NAVDIR_NEXT:
                case NAVDIR_RIGHT:
                    return _giveNeighbour(start.lVal, 1, pEnd);
                case NAVDIR_PREVIOUS:
                case NAVDIR_LEFT:
                    return _giveNeighbour(start.lVal, -1, pEnd);
                default:
                    return S_FALSE;  // nothing is above or below
            }
        });
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE accHitTest(long x, long y, VARIANT* pHit) noexcept override {
        return _answer(pHit, [&]() -> HRESULT {
            const POINT point{x, y};
            for (LONG nChild = 1; nChild <= _childCount(); ++nChild) {
                const RECT place = _placeOfChild(nChild);
                if (::PtInRect(&place, point) != FALSE) {
                    return _giveChild(nChild, pHit);
                }
            }
            const RECT self = m_pTarget->accessiblePlace(CHILDID_SELF);
            return ::PtInRect(&self, point) != FALSE ? giveNumber(CHILDID_SELF, pHit) : S_FALSE;
        });
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* pChild) noexcept override {
        return _answer(pChild, [&] { return _giveMarked(STATE_SYSTEM_FOCUSED, pChild); });
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* pChild) noexcept override {
        return _answer(pChild, [&] { return _giveMarked(STATE_SYSTEM_SELECTED, pChild); });
    }

    // One element
    [[nodiscard]] HRESULT STDMETHODCALLTYPE get_accName(VARIANT part, BSTR* pText) noexcept override {
        return _text(part, pText, [](Facts& facts) { return std::move(facts.name); });
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE get_accValue(VARIANT part, BSTR* pText) noexcept override {
        return _text(part, pText, [](Facts& facts) { return std::move(facts.value); });
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT part, BSTR* pText) noexcept override {
        return _text(part, pText, [](Facts& facts) { return std::move(facts.description); });
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE get_accRole(VARIANT part, VARIANT* pRole) noexcept override {
        return _ofPart(part, pRole, [&](LONG nPart) {
            const Kind& kind = m_pTarget->accessibleKind();
            return giveNumber(nPart == CHILDID_SELF ? kind.role : kind.partRole, pRole);
        });
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE get_accState(VARIANT part, VARIANT* pState) noexcept override {
        return _ofPart(part, pState, [&](LONG nPart) { return giveNumber(_state(*m_pTarget, nPart), pState); });
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE accLocation(long* pLeft, long* pTop, long* pWidth, long* pHeight,
                                                        VARIANT part) noexcept override {
        if (pTop == nullptr || pWidth == nullptr || pHeight == nullptr) {
            return E_POINTER;
        }
        return _ofPart(part, pLeft, [&](LONG nPart) {
            const RECT place = m_pTarget->accessiblePlace(nPart);
            *pLeft = place.left;
            *pTop = place.top;
            *pWidth = place.right - place.left;
            *pHeight = place.bottom - place.top;
            return S_OK;
        });
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT part, BSTR* pText) noexcept override {
        return _ofPart(part, pText, [&](LONG nPart) {
            return _isPressed(nPart) ? giveText(loadResString(IDS_PRESS), pText) : S_FALSE;
        });
    }
    // What a click does, and like a click it does nothing while a plug-in is at work or where nothing is visible.
    [[nodiscard]] HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT part) noexcept override {
        return _act(part, &CObject::_isPressed, kPress, part.lVal);
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE put_accValue(VARIANT part, BSTR text) noexcept override {
        return _act(part, &CObject::_hasLevel, kSetValue, text == nullptr ? 0 : std::wcstol(text, nullptr, 10));
    }

    // What these windows do not have
    [[nodiscard]] HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT, BSTR* pText) noexcept override {
        return _nothing(pText);
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* pFile, VARIANT, long*) noexcept override {
        return _nothing(pFile);
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT, BSTR* pText) noexcept override {
        return _nothing(pText);
    }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE accSelect(long, VARIANT) noexcept override { return DISP_E_MEMBERNOTFOUND; }
    [[nodiscard]] HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) noexcept override {
        return DISP_E_MEMBERNOTFOUND;
    }

 private:
    ~CObject() = default;

    // Whether it can answer now. The calls of other programs arrive on the thread of the windows.
    [[nodiscard]] HRESULT _reach() const {
        if (::GetCurrentThreadId() != m_dwThread) {
            return RPC_E_WRONG_THREAD;
        }
        return m_pTarget == nullptr ? CO_E_OBJNOTCONNECTED : S_OK;
    }
    // Clears the result, and calls the operation if the window still exists. No exception leaves it.
    template <typename Result, typename Operation>
    [[nodiscard]] HRESULT _answer(Result* pResult, Operation operation) noexcept {
        if (pResult == nullptr) {
            return E_POINTER;
        }
        *pResult = Result{};
        const HRESULT status = _reach();
        return FAILED(status) ? status : common::statusOf(operation);
    }
    template <typename Result, typename Operation>
    [[nodiscard]] HRESULT _ofPart(const VARIANT& part, Result* pResult, Operation operation) noexcept {
        return _answer(pResult, [&]() -> HRESULT { return _isPart(part) ? operation(part.lVal) : E_INVALIDARG; });
    }
    template <typename Choose>
    [[nodiscard]] HRESULT _text(const VARIANT& part, BSTR* pText, Choose choose) noexcept {
        return _ofPart(part, pText, [&](LONG nPart) {
            Facts facts = m_pTarget->accessibleFacts(nPart);
            return giveText(choose(facts), pText);
        });
    }
    [[nodiscard]] HRESULT _nothing(BSTR* pText) noexcept {
        return _answer(pText, [] { return S_FALSE; });
    }

    [[nodiscard]] bool _isPart(const VARIANT& part) const {
        return part.vt == VT_I4 && part.lVal >= CHILDID_SELF && part.lVal <= m_pTarget->accessibleParts();
    }
    [[nodiscard]] bool _isChild(const VARIANT& child) const {
        return child.vt == VT_I4 && child.lVal >= CHILDID_SELF && child.lVal <= _childCount();
    }
    [[nodiscard]] LONG _childCount() const {
        return m_pTarget->accessibleParts() + static_cast<LONG>(m_pTarget->accessibleChildren().size());
    }
    [[nodiscard]] ITarget* _windowAt(LONG nChild) const {
        return m_pTarget->accessibleChildren()[static_cast<std::size_t>(nChild - m_pTarget->accessibleParts() - 1)];
    }
    [[nodiscard]] RECT _placeOfChild(LONG nChild) const {
        return nChild <= m_pTarget->accessibleParts() ? m_pTarget->accessiblePlace(nChild)
                                                      : _windowAt(nChild)->accessiblePlace(CHILDID_SELF);
    }
    [[nodiscard]] static LONG _state(const ITarget& target, LONG nPart) {
        const LONG nVisible = ::IsWindowVisible(target.accessibleWindow()) != FALSE ? 0 : STATE_SYSTEM_INVISIBLE;
        const LONG nKind = nPart == CHILDID_SELF ? target.accessibleKind().state : 0;
        return nVisible | nKind | target.accessibleFacts(nPart).state;
    }
    [[nodiscard]] LONG _stateOfChild(LONG nChild) const {
        return nChild <= m_pTarget->accessibleParts() ? _state(*m_pTarget, nChild)
                                                      : _state(*_windowAt(nChild), CHILDID_SELF);
    }

    // S_FALSE: there is no such child.
    [[nodiscard]] HRESULT _giveChild(LONG nChild, VARIANT* pResult) const {
        if (nChild < 1 || nChild > _childCount()) {
            return S_FALSE;
        }
        return nChild <= m_pTarget->accessibleParts() ? giveNumber(nChild, pResult)
                                                      : giveObject(*_windowAt(nChild), pResult);
    }
    // The next part, or of a window below another the next one of these.
    [[nodiscard]] HRESULT _giveNeighbour(LONG nPart, LONG nStep, VARIANT* pResult) const {
        if (nPart != CHILDID_SELF) {
            return _giveChild(nPart + nStep, pResult);
        }
        const ITarget* const pParent = m_pTarget->accessibleParent();
        if (pParent == nullptr) {
            return S_FALSE;
        }
        const std::vector<ITarget*> siblings = pParent->accessibleChildren();
        const auto self = std::find(siblings.begin(), siblings.end(), m_pTarget);
        const auto place = self - siblings.begin() + nStep;
        const bool exists = self != siblings.end() && place >= 0 && place < std::ssize(siblings);
        return exists ? giveObject(*siblings[static_cast<std::size_t>(place)], pResult) : S_FALSE;
    }
    // The child in this state, or the window itself.
    [[nodiscard]] HRESULT _giveMarked(LONG nState, VARIANT* pResult) const {
        for (LONG nChild = 1; nChild <= _childCount(); ++nChild) {
            if ((_stateOfChild(nChild) & nState) != 0) {
                return _giveChild(nChild, pResult);
            }
        }
        return (_state(*m_pTarget, CHILDID_SELF) & nState) != 0 ? giveNumber(CHILDID_SELF, pResult) : S_FALSE;
    }

    [[nodiscard]] bool _isPressed(LONG nPart) const {
        const Kind& kind = m_pTarget->accessibleKind();
        return nPart == CHILDID_SELF ? kind.windowPressed : kind.partsPressed;
    }
    [[nodiscard]] bool _hasLevel(LONG nPart) const {
        return nPart == CHILDID_SELF && m_pTarget->accessibleKind().role == ROLE_SYSTEM_SLIDER;
    }
    [[nodiscard]] HRESULT _act(const VARIANT& part, bool (CObject::*possible)(LONG) const, WPARAM wAction,
                               LPARAM lArgument) noexcept {
        HRESULT status = S_OK;
        return _ofPart(part, &status, [&](LONG nPart) -> HRESULT {
            constexpr LONG kOutOfUse = STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_UNAVAILABLE;
            if (!(this->*possible)(nPart)) {
                return DISP_E_MEMBERNOTFOUND;
            }
            if (CCardsInUse::any() || (_state(*m_pTarget, nPart) & kOutOfUse) != 0) {
                return HRESULT_FROM_WIN32(ERROR_BUSY);
            }
            return ::PostMessageW(m_pTarget->accessibleWindow(), kMsgAccessible, wAction, lArgument) != FALSE ? S_OK
                                                                                                              : E_FAIL;
        });
    }

    ITarget* m_pTarget;  // null after the window's end
    const DWORD m_dwThread = ::GetCurrentThreadId();
    LONG m_nReferences = 1;
};
#pragma GCC diagnostic pop

IAccessible* CObjectOwner::get(ITarget& target) {
    if (m_pObject == nullptr) {
        m_pObject = new (std::nothrow) CObject(target);
    }
    if (m_pObject != nullptr) {
        m_pObject->AddRef();
    }
    return m_pObject;
}

void CObjectOwner::disconnect() noexcept {
    if (CObject* const pObject = std::exchange(m_pObject, nullptr); pObject != nullptr) {
        pObject->detach();
        if (service()) {
            ::CoDisconnectObject(static_cast<IAccessible*>(pObject), 0);  // other processes hold no more of it
        }
        pObject->Release();
    }
}

bool answer(ITarget& target, WPARAM wParam, LPARAM lParam, LRESULT& rResult) {
    if (static_cast<LONG>(lParam) != OBJID_CLIENT) {
        return false;
    }
    if (!service()) {
        service().emplace();
    }
    IAccessible* const pObject = service()->usable() ? target.accessibleObject() : nullptr;
    if (pObject == nullptr) {
        return false;
    }
    rResult = service()->toResult(wParam, pObject);
    pObject->Release();
    return rResult != 0;
}

void announce(HWND hWnd, DWORD dwEvent, LONG nPart) noexcept {
    if (::IsWinEventHookInstalled(dwEvent) != FALSE) {
        ::NotifyWinEvent(dwEvent, hWnd, OBJID_CLIENT, nPart);
    }
}

void announceFocus(HWND hWnd) noexcept {
    g_bFocusAnnounced = true;
    announce(hWnd, EVENT_OBJECT_FOCUS);
}

void giveFocusBack() noexcept {
    if (!std::exchange(g_bFocusAnnounced, false) || ::IsWinEventHookInstalled(EVENT_OBJECT_FOCUS) == FALSE) {
        return;
    }
    if (const HWND hWnd = windowWithFocus(); hWnd != nullptr) {
        announce(hWnd, EVENT_OBJECT_FOCUS);
    }
}

void stop() noexcept {
    service().reset();
}

}  // namespace accessible

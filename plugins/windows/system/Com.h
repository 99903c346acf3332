// COM on the thread of a scope, and owners for COM objects.
#pragma once

#include <windows.h>

#include <objbase.h>

#include <utility>

namespace win {

// COM for the scope. If the thread has COM already, in whatever mode, that is not changed.
class CComScope {
 public:
    explicit CComScope(DWORD dwKind) noexcept : m_status(::CoInitializeEx(nullptr, dwKind)) {}
    ~CComScope() {
        if (SUCCEEDED(m_status)) {
            ::CoUninitialize();
        }
    }
    CComScope(const CComScope&) = delete;
    CComScope& operator=(const CComScope&) = delete;

 private:
    HRESULT m_status;
};

// Owns one reference to a COM object.
template <typename Interface>
class CComRef {
 public:
    CComRef() noexcept = default;
    CComRef(CComRef&& other) noexcept : m_p(std::exchange(other.m_p, nullptr)) {}
    CComRef& operator=(CComRef&& other) noexcept {
        std::swap(m_p, other.m_p);
        return *this;
    }
    CComRef(const CComRef&) = delete;
    CComRef& operator=(const CComRef&) = delete;
    ~CComRef() {
        if (m_p != nullptr) {
            m_p->Release();
        }
    }

    [[nodiscard]] Interface* get() const noexcept { return m_p; }
    [[nodiscard]] Interface* operator->() const noexcept { return m_p; }
    [[nodiscard]] explicit operator bool() const noexcept { return m_p != nullptr; }

    // For calls that write a reference; only while nothing is owned.
    [[nodiscard]] Interface** put() noexcept { return &m_p; }
    [[nodiscard]] void** putVoid() noexcept { return reinterpret_cast<void**>(&m_p); }

 private:
    Interface* m_p = nullptr;
};

}  // namespace win

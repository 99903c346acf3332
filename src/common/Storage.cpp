#include "common/Storage.h"

#include <cwchar>

#include "common/DebugLog.h"
#include "common/RegistryStorage.h"

namespace storage {

namespace {

// The exception names the line that noticed the failure.
void throwUnlessQuiet(Policy policy, int line, const wchar_t* what) {
    if (policy != Policy::Throw) {
        return;
    }
    static constexpr auto path = dbglog::sourcePath(__FILE__);
    throw StorageException(std::wstring(path.c_str()) + L"(" + std::to_wstring(line) + L") : " + what + L"\n");
}

void openFailed(Policy policy) {
    throwUnlessQuiet(policy, __LINE__, L"StorageException : Open");
}

bool readFailed(Policy policy) {
    throwUnlessQuiet(policy, __LINE__, L"StorageException : Read");
    return false;
}

}  // namespace

Storage Storage::open(HKEY hRoot, const std::wstring& subKey, Policy policy) {
    auto registry = std::make_unique<RegistryStorage>();
    if (!registry->open(hRoot, subKey, KEY_READ)) {
        openFailed(policy);
        return {};
    }
    return {std::move(registry), policy};
}

Storage Storage::openSub(const std::wstring& subKey) const {
    if (!isOpen()) {
        openFailed(m_policy);
        return {};
    }
    std::unique_ptr<StorageInterface> child = m_pStorage->openSubStorage(subKey);
    if (child == nullptr) {
        openFailed(m_policy);
    }
    return {std::move(child), m_policy};
}

bool Storage::isOpen() const {
    return m_pStorage != nullptr && m_pStorage->isOpen();
}

bool Storage::getDword(const std::wstring& name, DWORD& out) const {
    return (m_pStorage != nullptr && m_pStorage->getDword(name, out)) || readFailed(m_policy);
}

bool Storage::getString(const std::wstring& name, std::wstring& out) const {
    return (m_pStorage != nullptr && m_pStorage->getString(name, out)) || readFailed(m_policy);
}

bool Storage::enumSubKeys(std::vector<std::wstring>& names) const {
    return (m_pStorage != nullptr && m_pStorage->enumSubKeys(names)) || readFailed(m_policy);
}

bool Storage::enumValues(std::vector<std::wstring>& names) const {
    return (m_pStorage != nullptr && m_pStorage->enumValues(names)) || readFailed(m_policy);
}

}  // namespace storage

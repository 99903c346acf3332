#include "ConfigDigest.h"

#include <cwchar>
#include <vector>

#include "FunctionListRoot.h"
#include "RegistryRead.h"
#include "WatchedKeys.h"

namespace hotkey {
namespace {

constexpr int kMaxDepth = 8;
constexpr DWORD kMaxNameChars = 16384;  // the system's limit for value names, with the NUL

// FNV-1a, 64 bit.
class CDigest {
 public:
    void add(const void* data, std::size_t size) noexcept {
        const auto* bytes = static_cast<const unsigned char*>(data);
        for (std::size_t i = 0; i < size; ++i) {
            m_nHash = (m_nHash ^ bytes[i]) * 0x100000001B3u;
        }
    }
    void add(std::uint32_t number) noexcept { add(&number, sizeof(number)); }
    // Including its NUL, so that neighbouring texts cannot be confused.
    void add(const wchar_t* text) noexcept { add(text, (std::wcslen(text) + 1) * sizeof(wchar_t)); }
    [[nodiscard]] std::uint64_t value() const noexcept { return m_nHash; }

 private:
    std::uint64_t m_nHash = 0xCBF29CE484222325u;
};

void addValues(HKEY key, CDigest& digest) {
    std::vector<wchar_t> name(kMaxNameChars);
    for (DWORD index = 0;; ++index) {
        DWORD nChars = kMaxNameChars;
        DWORD type = 0;
        DWORD cb = 0;
        const LSTATUS status = ::RegEnumValueW(key, index, name.data(), &nChars, nullptr, &type, nullptr, &cb);
        if (status != ERROR_SUCCESS) {
            return;
        }
        digest.add(name.data());
        digest.add(type);
        digest.add(cb);
        if (const auto bytes = readBytes(key, name.data())) {
            digest.add(bytes->data(), bytes->size());
        }
    }
}

void addTree(HKEY root, const wchar_t* path, int depth, CDigest& digest) {
    const common::UniqueRegKey key = openKey(root, path);
    digest.add(key ? 1u : 0u);
    if (!key || depth == 0) {
        return;
    }
    addValues(key.get(), digest);
    for (DWORD index = 0;; ++index) {
        wchar_t name[256];
        DWORD nChars = 256;
        if (::RegEnumKeyExW(key.get(), index, name, &nChars, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
            return;
        }
        digest.add(name);
        addTree(key.get(), name, depth - 1, digest);
    }
}

}  // namespace

std::uint64_t digestConfiguration() {
    CDigest digest;
    const HKEY listRoot = fenwyn::functionListRoot();
    for (const WatchedKey& watched : kWatchedKeys) {
        const bool inForce = !watched.tree || watched.root == listRoot;
        if (watched.content && inForce) {
            addTree(watched.root, watched.path, watched.tree ? kMaxDepth : 1, digest);
        }
    }
    return digest.value();
}

}  // namespace hotkey

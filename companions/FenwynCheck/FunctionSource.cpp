#include "FunctionSource.h"

#include <cstring>
#include <optional>

#include "FunctionListRoot.h"
#include "SampleList.h"
#include "ZelHotkey.h"
#include "ZelModifier.h"
#include "common/Handle.h"

namespace machine {

namespace {

constexpr DWORD kLongestValue = 64 * 1024;  // bytes; larger ones count as unreadable
constexpr std::size_t kMostFunctions = 100;
constexpr DWORD kAsStored = RRF_RT_ANY | RRF_NOEXPAND;

std::optional<std::vector<BYTE>> readBytes(HKEY root, const std::wstring& key, const wchar_t* name) {
    DWORD size = 0;
    if (RegGetValueW(root, key.c_str(), name, kAsStored, nullptr, nullptr, &size) != ERROR_SUCCESS ||
        size > kLongestValue) {
        return std::nullopt;
    }
    std::vector<BYTE> bytes(size + 2 * sizeof(wchar_t));  // it may have become longer, and gets a terminator
    size = static_cast<DWORD>(bytes.size());
    if (RegGetValueW(root, key.c_str(), name, kAsStored, nullptr, bytes.data(), &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    bytes.resize(size);
    return bytes;
}

std::optional<std::wstring> readText(HKEY root, const std::wstring& key, const wchar_t* name) {
    const auto bytes = readBytes(root, key, name);
    if (!bytes) {
        return std::nullopt;
    }
    std::wstring text(bytes->size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes->data(), text.size() * sizeof(wchar_t));
    return std::wstring(text.c_str());
}

std::optional<std::vector<DWORD>> readNumbers(HKEY root, const std::wstring& key, const wchar_t* name) {
    const auto bytes = readBytes(root, key, name);
    if (!bytes) {
        return std::nullopt;
    }
    std::vector<DWORD> numbers(bytes->size() / sizeof(DWORD));
    std::memcpy(numbers.data(), bytes->data(), numbers.size() * sizeof(DWORD));
    return numbers;
}

std::wstring expanded(const std::wstring& path) {
    std::wstring result(32768, L'\0');
    const DWORD length = ExpandEnvironmentStringsW(path.c_str(), result.data(), static_cast<DWORD>(result.size()));
    if (length == 0 || length > result.size()) {
        return path;
    }
    result.resize(length - 1);
    return result;
}

Entry listedEntry(HKEY root, const std::wstring& name) {
    const std::wstring key = ZEL_REG_HOTKEY L"\\" + name;
    const auto codes = readNumbers(root, key, ZEL_VALUE_CODE);
    const auto plugin = readText(root, key, ZEL_VALUE_FUNC_DLL);
    Entry entry{name, plugin ? expanded(*plugin) : std::wstring(), codes.value_or(std::vector<DWORD>()), {}};
    if (!codes) {
        entry.problem = L"The function list has no \"" ZEL_VALUE_CODE L"\" for it.";
    } else if (!plugin) {
        entry.problem = L"The function list has no \"" ZEL_VALUE_FUNC_DLL L"\" for it.";
    }
    return entry;
}

std::vector<Entry> listedEntries(HKEY root) {
    const std::wstring list = readText(root, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST).value_or(std::wstring());
    std::vector<Entry> entries;
    std::size_t start = 0;
    for (std::size_t end = list.find(L';'); end != std::wstring::npos && entries.size() < kMostFunctions;
         end = list.find(L';', start)) {
        if (end != start) {
            entries.push_back(listedEntry(root, list.substr(start, end - start)));
        }
        start = end + 1;
    }
    return entries;
}

}  // namespace

std::vector<Entry> family(const std::wstring& folder) {
    std::vector<Entry> entries;
    for (const SampleFunction& function : sampleFunctions()) {
        const std::wstring plugin = samplePlugin(folder, function.name);
        if (GetFileAttributesW(plugin.c_str()) != INVALID_FILE_ATTRIBUTES) {
            entries.push_back({function.name, plugin, {function.codes.begin(), function.codes.end()}, {}});
        }
    }
    return entries;
}

FunctionSet functionSet(const std::wstring& folder) {
    const HKEY root = fenwyn::functionListRoot();
    const auto modifier = readNumbers(root, ZEL_REG_HOTKEY, ZEL_VALUE_MODIFIER_KEY);
    FunctionSet set{root == HKEY_CURRENT_USER ? Source::UserList : Source::MachineList,
                    zelModifierKey(modifier && !modifier->empty() ? modifier->front() : 0),
                    {}};
    if (fenwyn::hasFunctionList(root)) {
        set.entries = listedEntries(root);
    } else {
        set.source = Source::Family;
        set.entries = family(folder);
    }
    return set;
}

}  // namespace machine

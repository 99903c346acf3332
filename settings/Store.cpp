#include "Store.h"

#include <algorithm>
#include <cstring>

#include "RunKey.h"
#include "common/Handle.h"

namespace settings {
namespace {

constexpr DWORD kLongestValue = 64 * 1024;  // bytes; larger ones are read up to here
constexpr DWORD kLongestKeyName = 256;
constexpr DWORD kLongestLogValue = 1024;

HKEY handleOf(Root root) {
    return root == Root::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

Data dataOf(DWORD type, const void* source, std::size_t size) {
    const auto* bytes = static_cast<const BYTE*>(source);
    return {type, {bytes, bytes + size}};
}

Content readRegistry(const Place& place) {
    DWORD size = 0;
    const HKEY root = handleOf(place.root);
    constexpr DWORD kAsStored = RRF_RT_ANY | RRF_NOEXPAND;
    if (::RegGetValueW(root, place.key.c_str(), place.name.c_str(), kAsStored, nullptr, nullptr, &size) !=
        ERROR_SUCCESS) {
        return std::nullopt;
    }
    // It may have become longer, and texts get a terminator.
    Data data{REG_NONE, std::vector<BYTE>(std::min(size, kLongestValue) + 2 * sizeof(wchar_t))};
    size = static_cast<DWORD>(data.bytes.size());
    const LSTATUS error = ::RegGetValueW(root, place.key.c_str(), place.name.c_str(), kAsStored, &data.type,
                                         data.bytes.data(), &size);
    data.bytes.resize(std::min<std::size_t>(size, data.bytes.size()));
    return error == ERROR_SUCCESS || error == ERROR_MORE_DATA ? Content(std::move(data)) : std::nullopt;
}

Content readStart(const Place& place) {
    return startsWithWindows(handleOf(place.root), kStartedFenwyn) ? Content(numberData(1)) : std::nullopt;
}

LSTATUS writeStart(const Place& place, const Content& content) {
    return setStartWithWindows(handleOf(place.root), kStartedFenwyn, content && numberOf(*content).value_or(0) != 0);
}

Content readLogFile(const std::wstring& file, const Place& place) {
    constexpr wchar_t kNone[] = L"\x1";  // nobody writes that
    wchar_t value[kLongestLogValue] = L"";
    ::GetPrivateProfileStringW(place.key.c_str(), place.name.c_str(), kNone, value, kLongestLogValue, file.c_str());
    return std::wcscmp(value, kNone) == 0 ? std::nullopt : Content(textData(value));
}

LSTATUS writeLogFile(const std::wstring& file, const Place& place, const Content& content) {
    const std::wstring value = content ? textOf(*content) : std::wstring();
    return ::WritePrivateProfileStringW(place.key.c_str(), place.name.c_str(), content ? value.c_str() : nullptr,
                                        file.c_str()) != FALSE
               ? ERROR_SUCCESS
               : static_cast<LSTATUS>(::GetLastError());
}

LSTATUS writeRegistry(const Place& place, const Content& content) {
    const HKEY root = handleOf(place.root);
    if (content) {
        return ::RegSetKeyValueW(root, place.key.c_str(), place.name.c_str(), content->type, content->bytes.data(),
                                 static_cast<DWORD>(content->bytes.size()));
    }
    const LSTATUS error = ::RegDeleteKeyValueW(root, place.key.c_str(), place.name.c_str());
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? ERROR_SUCCESS : error;
}

}  // namespace

Data numberData(DWORD number) {
    return dataOf(REG_DWORD, &number, sizeof number);
}

Data numbersData(const std::vector<DWORD>& numbers) {
    return dataOf(REG_BINARY, numbers.data(), numbers.size() * sizeof(DWORD));
}

Data textData(const std::wstring& text) {
    return dataOf(REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

std::optional<DWORD> numberOf(const Data& data) {
    const std::vector<DWORD> numbers = numbersOf(data);
    return numbers.empty() ? std::nullopt : std::optional<DWORD>(numbers.front());
}

std::vector<DWORD> numbersOf(const Data& data) {
    std::vector<DWORD> numbers(data.bytes.size() / sizeof(DWORD));
    std::memcpy(numbers.data(), data.bytes.data(), numbers.size() * sizeof(DWORD));
    return numbers;
}

std::wstring textOf(const Data& data) {
    std::wstring text(data.bytes.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), data.bytes.data(), text.size() * sizeof(wchar_t));
    return text.substr(0, text.find(L'\0'));
}

Content CSystemStore::read(const Place& place) const {
    if (place.key == kStartKey) {
        return readStart(place);
    }
    return place.root == Root::LogFile ? readLogFile(m_strLogFile, place) : readRegistry(place);
}

bool CSystemStore::hasKey(Root root, const std::wstring& key) const {
    common::UniqueRegKey opened;
    return ::RegOpenKeyExW(handleOf(root), key.c_str(), 0, KEY_READ, opened.put()) == ERROR_SUCCESS;
}

std::vector<std::wstring> CSystemStore::subkeys(Root root, const std::wstring& key) const {
    std::vector<std::wstring> names;
    common::UniqueRegKey opened;
    if (::RegOpenKeyExW(handleOf(root), key.c_str(), 0, KEY_READ, opened.put()) != ERROR_SUCCESS) {
        return names;
    }
    wchar_t name[kLongestKeyName];
    DWORD length = kLongestKeyName;
    for (DWORD i = 0; ::RegEnumKeyExW(opened.get(), i, name, &length, nullptr, nullptr, nullptr, nullptr) ==
                      ERROR_SUCCESS;
         ++i) {
        names.emplace_back(name, length);
        length = kLongestKeyName;
    }
    return names;
}

LSTATUS CSystemStore::write(const Place& place, const Content& content) {
    if (place.key == kStartKey) {
        return writeStart(place, content);
    }
    return place.root == Root::LogFile ? writeLogFile(m_strLogFile, place, content) : writeRegistry(place, content);
}

void CSystemStore::removeEmptyKey(Root root, const std::wstring& key) {
    common::UniqueRegKey opened;
    DWORD subkeys = 0;
    DWORD values = 0;
    if (::RegOpenKeyExW(handleOf(root), key.c_str(), 0, KEY_READ, opened.put()) == ERROR_SUCCESS &&
        ::RegQueryInfoKeyW(opened.get(), nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, nullptr,
                           nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
        subkeys + values == 0) {
        opened.reset();
        ::RegDeleteKeyW(handleOf(root), key.c_str());
    }
}

// Of the machine's settings decides the nearest key that is there; of the log's file, whether it can be opened, or else
// made in its folder.
bool CSystemStore::mayWrite(Root root) const {
    if (root == Root::User) {
        return true;
    }
    if (root == Root::LogFile) {
        const bool isThere = ::GetFileAttributesW(m_strLogFile.c_str()) != INVALID_FILE_ATTRIBUTES;
        const common::UniqueFile file(::CreateFileW(m_strLogFile.c_str(), GENERIC_WRITE,
                                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                                    isThere ? OPEN_EXISTING : CREATE_NEW,
                                                    isThere ? FILE_ATTRIBUTE_NORMAL : FILE_FLAG_DELETE_ON_CLOSE,
                                                    nullptr));
        return static_cast<bool>(file);
    }
    for (const wchar_t* key : {FENWYN_REG_CONFIG, FENWYN_REG_PRODUCT, FENWYN_REG_MAKER, FENWYN_REG_SOFTWARE, L""}) {
        common::UniqueRegKey opened;
        const LSTATUS error =
            ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, key, 0, KEY_SET_VALUE | KEY_CREATE_SUB_KEY, opened.put());
        if (error != ERROR_FILE_NOT_FOUND) {
            return error == ERROR_SUCCESS;
        }
    }
    return false;
}

}  // namespace settings

// Where the settings are kept: the registry, and the log's settings file. The only code of this program that reads or
// writes them; tests put something else in its place.
#pragma once

#include <windows.h>

#include <compare>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "companions/include/FenwynRegistry.h"

namespace settings {

enum class Root {
    Machine,  // HKEY_LOCAL_MACHINE
    User,     // HKEY_CURRENT_USER
    LogFile   // DbgLog.ini beside the programs; its key is the section
};

// Stands for the start of Fenwyn with Windows, for the user or for everybody: 1 or nothing. What is stored for it is a
// command line of this installation, which nobody else has to know.
inline constexpr wchar_t kStartKey[] = FENWYN_REG_PRODUCT L"\\Start";
inline constexpr wchar_t kWithWindows[] = L"WithWindows";

struct Place {
    Root root = Root::Machine;
    std::wstring key;  // below the root
    std::wstring name;

    friend auto operator<=>(const Place&, const Place&) = default;
};

struct Data {
    DWORD type = REG_NONE;  // REG_SZ in the log's settings file
    std::vector<BYTE> bytes;

    friend bool operator==(const Data&, const Data&) = default;
};

// Nothing: there is no such value.
using Content = std::optional<Data>;

// What is to be where.
using Changes = std::map<Place, Content>;

[[nodiscard]] Data numberData(DWORD number);
[[nodiscard]] Data numbersData(const std::vector<DWORD>& numbers);  // REG_BINARY
[[nodiscard]] Data textData(const std::wstring& text);

// As the programs read it, whatever the type: the first four bytes; nothing if there are fewer.
[[nodiscard]] std::optional<DWORD> numberOf(const Data& data);
[[nodiscard]] std::vector<DWORD> numbersOf(const Data& data);
// Up to the first terminator.
[[nodiscard]] std::wstring textOf(const Data& data);

class IStore {
 public:
    virtual ~IStore() = default;

    [[nodiscard]] virtual Content read(const Place& place) const = 0;
    [[nodiscard]] virtual bool hasKey(Root root, const std::wstring& key) const = 0;
    // The names of the keys right below this one.
    [[nodiscard]] virtual std::vector<std::wstring> subkeys(Root root, const std::wstring& key) const = 0;
    // Makes what is needed on the way; nothing removes the value. A system error code.
    [[nodiscard]] virtual LSTATUS write(const Place& place, const Content& content) = 0;
    // Removes a key with nothing in it; one that is not empty stays.
    virtual void removeEmptyKey(Root root, const std::wstring& key) = 0;
    // Whether this process has the rights to change something there.
    [[nodiscard]] virtual bool mayWrite(Root root) const = 0;
};

class CSystemStore : public IStore {
 public:
    // The full path of DbgLog.ini.
    explicit CSystemStore(std::wstring logFile) : m_strLogFile(std::move(logFile)) {}

    [[nodiscard]] Content read(const Place& place) const override;
    [[nodiscard]] bool hasKey(Root root, const std::wstring& key) const override;
    [[nodiscard]] std::vector<std::wstring> subkeys(Root root, const std::wstring& key) const override;
    [[nodiscard]] LSTATUS write(const Place& place, const Content& content) override;
    void removeEmptyKey(Root root, const std::wstring& key) override;
    [[nodiscard]] bool mayWrite(Root root) const override;

 private:
    std::wstring m_strLogFile;
};

}  // namespace settings

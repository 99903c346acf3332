// Which functions there are to look at: those of the function list in force, or the family beside this program.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace machine {

struct Entry {
    std::wstring name;
    std::wstring plugin;       // environment references expanded
    std::vector<DWORD> codes;  // as the list has them
    std::wstring problem;      // why the function is not complete and gets no card; empty: it is
};

enum class Source { MachineList, UserList, Family };

struct FunctionSet {
    Source source;
    DWORD modifier;  // virtual key
    std::vector<Entry> entries;
};

// `folder`: where the program stands; the family is in its "plugins". Whatever the registry holds, this is harmless.
[[nodiscard]] FunctionSet functionSet(const std::wstring& folder);

// The plug-ins for real machines that are in `folder`\plugins, with the keys of the sample list.
[[nodiscard]] std::vector<Entry> family(const std::wstring& folder);

}  // namespace machine

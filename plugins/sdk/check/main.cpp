// PluginCheck.exe <plug-in> <function> [item]: tells a plug-in's author what is wrong with it. Exit code 0: nothing; 1:
// something, or wrong usage.
#include <windows.h>

#include <string>

#include "Console.h"
#include "PluginChecker.h"
#include "common/LibrarySearch.h"

namespace {

int misuse() {
    check::tell(
        L"PluginCheck <plug-in.dll> <function> [item]\n"
        L"Holds a plug-in against the contract. With an item it also calls SelectItem (Brightness: FocusItem).\n"
        L"Functions: " +
        check::knownFunctions() + L"\n");
    return 1;
}

bool parseItem(const wchar_t* text, std::optional<long>& item) {
    wchar_t* end = nullptr;
    item = wcstol(text, &end, 0);
    return end != text && *end == L'\0';
}

// A path on the command line is relative to the current folder, where the program never searches.
std::wstring fullPath(const wchar_t* path) {
    std::wstring full(GetFullPathNameW(path, 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(path, static_cast<DWORD>(full.size()), full.data(), nullptr));
    return full;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    prepareLibraryLoading();
    check::tellCrashes();
    std::optional<long> item;
    if (argc < 3 || argc > 4 || (argc == 4 && !parseItem(argv[3], item))) {
        return misuse();
    }
    const check::CReport report = check::checkPlugin(fullPath(argv[1]), argv[2], item);
    check::tell(report.text());
    return report.count(check::Weight::Error) == 0 ? 0 : 1;
}

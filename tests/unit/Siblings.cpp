#include "Siblings.h"

#include <filesystem>
#include <map>

#include "common/Handle.h"
#include "common/SiblingLibrary.h"
#include "support/AppRoom.h"
#include "support/FailingAllocation.h"
#include "support/TempFolder.h"

namespace siblings {

namespace {

struct Places {
    std::map<std::wstring, std::wstring> variants;  // file -> subfolder of the stand-ins' folder
    std::map<std::wstring, bool> missing;
    std::map<std::wstring, std::wstring> copies;  // file -> path
    std::vector<std::wstring> asked;
};

Places& places() {
    static Places only;
    return only;
}

std::wstring pathOf(const std::wstring& file) {
    if (file == L"CardArt.dll") {
        return support::AppRoom::artPath();
    }
    if (const auto copy = places().copies.find(file); copy != places().copies.end()) {
        return copy->second;
    }
    wchar_t path[MAX_PATH];
    const std::wstring program(path, ::GetModuleFileNameW(nullptr, path, MAX_PATH));
    return program.substr(0, program.rfind(L'\\')) + L"\\plugins\\siblings\\" + places().variants[file] + file;
}

}  // namespace

void reset() {
    places() = Places();
    for (const wchar_t* file : {L"ZelMain.dll", L"ZelEvnt.dll", L"PrtHook.dll"}) {
        control(file) = {};
        control(file).installHook.result = TRUE;
    }
}

void remove(const std::wstring& file) {
    places().missing[file] = true;
}

void withoutExport(const std::wstring& file, const std::wstring& exportName) {
    places().variants[file] = L"no-" + exportName + L"\\";
    control(file) = {};
    control(file).installHook.result = TRUE;
}

std::wstring copyThatNobodyHolds(const std::wstring& file) {
    static const support::TempFolder& folder = *new support::TempFolder;  // a mapped file cannot be deleted
    static int count = 0;
    const std::filesystem::path place = folder / std::to_wstring(++count);
    std::filesystem::create_directories(place);
    std::filesystem::copy_file(pathOf(file), place / file);
    return places().copies[file] = (place / file).wstring();
}

const std::vector<std::wstring>& asked() {
    return places().asked;
}

standin::Control& control(const std::wstring& file) {
    const HMODULE module = ::LoadLibraryW(pathOf(file).c_str());
    return *reinterpret_cast<standin::GetControl>(
        reinterpret_cast<void*>(::GetProcAddress(module, "StandInControl")))();
}

common::UniqueModule load(const wchar_t* file) asm("__wrap__Z11loadSiblingPKw");
common::UniqueModule load(const wchar_t* file) {
    const support::AllocationsSucceed mine;
    places().asked.emplace_back(file);
    return common::UniqueModule(places().missing[file] ? nullptr : ::LoadLibraryW(pathOf(file).c_str()));
}

}  // namespace siblings

// Where libraries are searched for. The restriction applies to the whole process, so this is a separate program.
#include "common/LibrarySearch.h"

#include <gtest/gtest.h>

#include "common/SystemLibrary.h"
#include "support/DependentPlugin.h"

namespace {

using support::DependentPlugin;
using Place = support::DependentPlugin::Place;

constexpr DWORD kOwnAndDefaultFolders = 0x1100;  // LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR, _DEFAULT_DIRS

TEST(LibrarySearch, OnlyAnAbsolutePathMakesItsFolderAPlaceToSearch) {
    for (const wchar_t* path : {L"C:\\p\\x.dll", L"z:\\x.dll", L"\\\\server\\share\\x.dll", L"\\\\?\\C:\\x.dll"}) {
        EXPECT_EQ(librarySearchFlags(path, true), kOwnAndDefaultFolders) << path;
    }
    for (const wchar_t* path : {L"x.dll", L"p\\x.dll", L".\\x.dll", L"C:x.dll", L"\\x.dll", L"1:\\x.dll", L"C:", L""}) {
        EXPECT_EQ(librarySearchFlags(path, true), 0U) << path;
    }
}

TEST(LibrarySearch, ASystemWithoutTheFlagsIsNotAskedForThem) {
    EXPECT_EQ(librarySearchFlags(L"C:\\p\\x.dll", false), 0U);
}

TEST(LibrarySearch, PreparationTurnsTheLoadersMessageBoxesOff) {
    ::SetErrorMode(0);
    prepareLibraryLoading();
    EXPECT_EQ(::GetErrorMode() & SEM_FAILCRITICALERRORS, static_cast<UINT>(SEM_FAILCRITICALERRORS));
    ::SetErrorMode(SEM_NOALIGNMENTFAULTEXCEPT);
    prepareLibraryLoading();
    EXPECT_EQ(::GetErrorMode(), static_cast<UINT>(SEM_FAILCRITICALERRORS | SEM_NOALIGNMENTFAULTEXCEPT))
        << "what was set stays set";
}

TEST(LibrarySearch, ALibraryFindsWhatItNeedsBesideItself) {
    prepareLibraryLoading();
    const DependentPlugin plugin(Place::BesideThePlugin);
    EXPECT_TRUE(loadLibraryByPath(plugin.path()));
    std::wstring slashes = plugin.path();
    std::replace(slashes.begin(), slashes.end(), L'\\', L'/');
    EXPECT_TRUE(loadLibraryByPath(slashes));
}

TEST(LibrarySearch, ALibraryOfTheSystemIsThatOfItsFolder) {
    const common::UniqueModule library = loadSystemLibrary(L"dbghelp.dll");
    ASSERT_TRUE(library);
    wchar_t path[MAX_PATH] = {};
    wchar_t folder[MAX_PATH] = {};
    ::GetModuleFileNameW(library.get(), path, MAX_PATH);
    ::GetSystemDirectoryW(folder, MAX_PATH);
    EXPECT_EQ(_wcsnicmp(path, folder, std::wcslen(folder)), 0) << path;
}

class Elsewhere : public testing::TestWithParam<Place> {};

TEST_P(Elsewhere, WhatALibraryNeedsIsNotFound) {
    prepareLibraryLoading();
    const DependentPlugin plugin(GetParam());
    EXPECT_FALSE(loadLibraryByPath(plugin.path()));
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
}

TEST_P(Elsewhere, ALibraryWithoutAFolderIsNotFound) {
    prepareLibraryLoading();
    const DependentPlugin plugin(GetParam());
    EXPECT_FALSE(loadLibraryByPath(L"NeededLibrary.dll"));
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
}

TEST_P(Elsewhere, ALibraryOfTheSystemIsNotTakenFromThere) {
    // Even if the default search were not restricted.
    const DependentPlugin plugin(GetParam());
    EXPECT_FALSE(loadSystemLibrary(L"NeededLibrary.dll"));
}

INSTANTIATE_TEST_SUITE_P(Places, Elsewhere, testing::Values(Place::InTheCurrentFolder, Place::AlongPath));

}  // namespace

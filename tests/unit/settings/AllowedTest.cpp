#include "Allowed.h"

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "Notebook.h"

namespace settings {
namespace {

std::string contentOf(const wchar_t* file) {
    const std::ifstream stream(std::filesystem::path(std::wstring(FENWYN_TREE) + L"/" + file));
    return (std::ostringstream() << stream.rdbuf()).str();
}

std::string narrow(const wchar_t* name) {
    const std::wstring wide = name;
    return {wide.begin(), wide.end()};
}

// Name -> default and scope, as text.
using Table = std::map<std::string, std::pair<std::string, std::string>>;

Table table(Scope user, Scope machine) {
    Table rows;
    for (const Value& value : values()) {
        if (value.scope == user || value.scope == machine) {
            const char* const scope = value.scope == Scope::UserElseMachine ? "user" : "machine";
            rows[narrow(value.name)] = {std::to_string(value.standard), scope};
        }
    }
    return rows;
}

std::string section(const std::string& page, const std::string& heading) {
    const std::size_t start = page.find("\n## " + heading + "\n");
    return start == std::string::npos ? "" : page.substr(start, page.find("\n## ", start + 4) - start);
}

const std::wstring kMute = std::wstring(regpath::kHotkeyKey) + L"\\Mute";

bool isAllowedIn(Root root, const std::wstring& key, const wchar_t* name, const Content& content) {
    return isAllowed({root, key, name}, content);
}

}  // namespace

TEST(Values, AreThoseOfTheDocuments) {
    const std::string page = section(contentOf(L"docs/configuration.md"), "Card configuration");
    const std::regex row("\n\\| `(\\w+)` \\| [^|]+ \\| (\\d+) \\| (user|machine)[^|]* \\|");
    Table documented;
    for (std::sregex_iterator match(page.begin(), page.end(), row); match != std::sregex_iterator(); ++match) {
        documented[(*match)[1]] = {(*match)[2], (*match)[3]};
    }
    EXPECT_EQ(documented.size(), 20U);
    EXPECT_EQ(table(Scope::UserElseMachine, Scope::Machine), documented);
}

TEST(Values, AreThoseOfTheProgram) {
    const std::string source = contentOf(L"src/Data/ZelConfig.cpp");
    const std::regex row("\\{L\"(\\w+)\", &QrdConfig::\\w+, (\\d+), Scope::(User|Machine)");
    Table read;
    for (std::sregex_iterator match(source.begin(), source.end(), row); match != std::sregex_iterator(); ++match) {
        read[(*match)[1]] = {(*match)[2], (*match)[3] == "User" ? "user" : "machine"};
    }
    EXPECT_EQ(table(Scope::UserElseMachine, Scope::Machine), read);
}

TEST(Values, IncludeThoseOfTheHotkeyLibrary) {
    const std::string page = section(contentOf(L"docs/configuration.md"), "The hotkey library");
    const std::regex row("\n\\| `(\\w+)` \\| `REG_DWORD`[^|]* \\| `?(0x[0-9A-F]+|\\d+)`?[^|]* \\|");
    std::map<std::string, unsigned long> documented;
    for (std::sregex_iterator match(page.begin(), page.end(), row); match != std::sregex_iterator(); ++match) {
        documented[(*match)[1]] = std::stoul((*match)[2], nullptr, 0);
    }
    std::map<std::string, unsigned long> rows;
    for (const Value& value : values()) {
        if (value.scope == Scope::List) {
            rows[narrow(value.name)] = value.standard;
        }
    }
    EXPECT_EQ(rows, documented);
}

// Those that nobody but a person or an installer writes.
TEST(Values, IncludeTheOthersOfTheProgram) {
    const std::string page = section(contentOf(L"docs/configuration.md"), "Other values of the program");
    const std::regex row("\n\\| `SOFTWARE[^|]*\\| `(\\w+)` \\|");
    std::set<std::string> documented;
    for (std::sregex_iterator match(page.begin(), page.end(), row); match != std::sregex_iterator(); ++match) {
        documented.insert((*match)[1]);
    }
    std::set<std::string> rows;
    for (const Value& value : values()) {
        if (value.scope == Scope::Language || value.scope == Scope::Product) {
            rows.insert(narrow(value.name));
        }
    }
    EXPECT_EQ(rows, documented);
}

TEST(Values, HaveAGoodDefault) {
    for (const Value& value : values()) {
        EXPECT_TRUE(isText(value.kind) || isGood(value, numberData(value.standard))) << narrow(value.name);
    }
}

TEST(Allowed, LanguagesAreThoseOfTheTree) {
    const std::string list = contentOf(L"src/res/Languages.rc");
    const std::regex row("#include <strings/([\\w-]+)\\.rc>");
    std::set<std::string> there;
    for (std::sregex_iterator match(list.begin(), list.end(), row); match != std::sregex_iterator(); ++match) {
        there.insert((*match)[1]);
    }
    std::set<std::string> names;
    for (const wchar_t* name : languageNames()) {
        names.insert(narrow(name));
    }
    EXPECT_EQ(names, there);
}

TEST(Allowed, NumbersAreCheckedAgainstTheirRange) {
    const std::wstring config = regpath::kConfigKey;
    EXPECT_TRUE(isAllowedIn(Root::Machine, config, L"AutoHideDelayTime", numberData(600000)));
    EXPECT_FALSE(isAllowedIn(Root::Machine, config, L"AutoHideDelayTime", numberData(600001)));
    EXPECT_FALSE(isAllowedIn(Root::Machine, config, L"AutoHideDelayTime", textData(L"1")));
    EXPECT_FALSE(isAllowedIn(Root::Machine, config, L"AutoHideDelayTime", std::nullopt));
    EXPECT_FALSE(isAllowedIn(Root::Machine, config, L"ItemDescMaxWidth", numberData(19)));
    EXPECT_FALSE(isAllowedIn(Root::Machine, config, L"Unknown", numberData(1)));
    EXPECT_FALSE(isAllowedIn(Root::Machine, regpath::kHotkeyKey, L"AutoHideDelayTime", numberData(1)));
    EXPECT_TRUE(isAllowedIn(Root::Machine, regpath::kHotkeyKey, L"ModifierKey", numberData(0x14)));
    EXPECT_FALSE(isAllowedIn(Root::Machine, regpath::kHotkeyKey, L"ModifierKey", numberData(0)));
    EXPECT_FALSE(isAllowedIn(Root::Machine, regpath::kHotkeyKey, L"ModifierKey", numberData(0xFF)));
}

TEST(Allowed, WhatOnlyTheMachineHasIsNotTheUsers) {
    const std::wstring config = regpath::kConfigKey;
    EXPECT_TRUE(isAllowedIn(Root::User, config, L"Position", numberData(1)));
    EXPECT_FALSE(isAllowedIn(Root::User, config, L"HideCaption", numberData(1)));
    EXPECT_FALSE(isAllowedIn(Root::User, std::wstring(regpath::kButtonsKey) + L"\\Mail", L"MakeValue", numberData(1)));
    EXPECT_TRUE(
        isAllowedIn(Root::Machine, std::wstring(regpath::kButtonsKey) + L"\\Mail", L"MakeValue", numberData(1)));
}

TEST(Allowed, AFunctionHasACodeAPlugInAndACaption) {
    EXPECT_TRUE(isAllowedIn(Root::User, kMute, L"Code", numbersData({0x3B, 0x1F0AD})));
    EXPECT_TRUE(isAllowedIn(Root::User, kMute, L"Code", numberData(0x3B)));
    for (const DWORD code : {0x0U, 0x100U, 0xE000U, 0xE100U, 0xF000U, 0xF0FFU, 0x10000U, 0x2003BU}) {
        EXPECT_FALSE(isAllowedIn(Root::User, kMute, L"Code", numbersData({0x3B, code}))) << code;
    }
    EXPECT_FALSE(isAllowedIn(Root::User, kMute, L"Code", numbersData({})));
    EXPECT_FALSE(isAllowedIn(Root::User, kMute, L"Code", numbersData(std::vector<DWORD>(17, 0x3B))));
    EXPECT_FALSE(isAllowedIn(Root::User, kMute, L"Code", Data{REG_BINARY, {0x3B, 0, 0}}));
    EXPECT_TRUE(isAllowedIn(Root::User, kMute, L"FuncDll", textData(L"C:\\Fenwyn\\plugins\\WinMute.dll")));
    for (const wchar_t* path : {L"", L"C:\\a\"b.dll", L"C:\\*.dll", L"C:\\a\tb.dll"}) {
        EXPECT_FALSE(isAllowedIn(Root::User, kMute, L"FuncDll", textData(path)));
    }
    EXPECT_FALSE(isAllowedIn(Root::User, kMute, L"FuncDll", textData(std::wstring(260, L'a'))));
    EXPECT_TRUE(isAllowedIn(Root::User, kMute, L"Caption", textData(L"Mute & co.")));
    EXPECT_FALSE(isAllowedIn(Root::User, kMute, L"Caption", textData(L"two\nlines")));
    EXPECT_TRUE(isAllowedIn(Root::User, kMute, L"Caption", std::nullopt));
    EXPECT_FALSE(isAllowedIn(Root::User, kMute, L"Other", textData(L"x")));
    EXPECT_FALSE(isAllowedIn(Root::User, kMute + L"\\Deeper", L"Caption", textData(L"x")));
    EXPECT_FALSE(
        isAllowedIn(Root::User, std::wstring(regpath::kHotkeyKey) + L"\\NoFunction", L"Caption", textData(L"x")));
}

TEST(Allowed, TheListIsNamesWithSemicolons) {
    const auto allowed = [](const wchar_t* list) {
        return isAllowedIn(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, textData(list));
    };
    EXPECT_TRUE(allowed(L""));
    EXPECT_TRUE(allowed(L"Mute;Output_2;"));
    for (const wchar_t* list : {L"Mute", L"Mute;Lock", L";", L"Mute;;", L"Mu te;", L"..\\Mute;"}) {
        EXPECT_FALSE(allowed(list)) << narrow(list);
    }
}

TEST(Allowed, NothingElseOfTheRegistry) {
    for (const wchar_t* key : {L"", L"Software\\Microsoft\\Windows\\CurrentVersion\\Run", L"SOFTWARE\\KESTOVA",
                               L"SOFTWARE\\KESTOVA\\Fenwyn\\PluginFaults", L"SOFTWARE\\KESTOVA\\Fenwyn\\HotKey\\"}) {
        for (const wchar_t* name : {L"", L"Caption", L"Position", L"Language", L"FuncDll", L"OPT1", L"FuncList"}) {
            EXPECT_FALSE(isAllowedIn(Root::Machine, key, name, textData(L"C:\\a.exe"))) << narrow(key) << narrow(name);
        }
    }
}

TEST(Allowed, TheLogsFile) {
    EXPECT_TRUE(isAllowedIn(Root::LogFile, L"LOG", L"Level", textData(L"3")));
    EXPECT_FALSE(isAllowedIn(Root::LogFile, L"LOG", L"Level", textData(L"4")));
    EXPECT_FALSE(isAllowedIn(Root::LogFile, L"LOG", L"Flush", textData(L"2")));
    EXPECT_TRUE(isAllowedIn(Root::LogFile, L"LOG", L"LogFile", textData(L"%TEMP%\\log.txt")));
    EXPECT_FALSE(isAllowedIn(Root::LogFile, L"OTHER", L"Level", textData(L"3")));
    EXPECT_FALSE(isAllowedIn(Root::LogFile, L"LOG", L"Other", textData(L"3")));
    EXPECT_TRUE(isAllowedIn(Root::LogFile, L"LOG", L"LogFile", std::nullopt));
    EXPECT_FALSE(isAllowedIn(Root::LogFile, L"LOG", L"Other", std::nullopt));
}

}  // namespace settings

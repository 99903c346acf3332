// Files and command lines.
#include <fstream>

#include "CommandLine.h"
#include "Favourites.h"
#include "Fuzz.h"
#include "common/LogSettings.h"
#include "support/TempFolder.h"

namespace {

using fuzz::CRandom;

// Lines of a settings file, good ones and others.
std::string settingsFile(CRandom& random) {
    static constexpr const char* kPieces[] = {"[LOG]",
                                              "[LOG",
                                              "[]",
                                              "LOG]",
                                              "Level",
                                              "Destination",
                                              "LogFile",
                                              "Flush",
                                              "=",
                                              "==",
                                              "=3",
                                              "=-1",
                                              "=99999999999",
                                              "=0x3",
                                              "\r\n",
                                              "\n",
                                              "\r",
                                              ";",
                                              " ",
                                              "\t",
                                              "%TEMP%",
                                              "%",
                                              "%%",
                                              "\"",
                                              "TimeDateFormat",
                                              "SourceFileFormat",
                                              "\xEF\xBB\xBF",
                                              "\xFF\xFE",
                                              "\x1A"};
    std::string text;
    for (unsigned n = random.below(60); n > 0; --n) {
        text += random.oneOf(kPieces);
    }
    const std::vector<BYTE> noise = random.bytes();
    if (random.oneIn(2)) {
        text.insert(random.below(static_cast<unsigned>(text.size()) + 1), std::string(noise.begin(), noise.end()));
    }
    return text;
}

TEST(TextFuzz, SettingsOfTheLog) {
    const support::TempFolder folder;
    const std::wstring file = folder / L"DbgLog.ini";
    fuzz::run(15, [&file](CRandom& random) {
        const std::string text = settingsFile(random);
        std::ofstream(std::filesystem::path(file), std::ios::binary)
            .write(text.data(), static_cast<std::streamsize>(text.size()));
        const dbglog::Settings settings = dbglog::readSettings(file.c_str());
        EXPECT_TRUE(settings.level >= 0 && settings.level <= 3);
        EXPECT_TRUE(settings.destination >= 0 && settings.destination <= 4);
        EXPECT_TRUE(settings.flush >= 0 && settings.flush <= 1);
        EXPECT_NE(std::find(settings.logFile.begin(), settings.logFile.end(), L'\0'), settings.logFile.end());
        static_cast<void>(dbglog::expandedLogFile(settings));
        static_cast<void>(dbglog::settingsPathBeside(random.text(400).c_str()));
    });
}

TEST(TextFuzz, CommandLineOfTheDisplayConfiguration) {
    static constexpr const wchar_t* kWords[] = {OUTPUT_SETUP_VERB_OUTPUT,
                                                OUTPUT_SETUP_VERB_CONFIG,
                                                OUTPUT_SETUP_VERB_SAVE,
                                                L" ",
                                                L"\t",
                                                L"1025",
                                                L"2147483648",
                                                L"-1",
                                                L"99999999999999999999"};
    fuzz::run(15, [](CRandom& random) {
        std::wstring line;
        for (unsigned n = random.below(6); n > 0; --n) {
            line += random.oneIn(3) ? random.text(40) : std::wstring(random.oneOf(kWords));
        }
        if (const auto request = setup::parseCommandLine(line); request && request->task == setup::Task::Output) {
            EXPECT_TRUE(request->mode >= 0 && request->mode < setup::kMaskBits);
            EXPECT_NE(request->mask >> request->mode & 1U, 0U);
        }
    });
}

TEST(TextFuzz, NamesOfFavourites) {
    fuzz::run(5, [](CRandom& random) {
        setup::Favourites list;
        for (unsigned n = random.below(9); n > 0; --n) {
            list.push_back({random.text(60), static_cast<LONG>(random.number()), {}, {}});
        }
        const std::wstring name = setup::cleanName(random.text(200));
        const auto verdict = setup::judgeName(name, list, random.oneIn(2) ? setup::kNewFavourite : random.below(9));
        EXPECT_TRUE(verdict != setup::NameVerdict::Good || !name.empty());
        const std::wstring proposed = setup::proposeName(setup::cleanName(random.text(40)), list);
        EXPECT_EQ(setup::judgeName(proposed, list, setup::kNewFavourite) == setup::NameVerdict::Taken, false);
    });
}

}  // namespace

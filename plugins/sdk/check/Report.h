// The checker's findings, in words.
#pragma once

#include <windows.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace check {

enum class Weight { Note, Warning, Error };

struct Finding {
    Weight weight;
    std::wstring text;
};

// One call of an export.
struct TimedCall {
    const char* exportName;
    double milliseconds;
};

// An entry of the display output with favourites.
struct OutputEntry {
    LONG mode;          // FenwynOutputMode
    std::wstring text;  // of custom entries
};

// What the plug-in answered, for whoever says it in words of their own.
struct Answers {
    std::vector<TimedCall> calls;
    bool initialized = false;
    bool declined = false;  // the machine does not have the function
    std::wstring reason;    // why, in the plug-in's words; empty when it has none
    ULONG info = 0;
    ULONG info2 = 0;
    bool dual = false;
    std::optional<LONG> current;  // the current item, when it was asked for and told
    std::array<std::wstring, 4> planNames;
    std::vector<OutputEntry> entries;
};

class CReport {
 public:
    void note(std::wstring text) { m_vecFindings.push_back({Weight::Note, std::move(text)}); }
    void warning(std::wstring text) { m_vecFindings.push_back({Weight::Warning, std::move(text)}); }
    void error(std::wstring text) { m_vecFindings.push_back({Weight::Error, std::move(text)}); }

    [[nodiscard]] const std::vector<Finding>& findings() const { return m_vecFindings; }
    [[nodiscard]] std::size_t count(Weight weight) const;

    [[nodiscard]] Answers& answers() { return m_answers; }
    [[nodiscard]] const Answers& answers() const { return m_answers; }

    // One line per finding and a last line with the verdict.
    [[nodiscard]] std::wstring text() const;

 private:
    std::vector<Finding> m_vecFindings;
    Answers m_answers;
};

// Widens an export's name for messages.
[[nodiscard]] std::wstring wide(const char* name);
[[nodiscard]] std::string utf8(const std::wstring& text);
[[nodiscard]] std::wstring hex(unsigned long value);

}  // namespace check

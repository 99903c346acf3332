// The checker's findings, in words.
#pragma once

#include <string>
#include <vector>

namespace check {

enum class Weight { Note, Warning, Error };

struct Finding {
    Weight weight;
    std::wstring text;
};

class CReport {
 public:
    void note(std::wstring text) { m_vecFindings.push_back({Weight::Note, std::move(text)}); }
    void warning(std::wstring text) { m_vecFindings.push_back({Weight::Warning, std::move(text)}); }
    void error(std::wstring text) { m_vecFindings.push_back({Weight::Error, std::move(text)}); }

    [[nodiscard]] const std::vector<Finding>& findings() const { return m_vecFindings; }
    [[nodiscard]] std::size_t count(Weight weight) const;

    // One line per finding and a last line with the verdict.
    [[nodiscard]] std::wstring text() const;

 private:
    std::vector<Finding> m_vecFindings;
};

// Widens an export's name for messages.
[[nodiscard]] std::wstring wide(const char* name);
[[nodiscard]] std::wstring hex(unsigned long value);

}  // namespace check

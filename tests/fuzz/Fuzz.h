// Random inputs that can be repeated, and what none of them may do.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace fuzz {

class CRandom {
 public:
    explicit CRandom(std::uint32_t seed) : m_engine(seed) {}

    [[nodiscard]] unsigned below(unsigned limit) { return m_engine() % limit; }
    [[nodiscard]] bool oneIn(unsigned n) { return below(n) == 0; }
    // Any number, small and extreme ones more often than others.
    [[nodiscard]] DWORD number();
    template <typename T, std::size_t N>
    [[nodiscard]] const T& oneOf(const T (&values)[N]) {
        return values[below(N)];
    }
    // Mostly short; up to 1 MiB at times.
    [[nodiscard]] std::size_t size();
    [[nodiscard]] std::vector<BYTE> bytes();
    // Letters, digits, separators, path and format characters, halves of surrogate pairs, at times a NUL.
    [[nodiscard]] std::wstring text(std::size_t most = 300);

 private:
    std::mt19937 m_engine;
};

// Gives the function so many inputs: this test's share of all. Each has its own random numbers, so that one can be
// repeated alone: FENWYN_FUZZ_ONLY is its number. None may take longer than a second, start a process, or load a
// library that is not among `libraries` (file names in lower case) or the system's. Seed and number are printed if one
// fails, or ends the process.
void run(unsigned percent, const std::function<void(CRandom&)>& input, const std::set<std::wstring>& libraries = {});

// A library of the stage folder, to be copied.
[[nodiscard]] std::wstring libraryWithoutResources();

}  // namespace fuzz

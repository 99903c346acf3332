// A private folder for one test, deleted with everything in it at the end of the test.
#pragma once

#include <windows.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace support {

class TempFolder {
 public:
    TempFolder() {
        static std::atomic<int> count{0};
        m_path = std::filesystem::temp_directory_path() /
                 (L"fenwyn-test-" + std::to_wstring(::GetCurrentProcessId()) + L"-" + std::to_wstring(count++));
        // A library that stays mapped until its process ends may have prevented the deletion of an earlier one; process
        // ids are reused.
        _clear();
        std::filesystem::create_directories(m_path);
    }
    ~TempFolder() { _clear(); }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const noexcept { return m_path; }
    [[nodiscard]] std::filesystem::path operator/(const std::filesystem::path& name) const { return m_path / name; }

    // Every byte of a file, line ends unchanged; "" if there is none.
    [[nodiscard]] static std::string bytesOf(const std::filesystem::path& file) {
        const std::ifstream stream(file, std::ios::binary);
        return (std::ostringstream() << stream.rdbuf()).str();
    }
    static void write(const std::filesystem::path& file, const std::string& bytes) {
        std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
    }

 private:
    void _clear() const {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    std::filesystem::path m_path;
};

}  // namespace support

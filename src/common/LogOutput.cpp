#include "common/LogOutput.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <shlobj.h>
#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

namespace dbglog {

namespace {

// Creates every missing folder above the file.
void createFoldersOf(const wchar_t* path) {
    Path full{};
    wchar_t* fileName = nullptr;
    const DWORD length = ::GetFullPathNameW(path, kPathChars, full.data(), &fileName);
    if (length == 0 || length >= kPathChars || fileName == nullptr) {
        return;
    }
    *fileName = L'\0';
    ::SHCreateDirectoryExW(nullptr, full.data(), nullptr);
}

// Every write goes to the current end of the file, so that another process that empties the file at its own first line
// leaves no gap. Others may read, write and empty the file meanwhile. -1 and errno on failure.
int openForAppending(const wchar_t* path, int truncation) {
    return ::_wsopen(path, _O_WRONLY | _O_CREAT | _O_APPEND | _O_TEXT | truncation, _SH_DENYNO, _S_IREAD | _S_IWRITE);
}

bool fitsIntoStream(wchar_t unit) {
    char bytes[MB_LEN_MAX] = {};
    return unit < 0x80 || std::wctomb(bytes, unit) >= 0;
}

// The runtime stops at the first character that its locale cannot express, so that the rest of the line with its line
// feed would be lost: such characters become question marks.
void writeToStream(std::FILE* stream, Line line) {
    for (wchar_t& unit : line) {
        if (!fitsIntoStream(unit)) {
            unit = L'?';
        }
    }
    std::fputws(line.data(), stream);
}

}  // namespace

void LogOutput::write(const Line& line) {
    switch (m_settings.destination) {
        case kDebugger:
            ::OutputDebugStringW(line.data());
            break;
        case kFile:
            _writeToKeptFile(line);
            break;
        case kFilePerLine:
            if (const Stream stream = _openLogFile(FileMode::Keep)) {
                writeToStream(stream.get(), line);
            }
            break;
        case kStandardError:
            writeToStream(stderr, line);
            break;
        default:
            break;
    }
}

void LogOutput::_writeToKeptFile(const Line& line) {
    if (!m_bOpenTried) {
        m_bOpenTried = true;
        m_pStream = _openLogFile(m_bClosed ? FileMode::Keep : FileMode::Truncate);
    }
    if (m_pStream == nullptr) {
        return;
    }
    writeToStream(m_pStream.get(), line);
    if (m_settings.flush != 0) {
        std::fflush(m_pStream.get());
    }
}

void LogOutput::close() {
    if (m_pStream != nullptr) {
        m_pStream.reset();
        m_bOpenTried = false;
        m_bClosed = true;
    }
}

LogOutput::Stream LogOutput::_openLogFile(FileMode mode) const {
    Path path{};
    const DWORD length = ::ExpandEnvironmentStringsW(m_settings.logFile.data(), path.data(), kPathChars);
    if (length == 0 || length > kPathChars) {
        return nullptr;
    }
    const int truncation = mode == FileMode::Truncate ? _O_TRUNC : 0;
    int file = openForAppending(path.data(), truncation);
    if (file == -1 && errno == ENOENT) {
        createFoldersOf(path.data());
        file = openForAppending(path.data(), truncation);
    }
    Stream stream(file == -1 ? nullptr : ::_fdopen(file, "a"));
    if (stream == nullptr && file != -1) {
        ::_close(file);
    }
    return stream;
}

}  // namespace dbglog

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

#include "common/Handle.h"

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
    return ::_wsopen(path, _O_WRONLY | _O_CREAT | _O_APPEND | _O_BINARY | truncation, _SH_DENYNO, _S_IREAD | _S_IWRITE);
}

struct Bytes {
    std::array<char, kLineChars*(MB_LEN_MAX + 1)> text;
    std::size_t length;
};

// In the runtime's locale. Characters that it cannot express become question marks; the runtime's own output of wide
// text would stop at the first one.
void narrow(const Line& line, bool bCarriageReturn, Bytes& bytes) {
    bytes.length = 0;
    for (const wchar_t* unit = line.data(); *unit != L'\0'; ++unit) {
        if (*unit == L'\n' && bCarriageReturn) {
            bytes.text[bytes.length++] = '\r';
        }
        if (*unit < 0x80) {
            bytes.text[bytes.length++] = static_cast<char>(*unit);
            continue;
        }
        const int length = std::wctomb(&bytes.text[bytes.length], *unit);
        if (length < 0) {
            bytes.text[bytes.length] = '?';
        }
        bytes.length += length < 0 ? 1U : static_cast<std::size_t>(length);
    }
}

// In one call, because each takes the stream's lock. To standard error, the runtime adds the carriage returns.
void writeToStream(std::FILE* stream, const Line& line) {
    Bytes bytes;
    narrow(line, stream != stderr, bytes);
    std::fwrite(bytes.text.data(), 1, bytes.length, stream);
}

// As the runtime writes it: a byte for each character, a carriage return before the line feed.
void writeToHandle(HANDLE hFile, const Line& line) {
    std::array<char, 2 * kLineChars> bytes{};
    DWORD length = 0;
    for (std::size_t i = 0; line[i] != L'\0'; ++i) {
        if (line[i] == L'\n') {
            bytes[length++] = '\r';
        }
        bytes[length++] = line[i] <= 0xFF ? static_cast<char>(line[i]) : '?';
    }
    DWORD written = 0;
    ::WriteFile(hFile, bytes.data(), length, &written, nullptr);
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

void LogOutput::writeLast(const Line& line, bool bAlone) {
    if (bAlone && m_pStream != nullptr) {
        writeToStream(m_pStream.get(), line);
        std::fflush(m_pStream.get());
    } else if (m_settings.destination == kFile || m_settings.destination == kFilePerLine) {
        _appendDirectly(line);
    } else if (m_settings.destination == kDebugger) {
        ::OutputDebugStringW(line.data());
    } else if (m_settings.destination == kStandardError) {
        writeToHandle(::GetStdHandle(STD_ERROR_HANDLE), line);
    }
}

// Past the runtime and the heap, whose locks another thread may hold for good. The first line of the process empties
// the file, as always; later ones are appended to this one.
void LogOutput::_appendDirectly(const Line& line) {
    const bool bEmpty = m_settings.destination == kFile && !m_bOpenTried && !m_bClosed;
    common::UniqueFile file = m_lastFile.openForAppending(bEmpty);
    if (!file && ::GetLastError() == ERROR_PATH_NOT_FOUND) {
        createFoldersOf(m_path.data());
        file = m_lastFile.openForAppending(bEmpty);
    }
    if (file) {
        writeToHandle(file.get(), line);
        m_bClosed = m_bClosed || bEmpty;
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
    if (m_path[0] == L'\0') {
        return nullptr;
    }
    const int truncation = mode == FileMode::Truncate ? _O_TRUNC : 0;
    int file = openForAppending(m_path.data(), truncation);
    if (file == -1 && errno == ENOENT) {
        createFoldersOf(m_path.data());
        file = openForAppending(m_path.data(), truncation);
    }
    Stream stream(file == -1 ? nullptr : ::_fdopen(file, "ab"));
    if (stream == nullptr && file != -1) {
        ::_close(file);
    }
    return stream;
}

}  // namespace dbglog

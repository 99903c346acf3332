// The record of calls: one line per call of an export, appended to a text file that all plug-ins share.
// Line: time, function, export, arguments, result, thread id, separated by tabs, UTF-8, ended by a line feed:
//   2026-01-31T23:59:59.123<tab>Mute<tab>SelectItem<tab>1<tab>0<tab>1234
#pragma once

#include <windows.h>

#include <string>

namespace sim {

struct Call {
    std::wstring function;
    std::wstring exportName;
    std::wstring arguments;  // in order, separated by a comma and a blank; out arguments with their final values
    LONG result = 0;
};

// Value "RecordFile" of the state key, otherwise calls.txt in %LocalAppData%\KESTOVA\Simulated Notebook. Environment
// references are expanded.
[[nodiscard]] std::wstring recordFilePath();

// Any thread, any process. Creates the file and its folders. If a record cannot be written, it is lost silently.
void recordCall(const Call& call);
void appendCall(const std::wstring& file, const Call& call);

}  // namespace sim

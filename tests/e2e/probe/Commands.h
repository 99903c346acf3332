// One line in, one line of JSON out. A line is a command and its arguments, separated by tabs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace probe {

using Arguments = std::vector<std::wstring>;

// Runs on the thread that owns the windows. Never throws for bad arguments; then answers {"error": ...}.
[[nodiscard]] std::string answer(std::string_view line);

// Numbers in decimal or 0x hexadecimal, also negative; 0 for anything else.
[[nodiscard]] long long toNumber(const std::wstring& text);

// The commands, by source file.
std::string listWindows(const Arguments& arguments);      // -> every top-level window, topmost first
std::string listControls(const Arguments& arguments);     // window -> every window inside it
std::string foreground(const Arguments& arguments);       // -> the window with the focus
std::string textField(const Arguments& arguments);        // window -> the text in its (first) text field
std::string workArea(const Arguments& arguments);         // -> rectangle and DPI
std::string sendOrPost(const Arguments& arguments);       // how (post, send), window, message, wParam, lParam -> result
std::string registerMessage(const Arguments& arguments);  // name -> number

// strip, code... -> how many rounds; each shows and hides the strip, and opens the card of its code unless that is 0
std::string playRounds(const Arguments& arguments);
// process id, seed, count; not to the six messages that end the program or its windows
std::string sendNonsense(const Arguments& arguments);

std::string makeWindow(const Arguments& arguments);        // class, title, left, top, width, height -> window
std::string receivedMessages(const Arguments& arguments);  // window -> [message, wParam, lParam] since the last query
std::string focusWindow(const Arguments& arguments);       // window
std::string destroyWindow(const Arguments& arguments);     // window

std::string listProcesses(const Arguments& arguments);     // -> id and file name of every process
std::string countHandles(const Arguments& arguments);      // process id -> kernel handles and GDI objects
std::string countUserObjects(const Arguments& arguments);  // -> windows, menus, cursors, hooks... of all processes
std::string holdObject(const Arguments& arguments);        // kind (mutex, event), name -> whether it existed before
std::string releaseObjects(const Arguments& arguments);    // what holdObject made
std::string takeHooks(const Arguments& arguments);         // -> how many hooks there were in all processes
std::string setEvent(const Arguments& arguments);          // name -> whether this event exists

std::string setValue(const Arguments& arguments);     // root, key, name, type (dword, sz, hex), data
std::string getValue(const Arguments& arguments);     // root, key, name -> type and bytes in hexadecimal
std::string deleteKey(const Arguments& arguments);    // root, key (with all below it)
std::string deleteValue(const Arguments& arguments);  // root, key, name

std::string readAccessible(const Arguments& arguments);   // window -> its accessible object and all below it
std::string pressAccessible(const Arguments& arguments);  // window, part -> status of its default action
std::string setAccessible(const Arguments& arguments);    // window, value -> status
std::string accessibleAt(const Arguments& arguments);     // x, y -> the accessible object on the screen there
std::string listen(const Arguments& arguments);           // begins to record the events of accessible objects
std::string heardEvents(const Arguments& arguments);      // -> those since listen

}  // namespace probe

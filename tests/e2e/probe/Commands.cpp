#include "Commands.h"

#include <cwchar>

#include "Json.h"

namespace probe {

namespace {

struct Command {
    std::wstring_view name;
    std::size_t arguments;  // how many it needs
    std::string (*run)(const Arguments&);
};

constexpr Command kCommands[] = {
    {L"windows", 0, listWindows},
    {L"foreground", 0, foreground},
    {L"controls", 1, listControls},
    {L"text-field", 1, textField},
    {L"work-area", 0, workArea},
    {L"message", 5, sendOrPost},
    {L"register-message", 1, registerMessage},
    {L"make-window", 6, makeWindow},
    {L"received", 1, receivedMessages},
    {L"focus-window", 1, focusWindow},
    {L"destroy-window", 1, destroyWindow},
    {L"processes", 0, listProcesses},
    {L"count-handles", 1, countHandles},
    {L"hold-object", 2, holdObject},
    {L"release-objects", 0, releaseObjects},
    {L"take-hooks", 0, takeHooks},
    {L"set-event", 1, setEvent},
    {L"set-value", 5, setValue},
    {L"get-value", 3, getValue},
    {L"delete-key", 2, deleteKey},
    {L"delete-value", 3, deleteValue},
    {L"read", 1, readAccessible},
    {L"press", 2, pressAccessible},
    {L"set", 2, setAccessible},
    {L"read-at", 2, accessibleAt},
    {L"listen", 0, listen},
    {L"heard", 0, heardEvents},
    {L"play-rounds", 2, playRounds},
    {L"send-nonsense", 3, sendNonsense},
    {L"count-user-objects", 0, countUserObjects},
};

Arguments split(std::wstring_view line) {
    Arguments words;
    std::size_t begin = 0;
    for (std::size_t tab = line.find(L'\t'); tab != std::wstring_view::npos; tab = line.find(L'\t', begin)) {
        words.emplace_back(line.substr(begin, tab - begin));
        begin = tab + 1;
    }
    words.emplace_back(line.substr(begin));
    return words;
}

}  // namespace

long long toNumber(const std::wstring& text) {
    return std::wcstoll(text.c_str(), nullptr, 0);
}

std::string answer(std::string_view line) {
    Arguments words = split(wide(line));
    const std::wstring name = words.front();
    words.erase(words.begin());
    for (const Command& command : kCommands) {
        if (command.name == name) {
            return words.size() < command.arguments ? error(L"too few arguments: " + name) : command.run(words);
        }
    }
    return error(L"no such command: " + name);
}

}  // namespace probe

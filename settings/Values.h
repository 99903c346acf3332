// Every setting that docs/configuration.md describes, as one table: what it is called, what it may be, where it is kept.
// The pages show it, the model reads and writes by it, and nothing else may be imported or written with administrator
// rights.
#pragma once

#include <windows.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Store.h"

namespace settings {

enum class Scope {
    UserElseMachine,  // the card configuration that users may have apart from the machine
    Machine,          // the rest of it
    Language,         // the program's own key, of the user or else of the machine; the icon's switch too
    List,             // the key of the function list that is in force
    Product,          // the program's own key below the root of that list
    Start             // Windows' own list of what it starts, for the user or for everybody
};

// When a running Fenwyn takes a change over.
enum class InForce {
    AtOnce,  // it reads the value when it needs it, or is told of the change
    Restart  // it reads the value at its start only, or builds its cards by it
};

enum class Kind { YesNo, Position, Milliseconds, Pixels, VirtualKey, Language, Path };

// The headings of the page Behaviour; the settings of the last one stand on the page Keys.
enum class Group { Place, Showing, Captions, Plugins, Language, Keys };

struct Value {
    const wchar_t* name;
    Scope scope;
    Kind kind;
    DWORD standard;  // texts are empty by default
    DWORD lowest;
    DWORD highest;
    Group group;
    UINT label;  // the next text says what it does
    InForce inForce = InForce::AtOnce;
};

// In the order of the page.
[[nodiscard]] std::span<const Value> values();

// Whether keys may be customised.
inline constexpr wchar_t kProgrammable[] = L"Programmable";

// Null if there is no setting of that name.
[[nodiscard]] const Value* findValue(std::wstring_view name);

[[nodiscard]] constexpr bool isText(Kind kind) {
    return kind == Kind::Language || kind == Kind::Path;
}

}  // namespace settings

#include "Model.h"

#include <algorithm>

#include "Allowed.h"
#include "Data/RegistryPaths.h"
#include "KeyTable.h"
#include "ZelHotkey.h"
#include "ZelModifier.h"
#include "companions/include/FunctionListRoot.h"

namespace settings {
namespace {

bool isUserConfig(const Place& place) {
    return place.root == Root::User && place.key == regpath::kConfigKey;
}

bool isFunctionList(const Place& place) {
    return place.key == regpath::kHotkeyKey ? place.name == regpath::kFuncList
                                       : place.key.starts_with(std::wstring(regpath::kHotkeyKey) + L"\\");
}

bool isReadAtTheStart(const Place& place) {
    const Value* const value = findValue(place.name);
    return isFunctionList(place) || (value != nullptr && value->inForce == InForce::Restart);
}

// A button that belongs to nobody. Fenwyn does not start when keys may be customised and there is no button at all.
Place nobodysButton() {
    return {Root::Machine, std::wstring(regpath::kButtonsKey) + L"\\" + kOwnButton + L"none", regpath::kIsQrdControl};
}

bool isButton(const Place& place) {
    return place.key.starts_with(FENWYN_REG_BUTTON_UTILITY);
}

// Including the settings that stand beside the list.
bool belongsToList(const Place& place) {
    const Value* const value = findValue(place.name);
    return place.root != Root::LogFile && (isFunctionList(place) || (value != nullptr && (value->scope == Scope::List ||
                                                                                       value->scope == Scope::Product)));
}

bool isOneOfTheButtons(const Place& place) {
    return place.key.starts_with(std::wstring(regpath::kButtonsKey) + L"\\");
}

bool anyOf(const Changes& changes, bool (*test)(const Place&)) {
    return std::ranges::any_of(changes, [test](const auto& change) { return test(change.first); });
}

}  // namespace

Content CModel::content(const Place& place) const {
    const auto found = m_pending.find(place);
    return found != m_pending.end() ? found->second : stored(place);
}

void CModel::set(const Place& place, const Content& content) {
    if (isUserConfig(place)) {
        _writeAtOnce(place, content);
    } else if (stored(place) == content) {
        m_pending.erase(place);
    } else {
        m_pending[place] = content;
    }
    _tell();
}

std::vector<std::wstring> CModel::subkeys(Root root, const std::wstring& key) const {
    std::vector<std::wstring> names = m_outside.store->subkeys(root, key);
    const std::wstring below = key + L"\\";
    for (const auto& [place, content] : m_pending) {
        if (place.root == root && place.key.starts_with(below) && content) {
            const std::wstring name = place.key.substr(below.size(), place.key.find(L'\\', below.size()) - below.size());
            if (std::ranges::find(names, name) == names.end()) {
                names.push_back(name);
            }
        }
    }
    return names;
}

Root CModel::listRoot() const {
    return fenwyn::hasFunctionList(HKEY_LOCAL_MACHINE) ? Root::Machine : Root::User;
}

Place CModel::placeOf(const Value& value) const {
    switch (value.scope) {
        case Scope::UserElseMachine:
            return {_hasUserKey() ? Root::User : Root::Machine, keyOf(value.scope), value.name};
        case Scope::Machine:
            return {Root::Machine, keyOf(value.scope), value.name};
        case Scope::Language:
        case Scope::Start: {
            const Place users{Root::User, keyOf(value.scope), value.name};
            return content(users) ? users : Place{Root::Machine, users.key, value.name};
        }
        case Scope::List:
        case Scope::Product:
            break;
    }
    return {listRoot(), keyOf(value.scope), value.name};
}

Place CModel::placeToWrite(const Value& value) const {
    Place place = placeOf(value);
    if (value.scope == Scope::UserElseMachine || value.scope == Scope::Language || value.scope == Scope::Start) {
        place.root = Root::User;
    }
    return place;
}

CModel::Reading CModel::read(const Value& value) const {
    Reading reading{content(placeOf(value)), value.standard, {}, true};
    if (reading.content) {
        reading.isGood = isGood(value, *reading.content);
        reading.number = numberOf(*reading.content).value_or(value.standard);
        reading.text = textOf(*reading.content);
    }
    if (value.kind == Kind::VirtualKey) {
        reading.number = zelModifierKey(reading.number);
    }
    return reading;
}

void CModel::setNumber(const Value& value, DWORD number) {
    if (value.scope == Scope::Start) {
        _setStart(number != 0);
    } else {
        set(placeToWrite(value), numberData(number));
    }
}

// Where Fenwyn starts for everybody, it needs no value of the user; it only stays away when there is neither.
void CModel::_setStart(bool starts) {
    const Place users{Root::User, kStartKey, kWithWindows};
    const Place machines{Root::Machine, kStartKey, kWithWindows};
    const Content forAll = stored(machines);
    set(machines, starts ? forAll : std::nullopt);
    const Content own = forAll ? stored(users) : numberData(1);
    set(users, starts ? own : std::nullopt);
}

void CModel::setText(const Value& value, const std::wstring& text) {
    set(placeToWrite(value), text.empty() ? Content() : textData(text));
}

Changes CModel::everything() const {
    Changes all;
    const auto addContent = [&](const Place& place, const Content& there) {
        if (isAllowed(place, there)) {
            all.emplace(place, there);
        }
    };
    const auto add = [&](const Place& place) { addContent(place, content(place)); };
    for (const Value& value : values()) {
        if (const Reading reading = read(value); reading.isGood) {
            addContent(placeToWrite(value), mayBeAbsent(value) ? reading.content : numberData(reading.number));
        }
    }
    for (const Family& family : families()) {
        const Root root = family.forUsers ? listRoot() : Root::Machine;
        for (const std::wstring& key : subkeys(root, family.parent)) {
            for (const wchar_t* name : family.names) {
                if (name != nullptr) {
                    add({root, std::wstring(family.parent) + L"\\" + key, name});
                }
            }
        }
    }
    add(nobodysButton());  // so that there is one, from which takeOver sees that all are there
    add({listRoot(), regpath::kHotkeyKey, regpath::kFuncList});
    for (const wchar_t* name : logNames()) {
        add({Root::LogFile, kLogSection, name});
    }
    return all;
}

void CModel::takeOver(const Changes& changes) {
    const Root root = listRoot();
    if (anyOf(changes, &isOneOfTheButtons)) {
        removeOtherCustomKeys(*this, changes);
    }
    for (const auto& [place, content] : changes) {
        if (place.key == kStartKey) {
            _setStart(content && numberOf(*content).value_or(0) != 0);
            continue;
        }
        Place here = place;
        here.root = belongsToList(place) ? root : place.root;
        set(here, content);
    }
}

bool CModel::_hasUserKey() const {
    return m_outside.store->hasKey(Root::User, regpath::kConfigKey);
}

// The user's key hides the machine's as soon as it exists, so it gets all values that are in effect before the first
// one is changed in it.
void CModel::_writeAtOnce(const Place& place, const Content& content) {
    if (stored(place) == content) {
        return;
    }
    if (m_before.empty()) {
        m_bHadUserKey = _hasUserKey();
    }
    if (!_hasUserKey()) {
        _takeOverMachineValues();
    }
    m_before.try_emplace(place, stored(place));
    m_lastError = m_outside.store->write(place, content);
}

void CModel::_takeOverMachineValues() {
    for (const Value& value : values()) {
        if (value.scope == Scope::UserElseMachine) {
            const Place place{Root::User, regpath::kConfigKey, value.name};
            m_before.try_emplace(place, std::nullopt);
            m_lastError = m_outside.store->write(
                place, numberData(numberOf(stored({Root::Machine, regpath::kConfigKey, value.name}).value_or(Data{}))
                                      .value_or(value.standard)));
        }
    }
}

bool CModel::needsRights() const {
    return !_withRights().empty();
}

Changes CModel::_withRights() const {
    Changes changes;
    for (const auto& [place, content] : m_pending) {
        if (!m_outside.store->mayWrite(place.root)) {
            changes.emplace(place, content);
        }
    }
    return changes;
}

// What takes rights comes first: if the person refuses them, nothing is written.
Applied CModel::_write() {
    if (const Changes changes = _withRights(); !changes.empty()) {
        m_lastError = m_outside.writeElevated(changes);
        if (m_lastError != ERROR_SUCCESS) {
            return m_lastError == ERROR_CANCELLED ? Applied::Refused : Applied::Failed;
        }
        for (const auto& change : changes) {
            m_pending.erase(change.first);
        }
    }
    while (!m_pending.empty()) {
        const auto first = m_pending.begin();
        m_lastError = m_outside.store->write(first->first, first->second);
        if (m_lastError != ERROR_SUCCESS) {
            return Applied::Failed;
        }
        m_pending.erase(first);
    }
    return Applied::Done;
}

bool CModel::_lacksButtons() const {
    return read(*findValue(kProgrammable)).number != 0 && subkeys(Root::Machine, regpath::kButtonsKey).empty();
}

Applied CModel::apply() {
    if (_lacksButtons()) {
        m_pending[nobodysButton()] = numberData(0);
    }
    const bool restart = anyOf(m_pending, &isReadAtTheStart);
    const bool icon = anyOf(m_pending, [](const Place& place) { return place.name == FENWYN_VALUE_TRAY_ICON; });
    const bool buttons = anyOf(m_pending, &isButton);
    const Applied written = _write();
    if (written == Applied::Done) {
        m_before.clear();
    } else {
        m_pending.erase(nobodysButton());
    }
    _tell();
    if (written != Applied::Done) {
        return written;
    }
    if (buttons) {
        m_outside.announceButtons();
    }
    if (icon) {
        m_outside.followIconSetting();
    }
    return restart && m_outside.isRunning() && !m_outside.restart() ? Applied::NotRestarted : Applied::Done;
}

// A value that is removed keeps its last effect in a running Fenwyn. So each one first gets the value that was in
// effect, and goes when Fenwyn has taken that over.
void CModel::cancel() {
    m_pending.clear();
    bool removes = !m_bHadUserKey && !m_before.empty();
    for (const auto& [place, content] : m_before) {
        removes = removes || !content;
        const Data shown = content.value_or(numberData(_standardOf(place)));
        m_lastError = m_outside.store->write(place, shown);
    }
    if (removes) {
        m_outside.settle();
    }
    for (const auto& [place, content] : m_before) {
        if (!content) {
            m_lastError = m_outside.store->write(place, std::nullopt);
        }
    }
    if (!m_before.empty() && !m_bHadUserKey) {
        m_outside.store->removeEmptyKey(Root::User, regpath::kConfigKey);
    }
    m_before.clear();
    _tell();
}

// What was in effect without a value of the user: the machine's if the user had no key at all, else the default.
DWORD CModel::_standardOf(const Place& place) const {
    const Value* const value = findValue(place.name);
    const DWORD standard = value != nullptr ? value->standard : 0;
    return m_bHadUserKey ? standard
                         : numberOf(stored({Root::Machine, place.key, place.name}).value_or(Data{})).value_or(standard);
}

void CModel::_tell() const {
    if (m_changed) {
        m_changed();
    }
}

}  // namespace settings

// What the window changes: the settings as they are stored, and what is to become of them. Settings of the user that can
// be seen at once are written at once; everything else waits for Apply. Cancel puts back what was there before.
#pragma once

#include <functional>
#include <string>

#include "Store.h"
#include "Values.h"

namespace settings {

// What the model needs of the world outside; tests put something else in its place.
struct Outside {
    IStore* store = nullptr;  // outlives the model
    // Writes what takes administrator rights, in a process that has them: a system error code, ERROR_CANCELLED when the
    // person refused.
    std::function<LSTATUS(const Changes& changes)> writeElevated;
    // Whether Fenwyn runs here; ends it and starts it again, false: it did not end, or did not start.
    std::function<bool()> isRunning;
    std::function<bool()> restart;
    // Returns when a running Fenwyn has heard of the last change.
    std::function<void()> settle;
    // Tells Fenwyn of customised keys that changed.
    std::function<void()> announceButtons;
    // Makes the icon in the notification area follow its setting.
    std::function<void()> followIconSetting;
};

enum class Applied {
    Done,
    Refused,      // the person refused the administrator rights; nothing was written
    Failed,       // lastError() tells why; what was not written is still pending
    NotRestarted  // all is written, but the running Fenwyn is still the one before
};

class CModel {
 public:
    explicit CModel(Outside outside) : m_outside(std::move(outside)) {}

    // What is there, or is to be there.
    [[nodiscard]] Content content(const Place& place) const;
    // The same without what is pending.
    [[nodiscard]] Content stored(const Place& place) const { return m_outside.store->read(place); }
    void set(const Place& place, const Content& content);
    [[nodiscard]] std::vector<std::wstring> subkeys(Root root, const std::wstring& key) const;

    // The root of the function list, and of everything that belongs to it: the machine's, or the user's own where the
    // machine has none.
    [[nodiscard]] Root listRoot() const;

    // Whether there is something to apply; whether that takes administrator rights that this process lacks.
    [[nodiscard]] bool isChanged() const { return !m_pending.empty() || !m_before.empty(); }
    [[nodiscard]] bool needsRights() const;
    [[nodiscard]] const Changes& pending() const { return m_pending; }

    [[nodiscard]] Applied apply();
    [[nodiscard]] LSTATUS lastError() const { return m_lastError; }
    // Drops what is pending, and puts back what took effect at once.
    void cancel();

    // A setting as it is, or is to be: `content` is what is stored, even if the setting may not have that; `number` is
    // what Fenwyn makes of it.
    struct Reading {
        Content content;
        DWORD number = 0;
        std::wstring text;
        bool isGood = true;  // nothing is good too
    };
    [[nodiscard]] Reading read(const Value& value) const;
    // Where the setting is read, and where a change of it is written.
    [[nodiscard]] Place placeOf(const Value& value) const;
    [[nodiscard]] Place placeToWrite(const Value& value) const;
    void setNumber(const Value& value, DWORD number);
    // An empty text removes the setting.
    void setText(const Value& value, const std::wstring& text);

    // Everything as it is to be after Apply, including what is not set; what a setting may not have is left out.
    [[nodiscard]] Changes everything() const;
    // Takes settings over from elsewhere; all of them are allowed. What belongs to a function list goes to the one in
    // force here. Where there are buttons among them, these are all: customised keys of other buttons are removed.
    void takeOver(const Changes& changes);

    // Called after every change.
    void watch(std::function<void()> changed) { m_changed = std::move(changed); }

 private:
    void _setStart(bool starts);
    void _writeAtOnce(const Place& place, const Content& content);
    [[nodiscard]] bool _hasUserKey() const;
    void _takeOverMachineValues();
    [[nodiscard]] DWORD _standardOf(const Place& place) const;
    [[nodiscard]] Changes _withRights() const;
    [[nodiscard]] Applied _write();
    [[nodiscard]] bool _lacksButtons() const;
    void _tell() const;

    Outside m_outside;
    Changes m_pending;
    Changes m_before;             // of what took effect at once: what was there
    bool m_bHadUserKey = false;   // when the first of them was written
    LSTATUS m_lastError = ERROR_SUCCESS;
    std::function<void()> m_changed;
};

}  // namespace settings

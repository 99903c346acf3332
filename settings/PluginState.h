// Why a card is shown or missing.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "CardList.h"

namespace settings {

// What a plug-in says of itself, asked by FenwynCheck in a process of its own.
struct PluginAnswer {
    enum class Outcome { Offered, Declined, Faulty, NotAsked };

    Outcome outcome = Outcome::NotAsked;  // FenwynCheck is missing, or gave no answer
    std::wstring why;                     // of a declined or faulty one
};

// Asks the plug-in. Returns after half a minute at the latest. Thread: any.
[[nodiscard]] PluginAnswer askPlugin(const std::wstring& function, const std::wstring& plugin);

// What FenwynCheck wrote.
[[nodiscard]] PluginAnswer parseAnswer(const std::wstring& lines);

enum class CardState {
    Off,          // not in the list
    Unknown,      // no function of Fenwyn
    NoKey,        // the list has no key for it
    NoPlugin,     // nor a plug-in
    FileMissing,  // the plug-in's file is not there
    SetAside,     // the plug-in has ended Fenwyn
    Asking,       // the plug-in has not answered yet
    Declined,     // the machine does not have it
    Faulty,       // the plug-in breaks the contract
    NotAsked,     // nobody knows
    Shown,
    StartsPrograms  // all its keys are customised
};

struct CardReport {
    CardState state = CardState::Off;
    std::wstring why;   // of SetAside, Declined and Faulty
    std::wstring when;  // of SetAside
};

// `answer`: nothing as long as there is none.
[[nodiscard]] CardReport reportOf(const Card& card, const std::optional<PluginAnswer>& answer);

// Lets Fenwyn load a plug-in again that it has set aside. A system error code.
[[nodiscard]] LSTATUS forgivePlugin(const std::wstring& pluginFile);

// Asks plug-ins one after the other on a thread of its own, and remembers the answers.
class CPluginQuestions {
 public:
    using Ask = std::function<PluginAnswer(const std::wstring& function, const std::wstring& plugin)>;

    // `answered` is called on the thread; neither is called any more once the object has ended.
    CPluginQuestions(Ask ask, std::function<void()> answered);
    // Does not wait for an answer that is still outstanding.
    ~CPluginQuestions();
    CPluginQuestions(const CPluginQuestions&) = delete;
    CPluginQuestions& operator=(const CPluginQuestions&) = delete;

    // Nothing: it will be asked.
    [[nodiscard]] std::optional<PluginAnswer> answerOf(const std::wstring& function, const std::wstring& plugin);
    // Forgets all answers.
    void forget();

 private:
    struct Shared;

    std::shared_ptr<Shared> m_pShared;
};

}  // namespace settings

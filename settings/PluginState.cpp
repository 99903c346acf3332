#include "PluginState.h"

#include <algorithm>
#include <deque>
#include <map>
#include <system_error>
#include <thread>
#include <utility>

#include "common/ChildProcess.h"
#include "common/ProgramPath.h"
#include "companions/include/PluginFaults.h"

namespace settings {
namespace {

constexpr DWORD kPatienceMs = 30000;  // longer than FenwynCheck itself waits

std::wstring afterWord(const std::wstring& lines, const std::wstring& word) {
    const std::size_t at = lines.find(word);
    if (at == std::wstring::npos) {
        return {};
    }
    const std::size_t start = at + word.size();
    std::wstring rest = lines.substr(start, lines.find_first_of(L"\r\n", start) - start);
    return rest;
}

}  // namespace

PluginAnswer parseAnswer(const std::wstring& lines) {
    struct Word {
        const wchar_t* word;
        PluginAnswer::Outcome outcome;
    };
    constexpr Word kWords[] = {{L"offered", PluginAnswer::Outcome::Offered},
                               {L"declined", PluginAnswer::Outcome::Declined},
                               {L"faulty", PluginAnswer::Outcome::Faulty}};
    const std::wstring outcome = afterWord(lines, L"outcome=");
    const auto found = std::ranges::find_if(kWords, [&](const Word& row) { return outcome == row.word; });
    return found != std::end(kWords) ? PluginAnswer{found->outcome, afterWord(lines, L"\nwhy=")} : PluginAnswer{};
}

PluginAnswer askPlugin(const std::wstring& function, const std::wstring& plugin) {
    const common::ChildResult child =
        common::runChild(common::programFolder() + L"\\FenwynCheck.exe",
                         L"--ask " + common::quotedArgument(function) + L" " + common::quotedArgument(plugin),
                         kPatienceMs);
    return parseAnswer(child.text);
}

CardReport reportOf(const Card& card, const std::optional<PluginAnswer>& answer) {
    fenwyn::PluginFault fault;
    if (!card.isListed) {
        return {CardState::Off, {}, {}};
    }
    if (!card.isKnown) {
        return {CardState::Unknown, {}, {}};
    }
    if (card.plugin.empty()) {
        return {CardState::NoPlugin, {}, {}};
    }
    if (::GetFileAttributesW(card.pluginFile.c_str()) == INVALID_FILE_ATTRIBUTES) {
        return {CardState::FileMissing, {}, {}};
    }
    if (fenwyn::readFault(card.pluginFile, fault) && fault.setAside) {
        return {CardState::SetAside, fault.exportName + L": " + fault.reason, fault.when};
    }
    if (card.codes.empty()) {
        return {CardState::NoKey, {}, {}};
    }
    if (card.startsPrograms) {
        return {CardState::StartsPrograms, {}, {}};
    }
    if (!answer) {
        return {CardState::Asking, {}, {}};
    }
    constexpr CardState kStates[] = {CardState::Shown, CardState::Declined, CardState::Faulty, CardState::NotAsked};
    return {kStates[static_cast<std::size_t>(answer->outcome)], answer->why, {}};
}

LSTATUS forgivePlugin(const std::wstring& pluginFile) {
    return ::RegDeleteKeyW(HKEY_CURRENT_USER, fenwyn::faultKeyOf(pluginFile).c_str());
}

// The thread and the object; whichever lives longer.
struct CPluginQuestions::Shared {
    using Question = std::pair<std::wstring, std::wstring>;

    std::mutex lock;
    Ask ask;
    std::function<void()> answered;  // null: the object has ended
    std::map<Question, PluginAnswer> answers;
    std::deque<Question> questions;  // the first one is being asked
    bool isAsking = false;

    // Until nothing is left to ask. An answer that was forgotten meanwhile does not count.
    static void work(const std::shared_ptr<Shared>& shared) noexcept {
        try {
            std::unique_lock guard(shared->lock);
            while (shared->answered && !shared->questions.empty()) {
                const Question question = shared->questions.front();
                guard.unlock();
                const PluginAnswer answer = shared->ask(question.first, question.second);
                guard.lock();
                if (!shared->questions.empty() && shared->questions.front() == question) {
                    shared->questions.pop_front();
                    shared->answers[question] = answer;
                }
                if (shared->answered) {
                    shared->answered();
                }
            }
            shared->isAsking = false;
        } catch (...) {
            // Out of memory: the states stay unknown.
        }
    }
};

CPluginQuestions::CPluginQuestions(Ask ask, std::function<void()> answered) : m_pShared(std::make_shared<Shared>()) {
    m_pShared->ask = std::move(ask);
    m_pShared->answered = std::move(answered);
}

CPluginQuestions::~CPluginQuestions() {
    const std::scoped_lock guard(m_pShared->lock);
    m_pShared->answered = nullptr;
}

std::optional<PluginAnswer> CPluginQuestions::answerOf(const std::wstring& function, const std::wstring& plugin) {
    const std::scoped_lock guard(m_pShared->lock);
    const Shared::Question question{function, plugin};
    if (const auto found = m_pShared->answers.find(question); found != m_pShared->answers.end()) {
        return found->second;
    }
    if (std::ranges::find(m_pShared->questions, question) == m_pShared->questions.end()) {
        m_pShared->questions.push_back(question);
    }
    if (!m_pShared->isAsking) {
        m_pShared->isAsking = true;
        std::thread(&Shared::work, m_pShared).detach();
    }
    return std::nullopt;
}

void CPluginQuestions::forget() {
    const std::scoped_lock guard(m_pShared->lock);
    m_pShared->answers.clear();
    m_pShared->questions.clear();
}

}  // namespace settings

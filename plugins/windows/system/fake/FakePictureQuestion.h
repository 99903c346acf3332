// A question that a test answers, and a memory of layouts that a test reads.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

#include "common/Handle.h"
#include "system/LastGood.h"
#include "system/PictureQuestion.h"

namespace win {

// What tests and question share; it outlives both.
struct FakeAnswers {
    std::atomic<int> nAsked = 0;
    std::atomic<int> nFailures = 0;
    std::atomic<bool> bAsBefore = false;  // at the last failure
    std::atomic<bool> bOpen = false;
    std::atomic<bool> bNoWindow = false;
    std::atomic<int> nAnswer = -1;  // an IPictureQuestion::Event
    common::UniqueHandle hAnswered{::CreateEventW(nullptr, FALSE, FALSE, nullptr)};

    void answer(IPictureQuestion::Event event) {
        nAnswer = static_cast<int>(event);
        ::SetEvent(hAnswered.get());
    }
};

class CFakePictureQuestion final : public IPictureQuestion {
 public:
    explicit CFakePictureQuestion(std::shared_ptr<FakeAnswers> pAnswers) : m_pAnswers(std::move(pAnswers)) {}

    bool ask() override {
        m_pAnswers->bOpen = !m_pAnswers->bNoWindow;
        ++m_pAnswers->nAsked;
        return !m_pAnswers->bNoWindow;
    }
    void tellFailure(bool bAsBefore) override {
        m_pAnswers->bAsBefore = bAsBefore;
        ++m_pAnswers->nFailures;
    }
    void close() override { m_pAnswers->bOpen = false; }

    Event wait(HANDLE hWake) override {
        const HANDLE handles[]{hWake, m_pAnswers->hAnswered.get()};
        if (::WaitForMultipleObjects(m_pAnswers->bOpen ? 2 : 1, handles, FALSE, INFINITE) == WAIT_OBJECT_0) {
            return Event::Woken;
        }
        m_pAnswers->bOpen = false;
        return static_cast<Event>(m_pAnswers->nAnswer.load());
    }

 private:
    std::shared_ptr<FakeAnswers> m_pAnswers;
};

// One memory for several keepers after each other.
struct FakeMemory {
    std::mutex lock;
    std::optional<Layout> layout;
    std::atomic<bool> bUnsettled = false;
};

class CFakeLastGood final : public ILastGood {
 public:
    explicit CFakeLastGood(std::shared_ptr<FakeMemory> pMemory) : m_pMemory(std::move(pMemory)) {}

    void save(const Layout& rLayout) override {
        const std::lock_guard guard(m_pMemory->lock);
        m_pMemory->layout = rLayout;
        m_pMemory->bUnsettled = true;
    }
    void settle() override { m_pMemory->bUnsettled = false; }
    std::optional<Layout> load() override {
        const std::lock_guard guard(m_pMemory->lock);
        return m_pMemory->layout;
    }
    bool wasLeftUnsettled() override { return m_pMemory->bUnsettled; }

 private:
    std::shared_ptr<FakeMemory> m_pMemory;
};

}  // namespace win

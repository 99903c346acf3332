// The answer of an earlier start, for tests.
#pragma once

#include <atomic>

#include "system/OfferMemory.h"

namespace win {

class CFakeOfferMemory final : public IOfferMemory {
 public:
    enum Answer { Unknown, No, Yes };

    explicit CFakeOfferMemory(Answer before = Unknown) : answer(before) {}

    std::optional<bool> offered() override {
        return answer == Unknown ? std::nullopt : std::optional<bool>(answer == Yes);
    }
    void store(bool bOffered) override { answer = bOffered ? Yes : No; }

    std::atomic<Answer> answer;
};

}  // namespace win

// The small window that asks whether a new arrangement of the screens stays.
#pragma once

#include <windows.h>

#include <memory>

namespace win {

inline constexpr DWORD kQuestionSeconds = 15;

// All calls come on one thread.
class IPictureQuestion {
 public:
    enum class Event { Woken, Keep, GoBack };

    virtual ~IPictureQuestion() = default;

    // Shows the question, or the note that the screens could not be set up so. Either replaces what was shown. False:
    // there is no window, and nobody will answer. `bAsBefore`: they are as they were.
    [[nodiscard]] virtual bool ask() = 0;
    virtual void tellFailure(bool bAsBefore) = 0;
    // Takes either away, without an answer.
    virtual void close() = 0;

    // Waits until `hWake` is set or the question is answered, which closes it.
    [[nodiscard]] virtual Event wait(HANDLE hWake) = 0;
};

[[nodiscard]] std::unique_ptr<IPictureQuestion> makeWindowsPictureQuestion();

}  // namespace win

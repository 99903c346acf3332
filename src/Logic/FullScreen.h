// Programs that have the whole screen to themselves.
#pragma once

// Whether one runs now: a game, a film, a presentation. False when the system does not know. Thread: any.
[[nodiscard]] bool fullScreenProgramRuns() noexcept;

// The question whether a changed picture stays, as several processes see it.
#pragma once

namespace fenwyn {

// An event in the session. While somebody holds it, a change of the displays that nobody has confirmed yet is not taken
// back by others: either its question is still open, or a check is running that must change nothing.
inline constexpr wchar_t kDisplayQuestionEvent[] = L"Local\\KESTOVA_Fenwyn_Display_Question";

}  // namespace fenwyn

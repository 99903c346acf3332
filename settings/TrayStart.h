// Whether there is an icon in the notification area, as the setting wants it.
#pragma once

namespace settings {

// The user's value, or else the machine's.
[[nodiscard]] bool isIconWanted() noexcept;

// Makes the session follow the setting: the icon appears and starts with Windows from now on, or goes. Where the
// installer starts it for everybody, the icon of a user who does not want one ends at once. Does not wait.
void followIconSetting();

}  // namespace settings

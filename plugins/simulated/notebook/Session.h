// The running Fenwyn of the logon session, as other programs see it.
#pragma once

namespace sim {

// Asks Fenwyn to end, if it runs. Does not wait.
void askFenwynToEnd();

// The same, and waits until its main window is gone. False when it is still there after `patience` milliseconds.
[[nodiscard]] bool endFenwyn(unsigned long patience);

}  // namespace sim

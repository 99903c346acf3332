// The running Fenwyn of the logon session, from another program's view.
#pragma once

namespace sim {

// Asks Fenwyn to end, if it runs. Does not wait.
void askFenwynToEnd();

// The same, and waits until its main window is destroyed. False if it still exists after `patience` milliseconds.
[[nodiscard]] bool endFenwyn(unsigned long patience);

}  // namespace sim

#pragma once

// The version of the executables; a lint test compares it with the project's version in CMakeLists.txt. Plain text and
// numbers only, because the resource compiler reads this file too.
#define FENWYN_VERSION_NUMBERS 1, 0, 0, 0
#define FENWYN_VERSION_TEXT "1.0.0"

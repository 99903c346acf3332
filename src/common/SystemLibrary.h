// Libraries of the system that some versions of Windows lack.
#pragma once

#include "common/Handle.h"

// Loads a library of the system by its name, from the system's folder only. Empty: this system does not have it.
[[nodiscard]] common::UniqueModule loadSystemLibrary(const wchar_t* pszName);

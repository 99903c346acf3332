// The same calls of a well-known logging library.
#pragma once

namespace peer {

// Writes every level to that file, buffered.
void open(const char* file);
void written(const char* name, int value);

}  // namespace peer

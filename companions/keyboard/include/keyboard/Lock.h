// Scope of a slim lock, which needs no clean-up, so that it can be part of a library that is unloaded at any time.
#pragma once

#include <windows.h>

namespace keyboard {

class CExclusiveLock {
 public:
    explicit CExclusiveLock(SRWLOCK& lock) noexcept : m_lock(lock) { ::AcquireSRWLockExclusive(&m_lock); }
    ~CExclusiveLock() { ::ReleaseSRWLockExclusive(&m_lock); }
    CExclusiveLock(const CExclusiveLock&) = delete;
    CExclusiveLock& operator=(const CExclusiveLock&) = delete;

 private:
    SRWLOCK& m_lock;
};

}  // namespace keyboard

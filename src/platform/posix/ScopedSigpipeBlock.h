// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>

namespace qor::platform
{

/// Blocks SIGPIPE in the calling thread during its lifetime, so that a write to a pipe without a
/// reader does not end the process. Other signals keep their state.
class ScopedSigpipeBlock
{
public:
    ScopedSigpipeBlock()
    {
        sigemptyset(&m_Sigpipe);
        sigaddset(&m_Sigpipe, SIGPIPE);
        m_WasPending = isPending();
        pthread_sigmask(SIG_BLOCK, &m_Sigpipe, &m_FormerMask);
    }
    ScopedSigpipeBlock(const ScopedSigpipeBlock&) = delete;
    ScopedSigpipeBlock& operator=(const ScopedSigpipeBlock&) = delete;
    ~ScopedSigpipeBlock() { pthread_sigmask(SIG_SETMASK, &m_FormerMask, nullptr); }

    /// Discards the signal of a write that failed with EPIPE. A signal that was pending before the
    /// constructor remains pending. The system sends the signal to the thread that writes, so
    /// another thread cannot receive it and `sigwait` returns at once.
    void discardSignal()
    {
        int number = 0;
        if (!m_WasPending && isPending()) {
            sigwait(&m_Sigpipe, &number);
        }
    }

private:
    static bool isPending()
    {
        sigset_t pending;
        sigpending(&pending);
        return sigismember(&pending, SIGPIPE) == 1;
    }

    sigset_t m_Sigpipe;
    sigset_t m_FormerMask;
    bool m_WasPending;
};

} // namespace qor::platform

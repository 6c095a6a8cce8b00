// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/SessionStatus.h"

#include <QObject>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

// Waits on its own thread for a new session to become usable: every period
// it looks at the worker's state and setup-received words; a failed (7) or
// idle (0) worker ends the wait at once, the arrival of the setup record
// ends it successfully, and running out of rounds is a time-out. The
// decisions are delivered on the context object's thread through queued
// calls, so the thread never blocks on the user-interface thread and the
// owner can stop it at any moment. The context must outlive the wait.
class ConnectingWait
{
public:
    struct Hooks
    {
        std::function<void()> inputsLocked; // the 30th round: lock the connection inputs
        std::function<void()> setupArrived; // the setup record is in the mirror
        std::function<void()> sessionFailed; // the worker went to 7 or back to 0
        std::function<void()> timedOut; // no record within the rounds, or no worker
    };

    static constexpr int DefaultRounds = 300;
    static constexpr std::chrono::milliseconds DefaultPeriod {100};
    static constexpr int LockRound = 30;

    ConnectingWait(QObject *context, std::shared_ptr<const SessionStatus> status, Hooks hooks,
                   int rounds = DefaultRounds, std::chrono::milliseconds period = DefaultPeriod);
    ~ConnectingWait();

    ConnectingWait(const ConnectingWait &) = delete;
    ConnectingWait &operator=(const ConnectingWait &) = delete;

    // The closing flag: the thread ends at its next round without a decision.
    void stop();
    // Runs the next round now instead of at the end of the period. A caller
    // that learns of a state change by a signal saves up to one period.
    void wake();
    bool isFinished() const;

private:
    void run();
    void deliver(const std::function<void()> &hook);

    QObject *m_context; // outlives this object: the destructor joins the thread
    std::shared_ptr<const SessionStatus> m_status;
    Hooks m_hooks;
    int m_rounds;
    std::chrono::milliseconds m_period;

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_closing = false;
    bool m_woken = false;
    std::atomic<bool> m_finished {false};
    std::thread m_thread;
};

// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/ConnectingWait.h"

#include <QMetaObject>

ConnectingWait::ConnectingWait(QObject *context, std::shared_ptr<const SessionStatus> status,
                               Hooks hooks, int rounds, std::chrono::milliseconds period)
    : m_context(context)
    , m_status(std::move(status))
    , m_hooks(std::move(hooks))
    , m_rounds(rounds)
    , m_period(period)
    , m_thread([this] { run(); })
{ }

ConnectingWait::~ConnectingWait()
{
    stop();
    m_thread.join();
}

void ConnectingWait::stop()
{
    const std::lock_guard lock(m_mutex);
    m_closing = true;
    m_wake.notify_all();
}

void ConnectingWait::wake()
{
    const std::lock_guard lock(m_mutex);
    m_woken = true;
    m_wake.notify_all();
}

bool ConnectingWait::isFinished() const
{
    return m_finished.load();
}

void ConnectingWait::deliver(const std::function<void()> &hook)
{
    if (!hook)
        return;
    QMetaObject::invokeMethod(m_context, hook, Qt::QueuedConnection);
}

void ConnectingWait::run()
{
    int countdown = m_rounds;
    std::unique_lock lock(m_mutex);
    while (true) {
        --countdown;
        if (m_closing)
            break;
        if (!m_status->workerAlive.load()) {
            deliver(m_hooks.timedOut);
            break;
        }
        const int state = m_status->state.load();
        if (state == 7 || state == 0) {
            deliver(m_hooks.sessionFailed);
            break;
        }
        if (countdown == m_rounds - LockRound)
            deliver(m_hooks.inputsLocked);
        if (m_status->setupReceived.load() == 1) {
            deliver(m_hooks.setupArrived);
            break;
        }
        if (countdown <= 0) {
            deliver(m_hooks.timedOut);
            break;
        }
        m_wake.wait_for(lock, m_period, [this] { return m_closing || m_woken; });
        m_woken = false;
    }
    m_finished.store(true);
}

// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/SessionThreads.h"

#include <algorithm>

namespace sim {

SessionThreads::SessionThreads(int count)
{
    if (count <= 0)
        count = std::max(2, QThread::idealThreadCount());
    for (int i = 0; i < count; ++i) {
        Worker worker {std::make_unique<QThread>(), std::make_unique<QObject>()};
        worker.thread->setObjectName(QStringLiteral("sessions-%1").arg(i));
        worker.context->moveToThread(worker.thread.get());
        worker.thread->start();
        m_workers.push_back(std::move(worker));
    }
}

SessionThreads::~SessionThreads()
{
    for (const Worker &worker : m_workers)
        worker.thread->quit();
    // The contexts go once their threads are gone.
    for (const Worker &worker : m_workers)
        worker.thread->wait();
}

QObject *SessionThreads::next()
{
    const std::size_t i = m_next.fetch_add(1, std::memory_order_relaxed) % m_workers.size();
    return m_workers[i].context.get();
}

void SessionThreads::onEachThread(const std::function<void()> &work)
{
    for (const Worker &worker : m_workers)
        QMetaObject::invokeMethod(worker.context.get(), work, Qt::BlockingQueuedConnection);
}

void SessionThreads::post(const QThread *thread, std::function<void()> work)
{
    const auto worker
        = std::find_if(m_workers.cbegin(), m_workers.cend(),
                       [thread](const Worker &w) { return w.thread.get() == thread; });
    QMetaObject::invokeMethod(worker->context.get(), std::move(work), Qt::QueuedConnection);
}

} // namespace sim

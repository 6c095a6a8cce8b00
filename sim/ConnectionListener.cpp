// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/ConnectionListener.h"

#include <atomic>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace sim {

namespace {

constexpr int RetryMs = 100;
constexpr rlim_t ReservedDescriptors = 32;

// One for the whole process: listeners of every thread share it.
std::atomic<int> &spareDescriptor()
{
    static std::atomic<int> spare {::open("/dev/null", O_RDONLY | O_CLOEXEC)};
    return spare;
}

} // namespace

ConnectionListener::ConnectionListener(std::function<void(qintptr)> accepted,
                                       std::function<void(const QString &)> log, QObject *parent)
    : QTcpServer(parent)
    , m_accepted(std::move(accepted))
    , m_log(std::move(log))
{
    spareDescriptor();
    m_retry.setSingleShot(true);
    m_retry.setInterval(RetryMs);
    connect(&m_retry, &QTimer::timeout, this, &QTcpServer::resumeAccepting);
    connect(this, &QTcpServer::acceptError, this, [this](QAbstractSocket::SocketError error) {
        if (error == QAbstractSocket::SocketResourceError)
            outOfDescriptors();
        else
            m_retry.start();
    });
}

void ConnectionListener::incomingConnection(qintptr descriptor)
{
    // A new descriptor takes the lowest free number, so a high one means
    // nearly every number below it is taken.
    rlimit limit {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY
        && rlim_t(descriptor) + ReservedDescriptors >= limit.rlim_cur) {
        ::close(int(descriptor));
        m_log(u"connection refused: descriptor %1 of at most %2 is too close to the limit"_s
                  .arg(descriptor)
                  .arg(limit.rlim_cur));
        return;
    }
    m_accepted(descriptor);
}

void ConnectionListener::outOfDescriptors()
{
    const int spare = spareDescriptor().exchange(-1);
    if (spare < 0) {
        m_log(u"out of file descriptors; not accepting for %1 ms"_s.arg(RetryMs));
        m_retry.start();
        return;
    }
    ::close(spare);
    int refused = 0;
    for (;;) {
        const int descriptor
            = ::accept4(int(socketDescriptor()), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (descriptor < 0)
            break;
        ::close(descriptor);
        ++refused;
    }
    spareDescriptor().store(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    m_log(u"out of file descriptors: %1 connections refused"_s.arg(refused));
    resumeAccepting();
}

} // namespace sim

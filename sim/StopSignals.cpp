// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/StopSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace sim {

namespace {

int s_pair[2] = {-1, -1};

} // namespace

StopSignals::StopSignals(QObject *parent)
    : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, s_pair) != 0)
        return;
    m_notifier = new QSocketNotifier(s_pair[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [] {
        char byte;
        if (::read(s_pair[1], &byte, 1) > 0)
            QCoreApplication::quit();
    });
    struct sigaction action
    {
    };
    action.sa_handler = &StopSignals::handle;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
}

StopSignals::~StopSignals()
{
    std::signal(SIGTERM, SIG_DFL);
    std::signal(SIGINT, SIG_DFL);
    for (int &fd : s_pair) {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
    }
}

void StopSignals::handle(int)
{
    const char byte = 1;
    // Nothing else is safe here; a full pair means a stop is already on its way.
    [[maybe_unused]] const auto written = ::write(s_pair[0], &byte, 1);
}

} // namespace sim

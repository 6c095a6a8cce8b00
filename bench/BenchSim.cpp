// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/BenchSim.h"

#include "bench/BenchFleet.h"
#include "session/CWork.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

using namespace Qt::StringLiterals;

BenchSim::BenchSim(const QStringList &extraArguments)
{
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.start(BenchFleet::binary("recorder-sim"),
                    QStringList {u"--listen"_s, u"127.0.0.1:0"_s, u"--record"_s, recordPath()}
                        + extraArguments);
    m_process.waitForStarted();
    while (!m_process.canReadLine() && m_process.waitForReadyRead(10000)) { }
    const QByteArray line = m_process.readLine().trimmed();
    m_port = quint16(line.mid(line.lastIndexOf(':') + 1).toUInt());
    if (m_port == 0)
        qFatal("recorder-sim did not start: %s", line.constData());
}

BenchSim::~BenchSim()
{
    m_process.kill();
    m_process.waitForFinished();
}

bool BenchSim::openSession(CWork &work, ConnectionRecord &record) const
{
    record.address = "127.0.0.1";
    record.port = m_port;
    record.memberId = "Admin";
    work.connectSession(&record);
    return runUntil([&] { return work.setupReceived() == 1 && work.clockValid(); }, 30000);
}

bool BenchSim::runUntil(const std::function<bool()> &done, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done() || deadline.hasExpired())
            loop.quit();
    });
    poll.start(5);
    if (!done())
        loop.exec();
    return done();
}

// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/BenchFleet.h"

#include <QCoreApplication>
#include <QFile>

using namespace Qt::StringLiterals;

BenchFleet::BenchFleet(int count)
{
    m_sim.setStandardErrorFile(QProcess::nullDevice());
    m_sim.start(binary("recorder-sim"),
                {u"--listen"_s, u"127.0.0.1:0"_s, u"--record"_s, m_dir.filePath(u"record"_s),
                 u"--count"_s, QString::number(count)});
    // The simulator prints one line a recorder, its address last.
    QByteArray hosts;
    while (hosts.count('\n') < count) {
        if (!m_sim.canReadLine() && !m_sim.waitForReadyRead(30000))
            return;
        const QByteArray line = m_sim.readLine().trimmed();
        const QByteArray address = line.mid(line.lastIndexOf(' ') + 1);
        if (m_first.isEmpty())
            m_first = address;
        hosts += address + '\n';
    }
    QFile file(hostsFile());
    m_ready = file.open(QIODevice::WriteOnly) && file.write(hosts) == hosts.size();
}

BenchFleet::~BenchFleet()
{
    m_sim.kill();
    m_sim.waitForFinished();
}

QString BenchFleet::binary(const char *name)
{
    const QByteArray dir = qgetenv("RS_BENCH_BIN");
    return (dir.isEmpty() ? QCoreApplication::applicationDirPath() + u"/../bin"_s
                          : QString::fromLocal8Bit(dir))
           + u'/' + QLatin1StringView(name);
}

QStringList BenchFleet::first() const
{
    const QString address = QString::fromLatin1(m_first);
    return {u"--host"_s, address.section(u':', 0, 0), u"--port"_s, address.section(u':', 1)};
}

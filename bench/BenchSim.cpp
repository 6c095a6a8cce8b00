#include "bench/BenchSim.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

BenchSim::BenchSim(const QStringList &extraArguments)
{
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.start(QCoreApplication::applicationDirPath() + u"/../bin/recorder-sim"_s,
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

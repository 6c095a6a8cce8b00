#include "tests/SimProcess.h"

#include "tests/TestSupport.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

SimProcess::SimProcess(const QStringList &extraArguments, const QByteArray &initialRecord)
{
    if (!initialRecord.isEmpty())
        testsupport::writeFile(recordPath(), initialRecord);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(testsupport::dataDir() + u"/recorder-sim"_s,
                    QStringList {u"--listen"_s, u"127.0.0.1:0"_s, u"--record"_s, recordPath()}
                        + extraArguments);
    if (!m_process.waitForStarted(10000)) {
        ADD_FAILURE() << "recorder-sim did not start";
        return;
    }
    while (!m_process.canReadLine() && m_process.waitForReadyRead(10000)) { }
    const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
    const auto match = QRegularExpression(u"^listening on 127\\.0\\.0\\.1:(\\d+)$"_s).match(line);
    if (!match.hasMatch()) {
        ADD_FAILURE() << "unexpected first line from recorder-sim: " << line.toStdString();
        return;
    }
    m_port = quint16(match.captured(1).toUInt());
}

SimProcess::~SimProcess()
{
    kill();
}

void SimProcess::kill()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished(10000);
    }
}

QByteArray SimProcess::storedRecord() const
{
    return testsupport::readFile(recordPath());
}

testsupport::CliRun SimProcess::cli(const QStringList &arguments,
                                    const QStringList &globalOptions) const
{
    return testsupport::runCli(QStringList {u"--port"_s, QString::number(m_port)} + globalOptions
                               + arguments);
}

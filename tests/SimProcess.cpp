// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/SimProcess.h"

#include "tests/TestSupport.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

SimProcess::SimProcess(const QStringList &extraArguments, const QByteArray &initialRecord,
                       int fleet)
{
    if (!initialRecord.isEmpty())
        testsupport::writeFile(recordPath(), initialRecord);
    QStringList arguments {u"--listen"_s, u"127.0.0.1:0"_s, u"--record"_s, recordPath()};
    if (fleet > 0)
        arguments << u"--count"_s << QString::number(fleet);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(testsupport::dataDir() + u"/recorder-sim"_s, arguments + extraArguments);
    static const QRegularExpression listening(u"^listening on 127\\.0\\.0\\.1:(\\d+)$"_s);
    while (m_ports.size() < std::max(fleet, 1)) {
        if (!m_process.canReadLine() && !m_process.waitForReadyRead(10000))
            break;
        const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
        const auto match = listening.match(line);
        if (!match.hasMatch()) {
            ADD_FAILURE() << "unexpected line from recorder-sim: " << line.toStdString();
            break;
        }
        m_ports.append(quint16(match.captured(1).toUInt()));
    }
    if (m_ports.size() < std::max(fleet, 1)) {
        ADD_FAILURE() << "recorder-sim did not start its recorders";
        m_ports.clear();
    }
}

SimProcess::~SimProcess()
{
    kill();
}

// Stopped as a service manager stops it, so that it ends normally.
void SimProcess::kill()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(10000)) {
        ADD_FAILURE() << "recorder-sim did not stop on SIGTERM";
        m_process.kill();
        m_process.waitForFinished(10000);
        return;
    }
    // A crash or a leak report at the end shows here.
    EXPECT_EQ(m_process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(m_process.exitCode(), 0);
}

QByteArray SimProcess::storedRecord(int k) const
{
    return testsupport::readFile(k < 0 ? recordPath() : recordPath() + u'.' + QString::number(k));
}

testsupport::CliRun SimProcess::cli(const QStringList &arguments,
                                    const QStringList &globalOptions) const
{
    return testsupport::runCli(QStringList {u"--port"_s, QString::number(port())} + globalOptions
                               + arguments);
}

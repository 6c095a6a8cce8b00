#include "tests/TestSupport.h"
#include "tests/sim/FrameClient.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString simPath()
{
    return testsupport::dataDir() + u"/recorder-sim"_s;
}

// The next line of standard output, or an empty string when none comes.
QString readLine(QProcess &process)
{
    const QDeadlineTimer deadline(FrameClient::WaitMs);
    while (!process.canReadLine() && !deadline.hasExpired() && process.state() == QProcess::Running)
        process.waitForReadyRead(int(std::max<qint64>(deadline.remainingTime(), 1)));
    return QString::fromUtf8(process.readLine());
}

// The port of a "listening on 127.0.0.1:PORT" line; 0 when the line is another.
quint16 announcedPort(const QString &line)
{
    static const QRegularExpression pattern(u"^listening on 127\\.0\\.0\\.1:(\\d+)\\n$"_s);
    const auto match = pattern.match(line);
    return match.hasMatch() ? quint16(match.captured(1).toUInt()) : 0;
}

class Simulator
{
public:
    explicit Simulator(const QStringList &arguments)
    {
        m_process.start(simPath(), arguments);
        EXPECT_TRUE(m_process.waitForStarted(FrameClient::WaitMs));
    }
    ~Simulator()
    {
        m_process.terminate();
        if (!m_process.waitForFinished(FrameClient::WaitMs))
            m_process.kill();
    }
    QProcess &process() { return m_process; }

private:
    QProcess m_process;
};

} // namespace

TEST(RecorderSimProcess, AnnouncesEachRecorderOnItsOwnLineAndServesThere)
{
    QTemporaryDir dir;
    const QString record = dir.filePath(u"fleet.dat"_s);
    Simulator sim({u"--listen"_s, u"127.0.0.1:0"_s, u"--record"_s, record, u"--count"_s, u"2"_s,
                   u"--channels"_s, u"4"_s, u"--video"_s, u"pal"_s});
    quint16 ports[2] = {};
    for (quint16 &port : ports) {
        const QString line = readLine(sim.process());
        port = announcedPort(line);
        ASSERT_NE(port, 0) << line.toStdString()
                           << sim.process().readAllStandardError().toStdString();
    }
    EXPECT_NE(ports[0], ports[1]);

    FrameClient client(ports[1]);
    ASSERT_TRUE(client.waitConnected());
    const auto answer = client.login("admin", "");
    ASSERT_TRUE(answer);
    const QByteArray bytes = answer->toBytes();
    EXPECT_EQ(bytes[0], 1);
    EXPECT_EQ(bytes[4], 4);
    EXPECT_EQ(bytes[6], 1);
    // A write to one recorder lands in that recorder's file only.
    EXPECT_EQ(client.write(6, 588, "beep"), 1);
    EXPECT_EQ(client.setupRecord(), testsupport::readFile(record + u".1"_s));
    EXPECT_EQ(testsupport::readFile(record + u".1"_s).sliced(588, 4), QByteArray("beep"));
    EXPECT_NE(testsupport::readFile(record + u".0"_s).sliced(588, 4), QByteArray("beep"));
    EXPECT_EQ(sim.process().readAllStandardOutput(), QByteArray());
}

TEST(RecorderSimProcess, ExitsWithAReasonWhenItCannotStart)
{
    QTemporaryDir dir;
    const QString wrongSize = dir.filePath(u"short.dat"_s);
    testsupport::writeFile(wrongSize, QByteArray(100, 'x'));

    QTcpServer taken;
    ASSERT_TRUE(taken.listen(QHostAddress::LocalHost));
    const QString takenPort = u"127.0.0.1:"_s + QString::number(taken.serverPort());

    struct Case
    {
        QStringList arguments;
        int exitCode;
        QString message;
    };
    const Case cases[] = {
        {{u"--channels"_s, u"20"_s}, 2, u"--channels must be a number from 1 to 16"_s},
        {{u"--listen"_s, u"127.0.0.1:0"_s, u"--record"_s, wrongSize},
         1,
         wrongSize + u" is 100 bytes, but a setup record is 15148 bytes"_s},
        {{u"--listen"_s, takenPort, u"--record"_s, dir.filePath(u"new.dat"_s)},
         1,
         u"cannot listen on "_s + takenPort},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        QProcess process;
        process.start(simPath(), c.arguments);
        ASSERT_TRUE(process.waitForFinished(FrameClient::WaitMs));
        EXPECT_EQ(process.exitCode(), c.exitCode);
        const QString err = QString::fromUtf8(process.readAllStandardError());
        EXPECT_TRUE(err.contains(c.message)) << err.toStdString();
        EXPECT_EQ(process.readAllStandardOutput(), QByteArray());
    }
}

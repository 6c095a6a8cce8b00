// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/TestSupport.h"
#include "tests/session/FramePeer.h"

#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

TEST(RecorderSimProcess, ExitsWithAReasonWhenItCannotStart)
{
    QTemporaryDir dir;
    const QString wrongSize = dir.filePath(u"short.dat"_s);
    testsupport::writeFile(wrongSize, QByteArray(100, 'x'));

    QTcpServer taken;
    ASSERT_TRUE(taken.listen(QHostAddress::LocalHost));
    const QString takenPort = u"127.0.0.1:"_s + QString::number(taken.serverPort());

    const struct
    {
        QStringList arguments;
        int exitCode;
        QString message;
    } cases[] = {
        {{u"--channels"_s, u"20"_s}, 2, u"--channels must be a number from 1 to 16"_s},
        {{u"--listen"_s, u"127.0.0.1:0"_s, u"--record"_s, wrongSize},
         1,
         wrongSize + u" is 100 bytes, but a setup record is 15148 bytes"_s},
        {{u"--listen"_s, takenPort, u"--record"_s, dir.filePath(u"new.dat"_s)},
         1,
         u"cannot listen on "_s + takenPort},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        QProcess process;
        process.start(testsupport::dataDir() + u"/recorder-sim"_s, c.arguments);
        ASSERT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitCode(), c.exitCode);
        const QString err = QString::fromUtf8(process.readAllStandardError());
        EXPECT_TRUE(err.contains(c.message)) << err.toStdString();
        EXPECT_EQ(process.readAllStandardOutput(), QByteArray());
    }
}

// With few descriptors and a high --max-connections, the connections it
// cannot take are closed at once, and once the idle ones time out it
// serves again.
TEST(RecorderSimProcess, OutOfDescriptorsItRefusesAndKeepsServing)
{
    QTemporaryDir dir;
    QProcess sim;
    sim.setChildProcessModifier([] {
        const rlimit few {64, 64};
        ::setrlimit(RLIMIT_NOFILE, &few);
    });
    sim.setStandardErrorFile(QProcess::nullDevice());
    sim.start(testsupport::dataDir() + u"/recorder-sim"_s,
              {u"--listen"_s, u"127.0.0.1:0"_s, u"--record"_s, dir.filePath(u"r.dat"_s),
               u"--max-connections"_s, u"4096"_s, u"--login-timeout"_s, u"1"_s});
    ASSERT_TRUE(testsupport::waitFor([&] { return sim.canReadLine(); }, FramePeer::WaitMs));
    const QByteArray line = sim.readLine().trimmed();
    const auto port = quint16(line.mid(line.lastIndexOf(':') + 1).toUInt());
    ASSERT_NE(port, 0) << line.toStdString();

    std::vector<std::unique_ptr<FramePeer>> idle;
    for (int i = 0; i < 150; ++i)
        idle.push_back(std::make_unique<FramePeer>(port));
    EXPECT_TRUE(testsupport::waitFor(
        [&] {
            return std::all_of(idle.begin(), idle.end(), [](auto &c) { return c->isClosed(); });
        },
        FramePeer::WaitMs));

    FramePeer user(port);
    ASSERT_TRUE(user.waitConnected());
    EXPECT_EQ(user.login("Admin", "").words[0], 1u);
    EXPECT_EQ(user.setupRecord().size(), 15148);
    sim.terminate();
    ASSERT_TRUE(sim.waitForFinished(FramePeer::WaitMs));
    EXPECT_EQ(sim.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(sim.exitCode(), 0);
}

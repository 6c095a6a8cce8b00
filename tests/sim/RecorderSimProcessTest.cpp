// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/TestSupport.h"

#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

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

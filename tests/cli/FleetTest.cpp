// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/FieldTable.h"
#include "setup/Fields.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString hostsLines(const QList<quint16> &ports)
{
    QString text;
    for (quint16 port : ports)
        text += u"127.0.0.1:%1\n"_s.arg(port);
    return text;
}

} // namespace

TEST(Fleet, TwentyRecordersWithTwoRefusingAndOneSilent)
{
    SimProcess healthy({}, {}, 18);
    SimProcess refusing({u"--refuse-login"_s, u"2"_s}, {}, 2);
    SimProcess silent({u"--delay-ms"_s, u"600000"_s}, {}, 1);
    ASSERT_TRUE(healthy.isRunning() && refusing.isRunning() && silent.isRunning());
    QTemporaryDir dir;
    const QString hosts = dir.filePath(u"shops.txt"_s);
    // The last healthy recorder is left out: its file must stay as it was.
    testsupport::writeFile(hosts, (u"# every shop\n"_s + hostsLines(healthy.ports().first(17))
                                   + hostsLines(refusing.ports()) + hostsLines(silent.ports()))
                                      .toUtf8());

    const auto run = testsupport::runCli({u"--hosts"_s, hosts, u"--timeout"_s, u"3"_s, u"--jobs"_s,
                                          u"4"_s, u"set"_s, u"camera.title[0]=Fleet"_s});
    EXPECT_EQ(run.exitCode, 3) << "the worst result is the silent recorder's";
    const QString refusedLabels
        = u"127.0.0.1:%1, 127.0.0.1:%2"_s.arg(refusing.ports()[0]).arg(refusing.ports()[1]);
    EXPECT_TRUE(run.out.endsWith(u"summary:\n  ok             17\n  refused         2   "_s
                                 + refusedLabels + u"\n  no session      1   127.0.0.1:"_s
                                 + QString::number(silent.ports()[0])
                                 + u"\n  total          20\n"_s))
        << run.out.toStdString();
    for (int k = 0; k < 17; ++k) {
        const quint16 port = healthy.ports()[k];
        EXPECT_TRUE(run.out.contains(
            u"127.0.0.1:%1: camera.title[0] = \"Fleet\"\n127.0.0.1:%1: ok\n"_s.arg(port)));
        EXPECT_EQ(setup::FieldTable::text(healthy.storedRecord(k), setup::fields::camera::title, 0),
                  "Fleet");
    }
    // Each session hears only its own messages, though all share one thread.
    EXPECT_EQ(run.out.count(u": refused: Login failed by password error\n"_s), 2)
        << run.out.toStdString();
    for (const QByteArray &untouched : {refusing.storedRecord(0), healthy.storedRecord(17)})
        EXPECT_EQ(setup::FieldTable::text(untouched, setup::fields::camera::title, 0), "CAM 01");

    // Export names each file by host, with the port where hosts repeat.
    testsupport::writeFile(hosts, hostsLines(healthy.ports().first(3)).toUtf8());
    const QString folder = dir.filePath(u"exports/"_s);
    const auto exported = testsupport::runCli({u"--hosts"_s, hosts, u"export"_s, folder});
    EXPECT_EQ(exported.exitCode, 0) << exported.err.toStdString();
    QStringList expected;
    for (int k = 0; k < 3; ++k) {
        const QString name = u"127.0.0.1_%1.dat"_s.arg(healthy.ports()[k]);
        expected.append(name);
        // The file holds the record from offset 32 on, behind its 20-byte head.
        EXPECT_EQ(testsupport::readFile(folder + name).mid(20), healthy.storedRecord(k).mid(32))
            << name.toStdString();
    }
    expected.sort();
    EXPECT_EQ(QDir(folder).entryList(QDir::Files, QDir::Name), expected);
}

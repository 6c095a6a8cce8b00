// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/CommandContext.h"
#include "cli/FleetReport.h"
#include "setup/FieldTable.h"
#include "setup/Fields.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTextStream>

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

// With --json a fleet prints one object per recorder in hosts-file order,
// however late the first one finishes, then a summary. Each line of the
// hosts file brings its own label and password, from a private file or an
// environment variable; a wrong one is that recorder's refusal alone.
TEST(Fleet, JsonLinesInHostsFileOrderWithLabelsAndOwnPasswords)
{
    QTemporaryDir dir;
    testsupport::writeFile(dir.filePath(u"admin.pw"_s), "s3cret\n");
    QFile::setPermissions(dir.filePath(u"admin.pw"_s), QFile::ReadOwner | QFile::WriteOwner);
    SimProcess locked({u"--admin-password-file"_s, dir.filePath(u"admin.pw"_s)}, {}, 3);
    SimProcess silent({u"--delay-ms"_s, u"600000"_s});
    SimProcess dead;
    ASSERT_TRUE(locked.isRunning() && silent.isRunning() && dead.isRunning());
    const quint16 deadPort = dead.port();
    dead.kill();
    qputenv("RS_TEST_SHOP_PASSWORD", "s3cret");
    qputenv("RS_TEST_WRONG_PASSWORD", "guess");
    const QString hosts = dir.filePath(u"shops.txt"_s);
    testsupport::writeFile(hosts,
                           u"127.0.0.1:%1 label=Slow\n"
                           "127.0.0.1:%2 Admin label=\"Main Street\" password-file=admin.pw\n"
                           "127.0.0.1:%3 password-env=RS_TEST_SHOP_PASSWORD\n"
                           "127.0.0.1:%4 label=Harbour password-env=RS_TEST_WRONG_PASSWORD\n"
                           "127.0.0.1:%5 label=Closed\n"_s.arg(silent.port())
                               .arg(locked.ports()[0])
                               .arg(locked.ports()[1])
                               .arg(locked.ports()[2])
                               .arg(deadPort)
                               .toUtf8());
    const QStringList fleet = {u"--hosts"_s, hosts, u"--timeout"_s, u"2"_s};
    const QStringList get = {u"get"_s, u"camera.title[0]"_s};

    const auto run = testsupport::runCli(fleet + QStringList {u"--json"_s} + get);
    EXPECT_EQ(run.exitCode, 3);
    const QStringList lines = run.out.split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 6) << run.out.toStdString();
    const QJsonObject title {
        {u"settings"_s,
         QJsonArray {QJsonObject {{u"name"_s, u"camera.title[0]"_s}, {u"value"_s, u"CAM 01"_s}}}}};
    struct Line
    {
        quint16 port;
        QJsonValue label;
        int exit;
        QJsonValue result;
        QString error;
    };
    const Line expected[] = {
        {silent.port(), u"Slow"_s, 3, QJsonValue::Null, u"within 2 s"_s},
        {locked.ports()[0], u"Main Street"_s, 0, title, {}},
        {locked.ports()[1], QJsonValue::Null, 0, title, {}},
        {locked.ports()[2], u"Harbour"_s, 1, QJsonValue::Null, u"password"_s},
        {deadPort, u"Closed"_s, 3, QJsonValue::Null, u"cannot connect"_s},
    };
    for (qsizetype k = 0; k < std::ssize(expected); ++k) {
        SCOPED_TRACE(lines[k].toStdString());
        const QJsonObject line = QJsonDocument::fromJson(lines[k].toUtf8()).object();
        const Line &e = expected[k];
        EXPECT_EQ(line[u"host"_s], u"127.0.0.1:%1"_s.arg(e.port));
        EXPECT_EQ(line[u"label"_s], e.label);
        EXPECT_EQ(line[u"exit"_s], e.exit);
        EXPECT_EQ(line[u"result"_s], e.result);
        EXPECT_TRUE(line[u"error"_s].toString().contains(e.error));
    }
    EXPECT_EQ(
        QJsonDocument::fromJson(lines[5].toUtf8()).object(),
        (QJsonObject {
            {u"summary"_s,
             QJsonObject {{u"ok"_s, 2}, {u"refused"_s, 1}, {u"no session"_s, 2}, {u"total"_s, 5}}},
            {u"exit"_s, 3}}));

    // The text form names each recorder with its label.
    const auto text = testsupport::runCli(fleet + get);
    EXPECT_TRUE(text.out.contains(
        u"127.0.0.1:%1 (Main Street): camera.title[0] = \"CAM 01\"\n"_s.arg(locked.ports()[0])))
        << text.out.toStdString();
    EXPECT_TRUE(text.out.contains(
        u"no session      2   127.0.0.1:%1 (Slow), 127.0.0.1:%2 (Closed)"_s.arg(silent.port())
            .arg(deadPort)));
}

// A printed recorder's output is let go, as text and as JSON lines (once the
// lines above it are out), so that a fleet's memory stays flat.
TEST(Fleet, ReportKeepsNoOutputItHasPrinted)
{
    for (const bool json : {false, true}) {
        SCOPED_TRACE(json ? "json" : "text");
        cli::GlobalOptions options;
        options.json = json;
        QString printed;
        QTextStream out(&printed);
        QTextStream err(&printed);
        const cli::CommandContext context(options, out, err);
        cli::FleetReport report(context, 2, false);
        QList<QString> outputs;
        for (int k = 0; k < 2; ++k)
            outputs.append(json ? u"{\"n\":%1}"_s.arg(k) : u"line %1\n"_s.arg(k));
        // The second first: as JSON it waits for the first.
        for (const int k : {1, 0}) {
            cli::HostEntry host;
            host.host = u"127.0.0.1"_s;
            host.port = quint16(9000 + k);
            report.finished(k, host, 0, outputs[k], {});
        }
        for (const QString &output : outputs)
            EXPECT_TRUE(output.isDetached()) << output.toStdString();
        EXPECT_TRUE(printed.contains(u"1"_s)) << printed.toStdString();
    }
}

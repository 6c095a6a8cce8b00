// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/RemoteCommand.h"
#include "setup/ExportFile.h"
#include "setup/FactoryDefaults.h"
#include "setup/FieldTable.h"
#include "setup/Fields.h"
#include "setup/RecordDump.h"
#include "setup/SetupRecordMap.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"
#include "tests/cli/InProcessCli.h"
#include "tests/session/ScriptedRecorder.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using session::Frame;
using setup::FieldTable;
namespace fields = setup::fields;

namespace {

// Against a scripted recorder.
testsupport::CliRun runAgainst(const ScriptedRecorder &recorder, const QStringList &arguments)
{
    return runInProcess(
        QStringList {u"--port"_s, QString::number(recorder.port()), u"--timeout"_s, u"3"_s}
        + arguments);
}

} // namespace

TEST(FieldCommands, SetThenGetRoundTripsEveryKindOfValue)
{
    SimProcess sim;
    ASSERT_TRUE(sim.isRunning());
    struct Case
    {
        QString assignment;
        QString shown; // as get prints it
    };
    const Case cases[] = {
        {u"camera.title[2]=Kasse Ü"_s, u"camera.title[2] = \"Kasse \\xDC\""_s},
        {u"date-time.utc-offset=-300"_s, u"date-time.utc-offset = -300"_s},
        {u"record.quality[1][0]=Low"_s, u"record.quality[1][0] = 0xFF03 (Low)"_s},
        {u"video-loss.alarm-out[1]=1,3"_s, u"video-loss.alarm-out[1] = 0x00000005"_s},
    };
    QStringList assignments;
    QStringList names;
    for (const Case &c : cases) {
        assignments.append(c.assignment);
        names.append(c.assignment.section(u'=', 0, 0));
    }
    const auto set = sim.cli(QStringList {u"set"_s} + assignments);
    ASSERT_EQ(set.exitCode, 0) << set.err.toStdString();
    const auto get = sim.cli(QStringList {u"get"_s} + names);
    ASSERT_EQ(get.exitCode, 0) << get.err.toStdString();
    for (const Case &c : cases)
        EXPECT_TRUE(get.out.contains(c.shown + u'\n')) << get.out.toStdString();

    // The recorder changed exactly these elements (the bytes of each value
    // are the parser's to check).
    QStringList changed;
    for (const QString &line :
         setup::RecordDump::diff(setup::FactoryDefaults::record(), sim.storedRecord()))
        changed.append(line.section(u" = "_s, 0, 0));
    changed.sort();
    names.sort();
    EXPECT_EQ(changed, names);
}

// Against a recorder that answers every write with `ack`, or with nothing
// when `ack` is Silent: set writes each touched section once, a page's time
// rule stops a command before anything is sent, and an acknowledgement
// other than 1 stops it where it came; no commit follows blocks left
// unacknowledged. A setup answer other than a whole record (either side of
// it, none, the largest frame's) stops every command before it reads or
// writes anything, the file to export into too.
TEST(FieldCommands, CommandsStopAtABadSetupAnswerOrAnAcknowledgementOtherThanOne)
{
    QTemporaryDir dir;
    const QString defaultFile = dir.filePath(u"default.dat"_s);
    testsupport::writeFile(defaultFile, setup::FactoryDefaults::record());
    const QString exportFile = dir.filePath(u"setup.dat"_s);
    testsupport::writeFile(exportFile, "a good old export");
    constexpr int Silent = -1;
    struct Case
    {
        QString command;
        quint8 channels;
        int ack;
        int exitCode;
        QString message;
        int writes;
        qsizetype recordSize = setup::SetupRecordMap::RecordSize;
    };
    const Case cases[] = {
        {u"set camera.title[0]=A camera.covert[1]=On stream.web-port=8080"_s, 16, 1, 0, QString(),
         2},
        {u"set camera.covert[0]=On buzzer.key-tone=Off"_s, 16, 0, 1,
         u"the recorder refused the write of buzzer"_s, 1},
        {u"factory-default --default-file %F"_s, 16, Silent, 3,
         u"no acknowledgement of the whole setup"_s, 6},
        {u"info"_s, 16, 1, 3, u"instead of a whole record of 15148"_s, 0, 0},
        {u"export %E"_s, 16, 1, 3, u"instead of a whole record of 15148"_s, 0, 15147},
        {u"factory-default --default-file %F"_s, 16, 1, 3, u"instead of a whole record"_s, 0,
         15149},
        {u"export %E"_s, 16, 1, 3, u"instead of a whole record"_s, 0, 1024 * 1024},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE((c.command + u" ack "_s + QString::number(c.ack)).toStdString());
        ScriptedRecorder recorder;
        recorder.record = setup::FactoryDefaults::record().leftJustified(c.recordSize, 0, true);
        recorder.channels = c.channels;
        recorder.onFrame = [&](const Frame &frame) {
            if (frame.command != RemoteCommand::SetupWrite || c.ack == 1)
                return recorder.answerAsRecorder(frame);
            PACKET_PARAM ack;
            ack.words[0] = quint32(c.ack);
            if (c.ack != Silent)
                recorder.send(RemoteCommand::SetupWriteAck, ack);
        };
        const auto run = runAgainst(recorder, QString(c.command)
                                                  .replace(u"%F"_s, defaultFile)
                                                  .replace(u"%E"_s, exportFile)
                                                  .split(u' '));
        EXPECT_EQ(run.exitCode, c.exitCode) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(c.message)) << run.err.toStdString();
        EXPECT_EQ(int(recorder.receivedWith(RemoteCommand::SetupWrite).size()), c.writes);
    }
    EXPECT_EQ(testsupport::readFile(exportFile), "a good old export");
}

TEST(FieldCommands, DumpAndDiffReadFilesAndRecorders)
{
    QTemporaryDir dir;
    QByteArray before = setup::FactoryDefaults::record();
    QByteArray after = before;
    FieldTable::setBytes(after, fields::camera::title, "Shop 1", 0);
    FieldTable::setNumber(after, fields::record::quality, 0xFF03, 1, 2);
    const QString defaults = dir.filePath(u"DEFDVRSETUP.DAT"_s);
    const QString exported = dir.filePath(u"shop.dat"_s);
    testsupport::writeFile(defaults, before);
    testsupport::writeFile(exported, setup::ExportFile::build(after));
    SimProcess sim({}, after);
    ASSERT_TRUE(sim.isRunning());
    const QString recorder = u"@127.0.0.1:%1"_s.arg(sim.port());

    const QString title = u"camera.title[0] = \"CAM 01\" -> \"Shop 1\"\n"_s;
    const QString quality = u"record.quality[1][2] = 0xFF01 (High) -> 0xFF03 (Low)\n"_s;
    // Exit 1 when the setups differ, as diff(1); `%R` is the recorder, the
    // default second setup.
    struct Case
    {
        QString command;
        int exitCode;
        QString out;
    };
    const Case cases[] = {
        {u"diff %D %E"_s, 1, title + quality},
        {u"diff %D %R"_s, 1, title + quality},
        {u"--port %P diff %D"_s, 1, title + quality},
        {u"diff %E %R"_s, 0, {}}, // an export file holds the whole setup
        {u"diff --ignore camera.title[0] %D %E"_s, 1, quality},
        {u"diff --ignore camera.* --ignore record.qual?ty %D %E"_s, 0, {}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.command.toStdString());
        const auto diff = testsupport::runCli(QString(c.command)
                                                  .replace(u"%D"_s, defaults)
                                                  .replace(u"%E"_s, exported)
                                                  .replace(u"%R"_s, recorder)
                                                  .replace(u"%P"_s, QString::number(sim.port()))
                                                  .split(u' '));
        EXPECT_EQ(diff.exitCode, c.exitCode) << diff.err.toStdString();
        EXPECT_EQ(diff.out, c.out);
    }

    // Drift: every recorder of a fleet against one setup, one line each.
    SimProcess plain;
    ASSERT_TRUE(plain.isRunning());
    const QString hosts = dir.filePath(u"hosts"_s);
    testsupport::writeFile(
        hosts, u"127.0.0.1:%1\n127.0.0.1:%2\n"_s.arg(sim.port()).arg(plain.port()).toUtf8());
    const auto drift = testsupport::runCli({u"--hosts"_s, hosts, u"diff"_s, defaults});
    EXPECT_EQ(drift.exitCode, 1) << drift.err.toStdString();
    EXPECT_TRUE(drift.out.contains(u"127.0.0.1:%1: differs: 2\n"_s.arg(sim.port())));
    EXPECT_TRUE(drift.out.contains(u"127.0.0.1:%1: differs: 0\n"_s.arg(plain.port())));
    EXPECT_EQ(drift.out.count(u'\n'), 6) << drift.out.toStdString(); // two lines, a summary of 4

    const auto json = testsupport::runCli({u"diff"_s, u"--json"_s, defaults, exported});
    const QJsonArray changes = QJsonDocument::fromJson(json.out.toUtf8())[u"changes"_s].toArray();
    ASSERT_EQ(changes.size(), 2);
    const auto named = [](int value, const QString &name) {
        return QJsonObject {{u"value"_s, value}, {u"name"_s, name}};
    };
    EXPECT_EQ(changes[1].toObject(), (QJsonObject {{u"name"_s, u"record.quality[1][2]"_s},
                                                   {u"before"_s, named(0xFF01, u"High"_s)},
                                                   {u"after"_s, named(0xFF03, u"Low"_s)}}));

    const auto dump = testsupport::runCli({u"dump"_s, exported});
    ASSERT_EQ(dump.exitCode, 0);
    EXPECT_TRUE(dump.out.contains(u"\ncamera.title[0] = \"Shop 1\"\n"_s));
    const auto dumpJson = testsupport::runCli({u"dump"_s, u"--json"_s, recorder});
    const QJsonArray settings
        = QJsonDocument::fromJson(dumpJson.out.toUtf8())[u"settings"_s].toArray();
    EXPECT_EQ(settings.size(), dump.out.count(u'\n'));
    // Values typed by their fields, and read back by apply as they are.
    QJsonObject typed;
    QJsonArray wanted;
    for (const QJsonValue &setting : settings) {
        const QString name = setting[u"name"_s].toString();
        typed.insert(name, setting[u"value"_s]);
        if (!name.startsWith(u"header."_s))
            wanted.append(setting);
    }
    EXPECT_EQ(typed[u"camera.title[0]"_s], u"Shop 1"_s);
    EXPECT_EQ(typed[u"record.quality[1][2]"_s], named(0xFF03, u"Low"_s));
    EXPECT_EQ(typed[u"stream.web-port"_s], 80);
    EXPECT_EQ(typed[u"users.rights[0]"_s].toArray().size(), 18);
    EXPECT_EQ(typed[u"users.password[0]"_s], u"********"_s);
    testsupport::writeFile(dir.filePath(u"wanted.json"_s),
                           QJsonDocument(QJsonObject {{u"settings"_s, wanted}}).toJson());
    const auto again = sim.cli({u"apply"_s, u"--check"_s, dir.filePath(u"wanted.json"_s)});
    EXPECT_EQ(again.out, u"changed: 0\n"_s) << again.err.toStdString();

    testsupport::writeFile(dir.filePath(u"short.dat"_s), "abc");
    const auto bad = testsupport::runCli({u"dump"_s, dir.filePath(u"short.dat"_s)});
    EXPECT_EQ(bad.exitCode, 2);
    EXPECT_TRUE(bad.err.contains(u"neither an export file"_s)) << bad.err.toStdString();
}

// Passwords leave the program masked unless --show-secrets asks for them,
// in every command's lines and JSON, and never in a message; export files
// hold them too and are their owner's alone whatever the umask or an older
// file's mode. `%D` is a folder holding the recorder's export `e.dat` and
// the factory defaults `d.dat`, `%R` the recorder.
TEST(FieldCommands, SecretsAreMaskedUnlessShownAndExportFilesAreTheOwnersOnly)
{
    QByteArray record = setup::FactoryDefaults::record();
    FieldTable::setBytes(record, fields::users::password, "s3cret", 1);
    FieldTable::setBytes(record, fields::email::password, "mailpw");
    SimProcess sim({}, record);
    SimProcess fleet({}, {}, 2);
    ASSERT_TRUE(sim.isRunning() && fleet.isRunning());
    QTemporaryDir dir;
    const QString exported = dir.filePath(u"e.dat"_s);
    testsupport::writeFile(exported, "older export");
    QFile::setPermissions(exported, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
    testsupport::writeFile(dir.filePath(u"d.dat"_s), setup::FactoryDefaults::record());
    const QString hosts = dir.filePath(u"hosts"_s);
    testsupport::writeFile(
        hosts,
        u"127.0.0.1:%1\n127.0.0.1:%2\n"_s.arg(fleet.ports()[0]).arg(fleet.ports()[1]).toUtf8());
    const mode_t umaskBefore = umask(022);
    const auto single = sim.cli({u"export"_s, exported});
    const auto many
        = testsupport::runCli({u"--hosts"_s, hosts, u"export"_s, dir.filePath(u"f/"_s)});
    umask(umaskBefore);
    ASSERT_EQ(single.exitCode, 0) << single.err.toStdString();
    ASSERT_EQ(many.exitCode, 0) << many.err.toStdString();
    QStringList files = {exported};
    for (const QString &name : QDir(dir.filePath(u"f"_s)).entryList(QDir::Files))
        files.append(dir.filePath(u"f/"_s + name));
    ASSERT_EQ(files.size(), 3);
    for (const QString &file : files)
        EXPECT_EQ(QFile::permissions(file),
                  QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser)
            << file.toStdString();

    struct Case
    {
        QString command;
        int exitCode;
        QString says; // on standard output, else on standard error
    };
    const Case cases[] = {
        {u"get users.password[1]"_s, 0, u"users.password[1] = ********\n"_s},
        {u"get --json users"_s, 0, u"\"value\": \"********\""_s},
        {u"dump"_s, 0, u"\nemail.password = ********\n"_s},
        {u"dump --json %D/e.dat"_s, 0, u"\"value\": \"********\""_s},
        {u"diff %D/d.dat %R"_s, 1, u"users.password[1] = ******** -> ********\n"_s},
        {u"diff --json %D/d.dat %D/e.dat"_s, 1, u"\"before\": \"********\""_s},
        {u"set users.password[2]=n3wpw"_s, 0, u"users.password[2] = ********\n"_s},
        {u"set users.password[2]=abcdefghijklm"_s, 2, u"the value is 13 bytes long"_s},
        {u"set email.password=\u4e2d"_s, 2, u"a character of the value cannot be written"_s},
        {u"--show-secrets get users.password"_s, 0, u"users.password[2] = \"n3wpw\"\n"_s},
        {u"--show-secrets diff %D/d.dat %D/e.dat"_s, 1, u"email.password = \"\" -> \"mailpw\"\n"_s},
        {u"--show-secrets dump --json %R"_s, 0, u"\"value\": \"s3cret\""_s},
    };
    const QString recorder = u"@127.0.0.1:%1"_s.arg(sim.port());
    for (const Case &c : cases) {
        SCOPED_TRACE(c.command.toStdString());
        const auto run = sim.cli(
            QString(c.command).replace(u"%D"_s, dir.path()).replace(u"%R"_s, recorder).split(u' '));
        EXPECT_EQ(run.exitCode, c.exitCode) << run.err.toStdString();
        EXPECT_TRUE((c.exitCode == 2 ? run.err : run.out).contains(c.says))
            << run.out.toStdString() << run.err.toStdString();
        if (c.command.startsWith(u"--show-secrets"_s))
            continue;
        for (const QString &secret :
             {u"s3cret"_s, u"mailpw"_s, u"n3wpw"_s, u"abcdefghijklm"_s, u"\u4e2d"_s})
            EXPECT_FALSE(run.out.contains(secret) || run.err.contains(secret));
    }
}

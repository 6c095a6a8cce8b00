#include "session/RemoteCommand.h"
#include "setup/ExportFile.h"
#include "setup/FactoryDefaults.h"
#include "setup/LittleEndian.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"
#include "tests/cli/InProcessCli.h"
#include "tests/session/ScriptedRecorder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using nelib::LittleEndian;

TEST(SessionCommands, InfoPrintsWhatTheRecorderReports)
{
    SimProcess sim({u"--channels"_s, u"4"_s, u"--video"_s, u"pal"_s, u"--model"_s, u"77"_s,
                    u"--version"_s, u"2.3.4.5"_s});
    ASSERT_TRUE(sim.isRunning());
    const auto run = sim.cli({u"info"_s});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QStringList lines = run.out.split(u'\n', Qt::SkipEmptyParts);
    QStringList keys;
    for (const QString &line : lines)
        keys.append(line.section(u": "_s, 0, 0));
    EXPECT_EQ(keys, (QStringList {u"channels"_s, u"video"_s, u"model"_s, u"software version"_s,
                                  u"alarm inputs"_s, u"alarm outputs"_s, u"audio inputs"_s,
                                  u"disks"_s, u"recorder time"_s}));
    EXPECT_TRUE(
        run.out.contains(u"channels: 4\nvideo: PAL\nmodel: 77\nsoftware version: 2.3.4.5\n"_s))
        << run.out.toStdString();
}

TEST(SessionCommands, SetTimeSetsTheRecordersClock)
{
    SimProcess sim;
    ASSERT_TRUE(sim.isRunning());
    const auto set = sim.cli({u"set-time"_s, u"2030-01-02T03:04:05"_s});
    ASSERT_EQ(set.exitCode, 0) << set.err.toStdString();
    // The time the recorder reports back once the clock is set.
    EXPECT_TRUE(set.out.startsWith(u"recorder time: 2030-01-02 03:04:0"_s))
        << set.out.toStdString();

    EXPECT_EQ(sim.cli({u"set-time"_s, u"2030-13-02T03:04:05"_s}).exitCode, 2);
}

TEST(SessionCommands, FailuresMapToExitCodes)
{
    QTemporaryDir dir;
    const QString adminPassword = dir.filePath(u"admin"_s);
    testsupport::writeFile(adminPassword, "right\n");
    const QString wrongPassword = dir.filePath(u"wrong"_s);
    testsupport::writeFile(wrongPassword, "wrong\n");
    SimProcess sim({u"--admin-password-file"_s, adminPassword});
    ASSERT_TRUE(sim.isRunning());

    struct Case
    {
        const char *what;
        QStringList global;
        int exitCode;
        QString message;
    };
    const Case cases[] = {
        {"right password", {u"--password-file"_s, adminPassword}, 0, QString()},
        {"wrong password",
         {u"--password-file"_s, wrongPassword},
         1,
         u"Login failed by password error"_s},
        {"unknown account", {u"--user"_s, u"nobody"_s}, 1, u"Login failed\n"_s},
        {"unreadable password file",
         {u"--password-file"_s, dir.filePath(u"missing"_s)},
         2,
         u"cannot read password file"_s},
        {"endless password file",
         {u"--password-file"_s, u"/dev/zero"_s},
         2,
         u"longer than 4096 bytes"_s},
        {"host name longer than the field",
         {u"--host"_s, QString(64, u'h')},
         2,
         u"the host name is 64 bytes in code page WINDOWS-1252; at most 63 fit"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        const auto run = sim.cli({u"info"_s}, c.global);
        EXPECT_EQ(run.exitCode, c.exitCode) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(c.message)) << run.err.toStdString();
    }

    const quint16 port = sim.port();
    sim.kill();
    const auto closed = sim.cli({u"info"_s});
    EXPECT_EQ(closed.exitCode, 3);
    EXPECT_TRUE(closed.err.contains(u"cannot connect to 127.0.0.1:%1"_s.arg(port)))
        << closed.err.toStdString();
}

TEST(SessionCommands, ARecorderThatDropsOrStallsTheSessionEndsIt)
{
    struct Case
    {
        QStringList simArguments;
        QString message;
    };
    const Case cases[] = {
        // Reported when it happens, not when --timeout runs out.
        {{u"--drop-after"_s, u"1"_s}, u"127.0.0.1"_s},
        {{u"--delay-ms"_s, u"3000"_s}, u"no setup record from 127.0.0.1"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.simArguments.join(u' ').toStdString());
        SimProcess sim(c.simArguments);
        const auto run = sim.cli({u"info"_s}, {u"--timeout"_s, u"2"_s});
        EXPECT_EQ(run.exitCode, 3);
        EXPECT_TRUE(run.err.contains(c.message)) << run.err.toStdString();
        EXPECT_EQ(run.err.contains(u"within"_s), c.simArguments.first() == u"--delay-ms"_s)
            << run.err.toStdString();
    }
}

TEST(SessionCommands, NothingIsReadOrWrittenWithoutAWholeSetupRecord)
{
    QTemporaryDir dir;
    const QString exportFile = dir.filePath(u"setup.dat"_s);
    testsupport::writeFile(exportFile, "a good old export");
    const QString defaultFile = dir.filePath(u"default.dat"_s);
    testsupport::writeFile(defaultFile, setup::FactoryDefaults::record());
    const QStringList commands[] = {
        {u"info"_s},
        {u"export"_s, exportFile},
        {u"factory-default"_s, u"--default-file"_s, defaultFile},
    };
    for (const qsizetype size : {0, 100, 15147, 15149, 15249, 1024 * 1024}) {
        for (const QStringList &command : commands) {
            SCOPED_TRACE(command.first().toStdString() + " after " + std::to_string(size));
            ScriptedRecorder recorder;
            recorder.record = QByteArray(size, '\x11');
            const auto run = runInProcess(
                QStringList {u"--port"_s, QString::number(recorder.port())} + command);
            EXPECT_EQ(run.exitCode, 3) << run.err.toStdString();
            EXPECT_TRUE(run.err.contains(u"instead of a whole record of 15148"_s))
                << run.err.toStdString();
            EXPECT_TRUE(run.out.isEmpty()) << run.out.toStdString();
            EXPECT_TRUE(recorder.receivedWith(RemoteCommand::SetupWrite).empty());
        }
    }
    EXPECT_EQ(testsupport::readFile(exportFile), "a good old export");
}

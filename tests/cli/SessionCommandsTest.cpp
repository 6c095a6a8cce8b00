// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/ExportFile.h"
#include "setup/FactoryDefaults.h"
#include "setup/SetupRecordMap.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"

#include <QRegularExpression>
#include <QTemporaryDir>

#include <memory>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// An export file is the header with the recorder's model, then the record
// from its 32nd byte on.
TEST(SessionCommands, InfoAndExportTellWhatTheRecorderHoldsAndSetTimeSetsItsClock)
{
    SimProcess sim({u"--channels"_s, u"4"_s, u"--video"_s, u"pal"_s, u"--model"_s, u"77"_s,
                    u"--version"_s, u"2.3.4.5"_s});
    ASSERT_TRUE(sim.isRunning());
    const auto run = sim.cli({u"info"_s});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    static const QRegularExpression info(
        u"^channels: 4\nvideo: PAL\nmodel: 77\nsoftware version: 2.3.4.5\nalarm inputs: \\d+\n"
        "alarm outputs: \\d+\naudio inputs: \\d+\ndisks: \\d+\nrecorder time: [^\n]+\n$"_s);
    EXPECT_TRUE(info.match(run.out).hasMatch()) << run.out.toStdString();

    QTemporaryDir dir;
    const QString path = dir.filePath(u"setup.dat"_s);
    const auto exported = sim.cli({u"export"_s, path});
    ASSERT_EQ(exported.exitCode, 0) << exported.err.toStdString();
    EXPECT_EQ(exported.out, u"Export completed\n"_s);
    const QByteArray file = testsupport::readFile(path);
    EXPECT_EQ(file.first(20).toHex(), "110001004b4b4d2b554752414d0000003f000000");
    EXPECT_EQ(file.sliced(20), sim.storedRecord().sliced(32));

    const auto set = sim.cli({u"set-time"_s, u"2030-01-02T03:04:05"_s});
    ASSERT_EQ(set.exitCode, 0) << set.err.toStdString();
    // The time the recorder reports back once the clock is set.
    EXPECT_TRUE(set.out.startsWith(u"recorder time: 2030-01-02 03:04:0"_s))
        << set.out.toStdString();
}

// Every way a command can end, against a real recorder whose record only a
// successful import or factory default changes (what they write is the
// transfer's to check); the password comes from the file's first line, else
// the environment. `%D` is a folder of prepared files, `%P` the recorder's
// port; a recorder "dead" is stopped before the command runs.
TEST(SessionCommands, OutcomesMapToExitCodesAndOnlyAWholeTransferChangesTheRecord)
{
    QTemporaryDir dir;
    const QByteArray good = setup::ExportFile::build(testsupport::patternedRecord(2));
    const std::pair<const char *, QByteArray> files[] = {
        {"admin", "right\n"},
        {"wrong", "wrong\n"},
        {"two-lines", "right\r\nsecond line\n"},
        {"good.dat", good},
        {"half.dat", good.first(good.size() / 2)},
        {"long.dat", good + 'x'},
        {"other-model.dat", setup::ExportFile::build(setup::FactoryDefaults::record(77))},
        {"default.dat", testsupport::patternedRecord(3)},
        {"short-default.dat", testsupport::patternedRecord(3).first(1000)},
        {"ff.dat", QByteArray(setup::SetupRecordMap::RecordSize, '\xFF')},
        {"unmarked.dat", setup::FactoryDefaults::record().replace(8, 8, QByteArray(8, '\0'))},
        {"long-line", QByteArray(5000, 'x')},
    };
    for (const auto &[name, bytes] : files)
        testsupport::writeFile(dir.filePath(QLatin1StringView(name)), bytes);
    const auto words = [&](const QString &line) {
        return QString(line).replace(u"%D"_s, dir.path()).split(u' ', Qt::SkipEmptyParts);
    };
    struct Case
    {
        QString sim;
        QString command;
        int exitCode;
        QString says;
        QString never = u"Success"_s;
        // The password the environment offers.
        const char *environment = "";
    };
    const QString admin = u"--admin-password-file %D/admin"_s;
    const Case cases[] = {
        {admin, u"--password-file %D/wrong info"_s, 1, u"Login failed by password error"_s},
        {admin, u"info"_s, 0, {}, u"Success"_s, "right"},
        {admin, u"--user nobody info"_s, 1, u"Login failed\n"_s},
        {admin, u"--password-file %D/two-lines info"_s, 0, {}, u"Success"_s, "wrong"},
        {admin, u"--password-file %D/missing info"_s, 2, u"cannot read password file"_s},
        {admin, u"--password-file %D/long-line info"_s, 2, u"longer than 4096 bytes"_s},
        {admin, u"--host "_s + QString(64, u'h') + u" info"_s, 2,
         u"the host name is 64 bytes in code page WINDOWS-1252; at most 63 fit"_s},
        {u"dead"_s, u"info"_s, 3, u"cannot connect to 127.0.0.1:%P"_s},
        // Reported when it happens, not when --timeout runs out.
        {u"--drop-after 1"_s, u"--timeout 2 info"_s, 3, u"127.0.0.1"_s, u"within"_s},
        {u"--delay-ms 3000"_s, u"--timeout 2 info"_s, 3,
         u"no setup record from 127.0.0.1:%P within"_s},
        {{}, u"set-time 2030-13-02T03:04:05"_s, 2, {}},
        {{},
         u"export /nonexistent/dir/setup.dat"_s,
         2,
         u"cannot write /nonexistent/dir/setup.dat"_s},
        {{}, u"import %D/other-model.dat"_s, 1, u"This file can not be imported.\n"_s},
        {{}, u"import %D/half.dat"_s, 1, u"is 7568 bytes"_s},
        {{},
         u"import %D/long.dat"_s,
         1,
         u"is 15137 bytes, but an export file is 15136 bytes; nothing sent"_s},
        {{}, u"import %D/missing.dat"_s, 2, u"missing.dat: File does not exist"_s},
        {{}, u"import %D"_s, 2, u"is a folder, not a file"_s},
        {{}, u"import"_s, 2, u"import takes one FILE"_s},
        {{}, u"factory-default --default-file %D/missing.dat"_s, 2, u"cannot read default file"_s},
        {{}, u"factory-default now"_s, 2, u"factory-default takes no arguments"_s},
        {{}, u"import %D/good.dat"_s, 0, u"Import Success\n"_s, u"refused"_s},
        {{}, u"factory-default"_s, 0, u"Default Setup Success\n"_s, u"refused"_s},
        // A default file named on the command line must be one.
        {{},
         u"factory-default --default-file %D/short-default.dat"_s,
         1,
         u"short-default.dat is not a default setup file: it is 1000 bytes, not 15148; nothing "
         u"sent"_s},
        {{}, u"factory-default --default-file %D/good.dat"_s, 1, u"it is 15136 bytes"_s},
        {{},
         u"factory-default --default-file %D/ff.dat"_s,
         1,
         u"its layout version is 0xffffffff, not 0x00010011"_s},
        {{}, u"factory-default --default-file %D/unmarked.dat"_s, 1, u"its header lacks"_s},
        {{},
         u"factory-default --default-file %D/default.dat"_s,
         0,
         u"Default Setup Success\n"_s,
         u"refused"_s},
        {u"--refuse-write-at=6"_s, u"import %D/good.dat"_s, 1, u"refused block 6 of 6 (NETWORK)"_s},
        {u"--refuse-write-at=7"_s, u"import %D/good.dat"_s, 1, u"refused the commit"_s},
        {u"--refuse-write-at=4"_s, u"factory-default"_s, 1, u"refused block 4 of 6 (RECORD)"_s},
        {u"--drop-after=6"_s, u"import %D/good.dat"_s, 3, u"before"_s},
    };
    std::unique_ptr<SimProcess> sim;
    QString running;
    for (const Case &c : cases) {
        SCOPED_TRACE((c.sim + u" | "_s + c.command).toStdString());
        if (!sim || c.sim != running) {
            running = c.sim;
            // The password goes into a fresh record only.
            sim = std::make_unique<SimProcess>(
                words(c.sim == u"dead"_s ? QString() : c.sim),
                c.sim.contains(u"password"_s) ? QByteArray() : testsupport::patternedRecord(1));
            ASSERT_TRUE(sim->isRunning());
        }
        const QByteArray before = sim->storedRecord();
        if (c.sim == u"dead"_s)
            sim->kill();
        qputenv("REMOTE_SETUP_PASSWORD", c.environment);
        const auto run = sim->cli(words(c.command));
        EXPECT_EQ(run.exitCode, c.exitCode) << run.err.toStdString();
        EXPECT_TRUE(
            run.err.contains(QString(c.says).replace(u"%P"_s, QString::number(sim->port()))))
            << run.err.toStdString();
        EXPECT_FALSE(run.err.contains(c.never)) << run.err.toStdString();
        const bool reads = c.exitCode != 0 || c.command.endsWith(u"info"_s);
        EXPECT_EQ(sim->storedRecord() == before, reads);
    }
    qunsetenv("REMOTE_SETUP_PASSWORD");
}

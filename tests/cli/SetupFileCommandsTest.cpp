#include "cli/RemoteSetupCli.h"
#include "session/RemoteCommand.h"
#include "setup/ExportFile.h"
#include "setup/FactoryDefaults.h"
#include "setup/SetupRecordMap.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"
#include "tests/session/ScriptedRecorder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using session::Frame;
using setup::ExportFile;
using setup::SetupRecordMap;

namespace {

// Patterned after the accounts, so that Admin can still log in.
QByteArray patterned(int seed)
{
    constexpr qsizetype AfterAccounts = 216;
    return testsupport::patternedRecord(seed, AfterAccounts);
}

} // namespace

TEST(SetupFileCommands, ExportFromOneRecorderImportsIntoAnotherOfTheSameModel)
{
    SimProcess source({}, patterned(1));
    SimProcess target({}, patterned(2));
    ASSERT_TRUE(source.isRunning() && target.isRunning());
    QTemporaryDir dir;
    const QString path = dir.filePath(u"setup.dat"_s);
    ASSERT_EQ(source.cli({u"export"_s, path}).exitCode, 0);
    const QByteArray before = target.storedRecord();

    const auto run = target.cli({u"import"_s, path});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.err, u"Import Success\n"_s);
    EXPECT_EQ(target.storedRecord(),
              testsupport::keepingRecordersOwn(source.storedRecord(), before, true));
}

TEST(SetupFileCommands, FactoryDefaultRestoresFromTheDefaultFile)
{
    QTemporaryDir dir;
    const QString shortFile = dir.filePath(u"short.dat"_s);
    const QByteArray image = patterned(3).first(1000);
    testsupport::writeFile(shortFile, image);
    QByteArray fromShort(SetupRecordMap::RecordSize, '\0');
    fromShort.replace(0, image.size(), image);
    struct Case
    {
        const char *what;
        QStringList arguments;
        QByteArray image;
        QString warning;
    };
    const Case cases[] = {
        {"beside the program", {}, setup::FactoryDefaults::record(), QString()},
        {"a short file",
         {u"--default-file"_s, shortFile},
         fromShort,
         u"holds 1000 of 15148 bytes; the rest is sent as zeros"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        SimProcess sim({}, patterned(1));
        ASSERT_TRUE(sim.isRunning());
        const QByteArray before = sim.storedRecord();
        const auto run = sim.cli(QStringList {u"factory-default"_s} + c.arguments);
        ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
        EXPECT_TRUE(run.err.endsWith(u"Default Setup Success\n"_s)) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(c.warning)) << run.err.toStdString();
        EXPECT_EQ(sim.storedRecord(), testsupport::keepingRecordersOwn(c.image, before, false));
    }
}

TEST(SetupFileCommands, FilesThatCannotBeUsedMapToExitCodes)
{
    QTemporaryDir dir;
    const QString otherModel = dir.filePath(u"other-model.dat"_s);
    testsupport::writeFile(otherModel, ExportFile::build(setup::FactoryDefaults::record(77)));
    SimProcess sim({}, patterned(1));
    ASSERT_TRUE(sim.isRunning());
    const QByteArray before = sim.storedRecord();
    struct Case
    {
        QStringList arguments;
        int exitCode;
        QString message;
    };
    const Case cases[] = {
        {{u"import"_s, otherModel}, 1, u"This file can not be imported.\n"_s},
        {{u"import"_s, dir.filePath(u"missing.dat"_s)}, 2, u"missing.dat: File does not exist"_s},
        {{u"import"_s, dir.path()}, 2, u"cannot read"_s},
        {{u"import"_s}, 2, u"import takes one FILE"_s},
        {{u"factory-default"_s, u"--default-file"_s, dir.filePath(u"missing.dat"_s)},
         2,
         u"cannot read default file"_s},
        {{u"factory-default"_s, u"now"_s}, 2, u"factory-default takes no arguments"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.arguments.join(u' ').toStdString());
        const auto run = sim.cli(c.arguments);
        EXPECT_EQ(run.exitCode, c.exitCode);
        EXPECT_TRUE(run.err.contains(c.message)) << run.err.toStdString();
    }
    EXPECT_EQ(sim.storedRecord(), before);
}

TEST(SetupFileCommands, ALostSessionEndsAnImportWithoutChangingTheRecorder)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"setup.dat"_s);
    testsupport::writeFile(path, ExportFile::build(patterned(2)));
    SimProcess sim({u"--drop-after"_s, u"6"_s}, patterned(1));
    ASSERT_TRUE(sim.isRunning());
    const QByteArray before = sim.storedRecord();

    const auto run = sim.cli({u"import"_s, path});
    EXPECT_EQ(run.exitCode, 3) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains(u"ended before"_s)) << run.err.toStdString();
    EXPECT_FALSE(run.err.contains(u"Import Success"_s)) << run.err.toStdString();
    EXPECT_EQ(sim.storedRecord(), before);
}

TEST(SetupFileCommands, ARecorderThatRefusesOrStaysSilentEndsTheCommand)
{
    QTemporaryDir dir;
    const QString importFile = dir.filePath(u"setup.dat"_s);
    testsupport::writeFile(importFile, ExportFile::build(setup::FactoryDefaults::record()));
    const QString defaultFile = dir.filePath(u"default.dat"_s);
    testsupport::writeFile(defaultFile, setup::FactoryDefaults::record());
    struct Case
    {
        const char *what;
        QStringList arguments;
        bool acknowledges;
        int exitCode;
        QString message;
    };
    const Case cases[] = {
        {"import refused", {u"import"_s, importFile}, true, 1, u"the recorder refused"_s},
        {"default refused",
         {u"factory-default"_s, u"--default-file"_s, defaultFile},
         true,
         1,
         u"the recorder refused"_s},
        {"import unanswered",
         {u"import"_s, importFile},
         false,
         3,
         u"no acknowledgement of the whole setup from 127.0.0.1"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        ScriptedRecorder recorder;
        recorder.record = setup::FactoryDefaults::record();
        // Refuses the CAMERA block; or leaves every block unanswered.
        recorder.onFrame = [&](const Frame &frame) {
            if (frame.command != RemoteCommand::SetupWrite
                || frame.param.words[0] != SetupRecordMap::WholeBlockCategory) {
                recorder.answerAsRecorder(frame);
            } else if (c.acknowledges) {
                PACKET_PARAM ack;
                ack.words[0] = frame.param.words[2] == 1300 ? 0 : 1;
                recorder.send(RemoteCommand::SetupWriteAck, ack);
            }
        };
        QString out;
        QString err;
        QTextStream outStream(&out);
        QTextStream errStream(&err);
        cli::RemoteSetupCli cli(outStream, errStream);
        const int exitCode = cli.run(
            QStringList {u"--port"_s, QString::number(recorder.port()), u"--timeout"_s, u"3"_s}
            + c.arguments);
        EXPECT_EQ(exitCode, c.exitCode) << err.toStdString();
        EXPECT_TRUE(err.contains(c.message)) << err.toStdString();
    }
}

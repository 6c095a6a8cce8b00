#include "session/RemoteCommand.h"
#include "setup/ExportFile.h"
#include "setup/FactoryDefaults.h"
#include "setup/SetupRecordMap.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"
#include "tests/cli/InProcessCli.h"
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
    testsupport::writeFile(path, "replaced whole");
    const auto exported = source.cli({u"export"_s, path});
    ASSERT_EQ(exported.exitCode, 0) << exported.err.toStdString();
    EXPECT_EQ(exported.out, u"Export completed\n"_s);
    const QByteArray file = testsupport::readFile(path);
    ASSERT_EQ(file.size(), ExportFile::Size);
    EXPECT_EQ(file.first(20).toHex(), "110001004b4b4d2b55475241010016003f000000");
    EXPECT_EQ(file.sliced(20), source.storedRecord().sliced(32));
    const auto unwritable = source.cli({u"export"_s, u"/nonexistent/dir/setup.dat"_s});
    EXPECT_EQ(unwritable.exitCode, 2);
    EXPECT_TRUE(unwritable.err.contains(u"cannot write /nonexistent/dir/setup.dat"_s));
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
    const QByteArray good = ExportFile::build(patterned(2));
    const auto cut = [&](const char *name, const QByteArray &bytes) {
        const QString path = dir.filePath(QLatin1StringView(name));
        testsupport::writeFile(path, bytes);
        return path;
    };
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
        {{u"import"_s, cut("20.dat", good.first(20))}, 1, u"is 20 bytes"_s},
        {{u"import"_s, cut("half.dat", good.first(good.size() / 2))}, 1, u"is 7568 bytes"_s},
        {{u"import"_s, cut("long.dat", good + 'x')},
         1,
         u"is 15137 bytes, but an export file is 15136 bytes; nothing sent"_s},
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

TEST(SetupFileCommands, ARefusedWriteOrALostSessionEndsTheTransferWithoutChanges)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"setup.dat"_s);
    testsupport::writeFile(path, ExportFile::build(patterned(2)));
    struct Case
    {
        QString simOption;
        QStringList command;
        int exitCode;
        QString message;
    };
    const Case cases[] = {
        {u"--refuse-write-at=1"_s, {u"import"_s, path}, 1, u"refused block 1 of 6 (SYSTEM)"_s},
        {u"--refuse-write-at=3"_s, {u"import"_s, path}, 1, u"refused block 3 of 6 (CAMERA)"_s},
        {u"--refuse-write-at=6"_s, {u"import"_s, path}, 1, u"refused block 6 of 6 (NETWORK)"_s},
        {u"--refuse-write-at=7"_s, {u"import"_s, path}, 1, u"refused the commit"_s},
        {u"--refuse-write-at=4"_s, {u"factory-default"_s}, 1, u"refused block 4 of 6 (RECORD)"_s},
        {u"--drop-after=6"_s, {u"import"_s, path}, 3, u"before"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.simOption.toStdString());
        SimProcess sim({c.simOption}, patterned(1));
        ASSERT_TRUE(sim.isRunning());
        const QByteArray before = sim.storedRecord();
        const auto run = sim.cli(c.command);
        EXPECT_EQ(run.exitCode, c.exitCode) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(c.message)) << run.err.toStdString();
        EXPECT_FALSE(run.err.contains(u"Success"_s)) << run.err.toStdString();
        EXPECT_EQ(sim.storedRecord(), before);
    }
}

TEST(SetupFileCommands, AnAcknowledgementOtherThanOneOrNoneEndsTheCommand)
{
    QTemporaryDir dir;
    const QString defaultFile = dir.filePath(u"default.dat"_s);
    testsupport::writeFile(defaultFile, setup::FactoryDefaults::record());
    for (const bool acknowledges : {true, false}) {
        SCOPED_TRACE(acknowledges);
        ScriptedRecorder recorder;
        recorder.record = setup::FactoryDefaults::record();
        // Answers every block with code 2; or leaves every block unanswered.
        recorder.onFrame = [&](const Frame &frame) {
            if (frame.command != RemoteCommand::SetupWrite) {
                recorder.answerAsRecorder(frame);
            } else if (acknowledges) {
                PACKET_PARAM ack;
                ack.words[0] = 2;
                recorder.send(RemoteCommand::SetupWriteAck, ack);
            }
        };
        const auto run
            = runInProcess({u"--port"_s, QString::number(recorder.port()), u"--timeout"_s, u"3"_s,
                            u"factory-default"_s, u"--default-file"_s, defaultFile});
        EXPECT_EQ(run.exitCode, acknowledges ? 1 : 3) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(acknowledges ? u"refused block 1 of 6"_s
                                                  : u"no acknowledgement of the whole setup"_s))
            << run.err.toStdString();
        const auto writes = recorder.receivedWith(RemoteCommand::SetupWrite);
        EXPECT_TRUE(std::none_of(writes.begin(), writes.end(), [](const Frame &frame) {
            return frame.param.words[0] == SetupRecordMap::CommitCategory;
        }));
    }
}

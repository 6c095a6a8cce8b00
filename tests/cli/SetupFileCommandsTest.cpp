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

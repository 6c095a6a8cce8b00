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

// An export file, the default file beside the program or a short default
// file each replace all of another recorder's record but its own parts.
TEST(SetupFileCommands, ExportImportAndFactoryDefaultReplaceAllButTheRecordersOwnParts)
{
    SimProcess source({}, testsupport::patternedRecord(1));
    ASSERT_TRUE(source.isRunning());
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

    const QString shortFile = dir.filePath(u"short.dat"_s);
    const QByteArray image = testsupport::patternedRecord(3).first(1000);
    testsupport::writeFile(shortFile, image);
    QByteArray fromShort(SetupRecordMap::RecordSize, '\0');
    fromShort.replace(0, image.size(), image);
    struct Case
    {
        QStringList command;
        QByteArray image;
        bool keepsMonitor;
        QString success;
        QString warning = {};
    };
    const Case cases[] = {
        {{u"import"_s, path}, source.storedRecord(), true, u"Import Success\n"_s},
        {{u"factory-default"_s},
         setup::FactoryDefaults::record(),
         false,
         u"Default Setup Success\n"_s},
        {{u"factory-default"_s, u"--default-file"_s, shortFile},
         fromShort,
         false,
         u"Default Setup Success\n"_s,
         u"holds 1000 of 15148 bytes; the rest is sent as zeros"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.command.join(u' ').toStdString());
        SimProcess target({}, testsupport::patternedRecord(2));
        ASSERT_TRUE(target.isRunning());
        const QByteArray before = target.storedRecord();
        const auto run = target.cli(c.command);
        ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
        EXPECT_TRUE(run.err.endsWith(c.success)) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(c.warning)) << run.err.toStdString();
        EXPECT_EQ(target.storedRecord(),
                  testsupport::keepingRecordersOwn(c.image, before, c.keepsMonitor));
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

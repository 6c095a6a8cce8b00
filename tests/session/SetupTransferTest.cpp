#include "session/SetupTransfer.h"
#include "session/CWork.h"
#include "session/RemoteCommand.h"
#include "setup/ExportFile.h"
#include "setup/FactoryDefaults.h"
#include "setup/LittleEndian.h"
#include "setup/SetupFiles.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"
#include "tests/session/ScriptedRecorder.h"
#include "tests/session/SessionHarness.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using session::Frame;
using setup::ExportFile;
using setup::SetupFiles;
using setup::SetupRecordMap;
using testsupport::waitFor;
using Result = SetupTransfer::Result;

namespace {

// Patterned after the accounts, so that Admin can still log in.
QByteArray patterned(int seed)
{
    constexpr qsizetype AfterAccounts = 216;
    return testsupport::patternedRecord(seed, AfterAccounts);
}

QByteArray withU32(QByteArray bytes, qsizetype offset, quint32 value)
{
    nelib::LittleEndian::setU32(bytes, offset, value);
    return bytes;
}

// Everything sent before this returns has reached the recorder: the
// connection keeps the order of frames, and the clock answer comes last.
bool flush(CWork &work, const ScriptedRecorder &recorder)
{
    const std::size_t before = recorder.receivedWith(RemoteCommand::DateTime).size();
    work.dateTimeCommand(1, RecorderTime {});
    return waitFor([&] { return recorder.receivedWith(RemoteCommand::DateTime).size() > before; });
}

} // namespace

TEST(SetupTransfer, ImportAndFactoryDefaultEndWithOneSuccessAfterSevenAcknowledgements)
{
    QTemporaryDir dir;
    const QByteArray file = ExportFile::build(patterned(2));
    const QString importPath = dir.filePath(u"import.dat"_s);
    testsupport::writeFile(importPath, file);
    const QByteArray image = patterned(3);
    const QString defaultPath = dir.filePath(u"DEFDVRSETUP.DAT"_s);
    testsupport::writeFile(defaultPath, image);

    for (const bool import : {true, false}) {
        SCOPED_TRACE(import ? "import" : "factory default");
        SimProcess sim({}, patterned(1));
        ASSERT_TRUE(sim.isRunning());
        const QByteArray before = sim.storedRecord();
        SessionHarness harness;
        CWork &work = harness.connect(sim.port());
        ASSERT_TRUE(harness.waitForReady());

        int acknowledgements = 0;
        QObject::connect(&work, &CWork::writeAcknowledged, &harness, [&](bool applied) {
            ++acknowledgements;
            EXPECT_TRUE(applied);
            // The commit goes out with the sixth; before it nothing is stored.
            if (acknowledgements < 6) {
                EXPECT_EQ(sim.storedRecord(), before) << acknowledgements;
            }
            if (acknowledgements < 7) {
                EXPECT_TRUE(harness.messages.isEmpty()) << acknowledgements;
            }
        });
        const Result result = import ? SetupTransfer::importFile(work, importPath)
                                     : SetupTransfer::factoryDefault(work, defaultPath);
        ASSERT_EQ(result, Result::Sent);
        ASSERT_TRUE(waitFor([&] { return acknowledgements == 7; }));

        EXPECT_EQ(harness.messages,
                  QStringList {import ? u"Import Success"_s : u"Default Setup Success"_s});
        EXPECT_EQ(std::count(harness.sessionMessages.begin(), harness.sessionMessages.end(),
                             int(SessionMessage::SetupRestored)),
                  1);
        EXPECT_FALSE(work.importPending());
        EXPECT_FALSE(work.defaultPending());
        const QByteArray expected = import ? SetupFiles::importedRecord(file, before)
                                           : SetupFiles::defaultRecord(image, before);
        EXPECT_EQ(sim.storedRecord(), expected);
        EXPECT_EQ(work.mirror(), expected);
    }
}

TEST(SetupTransfer, AnImportCutOffAfterTwoBlocksLeavesTheRecorderUnchanged)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"import.dat"_s);
    testsupport::writeFile(path, ExportFile::build(patterned(2)));
    // OPEN, login, setup request and clock request come first: frame six
    // is the second block.
    SimProcess sim({u"--drop-after"_s, u"6"_s}, patterned(1));
    ASSERT_TRUE(sim.isRunning());
    const QByteArray before = sim.storedRecord();
    SessionHarness harness;
    CWork &work = harness.connect(sim.port());
    ASSERT_TRUE(harness.waitForReady());

    SetupTransfer::importFile(work, path);
    // The keep-alive notices the closed connection and ends the program.
    ASSERT_TRUE(
        waitFor([&] { return harness.exitCode.has_value(); }, 3 * CWork::KeepAliveIntervalMs));
    EXPECT_EQ(work.acknowledgementCount(), 2);
    EXPECT_FALSE(harness.messages.contains(u"Import Success"_s));
    EXPECT_EQ(sim.storedRecord(), before);
}

TEST(SetupTransfer, ExportThenImportSendsTheRecordersOwnBlocks)
{
    ScriptedRecorder recorder;
    recorder.record = patterned(1);
    SessionHarness harness;
    CWork &work = harness.connect(recorder.port());
    ASSERT_TRUE(harness.waitForReady());
    QTemporaryDir dir;
    const QString path = dir.filePath(u"Export_SetupData.dat"_s);

    EXPECT_TRUE(SetupTransfer::exportFile(work, path));
    EXPECT_FALSE(SetupTransfer::exportFile(work, u"/nonexistent/folder/setup.dat"_s));
    ASSERT_EQ(SetupTransfer::importFile(work, path), Result::Sent);
    ASSERT_TRUE(waitFor([&] { return harness.messages.size() == 3; }));
    EXPECT_EQ(harness.messages,
              (QStringList {u"Export completed"_s, u"Export completed"_s, u"Import Success"_s}));

    const auto writes = recorder.receivedWith(RemoteCommand::SetupWrite);
    ASSERT_EQ(writes.size(), SetupRecordMap::Blocks.size() + 1);
    for (std::size_t i = 0; i < SetupRecordMap::Blocks.size(); ++i) {
        const setup::BlockInfo &block = SetupRecordMap::Blocks[i];
        SCOPED_TRACE(block.name);
        EXPECT_EQ(writes[i].param, (PACKET_PARAM {{8, quint32(block.length), quint32(block.offset),
                                                   0, 0, 0, 0, 0}}));
        EXPECT_EQ(writes[i].payload, recorder.record.sliced(block.offset, block.length));
    }
    EXPECT_EQ(writes.back().param, (PACKET_PARAM {{9, 0, 0, 0, 0, 0, 0, 0}}));
    EXPECT_TRUE(writes.back().payload.isEmpty());
}

TEST(SetupTransfer, ARefusedImportSendsNothing)
{
    QTemporaryDir dir;
    const QByteArray good = ExportFile::build(patterned(2));
    struct Case
    {
        const char *what;
        QByteArray file; // empty: no file at all
        QByteArray record;
        Result result;
        QString message;
    };
    const Case cases[] = {
        {"missing file", {}, patterned(1), Result::FileMissing, u"File does not exist"_s},
        {"another model", ExportFile::build(setup::FactoryDefaults::record(77)), patterned(1),
         Result::FileRefused, u"This file can not be imported."_s},
        {"second mark", withU32(good, 8, 0), patterned(1), Result::FileRefused,
         u"This file can not be imported."_s},
        {"recorder of another layout", good, withU32(patterned(1), 0, 0x00020000),
         Result::FileRefused, u"This file can not be imported."_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        const QString path = dir.filePath(QString::fromLatin1(c.what));
        if (!c.file.isEmpty())
            testsupport::writeFile(path, c.file);
        ScriptedRecorder recorder;
        recorder.record = c.record;
        SessionHarness harness;
        CWork &work = harness.connect(recorder.port());
        ASSERT_TRUE(harness.waitForReady());

        EXPECT_EQ(SetupTransfer::importFile(work, path), c.result);
        ASSERT_TRUE(flush(work, recorder));
        EXPECT_TRUE(recorder.receivedWith(RemoteCommand::SetupWrite).empty());
        EXPECT_EQ(harness.messages, QStringList {c.message});
        EXPECT_EQ(work.mirror(), c.record);
        EXPECT_FALSE(work.importPending());
    }
}

TEST(SetupTransfer, AFailedSendShowsItsErrorMessage)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"import.dat"_s);
    testsupport::writeFile(path, ExportFile::build(patterned(2)));
    for (const bool import : {true, false}) {
        SCOPED_TRACE(import ? "import" : "factory default");
        ScriptedRecorder recorder;
        recorder.record = patterned(1);
        SessionHarness harness;
        CWork &work = harness.connect(recorder.port());
        ASSERT_TRUE(harness.waitForReady());
        work.disconnectSession();

        const Result result
            = import ? SetupTransfer::importFile(work, path)
                     : SetupTransfer::restoreDefaults(work, setup::FactoryDefaults::record());
        EXPECT_EQ(result, Result::SendFailed);
        EXPECT_EQ(harness.messages,
                  QStringList {import ? u"Import Error!"_s : u"Default Setup Error!"_s});
        EXPECT_EQ(work.mirror(), recorder.record);
    }
}

#include "session/SetupTransfer.h"
#include "setup/ExportFile.h"
#include "setup/FactoryDefaults.h"
#include "setup/LittleEndian.h"
#include "setup/SetupFiles.h"
#include "tests/session/ScriptedRecorder.h"
#include "tests/session/SessionHarness.h"

#include <QTemporaryDir>

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

// One table for every way a whole-record write ends, against a recorder
// that acknowledges each write with `code`, refuses block `refusedBlock`
// (1-based) with `refusal`, or drops the connection after block `dropAfter`.
TEST(SetupTransfer, AWholeRecordWriteEndsInSuccessOnlyWhenEveryWriteWasApplied)
{
    QTemporaryDir dir;
    const QByteArray file = ExportFile::build(patterned(2));
    const QString importPath = dir.filePath(u"import.dat"_s);
    testsupport::writeFile(importPath, file);
    const QByteArray image = patterned(3);

    using Outcome = CWork::TransferOutcome;
    const qsizetype whole = SetupRecordMap::RecordSize;
    const struct
    {
        const char *what;
        bool import;
        int refusedBlock;
        quint32 refusal;
        int dropAfter;
        qsizetype recordSize;
        Result result;
        std::size_t writes; // blocks and commit that reached the recorder
        QString message;
        Outcome outcome;
    } cases[] = {
        {"import", true, 0, 0, 0, whole, Result::Sent, 7, u"Import Success"_s, Outcome::Succeeded},
        {"factory default", false, 0, 0, 0, whole, Result::Sent, 7, u"Default Setup Success"_s,
         Outcome::Succeeded},
        {"block 2 refused", true, 2, 0, 0, whole, Result::Sent, 2, u"Import Error!"_s,
         Outcome::Refused},
        {"block 3 answered 2", false, 3, 2, 0, whole, Result::Sent, 3, u"Default Setup Error!"_s,
         Outcome::Refused},
        {"connection lost after block 2", true, 0, 0, 2, whole, Result::Sent, 2, u"Import Error!"_s,
         Outcome::SendFailed},
        {"no whole record received", false, 0, 0, 0, whole - 1, Result::NoRecord, 0,
         u"Default Setup Error!"_s, Outcome::None},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        ScriptedRecorder recorder;
        recorder.record = patterned(1).first(c.recordSize);
        int blocks = 0;
        recorder.onFrame = [&](const Frame &frame) {
            if (frame.command != RemoteCommand::SetupWrite)
                return recorder.answerAsRecorder(frame);
            ++blocks;
            if (blocks == c.dropAfter)
                return recorder.closeClient();
            recorder.send(RemoteCommand::SetupWriteAck,
                          PACKET_PARAM {{blocks == c.refusedBlock ? c.refusal : 1u}});
        };
        SessionHarness harness;
        // The keep-alive must not notice a dropped connection first.
        harness.keepAliveMs = CWork::KeepAliveIntervalMs;
        CWork &work = harness.connect(recorder.port());
        ASSERT_TRUE(harness.waitForReady());
        const QByteArray before = work.mirror();

        const Result result = c.import ? SetupTransfer::importFile(work, importPath)
                                       : SetupTransfer::restoreDefaults(work, image);
        ASSERT_EQ(result, c.result);
        ASSERT_TRUE(
            waitFor([&] { return !harness.messages.isEmpty() && !work.transferRunning(); }));
        // Nothing follows the end: no further block, no commit.
        waitFor([] { return false; }, 3 * CWork::WholeRecordPauseMs);
        EXPECT_EQ(harness.messages.first(), c.message);
        EXPECT_EQ(work.lastTransferOutcome(), c.outcome);
        const auto writes = recorder.receivedWith(RemoteCommand::SetupWrite);
        ASSERT_EQ(writes.size(), c.writes);
        const bool succeeded = c.outcome == Outcome::Succeeded;
        const QByteArray expected = c.import ? SetupFiles::importedRecord(file, before)
                                             : SetupFiles::defaultRecord(image, before);
        for (std::size_t i = 0; i < std::min<std::size_t>(writes.size(), 6); ++i) {
            const setup::BlockInfo &block = SetupRecordMap::Blocks[i];
            EXPECT_EQ(writes[i].param, (PACKET_PARAM {{8, quint32(block.length),
                                                       quint32(block.offset), 0, 0, 0, 0, 0}}));
            EXPECT_EQ(writes[i].payload, expected.sliced(block.offset, block.length));
        }
        if (succeeded) {
            EXPECT_EQ(writes.back().param, (PACKET_PARAM {{9, 0, 0, 0, 0, 0, 0, 0}}));
        }
        EXPECT_EQ(work.mirror(), succeeded ? expected : before);
        EXPECT_EQ(harness.sessionMessages == std::vector<int> {SessionMessage::SetupRestored},
                  succeeded);
    }
}

TEST(SetupTransfer, ASecondWholeRecordWriteIsRefusedWhileOneRunsAndTheSessionGoesOn)
{
    ScriptedRecorder recorder;
    recorder.record = patterned(1);
    SessionHarness harness;
    CWork &work = harness.connect(recorder.port());
    ASSERT_TRUE(harness.waitForReady());

    ASSERT_EQ(SetupTransfer::restoreDefaults(work, patterned(3)), Result::Sent);
    EXPECT_EQ(SetupTransfer::importData(work, ExportFile::build(patterned(2))), Result::Busy);
    ASSERT_TRUE(waitFor([&] { return harness.messages.size() == 2; }));
    EXPECT_EQ(harness.messages, (QStringList {u"Import Error!"_s, u"Default Setup Success"_s}));
    // Acknowledgements count as plain saves again.
    ASSERT_NE(work.writeSection(setup::Section::Camera, QByteArray(768, 'C')), 0);
    ASSERT_TRUE(waitFor([&] { return harness.messages.size() == 3; }));
    EXPECT_EQ(harness.messages.last(), u"Complete Save   \t"_s);
}

TEST(SetupTransfer, ExportWritesTheRecordersRecordAndSaysSoEitherWay)
{
    ScriptedRecorder recorder;
    recorder.record = patterned(1);
    SessionHarness harness;
    CWork &work = harness.connect(recorder.port());
    ASSERT_TRUE(harness.waitForReady());
    QTemporaryDir dir;
    const QString path = dir.filePath(u"Export_SetupData.dat"_s);
    EXPECT_TRUE(SetupTransfer::exportFile(work, path));
    EXPECT_EQ(testsupport::readFile(path), ExportFile::build(recorder.record));
    EXPECT_FALSE(SetupTransfer::exportFile(work, u"/nonexistent/folder/setup.dat"_s));
    EXPECT_EQ(harness.messages, (QStringList {u"Export completed"_s, u"Export completed"_s}));
}

TEST(SetupTransfer, ARefusedImportSendsNothing)
{
    QTemporaryDir dir;
    const QByteArray good = ExportFile::build(patterned(2));
    const struct
    {
        const char *what;
        QByteArray file; // empty: no file at all
        QByteArray record;
        Result result;
        QString message;
    } cases[] = {
        {"missing file", {}, patterned(1), Result::FileMissing, u"File does not exist"_s},
        {"another model", ExportFile::build(setup::FactoryDefaults::record(77)), patterned(1),
         Result::FileRefused, u"This file can not be imported."_s},
        {"second mark", withU32(good, 8, 0), patterned(1), Result::FileRefused,
         u"This file can not be imported."_s},
        {"recorder of another layout", good, withU32(patterned(1), 0, 0x00020000),
         Result::FileRefused, u"This file can not be imported."_s},
    };
    for (const auto &c : cases) {
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

// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/SetupTransfer.h"
#include "setup/ExportFile.h"
#include "setup/FactoryDefaults.h"
#include "setup/LittleEndian.h"
#include "setup/SetupFiles.h"
#include "tests/session/ScriptedRecorder.h"
#include "tests/session/SessionHarness.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::StringLiterals;
using session::Frame;
using setup::ExportFile;
using setup::SetupFiles;
using setup::SetupRecordMap;
using testsupport::patternedRecord;
using testsupport::waitFor;
using Result = SetupTransfer::Result;

namespace {

QByteArray withU32(QByteArray bytes, qsizetype offset, quint32 value)
{
    nelib::LittleEndian::setU32(bytes, offset, value);
    return bytes;
}

} // namespace

// One table for every way a whole-record write ends, against a recorder
// holding `record` that acknowledges each write with 1, refuses block
// `refusedBlock` (1-based) with `refusal`, drops the connection after
// block `dropAfter`, or acknowledges block `ackedTwice` twice. An import reads `file`, or finds no
// file when empty.
TEST(SetupTransfer, AWholeRecordWriteEndsInSuccessOnlyWhenEveryWriteWasApplied)
{
    QTemporaryDir dir;
    const QByteArray good = ExportFile::build(patternedRecord(2));
    const QByteArray image = patternedRecord(3);
    const QByteArray record = patternedRecord(1);
    const QString refused = u"This file can not be imported."_s;
    const QByteArray none;

    using Outcome = CWork::TransferOutcome;
    const struct
    {
        const char *what;
        bool import;
        QByteArray file;
        QByteArray record;
        int refusedBlock;
        quint32 refusal;
        int dropAfter;
        Result result;
        std::size_t writes; // blocks and commit that reached the recorder
        QString message;
        Outcome outcome;
        int ackedTwice = 0;
    } cases[] = {
        {"import", true, good, record, 0, 0, 0, Result::Sent, 7, u"Import Success"_s,
         Outcome::Succeeded},
        {"factory default", false, none, record, 0, 0, 0, Result::Sent, 7,
         u"Default Setup Success"_s, Outcome::Succeeded},
        {"block 2 refused", true, good, record, 2, 0, 0, Result::Sent, 2, u"Import Error!"_s,
         Outcome::Refused},
        {"block 3 answered 2", false, none, record, 3, 2, 0, Result::Sent, 3,
         u"Default Setup Error!"_s, Outcome::Refused},
        {"connection lost after block 2", true, good, record, 0, 0, 2, Result::Sent, 2,
         u"Import Error!"_s, Outcome::SendFailed},
        // An acknowledgement no write awaits is not taken for the next block's.
        {"block 1 acknowledged twice", true, good, record, 0, 0, 0, Result::Sent, 7,
         u"Import Success"_s, Outcome::Succeeded, 1},
        {"no whole record received", false, none, record.first(record.size() - 1), 0, 0, 0,
         Result::NoRecord, 0, u"Default Setup Error!"_s, Outcome::None},
        {"missing file", true, none, record, 0, 0, 0, Result::FileMissing, 0,
         u"File does not exist"_s, Outcome::None},
        {"another model", true, ExportFile::build(setup::FactoryDefaults::record(77)), record, 0, 0,
         0, Result::FileRefused, 0, refused, Outcome::None},
        {"second mark", true, withU32(good, 8, 0), record, 0, 0, 0, Result::FileRefused, 0, refused,
         Outcome::None},
        {"recorder of another layout", true, good, withU32(record, 0, 0x00020000), 0, 0, 0,
         Result::FileRefused, 0, refused, Outcome::None},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        const QString path = dir.filePath(QString::fromLatin1(c.what));
        if (!c.file.isEmpty())
            testsupport::writeFile(path, c.file);
        ScriptedRecorder recorder;
        recorder.record = c.record;
        int blocks = 0;
        recorder.onFrame = [&](const Frame &frame) {
            if (frame.command != RemoteCommand::SetupWrite)
                return recorder.answerAsRecorder(frame);
            ++blocks;
            if (blocks == c.dropAfter)
                return recorder.closeClient();
            recorder.send(RemoteCommand::SetupWriteAck,
                          PACKET_PARAM {{blocks == c.refusedBlock ? c.refusal : 1u}});
            if (blocks == c.ackedTwice)
                recorder.send(RemoteCommand::SetupWriteAck, PACKET_PARAM {{1u}});
        };
        SessionHarness harness;
        CWork &work = harness.connect(recorder.port());
        ASSERT_TRUE(harness.waitForReady());
        const QByteArray before = work.mirror();

        const Result result = c.import ? SetupTransfer::importFile(work, path)
                                       : SetupTransfer::restoreDefaults(work, image);
        ASSERT_EQ(result, c.result);
        ASSERT_TRUE(
            waitFor([&] { return !harness.messages.isEmpty() && !work.transferRunning(); }));
        // Nothing follows the end: no further block, no commit.
        waitFor([] { return false; }, 3 * CWork::WholeRecordPauseMs);
        // A lost connection is the keep-alive's to announce, after the transfer's end.
        EXPECT_EQ(harness.messages.value(0), c.message);
        EXPECT_EQ(harness.messages.size(), c.dropAfter ? 2 : 1);
        EXPECT_EQ(work.lastTransferOutcome(), c.outcome);
        const auto writes = recorder.receivedWith(RemoteCommand::SetupWrite);
        ASSERT_EQ(writes.size(), c.writes);
        const bool succeeded = c.outcome == Outcome::Succeeded;
        const QByteArray expected = c.import ? SetupFiles::importedRecord(c.file, before)
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
    recorder.record = patternedRecord(1);
    SessionHarness harness;
    CWork &work = harness.connect(recorder.port());
    ASSERT_TRUE(harness.waitForReady());

    ASSERT_EQ(SetupTransfer::restoreDefaults(work, patternedRecord(3)), Result::Sent);
    EXPECT_EQ(SetupTransfer::importData(work, ExportFile::build(patternedRecord(2))), Result::Busy);
    ASSERT_TRUE(waitFor([&] { return harness.messages.size() == 2; }));
    EXPECT_EQ(harness.messages, (QStringList {u"Import Error!"_s, u"Default Setup Success"_s}));
    // Acknowledgements count as plain saves again.
    ASSERT_NE(work.writeSection(setup::Section::Camera, QByteArray(768, 'C')), 0);
    ASSERT_TRUE(waitFor([&] { return harness.messages.size() == 3; }));
    EXPECT_EQ(harness.messages.last(), u"Complete Save   \t"_s);
}

TEST(SetupTransfer, ExportWritesTheRecordersRecordForItsOwnerAndSaysSoEitherWay)
{
    ScriptedRecorder recorder;
    recorder.record = patternedRecord(1);
    SessionHarness harness;
    CWork &work = harness.connect(recorder.port());
    ASSERT_TRUE(harness.waitForReady());
    QTemporaryDir dir;
    const QString path = dir.filePath(u"Export_SetupData.dat"_s);
    EXPECT_TRUE(SetupTransfer::exportFile(work, path));
    EXPECT_EQ(testsupport::readFile(path), ExportFile::build(recorder.record));
    // It holds every account's password.
    EXPECT_FALSE(QFile::permissions(path)
                 & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther));
    EXPECT_FALSE(SetupTransfer::exportFile(work, u"/nonexistent/folder/setup.dat"_s));
    EXPECT_EQ(harness.messages, (QStringList {u"Export completed"_s, u"Export completed"_s}));
}

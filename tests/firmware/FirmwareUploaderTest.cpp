// SPDX-License-Identifier: GPL-3.0-or-later

#include "firmware/FirmwareUploader.h"
#include "firmware/PackageBuilder.h"
#include "firmware/RecorderVersions.h"
#include "tests/firmware/UploadPackets.h"
#include "tests/session/ScriptedRecorder.h"
#include "tests/session/SessionHarness.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <map>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using firmware::FirmwarePackage;
using firmware::FirmwareUploader;
using firmware::FirmwareVersion;
using firmware::PackageBuilder;
using firmware::RecorderVersions;
using session::Frame;
using setup::SetupRecordMap;
using Outcome = FirmwareUploader::Outcome;
using Words = std::array<quint32, 8>;
namespace W = firmware::PacketWords;

namespace {

constexpr FirmwareVersion v(quint8 a, quint8 b, quint8 c, quint8 d)
{
    return FirmwareVersion {{a, b, c, d}};
}

constexpr Words GoOnWords {W::HeaderReply, W::GoOn, W::VersionDataFollows, 0, 100, 0, 0, 0};
constexpr std::size_t Never = std::size_t(-1);

struct Component
{
    quint32 type;
    FirmwareVersion version;
    quint32 size;
};

// A logged-in session with a scripted recorder that answers the firmware
// packets like a recorder at 1.0.0.0 (its type-8 component at 1.5.0.0)
// taking chunks of 100 bytes: the header with `header` and `versionBytes`
// bytes of versions, every chunk accepted, except for packet `silentOn`
// (never answered) and `refusedOn` (refused); with `cancelOnData`, the
// upload is canceled as each chunk arrives.
class FirmwareUploaderTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        versions.overall = v(1, 0, 0, 0);
        versions.components.fill(v(1, 0, 0, 0));
        versions.components[1] = v(1, 5, 0, 0);
        versions.model = "TEST-DVR";
        recorder.onFrame = [this](const Frame &frame) {
            if (frame.command != RemoteCommand::FirmwarePacket)
                return recorder.answerAsRecorder(frame);
            const std::size_t index = packets().size() - 1;
            const quint32 kind = frame.param.words[0];
            if (index == silentOn || (kind != W::Header && kind != W::Data))
                return;
            if (cancelOnData && kind == W::Data)
                current->cancel();
            const Words data {W::DataReply, index == refusedOn ? W::Refused : W::Accepted};
            const QByteArray bytes
                = (versions.toBytes() + QByteArray(204, 'r')).first(versionBytes);
            recorder.send(RemoteCommand::FirmwareReply,
                          PACKET_PARAM {kind == W::Header ? header : data},
                          kind == W::Header ? bytes : QByteArray());
        };
        harness.connect(recorder.port());
        ASSERT_TRUE(harness.waitForReady());
    }

    FirmwarePackage write(FirmwareVersion version, const std::vector<Component> &components,
                          quint32 gap = 0)
    {
        PackageBuilder builder(version);
        builder.setDataOffset(FirmwarePackage::HeaderSize + gap);
        for (const Component &c : components)
            builder.addGeneratedComponent(c.type, c.version, c.size);
        const QString path = dir.filePath(u"update.KRP"_s);
        QString error;
        EXPECT_TRUE(builder.write(path, &error)) << error.toStdString();
        FirmwarePackage::Fault fault;
        return FirmwarePackage::open(path, &fault).value_or(FirmwarePackage());
    }

    // Runs an upload of `package` to its end, then makes sure that
    // everything the client sent has reached the recorder: frames keep
    // their order, so once a clock request sent afterwards has arrived, so
    // has any stop packet.
    std::unique_ptr<FirmwareUploader> run(const FirmwarePackage &package)
    {
        recorder.received.clear();
        harness.messages.clear();
        harness.sessionMessages.clear();
        harness.exitCode.reset();
        percentages.clear();
        auto upload = std::make_unique<FirmwareUploader>(*harness.worker, package);
        current = upload.get();
        upload->setWaits(pause, silentOn == Never ? 10000ms : 300ms);
        QObject::connect(upload.get(), &FirmwareUploader::percentageChanged,
                         [this](int percent) { percentages.push_back(percent); });
        if (!upload->start()
            || !testsupport::waitFor([&] { return bool(upload->outcome()); }, 60000))
            return nullptr;
        const std::size_t requests = recorder.receivedWith(RemoteCommand::DateTime).size();
        harness.worker->dateTimeCommand(1, RecorderTime {});
        if (!testsupport::waitFor(
                [&] { return recorder.receivedWith(RemoteCommand::DateTime).size() > requests; }))
            return nullptr;
        // The owner shows the message and ends the program, never the upload itself.
        EXPECT_EQ(harness.sessionMessages, std::vector<int>(2, int(SessionMessage::UploadRunning)));
        EXPECT_TRUE(harness.messages.isEmpty());
        EXPECT_FALSE(harness.exitCode);
        return upload;
    }

    std::vector<Frame> packets() const
    {
        return recorder.receivedWith(RemoteCommand::FirmwarePacket);
    }

    ScriptedRecorder recorder;
    SessionHarness harness;
    QTemporaryDir dir;
    RecorderVersions versions;
    Words header = GoOnWords;
    qsizetype versionBytes = 54;
    std::size_t silentOn = Never;
    std::size_t refusedOn = Never;
    bool cancelOnData = false;
    std::chrono::milliseconds pause = 0ms;
    FirmwareUploader *current = nullptr;
    std::vector<int> percentages;
};

} // namespace

// Which components are newer is the plan's to say; the uploader sends those.
// The operator sees the outcome's message on the Update page.
TEST_F(FirmwareUploaderTest, SendsThePlannedComponentsInNumberedFlaggedChunks)
{
    const struct
    {
        const char *what;
        quint32 gap;
        std::vector<Component> components;
        std::vector<bool> sent;
        std::vector<int> percentages;
    } cases[] = {
        // Each percentage advanced before its chunk went out: 100, 200, 250,
        // 350, 390 of 390.
        {"newer and unknown components only",
         16,
         {{2, v(1, 0, 0, 1), 250},
          {8, v(1, 5, 0, 0), 70},
          {0x1234, v(0, 0, 0, 0), 100},
          {0x4242, v(0, 0, 0, 1), 40}},
         {true, false, true, true},
         {25, 51, 64, 89, 100}},
        {"nothing newer: only the end of the package",
         0,
         {{2, v(1, 0, 0, 0), 500}, {0xF0010000, v(0, 9, 0, 0), 500}},
         {false, false},
         {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        const FirmwarePackage package = write(v(2, 0, 0, 0), c.components, c.gap);

        const auto upload = run(package);

        ASSERT_TRUE(upload);
        EXPECT_EQ(upload->outcome(), Outcome::Completed);
        const std::vector<Frame> sent = packets();
        const auto expected = uploadPackets(testsupport::readFile(package.path()), 100, c.sent);
        ASSERT_EQ(sent.size(), expected.size());
        for (std::size_t i = 0; i < sent.size(); ++i) {
            EXPECT_EQ(sent[i].param, expected[i].param) << "packet " << i;
            EXPECT_EQ(sent[i].payload, expected[i].payload) << "packet " << i;
        }
        EXPECT_EQ(percentages, c.percentages);
        EXPECT_FALSE(upload->start()) << "an uploader runs once";
    }
}

// Every end short of a completed transfer. A header reply that does not go
// on ends the upload quietly, with no stop packet either; the other ends say
// why, and stop the recorder when it was sending.
TEST_F(FirmwareUploaderTest, AnUnfinishedTransferSaysWhyAndStopsTheRecorderWhenItWasSending)
{
    const QString terminated = u"\nThe Remote Setup is terminated.\nPlease try to reconnect."_s;
    const QString noResponse = u"No Response From The Set"_s + terminated;
    const QString busy = u"Update Impossible.\nDVR is performing an important task."_s;
    enum Fault { None, Short, SilentOnHeader, SilentOnChunk, RefusedChunk, Cancel, Cut, Gone };
    const struct
    {
        const char *what;
        Words header;
        Fault fault;
        Outcome outcome;
        std::size_t packets;
        bool stop; // a stop packet went out, and the program ends
        QString message;
    } cases[] = {
        {"word 0 not 1", {2, W::GoOn, 4, 0, 100}, None, Outcome::Declined, 1, false, {}},
        {"declined", {1, W::Decline, 4, 0, 100}, None, Outcome::Declined, 1, false, {}},
        {"word 2 not 4", {1, W::GoOn, 3, 0, 100}, None, Outcome::Declined, 1, false, {}},
        {"53 bytes of versions", GoOnWords, Short, Outcome::Declined, 1, false, {}},
        {"chunk size 0", {1, W::GoOn, 4, 0, 0}, None, Outcome::Declined, 1, false, {}},
        {"chunk too big", {1, W::GoOn, 4, 0, 0x100001}, None, Outcome::Declined, 1, false, {}},
        {"busy", {1, W::Busy, 4, 0, 100}, None, Outcome::Busy, 1, false, busy},
        {"silent on header", GoOnWords, SilentOnHeader, Outcome::NoResponse, 2, true, noResponse},
        {"silent on chunk 2", GoOnWords, SilentOnChunk, Outcome::NoResponse, 4, true, noResponse},
        {"second chunk refused", GoOnWords, RefusedChunk, Outcome::Refused, 4, true,
         u"UPDATE ERROR!! Unable to send data."_s + terminated},
        // It ends after the chunk on its way.
        {"canceled", GoOnWords, Cancel, Outcome::Canceled, 2, false, {}},
        // The package was checked when it was chosen; it changes afterwards.
        {"file cut short", GoOnWords, Cut, Outcome::SizeIncorrect, 3, true,
         u"UPDATE ERROR!! File size is incorrect."_s + terminated},
        {"file gone", GoOnWords, Gone, Outcome::ReadFailed, 1, true,
         u"UPDATE ERROR!! Unable to read file."_s + terminated},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        header = c.header;
        versionBytes = c.fault == Short ? 53 : 54;
        silentOn = c.fault == SilentOnHeader ? 0 : c.fault == SilentOnChunk ? 2 : Never;
        refusedOn = c.fault == RefusedChunk ? 2 : Never;
        cancelOnData = c.fault == Cancel;
        const FirmwarePackage package = write(v(2, 0, 0, 0), {{2, v(2, 0, 0, 0), 250}});
        if (c.fault == Cut)
            QFile::resize(package.path(), FirmwarePackage::HeaderSize + 150);
        else if (c.fault == Gone)
            QFile::remove(package.path());
        const auto upload = run(package);
        ASSERT_TRUE(upload);
        EXPECT_EQ(upload->outcome(), c.outcome);
        const std::vector<Frame> sent = packets();
        ASSERT_EQ(sent.size(), c.packets);
        EXPECT_EQ(sent.back().param.words[0] == W::Stop, c.stop);
        EXPECT_EQ(FirmwareUploader::message(c.outcome), c.message);
        EXPECT_EQ(FirmwareUploader::endsProgram(c.outcome), c.stop);
    }
}

TEST_F(FirmwareUploaderTest, TheSessionStopsItsUploadBeforeItsHandleGoes)
{
    QPointer<FirmwareUploader> upload
        = new FirmwareUploader(*harness.worker, write(v(2, 0, 0, 0), {{2, v(2, 0, 0, 0), 100000}}));
    upload->setWaits(0ms, 10000ms);
    harness.worker->adoptUpload(upload);
    ASSERT_TRUE(upload->start());
    ASSERT_TRUE(testsupport::waitFor([&] { return packets().size() >= 3; }));
    harness.worker.reset();
    EXPECT_TRUE(upload.isNull());
}

// At the recorder, the blocks of a whole-record write arrive at least 100 ms
// apart, firmware packets at least 20 ms apart: never sooner. How much later
// is no concern of this test.
TEST_F(FirmwareUploaderTest, ThePausesAreNeverShorterAtTheRecorder)
{
    QElapsedTimer clock;
    clock.start();
    std::map<qint32, std::vector<qint64>> arrivals;
    const auto answer = recorder.onFrame;
    recorder.onFrame = [&](const Frame &frame) {
        const bool block = frame.command == RemoteCommand::SetupWrite
                           && frame.param.words[0] == SetupRecordMap::WholeBlockCategory;
        if (block || frame.command == RemoteCommand::FirmwarePacket)
            arrivals[frame.command].push_back(clock.nsecsElapsed());
        answer(frame);
    };
    CWork &work = *harness.worker;
    // The test's quick keep-alive would keep the recorder's thread busy too.
    work.setKeepAliveInterval(CWork::KeepAliveIntervalMs);
    ASSERT_NE(work.writeWholeRecord(CWork::WholeRecord::Default, recorder.record), 0);
    ASSERT_TRUE(testsupport::waitFor([&] { return !work.transferRunning(); }));
    EXPECT_EQ(work.lastTransferOutcome(), CWork::TransferOutcome::Succeeded);
    pause = FirmwareUploader::PacketPause;
    const auto upload = run(write(v(2, 0, 0, 0), {{2, v(2, 0, 0, 0), 450}}));
    ASSERT_TRUE(upload);
    EXPECT_EQ(upload->outcome(), Outcome::Completed);

    const std::tuple<qint32, std::chrono::nanoseconds, std::size_t> kinds[] = {
        {RemoteCommand::SetupWrite, std::chrono::milliseconds(CWork::WholeRecordPauseMs), 6},
        // The header, five chunks, the end of the component and of the package.
        {RemoteCommand::FirmwarePacket, FirmwareUploader::PacketPause, 8},
    };
    for (const auto &[command, minimum, count] : kinds) {
        const std::vector<qint64> &times = arrivals[command];
        ASSERT_EQ(times.size(), count) << command;
        // Taken from first to last arrival, so that a moment the recorder's
        // thread lost before stamping one frame cannot make its neighbour's
        // gap look short. That thread looks for frames about every
        // millisecond (testsupport::waitFor), so the first may be stamped
        // that much late: 3 ms are allowed for it, and a pause cut by even
        // 5 % still shows.
        const qint64 stampLag = std::chrono::nanoseconds(3ms).count();
        EXPECT_GE(times.back() - times.front(), qint64(count - 1) * minimum.count() - stampLag)
            << command;
    }
}

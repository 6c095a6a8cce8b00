#include "firmware/FirmwareUploader.h"
#include "firmware/PackageBuilder.h"
#include "firmware/PacketWords.h"
#include "firmware/RecorderVersions.h"
#include "session/RemoteCommand.h"
#include "tests/TestSupport.h"
#include "tests/session/ScriptedRecorder.h"
#include "tests/session/SessionHarness.h"

#include <QFile>
#include <QPointer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using firmware::FirmwarePackage;
using firmware::FirmwareUploader;
using firmware::FirmwareVersion;
using firmware::PackageBuilder;
using firmware::RecorderVersions;
using session::Frame;
using Outcome = FirmwareUploader::Outcome;
using Words = std::array<quint32, 8>;
namespace W = firmware::PacketWords;

namespace {

const QString SentText = u"Updatefile transfer is completed. \n\rReboot the system to perform the "
                         u"update. \n\rThe Remote Setup is terminated."_s;
const QString SendErrorText = u"UPDATE ERROR!! Unable to send data.\nThe Remote Setup is "
                              u"terminated.\nPlease try to reconnect."_s;
const QString NoResponseText = u"No Response From The Set\nThe Remote Setup is terminated.\n"
                               u"Please try to reconnect."_s;
const QString BusyText = u"Update Impossible.\nDVR is performing an important task."_s;

constexpr FirmwareVersion v(quint8 a, quint8 b, quint8 c, quint8 d)
{
    return FirmwareVersion {{a, b, c, d}};
}

constexpr Words StopWords {W::Stop, 0, 0, 0, 0, 0, 0, 0};

// A logged-in session with a scripted recorder that answers the firmware
// packets like a recorder at 1.0.0.0 taking chunks of `chunkSize` bytes,
// unless a test puts its own `firmware` script in place.
class FirmwareUploaderTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        versions.overall = v(1, 0, 0, 0);
        versions.components.fill(v(1, 0, 0, 0));
        versions.model = "TEST-DVR";
        recorder.onFrame = [this](const Frame &frame) {
            if (frame.command != RemoteCommand::FirmwarePacket)
                recorder.answerAsRecorder(frame);
            else if (firmware)
                firmware(frame);
            else
                answer(frame);
        };
        harness.connect(recorder.port());
        ASSERT_TRUE(harness.waitForReady());
    }

    void answer(const Frame &frame)
    {
        if (frame.param.words[0] == W::Header)
            reply({W::HeaderReply, W::GoOn, W::VersionDataFollows, 0, chunkSize, 0, 0, 0},
                  versions.toBytes());
        else if (frame.param.words[0] == W::Data)
            reply({W::DataReply, W::Accepted, 0, 0, 0, 0, 0, 0});
    }

    void reply(const Words &words, const QByteArray &data = {})
    {
        PACKET_PARAM param;
        param.words = words;
        recorder.send(RemoteCommand::FirmwareReply, param, data);
    }

    FirmwarePackage write(const PackageBuilder &builder)
    {
        const QString path = dir.filePath(u"update.KRP"_s);
        QString error;
        EXPECT_TRUE(builder.write(path, &error)) << error.toStdString();
        FirmwarePackage::Fault fault;
        auto package = FirmwarePackage::open(path, &fault);
        EXPECT_TRUE(package);
        return package.value_or(FirmwarePackage());
    }

    std::unique_ptr<FirmwareUploader> uploader(const FirmwarePackage &package,
                                               std::chrono::milliseconds replyTimeout = 10s)
    {
        auto uploader = std::make_unique<FirmwareUploader>(*harness.worker, package);
        uploader->setWaits(0ms, replyTimeout);
        QObject::connect(uploader.get(), &FirmwareUploader::percentageChanged,
                         [this](int percent) { percentages.push_back(percent); });
        return uploader;
    }

    // Runs an upload to its end and reacts to its outcome as its owner does,
    // then makes sure that everything the client sent has reached the
    // recorder: frames keep their order, so once a clock request sent
    // afterwards has arrived, so has any stop packet.
    bool run(FirmwareUploader &uploader)
    {
        if (!uploader.start()
            || !testsupport::waitFor([&] { return bool(uploader.outcome()); }, 60000))
            return false;
        if (const QString text = FirmwareUploader::message(*uploader.outcome()); !text.isEmpty())
            harness.messages.append(text);
        if (FirmwareUploader::endsProgram(*uploader.outcome()))
            harness.exitCode = 0;
        const std::size_t requests = recorder.receivedWith(RemoteCommand::DateTime).size();
        harness.worker->dateTimeCommand(1, RecorderTime {});
        return testsupport::waitFor(
            [&] { return recorder.receivedWith(RemoteCommand::DateTime).size() > requests; });
    }

    std::vector<Frame> packets() const
    {
        return recorder.receivedWith(RemoteCommand::FirmwarePacket);
    }

    int uploadMessages() const
    {
        return int(std::count(harness.sessionMessages.begin(), harness.sessionMessages.end(),
                              int(SessionMessage::UploadRunning)));
    }

    ScriptedRecorder recorder;
    SessionHarness harness;
    QTemporaryDir dir;
    RecorderVersions versions;
    quint32 chunkSize = 100;
    std::function<void(const Frame &)> firmware;
    std::vector<int> percentages;
};

} // namespace

TEST_F(FirmwareUploaderTest, SendsEveryComponentInNumberedFlaggedChunks)
{
    // The recorder is at the package's version: every component goes, in
    // chunks of at most 100 bytes.
    PackageBuilder builder(v(1, 0, 0, 0));
    builder.setDataOffset(FirmwarePackage::HeaderSize + 16);
    builder.addGeneratedComponent(2, v(0, 1, 0, 0), 250);
    builder.addGeneratedComponent(0x1234, v(0, 0, 0, 0), 100);
    builder.addGeneratedComponent(16, v(0, 1, 0, 0), 40);
    const FirmwarePackage package = write(builder);
    auto upload = uploader(package);

    ASSERT_TRUE(run(*upload));

    EXPECT_EQ(upload->outcome(), Outcome::Completed);
    const std::vector<Frame> sent = packets();
    const std::vector<Words> expected {
        {W::Header, FirmwarePackage::HeaderSize + 16, 0, 0, 0, 0, 0, 0},
        {W::Data, 2, 0, 390, 250, 100, W::FirstChunk, 0},
        {W::Data, 2, 1, 390, 250, 100, W::LaterChunk, 0},
        {W::Data, 2, 2, 390, 250, 50, W::LaterChunk, 0},
        {W::Data, 2, 3, 390, 250, 0, W::EndOfComponent, 0},
        {W::Data, 0x1234, 4, 390, 100, 100, W::FirstChunk, 0},
        {W::Data, 0x1234, 5, 390, 100, 0, W::EndOfComponent, 0},
        {W::Data, 16, 6, 390, 40, 40, W::FirstChunk, 0},
        {W::Data, 16, 7, 390, 40, 0, W::EndOfComponent, 0},
        {W::Data, 16, 8, 390, 0, 0, W::EndOfPackage, 0},
    };
    ASSERT_EQ(sent.size(), expected.size());
    QByteArray data;
    for (std::size_t i = 0; i < sent.size(); ++i) {
        EXPECT_EQ(sent[i].param.words, expected[i]) << "packet " << i;
        EXPECT_EQ(sent[i].payload.size(), i == 0 ? FirmwarePackage::HeaderSize : expected[i][5])
            << "packet " << i;
        if (i > 0)
            data += sent[i].payload;
    }
    const QByteArray file = testsupport::readFile(package.path());
    EXPECT_EQ(sent[0].payload, file.first(FirmwarePackage::HeaderSize));
    EXPECT_EQ(data, file.sliced(package.dataOffset()));
    // Each advanced before its chunk went out: 100, 200, 250, 350, 390 of 390.
    EXPECT_EQ(percentages, (std::vector<int> {25, 51, 64, 89, 100}));
    EXPECT_EQ(upload->percentage(), 100);
    EXPECT_EQ(harness.messages, QStringList {SentText});
    EXPECT_EQ(harness.exitCode, 0);
    EXPECT_EQ(uploadMessages(), 2);
    EXPECT_FALSE(upload->start()) << "an uploader runs once";
}

TEST_F(FirmwareUploaderTest, OlderRecorderGetsOnlyTheNewerComponents)
{
    versions.components[1] = v(1, 5, 0, 0); // type 8
    PackageBuilder builder(v(2, 0, 0, 0));
    builder.addGeneratedComponent(2, v(1, 0, 0, 1), 30); // newer
    builder.addGeneratedComponent(8, v(1, 5, 0, 0), 70); // the same: skipped
    builder.addGeneratedComponent(0x4242, v(0, 0, 0, 1), 20); // unknown: sent
    const FirmwarePackage package = write(builder);
    auto upload = uploader(package);

    ASSERT_TRUE(run(*upload));

    EXPECT_EQ(upload->outcome(), Outcome::Completed);
    const std::vector<Frame> sent = packets();
    const std::vector<Words> expected {
        {W::Header, FirmwarePackage::HeaderSize, 0, 0, 0, 0, 0, 0},
        {W::Data, 2, 0, 50, 30, 30, W::FirstChunk, 0},
        {W::Data, 2, 1, 50, 30, 0, W::EndOfComponent, 0},
        {W::Data, 0x4242, 2, 50, 20, 20, W::FirstChunk, 0},
        {W::Data, 0x4242, 3, 50, 20, 0, W::EndOfComponent, 0},
        {W::Data, 0x4242, 4, 50, 0, 0, W::EndOfPackage, 0},
    };
    ASSERT_EQ(sent.size(), expected.size());
    for (std::size_t i = 0; i < sent.size(); ++i)
        EXPECT_EQ(sent[i].param.words, expected[i]) << "packet " << i;
    const QByteArray file = testsupport::readFile(package.path());
    EXPECT_EQ(sent[3].payload, file.sliced(package.components()[2].offset, 20));
}

TEST_F(FirmwareUploaderTest, NothingNewerSendsOnlyTheEndOfPackage)
{
    PackageBuilder builder(v(1, 0, 0, 1));
    builder.addGeneratedComponent(2, v(1, 0, 0, 0), 500);
    builder.addGeneratedComponent(0xF0010000, v(0, 9, 0, 0), 500);
    auto upload = uploader(write(builder));

    ASSERT_TRUE(run(*upload));

    EXPECT_EQ(upload->outcome(), Outcome::Completed);
    const std::vector<Frame> sent = packets();
    ASSERT_EQ(sent.size(), 2u);
    EXPECT_EQ(sent[1].param.words, (Words {W::Data, 0, 0, 0, 0, 0, W::EndOfPackage, 0}));
    EXPECT_EQ(harness.messages, QStringList {SentText});
    EXPECT_EQ(harness.exitCode, 0);
}

TEST_F(FirmwareUploaderTest, BusyRecorderKeepsTheProgramRunning)
{
    firmware = [this](const Frame &) {
        reply({W::HeaderReply, W::Busy, W::VersionDataFollows, 0, chunkSize, 0, 0, 0},
              versions.toBytes());
    };
    PackageBuilder builder(v(2, 0, 0, 0));
    builder.addGeneratedComponent(2, v(2, 0, 0, 0), 50);
    auto upload = uploader(write(builder));

    ASSERT_TRUE(run(*upload));

    EXPECT_EQ(upload->outcome(), Outcome::Busy);
    EXPECT_EQ(packets().size(), 1u);
    EXPECT_EQ(harness.messages, QStringList {BusyText});
    EXPECT_FALSE(harness.exitCode);
    EXPECT_EQ(uploadMessages(), 2);
}

TEST_F(FirmwareUploaderTest, HeaderReplyThatDoesNotGoOnEndsQuietly)
{
    struct Case
    {
        const char *what;
        Words words;
        qsizetype dataSize;
    };
    const Case cases[] = {
        {"word 0 not 1", {2, W::GoOn, 4, 0, 100, 0, 0, 0}, 54},
        {"declined", {1, W::Decline, 4, 0, 100, 0, 0, 0}, 54},
        {"unknown word 1", {1, 2, 4, 0, 100, 0, 0, 0}, 54},
        {"word 2 not 4", {1, W::GoOn, 3, 0, 100, 0, 0, 0}, 54},
        {"53 bytes of versions", {1, W::GoOn, 4, 0, 100, 0, 0, 0}, 53},
        {"no versions", {1, W::GoOn, 4, 0, 100, 0, 0, 0}, 0},
        {"chunk size 0", {1, W::GoOn, 4, 0, 0, 0, 0, 0}, 54},
        {"chunk size past a frame", {1, W::GoOn, 4, 0, 1024 * 1024 + 1, 0, 0, 0}, 258},
    };
    PackageBuilder builder(v(2, 0, 0, 0));
    builder.addGeneratedComponent(2, v(2, 0, 0, 0), 50);
    const FirmwarePackage package = write(builder);
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        recorder.received.clear();
        harness.messages.clear();
        firmware = [&](const Frame &) {
            reply(c.words, (versions.toBytes() + QByteArray(204, 'r')).first(c.dataSize));
        };
        auto upload = uploader(package);

        ASSERT_TRUE(run(*upload));

        EXPECT_EQ(upload->outcome(), Outcome::Declined);
        EXPECT_EQ(packets().size(), 1u) << "no stop packet either";
        EXPECT_TRUE(harness.messages.isEmpty());
        EXPECT_FALSE(harness.exitCode);
    }
}

TEST_F(FirmwareUploaderTest, MissingReplyStopsTheTransferAndEndsTheProgram)
{
    PackageBuilder builder(v(2, 0, 0, 0));
    builder.addGeneratedComponent(2, v(2, 0, 0, 0), 250);
    const FirmwarePackage package = write(builder);
    // Silent on the header, then silent on the second chunk.
    for (const std::size_t silentOn : {0u, 2u}) {
        SCOPED_TRACE(silentOn);
        recorder.received.clear();
        harness.messages.clear();
        harness.exitCode.reset();
        firmware = [&](const Frame &frame) {
            if (packets().size() - 1 != silentOn)
                answer(frame);
        };
        auto upload = uploader(package, 300ms);

        ASSERT_TRUE(run(*upload));

        EXPECT_EQ(upload->outcome(), Outcome::NoResponse);
        const std::vector<Frame> sent = packets();
        ASSERT_EQ(sent.size(), silentOn + 2);
        EXPECT_EQ(sent.back().param.words, StopWords);
        EXPECT_EQ(harness.messages, QStringList {NoResponseText});
        EXPECT_EQ(harness.exitCode, 0);
    }
}

TEST_F(FirmwareUploaderTest, RefusedChunkStopsTheTransferAndEndsTheProgram)
{
    firmware = [this](const Frame &frame) {
        if (frame.param.words[2] == 1 && frame.param.words[0] == W::Data)
            reply({W::DataReply, W::Refused, 0, 0, 0, 0, 0, 0});
        else
            answer(frame);
    };
    PackageBuilder builder(v(2, 0, 0, 0));
    builder.addGeneratedComponent(2, v(2, 0, 0, 0), 250);
    auto upload = uploader(write(builder));

    ASSERT_TRUE(run(*upload));

    EXPECT_EQ(upload->outcome(), Outcome::Refused);
    const std::vector<Frame> sent = packets();
    ASSERT_EQ(sent.size(), 4u); // header, chunks 0 and 1, stop
    EXPECT_EQ(sent.back().param.words, StopWords);
    EXPECT_EQ(harness.messages, QStringList {SendErrorText});
    EXPECT_EQ(harness.exitCode, 0);
}

TEST_F(FirmwareUploaderTest, CancelEndsAfterTheChunkOnItsWay)
{
    PackageBuilder builder(v(2, 0, 0, 0));
    builder.addGeneratedComponent(2, v(2, 0, 0, 0), 1000);
    auto upload = uploader(write(builder));
    firmware = [&](const Frame &frame) {
        if (frame.param.words[0] == W::Data)
            upload->cancel();
        answer(frame);
    };

    ASSERT_TRUE(run(*upload));

    EXPECT_EQ(upload->outcome(), Outcome::Canceled);
    EXPECT_EQ(packets().size(), 2u) << "the header and one chunk, no stop packet";
    EXPECT_EQ(upload->percentage(), 10);
    EXPECT_TRUE(harness.messages.isEmpty());
    EXPECT_FALSE(harness.exitCode);
    EXPECT_EQ(uploadMessages(), 2);
}

TEST_F(FirmwareUploaderTest, TheSessionStopsItsUploadBeforeItsHandleGoes)
{
    PackageBuilder builder(v(2, 0, 0, 0));
    builder.addGeneratedComponent(2, v(2, 0, 0, 0), 100000);
    QPointer<FirmwareUploader> upload = uploader(write(builder)).release();
    harness.worker->adoptUpload(upload);
    ASSERT_TRUE(upload->start());
    ASSERT_TRUE(testsupport::waitFor([&] { return packets().size() >= 3; }));
    harness.worker.reset();
    EXPECT_TRUE(upload.isNull());
}

TEST_F(FirmwareUploaderTest, PackageFileFaultsStopTheTransferAndEndTheProgram)
{
    struct Case
    {
        const char *what;
        std::function<void(const QString &path)> change;
        Outcome outcome;
        QString message;
    };
    const Case cases[] = {
        {"file cut short", [](const QString &path) { QFile::resize(path, 3072 + 150); },
         Outcome::SizeIncorrect,
         u"UPDATE ERROR!! File size is incorrect.\nThe Remote Setup is terminated.\nPlease try "
         u"to reconnect."_s},
        {"file gone", [](const QString &path) { QFile::remove(path); }, Outcome::ReadFailed,
         u"UPDATE ERROR!! Unable to read file.\nThe Remote Setup is terminated.\nPlease try to "
         u"reconnect."_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        recorder.received.clear();
        harness.messages.clear();
        harness.exitCode.reset();
        PackageBuilder builder(v(2, 0, 0, 0));
        builder.addGeneratedComponent(2, v(2, 0, 0, 0), 250);
        const FirmwarePackage package = write(builder);
        // The package was checked when it was chosen; it changes afterwards.
        c.change(package.path());
        auto upload = uploader(package);

        ASSERT_TRUE(run(*upload));

        EXPECT_EQ(upload->outcome(), c.outcome);
        ASSERT_FALSE(packets().empty());
        EXPECT_EQ(packets().back().param.words, StopWords);
        EXPECT_EQ(harness.messages, QStringList {c.message});
        EXPECT_EQ(harness.exitCode, 0);
    }
}

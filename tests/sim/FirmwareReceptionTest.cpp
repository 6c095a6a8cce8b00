// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/FirmwareReception.h"

#include "firmware/PackageBuilder.h"
#include "firmware/RecorderVersions.h"
#include "setup/FactoryDefaults.h"
#include "setup/LittleEndian.h"
#include "setup/SetupRecordMap.h"
#include "sim/SectionRights.h"
#include "sim/UserAccounts.h"
#include "tests/firmware/UploadPackets.h"
#include "tests/sim/SimFixture.h"

#include <QDir>

using namespace Qt::StringLiterals;
using firmware::FirmwarePackage;
using firmware::FirmwareVersion;
using firmware::PackageBuilder;
using firmware::RecorderVersions;
using session::Frame;
using Words = std::array<quint32, 8>;
namespace W = firmware::PacketWords;

namespace {

constexpr quint32 ChunkSize = 128;
constexpr Words Refused {W::DataReply, W::Refused, 0, 0, 0, 0, 0, 0};

// Version 2.0.0.0, data 100 bytes after the header, components of 300 and
// 100 bytes.
QByteArray packageBytes()
{
    PackageBuilder builder(FirmwareVersion {{2, 0, 0, 0}});
    builder.setDataOffset(FirmwarePackage::HeaderSize + 100);
    builder.addGeneratedComponent(2, FirmwareVersion {{2, 0, 0, 0}}, 300);
    builder.addGeneratedComponent(0x77, FirmwareVersion {{1, 0, 0, 0}}, 100);
    return builder.build();
}

class FirmwareReceptionTest : public SimFixture
{
protected:
    FirmwareReceptionTest()
    {
        options.firmwareDir = firmwareDir();
        options.chunkSize = ChunkSize;
    }

    QString firmwareDir() const { return recordPath() + u".firmware"_s; }
    QStringList kept() const { return QDir(firmwareDir()).entryList(QDir::Files | QDir::Hidden); }

    static std::optional<Frame> send(FramePeer &client, const UploadPacket &packet)
    {
        return client.request(RemoteCommand::FirmwarePacket, packet.param, packet.payload);
    }

    // Sends every packet, expecting each accepted; the versions the reply
    // to the header carries.
    static std::optional<RecorderVersions> sendAll(FramePeer &client,
                                                   const std::vector<UploadPacket> &packets)
    {
        std::optional<RecorderVersions> versions;
        for (std::size_t i = 0; i < packets.size(); ++i) {
            const auto reply = send(client, packets[i]);
            if (!reply) {
                ADD_FAILURE() << "no reply to packet " << i;
                break;
            }
            const Words expected
                = i == 0 ? Words {W::HeaderReply, W::GoOn, W::VersionDataFollows, 0, ChunkSize}
                         : Words {W::DataReply, W::Accepted};
            EXPECT_EQ(reply->param.words, expected) << "packet " << i;
            if (i == 0)
                versions = RecorderVersions::fromBytes(reply->payload);
        }
        return versions;
    }
};

} // namespace

TEST_F(FirmwareReceptionTest, ReceivedPackageIsKeptAndItsVersionReportedFromThenOn)
{
    const QByteArray bytes = packageBytes();
    const qsizetype dataOffset = FirmwarePackage::HeaderSize + 100;
    const QByteArray head = bytes.first(dataOffset);
    // Components the client skipped are simply not in the kept file.
    const struct
    {
        const char *what;
        std::vector<bool> send;
        QByteArray kept;
    } cases[] = {
        {"everything", {true, true}, bytes},
        {"the second only", {false, true}, head + bytes.sliced(dataOffset + 300)},
        {"nothing", {false, false}, head},
    };
    options.softwareVersion = {3, 4, 5, 6};
    options.channels = 8;
    ASSERT_TRUE(start());
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        QDir(firmwareDir()).removeRecursively();
        auto client = admin();

        const auto versions = sendAll(*client, uploadPackets(packageBytes(), ChunkSize, c.send));

        // The version of the package received before, from then on.
        ASSERT_TRUE(versions);
        const FirmwareVersion before
            = &c == cases ? FirmwareVersion {{3, 4, 5, 6}} : FirmwareVersion {{2, 0, 0, 0}};
        EXPECT_EQ(versions->overall, before);
        for (const FirmwareVersion &component : versions->components)
            EXPECT_EQ(component, versions->overall);
        EXPECT_EQ(versions->model, "SIM-DVR 8CH");
        EXPECT_EQ(kept(), QStringList {u"firmware-2.0.0.0.KRP"_s});
        EXPECT_EQ(testsupport::readFile(firmwareDir() + u"/firmware-2.0.0.0.KRP"_s), c.kept);
        EXPECT_EQ(storedRecord().sliced(setup::SetupRecordMap::SoftwareVersionOffset, 4),
                  QByteArray("\x02\0\0\0", 4));
    }
}

// A faulty packet is refused; a stop packet (unanswered) or a hang-up ends
// the transfer too. Whatever ends it, nothing is kept and the next packet
// is refused.
TEST_F(FirmwareReceptionTest, AFaultyPacketAStopOrAHangUpDropsTheTransfer)
{
    // Packets: 0 header | 1-3 chunks of component 0 | 4 its end | 5 chunk of
    // component 1 | 6 its end | 7 end of package.
    // Each case sets words of one packet; an extra byte grows its payload,
    // a cleared one empties it.
    enum Payload { Same, Extra, Cleared, HangUp };
    const struct
    {
        const char *what;
        std::size_t index;
        std::vector<std::pair<int, quint32>> words;
        Payload payload;
    } cases[] = {
        {"number skips", 2, {{2, 2}}, Same},
        {"length word differs", 1, {{5, 127}}, Same},
        {"chunk above the chunk size", 1, {{5, 129}}, Extra},
        {"later chunk first", 1, {{6, W::LaterChunk}}, Same},
        {"first chunk twice", 2, {{6, W::FirstChunk}}, Same},
        {"type not in the table", 1, {{1, 99}}, Same},
        {"size not in the table", 1, {{4, 301}}, Same},
        {"chunk past the component", 3, {{5, 45}}, Extra},
        {"total changes", 2, {{3, 401}}, Same},
        {"unknown flag", 1, {{6, 7}}, Same},
        {"unknown packet kind", 1, {{0, 3}}, Same},
        {"component ends early", 3, {{5, 0}, {6, W::EndOfComponent}}, Cleared},
        {"package ends inside a component", 3, {{4, 0}, {5, 0}, {6, W::EndOfPackage}}, Cleared},
        {"stop packet", 2, {{0, W::Stop}}, Cleared},
        {"hang-up", 2, {}, HangUp},
    };
    ASSERT_TRUE(start());
    const auto packets = uploadPackets(packageBytes(), ChunkSize, {true, true});
    ASSERT_EQ(packets.size(), 8u);
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        auto client = admin();
        sendAll(*client, {packets.begin(), packets.begin() + qsizetype(c.index)});
        UploadPacket faulty = packets[c.index];
        for (const auto &[word, value] : c.words)
            faulty.param.words[word] = value;
        if (c.payload == Extra)
            faulty.payload += 'x';
        else if (c.payload == Cleared)
            faulty.payload.clear();

        const bool stop = faulty.param.words[0] == W::Stop;
        if (c.payload == HangUp) {
            client->close();
            ASSERT_TRUE(testsupport::waitFor([&] { return server->sessionCount() == 0; }));
        } else if (stop) {
            client->send(RemoteCommand::FirmwarePacket, faulty.param);
        } else {
            const auto refusal = send(*client, faulty);
            ASSERT_TRUE(refusal);
            EXPECT_EQ(refusal->param.words, Refused);
        }
        if (c.payload != HangUp) {
            const auto after = send(*client, packets[c.index]);
            ASSERT_TRUE(after);
            EXPECT_EQ(after->param.words, Refused) << "the transfer is gone";
            // Answers are numbered: two for the login, one for each packet
            // sent before; none for a stop.
            EXPECT_EQ(after->sequence, 2 + c.index + (stop ? 0 : 1));
        }
        EXPECT_TRUE(kept().isEmpty()) << kept().join(u' ').toStdString();
    }
    EXPECT_EQ(storedRecord().sliced(setup::SetupRecordMap::SoftwareVersionOffset, 4),
              QByteArray("\x01\0\0\0", 4));
}

TEST_F(FirmwareReceptionTest, OnlyAnAccountWithTheUpgradeRightMayUpgrade)
{
    // User1 may log in over the network; User2 may also upgrade.
    QByteArray record = setup::FactoryDefaults::record();
    const quint32 upgrade = 1u << sim::SectionRights::UpgradeSoftware;
    nelib::LittleEndian::setU32(record, 172 + 4 * 4, sim::UserAccounts::NetworkAccess);
    nelib::LittleEndian::setU32(record, 172 + 4 * 5, sim::UserAccounts::NetworkAccess | upgrade);
    testsupport::writeFile(recordPath(), record);
    ASSERT_TRUE(start());
    const auto packets = uploadPackets(packageBytes(), ChunkSize, {true, true});

    auto user1 = connect();
    ASSERT_EQ(user1->login("User1", "").words[0], 1u);
    const auto declined = send(*user1, packets[0]);
    ASSERT_TRUE(declined);
    EXPECT_EQ(declined->param.words[1], W::Decline);
    const auto refused = send(*user1, packets[1]);
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->param.words, Refused);

    auto user2 = connect();
    ASSERT_EQ(user2->login("User2", "").words[0], 1u);
    sendAll(*user2, packets);
    EXPECT_EQ(kept(),
              QStringList {sim::FirmwareReception::fileName(FirmwareVersion {{2, 0, 0, 0}})});
}

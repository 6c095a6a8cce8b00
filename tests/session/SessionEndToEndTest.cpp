#include "session/CWork.h"
#include "setup/FactoryDefaults.h"
#include "setup/LittleEndian.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"
#include "tests/session/SessionHarness.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using setup::Section;
using setup::SetupRecordMap;
using testsupport::waitFor;

namespace {

constexpr int User1 = 4;

QByteArray recordWithoutNetworkAccessFor(int account)
{
    QByteArray record = setup::FactoryDefaults::record();
    nelib::LittleEndian::setU32(record, 172 + 4 * account, 0);
    return record;
}

} // namespace

TEST(SessionEndToEnd, EachRefusalOfTheRecorderShowsItsMessage)
{
    struct Case
    {
        const char *what;
        QStringList simArguments;
        QByteArray user;
        QString message;
    };
    const Case cases[] = {
        {"unknown account", {}, "Somebody", u"Login failed"_s},
        {"wrong password", {}, "Admin", u"Login failed by password error"_s},
        {"no network access", {}, "User1", u"Login failed by authority error"_s},
        {"refused", {u"--refuse-login"_s, u"3"_s}, "Admin", u"Login failed"_s},
        {"former user", {u"--refuse-login"_s, u"6"_s}, "Admin", u"Login failed by former user"_s},
        {"menu operation",
         {u"--refuse-login"_s, u"7"_s},
         "Admin",
         u"Login failed by menu operation"_s},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        SimProcess sim(c.simArguments, recordWithoutNetworkAccessFor(User1));
        ASSERT_TRUE(sim.isRunning());
        SessionHarness harness;
        harness.connect(sim.port(), c.user, QByteArray(c.what) == "wrong password" ? "x" : "");
        ASSERT_TRUE(waitFor([&] { return !harness.sessionMessages.empty(); }));
        EXPECT_EQ(harness.messages, QStringList {c.message});
        EXPECT_EQ(harness.worker->state(), CWork::Idle);
    }
}

TEST(SessionEndToEnd, TooManyUsersAreRefused)
{
    SimProcess sim({u"--max-users"_s, u"1"_s});
    ASSERT_TRUE(sim.isRunning());
    SessionHarness first;
    first.connect(sim.port());
    ASSERT_TRUE(first.waitForReady());
    SessionHarness second;
    second.connect(sim.port(), "Manager1");
    ASSERT_TRUE(waitFor([&] { return !second.sessionMessages.empty(); }));
    EXPECT_EQ(second.messages, QStringList {u"Login failed by exceeding maximum user"_s});
}

TEST(SessionEndToEnd, ASavedSectionIsStoredAndSeenAfterReconnecting)
{
    SimProcess sim;
    ASSERT_TRUE(sim.isRunning());
    QByteArray camera(768, '\0');
    camera.replace(0, 9, "Loading 1");
    {
        SessionHarness harness;
        CWork &work = harness.connect(sim.port());
        ASSERT_TRUE(harness.waitForReady());
        EXPECT_EQ(work.mirror(), sim.storedRecord());
        ASSERT_NE(work.writeSection(Section::Camera, camera), 0);
        ASSERT_TRUE(waitFor([&] { return !harness.messages.isEmpty(); }));
        EXPECT_EQ(harness.messages, QStringList {u"Complete Save   \t"_s});
        EXPECT_EQ(sim.storedRecord().sliced(1300, 768), camera);
    }
    SessionHarness again;
    CWork &work = again.connect(sim.port());
    ASSERT_TRUE(again.waitForReady());
    EXPECT_EQ(work.mirror().sliced(1300, 768), camera);
}

TEST(SessionEndToEnd, WholeRecordIsStoredOnlyByTheCommit)
{
    SimProcess sim;
    ASSERT_TRUE(sim.isRunning());
    const QByteArray before = sim.storedRecord();
    QByteArray record = before;
    for (qsizetype i = SetupRecordMap::HeaderSize; i < record.size(); i += 97)
        record[i] = char(record[i] ^ 0x5A);

    // Blocks sent without their commit are dropped with the session.
    {
        SessionHarness harness;
        CWork &work = harness.connect(sim.port());
        ASSERT_TRUE(harness.waitForReady());
        ASSERT_NE(work.writeWholeRecord(record), 0);
        ASSERT_TRUE(waitFor([&] { return harness.messages.size() == 6; }));
        EXPECT_EQ(sim.storedRecord(), before);
    }
    SessionHarness harness;
    CWork &work = harness.connect(sim.port());
    ASSERT_TRUE(harness.waitForReady());
    EXPECT_EQ(work.mirror(), before);

    work.beginImport();
    ASSERT_NE(work.writeWholeRecord(record), 0);
    ASSERT_TRUE(waitFor([&] { return !harness.messages.isEmpty(); }));
    EXPECT_EQ(harness.messages, QStringList {u"Import Success"_s});
    QByteArray expected = record;
    expected.replace(0, SetupRecordMap::HeaderSize, before.first(SetupRecordMap::HeaderSize));
    EXPECT_EQ(sim.storedRecord(), expected);
}

TEST(SessionEndToEnd, KeepAliveNoticesAKilledRecorderAndEndsTheProgram)
{
    SimProcess sim;
    ASSERT_TRUE(sim.isRunning());
    SessionHarness harness;
    harness.connect(sim.port());
    ASSERT_TRUE(harness.waitForReady());
    sim.kill();
    ASSERT_TRUE(
        waitFor([&] { return harness.exitCode.has_value(); }, 3 * CWork::KeepAliveIntervalMs));
    EXPECT_EQ(harness.exitCode, 0);
    EXPECT_EQ(harness.messages.size(), 1);
}

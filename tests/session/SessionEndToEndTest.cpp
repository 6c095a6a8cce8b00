#include "session/CWork.h"
#include "tests/SimProcess.h"
#include "tests/TestSupport.h"
#include "tests/session/SessionHarness.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using setup::Section;
using setup::SetupRecordMap;
using testsupport::waitFor;

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

#include "session/ConnectingWait.h"
#include "tests/TestSupport.h"

#include <QObject>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace std::chrono_literals;
using testsupport::waitFor;

namespace {

struct Recorded
{
    std::vector<std::string> hooks;

    ConnectingWait::Hooks make()
    {
        return {[this] { hooks.push_back("locked"); }, [this] { hooks.push_back("arrived"); },
                [this] { hooks.push_back("failed"); },
                [this] {
                    hooks.push_back("timed out");
                }};
    }
};

} // namespace

TEST(ConnectingWait, DecidesByTheWorkersWords)
{
    const struct
    {
        const char *what;
        int state;
        int setupReceived;
        bool workerAlive;
        int rounds;
        bool arrivesAfterLocking;
        std::vector<std::string> expected;
    } cases[] = {
        {"failed worker", 7, 0, true, 300, false, {"failed"}},
        {"idle worker", 0, 0, true, 300, false, {"failed"}},
        {"record arrived", 4, 1, true, 300, false, {"arrived"}},
        {"no worker", 1, 0, false, 300, false, {"timed out"}},
        {"rounds spent", 3, 0, true, 40, false, {"locked", "timed out"}},
        {"short wait never locks", 3, 0, true, 20, false, {"timed out"}},
        {"record after the lock", 3, 0, true, 300, true, {"locked", "arrived"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        auto status = std::make_shared<SessionStatus>();
        status->state = c.state;
        status->setupReceived = c.setupReceived;
        status->workerAlive = c.workerAlive;
        QObject context;
        Recorded recorded;
        ConnectingWait wait(&context, status, recorded.make(), c.rounds, 1ms);
        if (c.arrivesAfterLocking) {
            ASSERT_TRUE(waitFor([&] { return !recorded.hooks.empty(); }));
            status->state = 4;
            status->setupReceived = 1;
        }
        ASSERT_TRUE(waitFor([&] { return wait.isFinished(); }));
        ASSERT_TRUE(waitFor([&] { return recorded.hooks.size() == c.expected.size(); }));
        EXPECT_EQ(recorded.hooks, c.expected);
    }
}

TEST(ConnectingWait, StoppingEndsItWithoutADecision)
{
    auto status = std::make_shared<SessionStatus>();
    status->state = 1;
    QObject context;
    Recorded recorded;
    {
        ConnectingWait wait(&context, status, recorded.make(), 300, 10s);
        wait.stop();
        ASSERT_TRUE(waitFor([&] { return wait.isFinished(); }, 2000));
    }
    waitFor([] { return false; }, 50);
    EXPECT_TRUE(recorded.hooks.empty());
}

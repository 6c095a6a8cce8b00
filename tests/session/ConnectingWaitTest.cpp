// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/ConnectingWait.h"
#include "tests/TestSupport.h"

#include <QObject>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace std::chrono_literals;
using testsupport::waitFor;

// Stopping ends it without a decision.
TEST(ConnectingWait, DecidesByTheWorkersWords)
{
    enum Then { Nothing, Arrives, Stop };
    const struct
    {
        const char *what;
        int state;
        int setupReceived;
        bool workerAlive;
        int rounds;
        Then then;
        std::vector<std::string> expected;
    } cases[] = {
        {"failed worker", 7, 0, true, 300, Nothing, {"failed"}},
        {"idle worker", 0, 0, true, 300, Nothing, {"failed"}},
        {"record arrived", 4, 1, true, 300, Nothing, {"arrived"}},
        {"no worker", 1, 0, false, 300, Nothing, {"timed out"}},
        {"rounds spent", 3, 0, true, 40, Nothing, {"locked", "timed out"}},
        {"short wait never locks", 3, 0, true, 20, Nothing, {"timed out"}},
        {"record after the lock", 3, 0, true, 300, Arrives, {"locked", "arrived"}},
        {"stopped", 1, 0, true, 300, Stop, {}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        auto status = std::make_shared<SessionStatus>();
        status->state = c.state;
        status->setupReceived = c.setupReceived;
        status->workerAlive = c.workerAlive;
        QObject context;
        std::vector<std::string> hooks;
        const auto note = [&](const char *hook) {
            return [&hooks, hook] {
                hooks.push_back(hook);
            };
        };
        {
            ConnectingWait wait(
                &context, status,
                {note("locked"), note("arrived"), note("failed"), note("timed out")}, c.rounds,
                c.then == Stop ? 10000ms : 1ms);
            if (c.then == Stop)
                wait.stop();
            if (c.then == Arrives) {
                ASSERT_TRUE(waitFor([&] { return !hooks.empty(); }));
                status->state = 4;
                status->setupReceived = 1;
            }
            ASSERT_TRUE(waitFor([&] { return wait.isFinished(); }, c.then == Stop ? 2000 : 10000));
            ASSERT_TRUE(waitFor([&] { return hooks.size() == c.expected.size(); }));
        }
        waitFor([] { return false; }, c.then == Stop ? 50 : 0);
        EXPECT_EQ(hooks, c.expected);
    }
}

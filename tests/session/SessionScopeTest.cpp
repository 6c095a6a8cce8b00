// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/SessionScope.h"
#include "session/MessageSink.h"
#include "session/ProgramExit.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

struct RecordingSink : MessageSink
{
    QStringList shown;
    void showMessage(const QString &text) override { shown << text; }
};

} // namespace

// A thread that installed nothing uses the main thread's sink and exit hook;
// a fleet's session, in a scope of its own, hears only its own and ends only
// itself, and the main thread's are in use again once it leaves.
TEST(SessionScope, MessagesAndExitsGoToTheCallersScopeElseToTheMainThreads)
{
    RecordingSink mainSink;
    std::vector<int> mainExits;
    MessageSink::install(&mainSink);
    const ProgramExit::Hook previous
        = ProgramExit::install([&](int code) { mainExits.push_back(code); });

    std::thread([] {
        MessageSink::show(u"from a worker"_s);
        ProgramExit::exitProgram(3);
    }).join();

    RecordingSink ownSink;
    std::vector<int> ownExits;
    SessionScope scope;
    SessionScope *outer = SessionScope::enter(&scope);
    MessageSink::install(&ownSink);
    ProgramExit::install([&](int code) { ownExits.push_back(code); });
    MessageSink::show(u"from a session"_s);
    ProgramExit::exitProgram(4);
    SessionScope::enter(outer);
    MessageSink::show(u"from the main thread"_s);
    ProgramExit::exitProgram(5);

    std::thread([] {
        RecordingSink threadSink;
        MessageSink::install(&threadSink);
        MessageSink::show(u"kept by its thread"_s);
        EXPECT_EQ(threadSink.shown, QStringList {u"kept by its thread"_s});
    }).join();
    MessageSink::show(u"after the thread's sink went"_s);

    EXPECT_EQ(mainSink.shown, (QStringList {u"from a worker"_s, u"from the main thread"_s,
                                            u"after the thread's sink went"_s}));
    EXPECT_EQ(mainExits, (std::vector<int> {3, 5}));
    EXPECT_EQ(ownSink.shown, QStringList {u"from a session"_s});
    EXPECT_EQ(ownExits, std::vector<int> {4});
    ProgramExit::install(previous);
    MessageSink::install(nullptr);
}

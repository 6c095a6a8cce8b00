// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/MessageSink.h"

#include "session/SessionScope.h"

#include <QCoreApplication>
#include <QThread>

#include <atomic>

namespace {

// A thread (or a fleet's fiber, see SessionScope) that installed a sink uses
// its own; any other thread uses the one installed on the application's main
// thread.
std::atomic<MessageSink *> s_mainSink {nullptr};

bool onMainThread()
{
    const QCoreApplication *app = QCoreApplication::instance();
    return !app || QThread::currentThread() == app->thread();
}

} // namespace

MessageSink::~MessageSink()
{
    SessionScope &scope = SessionScope::current();
    if (scope.sink == this)
        scope.sink = nullptr;
    MessageSink *self = this;
    s_mainSink.compare_exchange_strong(self, nullptr);
}

MessageSink *MessageSink::instance()
{
    const SessionScope &scope = SessionScope::current();
    return scope.sinkInstalled ? scope.sink : s_mainSink.load();
}

void MessageSink::install(MessageSink *sink)
{
    SessionScope &scope = SessionScope::current();
    scope.sink = sink;
    scope.sinkInstalled = true;
    if (onMainThread())
        s_mainSink.store(sink);
}

void MessageSink::show(const QString &text)
{
    if (MessageSink *sink = instance())
        sink->showMessage(text);
}

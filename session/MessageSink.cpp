// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/MessageSink.h"

#include <QCoreApplication>
#include <QThread>

#include <atomic>

namespace {

// A thread that installed a sink uses its own; any other thread uses the one
// installed on the application's main thread. Sessions of the command line's
// fleets run one per thread, each with its own sink.
std::atomic<MessageSink *> s_mainSink {nullptr};
thread_local MessageSink *t_sink = nullptr;
thread_local bool t_installed = false;

bool onMainThread()
{
    const QCoreApplication *app = QCoreApplication::instance();
    return !app || QThread::currentThread() == app->thread();
}

} // namespace

MessageSink::~MessageSink()
{
    if (t_sink == this)
        t_sink = nullptr;
    MessageSink *self = this;
    s_mainSink.compare_exchange_strong(self, nullptr);
}

MessageSink *MessageSink::instance()
{
    return t_installed ? t_sink : s_mainSink.load();
}

void MessageSink::install(MessageSink *sink)
{
    t_sink = sink;
    t_installed = true;
    if (onMainThread())
        s_mainSink.store(sink);
}

void MessageSink::show(const QString &text)
{
    if (MessageSink *sink = instance())
        sink->showMessage(text);
}

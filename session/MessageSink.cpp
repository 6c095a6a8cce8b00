#include "session/MessageSink.h"

#include <atomic>

namespace {
std::atomic<MessageSink *> s_sink {nullptr};
}

MessageSink::~MessageSink()
{
    MessageSink *self = this;
    s_sink.compare_exchange_strong(self, nullptr);
}

MessageSink *MessageSink::instance()
{
    return s_sink.load();
}

void MessageSink::install(MessageSink *sink)
{
    s_sink.store(sink);
}

void MessageSink::show(const QString &text)
{
    if (MessageSink *sink = s_sink.load())
        sink->showMessage(text);
}

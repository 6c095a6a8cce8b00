// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

// Where the session's OK-only messages go: the window shows a modal message
// box, the command line prints the text, tests record it. Texts arrive
// already translated.
class MessageSink
{
public:
    virtual ~MessageSink();
    virtual void showMessage(const QString &text) = 0;

    // The sink in use on the calling thread: the one this thread installed,
    // else the main thread's; null when there is none (messages are then
    // dropped).
    static MessageSink *instance();
    static void install(MessageSink *sink);
    // Shows `text` through the installed sink, if any.
    static void show(const QString &text);
};

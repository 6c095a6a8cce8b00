// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/session/FramePeer.h"

#include <QObject>
#include <QTcpServer>

#include <array>

// A recorder whose every answer the test controls, on 127.0.0.1 in the
// test's own thread. By default it answers like a healthy recorder: the
// opening exchange, login code `loginCode`, the setup record `record` and
// the clock `time`; a test replaces `onFrame` to script anything else, or
// clears it to script every byte itself.
class ScriptedRecorder
    : public QObject
    , public FramePeer
{
    Q_OBJECT

public:
    ScriptedRecorder();

    quint16 port() const { return m_server.serverPort(); }
    bool hasClient() const { return m_hasClient; }
    bool clientConnected() const { return isConnected(); }
    void closeClient() { close(); }

    // Answers the default script gives.
    qint32 loginCode = 1;
    quint8 channels = 16;
    quint8 video = 0;
    QByteArray record;
    std::array<quint16, 4> answerValues {16, 4, 4, 1};
    std::array<quint32, 6> time {2026, 11, 21, 12, 30, 15};

    void answerAsRecorder(const session::Frame &frame);

private:
    QTcpServer m_server;
    bool m_hasClient = false;
};

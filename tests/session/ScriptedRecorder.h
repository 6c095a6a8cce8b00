#pragma once

#include "session/Frame.h"
#include "session/FrameReader.h"

#include <QObject>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>
#include <vector>

// A recorder whose every answer the test controls, on 127.0.0.1 in the
// test's own thread. By default it answers like a healthy recorder: the
// opening exchange, login code `loginCode`, the setup record `record` and
// the clock `time`; a test replaces `onFrame` to script anything else.
class ScriptedRecorder : public QObject
{
    Q_OBJECT

public:
    ScriptedRecorder();

    quint16 port() const { return m_server.serverPort(); }
    bool hasClient() const { return m_client != nullptr; }
    bool clientConnected() const
    {
        return m_client && m_client->state() == QAbstractSocket::ConnectedState;
    }

    void send(qint32 command, const PACKET_PARAM &param = {}, QByteArrayView payload = {});
    void sendRaw(const QByteArray &bytes);
    void closeClient();

    // Frames received so far, in order, OPEN included.
    std::vector<session::Frame> received;
    std::vector<session::Frame> receivedWith(qint32 command) const;

    // Answers the default script gives.
    qint32 loginCode = 1;
    quint8 channels = 16;
    quint8 video = 0;
    QByteArray record;
    std::array<quint16, 4> answerValues {16, 4, 4, 1};
    std::array<quint32, 6> time {2026, 11, 21, 12, 30, 15};

    std::function<void(const session::Frame &)> onFrame;
    void answerAsRecorder(const session::Frame &frame);

private:
    QTcpServer m_server;
    QPointer<QTcpSocket> m_client;
    session::FrameReader m_reader;
    quint32 m_sequence = 0;
};

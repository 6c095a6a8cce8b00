#pragma once

#include "session/Frame.h"
#include "session/FrameReader.h"

#include <QByteArray>
#include <QTcpSocket>

#include <deque>
#include <optional>

// A bare protocol client for driving a recorder frame by frame. Its waits run
// the event loop, so a recorder in the same thread keeps serving meanwhile.
class FrameClient
{
public:
    static constexpr int WaitMs = 60000;

    explicit FrameClient(quint16 port);

    bool waitConnected();
    void send(qint32 command, const PACKET_PARAM &param = {}, QByteArrayView payload = {});
    void sendRaw(QByteArrayView bytes);

    // The next frame from the recorder; nothing when the connection closed
    // or nothing came in time.
    std::optional<session::Frame> next();
    // A frame that has already arrived, without waiting.
    std::optional<session::Frame> take();
    bool waitClosed();
    bool isClosed() const { return m_socket.state() == QAbstractSocket::UnconnectedState; }

    // The opening exchange and a login; the login answer's parameter, or
    // nothing when an answer is missing.
    std::optional<PACKET_PARAM> login(QByteArrayView memberId, QByteArrayView password);
    // Sends and returns the answer.
    std::optional<session::Frame> request(qint32 command, const PACKET_PARAM &param = {},
                                          QByteArrayView payload = {});
    // A setup write (or commit) and the word of its acknowledgement; -1 without one.
    qint64 write(quint32 category, quint32 offset, QByteArrayView bytes);
    qint64 commit();
    // The record of a setup answer; empty without one.
    QByteArray setupRecord();

    void disconnect() { m_socket.disconnectFromHost(); }

private:
    void readAvailable();

    QTcpSocket m_socket;
    session::FrameReader m_reader;
    std::deque<session::Frame> m_frames;
    quint32 m_sequence = 0;
};

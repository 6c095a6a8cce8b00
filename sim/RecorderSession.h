// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/Frame.h"
#include "session/FrameReader.h"
#include "session/PacketParam.h"
#include "sim/FirmwareReception.h"
#include "sim/RecorderServer.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QObject>
#include <QTimer>

#include <deque>
#include <vector>

class QTcpSocket;

namespace sim {

// One client connection to a recorder: frames in, answers out, in order.
// Answers wait in a queue, because --delay-ms holds every answer back and an
// acknowledgement of a change waits for the record to be saved; nothing
// overtakes them. A session lives on one of the session threads; once its
// connection is gone it tells the server and deletes itself.
class RecorderSession : public QObject
{
    Q_OBJECT
public:
    // Takes ownership of `socket`; the connection closes unless logged in by
    // `loginBy`.
    RecorderSession(QTcpSocket *socket, RecorderServer *server, int id, QDeadlineTimer loginBy);

    QHostAddress peerAddress() const;
    // Closes the connection at once, answers unsent.
    void drop(const QString &reason);
    // A save has settled changes of this session: what waited for them goes.
    void changesSettled();

private:
    struct Answer
    {
        qint32 command;
        PACKET_PARAM param;
        QByteArray payload;
        QDeadlineTimer due;
        // An answer whose word `savedWord` the save of this change decides.
        RecorderServer::ChangeTicket change;
        int savedWord;
    };

    void readFrames();
    // How many bytes of input to take next; -1 when the connection is dropped.
    qint64 nextPiece();
    void handle(const session::Frame &frame);
    bool inputHeld() const { return m_outputFull || m_loginHeld; }
    // Holds a login back while its address is being slowed down.
    void holdLogin(const QByteArray &payload);
    void releaseLogin();
    void checkHeldLogin();
    void login(const QByteArray &payload);
    void answersWritten();
    quint32 accountRights() const;
    bool mayUse(int right) const;
    void sendSetup();
    void dateTime(const PACKET_PARAM &param);
    void setupWrite(const session::Frame &frame);
    void commit();
    void acknowledge(bool applied);
    void acknowledgeWhenSaved(RecorderServer::ChangeTicket change);
    void firmwarePacket(const session::Frame &frame);

    void answer(qint32 command, const PACKET_PARAM &param, const QByteArray &payload = {},
                RecorderServer::ChangeTicket change = {}, int savedWord = 0);
    void sendDueAnswers();
    // Reads nothing more and closes once every answer so far is out.
    void closeAfterAnswers(const QString &reason);
    void end();
    void log(const QString &text) const;

    QTcpSocket *m_socket;
    RecorderServer *m_server;
    const int m_id;
    session::FrameReader m_reader;
    quint32 m_sequence = 0; // of the frames this side sent
    int m_framesReceived = 0;
    qsizetype m_frameLength = 0; // of the frame being received before the first login
    bool m_loggedIn = false;
    bool m_wasLoggedIn = false;
    int m_account = -1; // of the successful login
    int m_writesSeen = 0;
    bool m_outputFull = false; // too many answers unread: input stops
    bool m_loginHeld = false;
    QByteArray m_heldLogin;
    bool m_closing = false;
    bool m_ended = false;
    std::vector<RecorderServer::Piece> m_staged;
    std::deque<Answer> m_answers;
    FirmwareReception m_firmware;
    QTimer m_answerTimer;
    QTimer m_loginDeadline;
    // A logged-in session without keep-alives. Each frame only notes its
    // time, and the timer, once due, waits on for what is left: restarting
    // a timer per frame costs more than the frame.
    QTimer m_silenceTimer;
    QElapsedTimer m_lastFrame;
    QTimer m_stallTimer; // a client that does not read its answers
    QTimer m_throttleTimer;
};

} // namespace sim

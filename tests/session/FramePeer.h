// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/Frame.h"
#include "session/FrameReader.h"
#include "session/PacketString.h"
#include "session/RemoteCommand.h"
#include "tests/TestSupport.h"

#include <QHostAddress>
#include <QPointer>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

// One end of a framed connection on 127.0.0.1 that a test drives frame by
// frame: it sends frames, keeps every frame it receives and hands them out
// in order. Its waits run the event loop, so a peer in the same thread keeps
// serving meanwhile. Header-only, so that every test target that uses a
// peer builds it without further sources.
class FramePeer
{
public:
    static constexpr int WaitMs = 60000;

    FramePeer() = default;
    // The client end, connecting to `port`.
    explicit FramePeer(quint16 port)
        : m_own(std::make_unique<QTcpSocket>())
    {
        attach(m_own.get());
        m_socket->connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    }

    // Frames received so far, in order; onFrame sees each as it arrives.
    std::vector<session::Frame> received;
    std::function<void(const session::Frame &)> onFrame;

    std::vector<session::Frame> receivedWith(qint32 command) const
    {
        std::vector<session::Frame> frames;
        std::copy_if(received.begin(), received.end(), std::back_inserter(frames),
                     [&](const session::Frame &f) { return f.command == command; });
        return frames;
    }
    bool waitReceived(std::size_t count)
    {
        return testsupport::waitFor([&] { return received.size() >= count; }, WaitMs);
    }

    void send(qint32 command, const PACKET_PARAM &param = {}, QByteArrayView payload = {})
    {
        sendRaw(session::Frame::encode(m_sequence++, command, param, payload));
    }
    void sendRaw(QByteArrayView bytes)
    {
        if (m_socket) {
            m_socket->write(bytes.data(), bytes.size());
            m_socket->flush();
        }
    }

    bool isConnected() const
    {
        return m_socket && m_socket->state() == QAbstractSocket::ConnectedState;
    }
    bool isClosed() const
    {
        return !m_socket || m_socket->state() == QAbstractSocket::UnconnectedState;
    }
    bool waitConnected()
    {
        (void)testsupport::waitFor([this] { return isConnected() || isClosed(); }, WaitMs);
        return isConnected();
    }
    bool waitClosed()
    {
        return testsupport::waitFor([this] { return isClosed(); }, WaitMs);
    }
    void close()
    {
        if (m_socket)
            m_socket->abort();
    }

    // The next frame not handed out yet, once it came; nothing when the
    // connection closed or nothing came in time.
    std::optional<session::Frame> next()
    {
        (void)testsupport::waitFor([this] { return m_taken < received.size() || isClosed(); },
                                   WaitMs);
        return take();
    }
    // The same without waiting.
    std::optional<session::Frame> take()
    {
        // A closed socket keeps what arrived before the close.
        if (m_taken >= received.size() && m_socket && m_socket->bytesAvailable() > 0)
            readAvailable();
        if (m_taken >= received.size())
            return std::nullopt;
        return received[m_taken++];
    }
    std::optional<session::Frame> request(qint32 command, const PACKET_PARAM &param = {},
                                          QByteArrayView payload = {})
    {
        send(command, param, payload);
        return next();
    }
    // The word of the answer to a request, when it is a `reply`; -1 without one.
    qint64 replyWord(qint32 reply, qint32 command, const PACKET_PARAM &param = {},
                     QByteArrayView payload = {})
    {
        const auto answer = request(command, param, payload);
        return answer && answer->command == reply ? qint64(answer->param.words[0]) : -1;
    }

    // The opening exchange and a login: the login answer's parameter, all
    // ones when an answer is missing.
    PACKET_PARAM login(QByteArrayView memberId, QByteArrayView password)
    {
        PACKET_STRING login;
        login.memberId = memberId.toByteArray();
        login.password = password.toByteArray();
        const auto answer = replyWord(RemoteCommand::OpenAck, RemoteCommand::Open) < 0
                                ? std::nullopt
                                : request(RemoteCommand::Login, {}, login.toBytes());
        PACKET_PARAM none;
        none.words.fill(~0u);
        return answer && answer->command == RemoteCommand::LoginAnswer ? answer->param : none;
    }
    // A setup write (or commit) and the word of its acknowledgement; -1 without one.
    qint64 write(quint32 category, quint32 offset, QByteArrayView bytes)
    {
        return replyWord(RemoteCommand::SetupWriteAck, RemoteCommand::SetupWrite,
                         PACKET_PARAM {{category, quint32(bytes.size()), offset}}, bytes);
    }
    qint64 commit()
    {
        return replyWord(RemoteCommand::SetupWriteAck, RemoteCommand::SetupWrite,
                         PACKET_PARAM {{9}});
    }
    // The record of a setup answer; empty without one.
    QByteArray setupRecord()
    {
        const auto answer = request(RemoteCommand::SetupRequest, PACKET_PARAM {{15148}});
        return answer && answer->command == RemoteCommand::SetupAnswer ? answer->payload
                                                                       : QByteArray();
    }

protected:
    // Takes the frames of `socket` from now on.
    void attach(QTcpSocket *socket)
    {
        m_socket = socket;
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this] { readAvailable(); });
    }

private:
    void readAvailable()
    {
        if (!m_reader.feed(m_socket->readAll())) {
            ADD_FAILURE() << "the peer sent a malformed frame";
            m_socket->abort();
            return;
        }
        while (m_reader.hasFrame()) {
            const auto frame = session::Frame::decode(m_reader.takeFrame());
            if (!frame)
                continue;
            received.push_back(*frame);
            if (onFrame)
                onFrame(*frame);
        }
    }

    std::unique_ptr<QTcpSocket> m_own;
    QPointer<QTcpSocket> m_socket;
    session::FrameReader m_reader;
    std::size_t m_taken = 0;
    quint32 m_sequence = 0;
};

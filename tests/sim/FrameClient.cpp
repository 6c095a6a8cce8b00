#include "tests/sim/FrameClient.h"

#include "session/PacketString.h"
#include "session/RemoteCommand.h"

#include <QHostAddress>
#include <QTest>

#include <gtest/gtest.h>

FrameClient::FrameClient(quint16 port)
{
    QObject::connect(&m_socket, &QTcpSocket::readyRead, &m_socket, [this] { readAvailable(); });
    m_socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
}

bool FrameClient::waitConnected()
{
    return QTest::qWaitFor(
               [this] { return m_socket.state() == QAbstractSocket::ConnectedState || isClosed(); },
               WaitMs)
           && m_socket.state() == QAbstractSocket::ConnectedState;
}

void FrameClient::send(qint32 command, const PACKET_PARAM &param, QByteArrayView payload)
{
    sendRaw(session::Frame::encode(m_sequence++, command, param, payload));
}

void FrameClient::sendRaw(QByteArrayView bytes)
{
    m_socket.write(bytes.data(), bytes.size());
}

std::optional<session::Frame> FrameClient::next()
{
    // Closed or timed out, whatever has arrived is the answer.
    (void)QTest::qWaitFor([this] { return !m_frames.empty() || isClosed(); }, WaitMs);
    return take();
}

std::optional<session::Frame> FrameClient::take()
{
    // A closed socket keeps what arrived before the close.
    if (m_frames.empty() && m_socket.bytesAvailable() > 0)
        readAvailable();
    if (m_frames.empty())
        return std::nullopt;
    session::Frame frame = std::move(m_frames.front());
    m_frames.pop_front();
    return frame;
}

bool FrameClient::waitClosed()
{
    return QTest::qWaitFor([this] { return isClosed(); }, WaitMs);
}

std::optional<PACKET_PARAM> FrameClient::login(QByteArrayView memberId, QByteArrayView password)
{
    const auto ack = request(RemoteCommand::Open);
    if (!ack || ack->command != RemoteCommand::OpenAck)
        return std::nullopt;
    PACKET_STRING login;
    login.memberId = memberId.toByteArray();
    login.password = password.toByteArray();
    const auto answer = request(RemoteCommand::Login, {}, login.toBytes());
    if (!answer || answer->command != RemoteCommand::LoginAnswer)
        return std::nullopt;
    return answer->param;
}

std::optional<session::Frame> FrameClient::request(qint32 command, const PACKET_PARAM &param,
                                                   QByteArrayView payload)
{
    send(command, param, payload);
    return next();
}

qint64 FrameClient::write(quint32 category, quint32 offset, QByteArrayView bytes)
{
    PACKET_PARAM param;
    param.words[0] = category;
    param.words[1] = quint32(bytes.size());
    param.words[2] = offset;
    const auto ack = request(RemoteCommand::SetupWrite, param, bytes);
    if (!ack || ack->command != RemoteCommand::SetupWriteAck)
        return -1;
    return ack->param.words[0];
}

qint64 FrameClient::commit()
{
    PACKET_PARAM param;
    param.words[0] = 9;
    const auto ack = request(RemoteCommand::SetupWrite, param);
    if (!ack || ack->command != RemoteCommand::SetupWriteAck)
        return -1;
    return ack->param.words[0];
}

QByteArray FrameClient::setupRecord()
{
    PACKET_PARAM param;
    param.words[0] = 15148;
    const auto answer = request(RemoteCommand::SetupRequest, param);
    if (!answer || answer->command != RemoteCommand::SetupAnswer)
        return {};
    return answer->payload;
}

void FrameClient::readAvailable()
{
    if (!m_reader.feed(m_socket.readAll())) {
        ADD_FAILURE() << "the recorder sent a malformed frame";
        m_socket.abort();
        return;
    }
    while (m_reader.hasFrame()) {
        auto frame = session::Frame::decode(m_reader.takeFrame());
        if (frame)
            m_frames.push_back(std::move(*frame));
    }
}

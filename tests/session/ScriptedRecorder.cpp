#include "tests/session/ScriptedRecorder.h"

#include "session/RemoteCommand.h"
#include "setup/LittleEndian.h"
#include "setup/SetupRecordMap.h"

using session::Frame;

ScriptedRecorder::ScriptedRecorder()
    : record(setup::SetupRecordMap::RecordSize, '\x5A')
    , onFrame([this](const Frame &frame) { answerAsRecorder(frame); })
{
    m_server.listen(QHostAddress::LocalHost, 0);
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        m_client = m_server.nextPendingConnection();
        connect(m_client, &QTcpSocket::readyRead, this, [this] {
            m_reader.feed(m_client->readAll());
            while (m_reader.hasFrame()) {
                const auto frame = Frame::decode(m_reader.takeFrame());
                if (!frame)
                    continue;
                received.push_back(*frame);
                onFrame(*frame);
            }
        });
    });
}

std::vector<Frame> ScriptedRecorder::receivedWith(qint32 command) const
{
    std::vector<Frame> frames;
    for (const Frame &f : received) {
        if (f.command == command)
            frames.push_back(f);
    }
    return frames;
}

void ScriptedRecorder::send(qint32 command, const PACKET_PARAM &param, QByteArrayView payload)
{
    sendRaw(Frame::encode(m_sequence++, command, param, payload));
}

void ScriptedRecorder::sendRaw(const QByteArray &bytes)
{
    if (m_client) {
        m_client->write(bytes);
        m_client->flush();
    }
}

void ScriptedRecorder::closeClient()
{
    if (m_client)
        m_client->abort();
}

void ScriptedRecorder::answerAsRecorder(const Frame &frame)
{
    PACKET_PARAM param;
    switch (frame.command) {
    case RemoteCommand::Open:
        param.words[0] = 1;
        send(RemoteCommand::OpenAck, param);
        break;
    case RemoteCommand::Login: {
        QByteArray bytes = param.toBytes();
        nelib::LittleEndian::setI32(bytes, 0, loginCode);
        nelib::LittleEndian::setU8(bytes, 4, channels);
        nelib::LittleEndian::setU8(bytes, 6, video);
        send(RemoteCommand::LoginAnswer, PACKET_PARAM::fromBytes(bytes));
        break;
    }
    case RemoteCommand::SetupRequest: {
        QByteArray bytes = param.toBytes();
        for (int i = 0; i < 4; ++i)
            nelib::LittleEndian::setU16(bytes, 12 + 2 * i, answerValues[i]);
        send(RemoteCommand::SetupAnswer, PACKET_PARAM::fromBytes(bytes), record);
        break;
    }
    case RemoteCommand::DateTime:
        param.words[0] = frame.param.words[0];
        std::copy(time.begin(), time.end(), param.words.begin() + 1);
        send(RemoteCommand::DateTimeAnswer, param);
        break;
    case RemoteCommand::SetupWrite:
        param.words[0] = 1;
        send(RemoteCommand::SetupWriteAck, param);
        break;
    default:
        break;
    }
}

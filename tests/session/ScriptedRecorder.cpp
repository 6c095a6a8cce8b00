#include "tests/session/ScriptedRecorder.h"

#include "setup/LittleEndian.h"
#include "setup/SetupRecordMap.h"

using session::Frame;

ScriptedRecorder::ScriptedRecorder()
    : record(setup::SetupRecordMap::RecordSize, '\x5A')
{
    onFrame = [this](const Frame &frame) {
        answerAsRecorder(frame);
    };
    m_server.listen(QHostAddress::LocalHost, 0);
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        m_hasClient = true;
        attach(m_server.nextPendingConnection());
    });
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

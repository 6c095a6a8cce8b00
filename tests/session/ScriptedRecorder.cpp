// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/session/ScriptedRecorder.h"

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
    const auto u16s = [](quint32 low, quint32 high) {
        return low | high << 16;
    };
    switch (frame.command) {
    case RemoteCommand::Open:
        return send(RemoteCommand::OpenAck, PACKET_PARAM {{1}});
    case RemoteCommand::Login:
        // The code, then the channel count and the video standard in bytes 4 and 6.
        return send(RemoteCommand::LoginAnswer,
                    PACKET_PARAM {{quint32(loginCode), u16s(channels, video)}});
    case RemoteCommand::SetupRequest:
        return send(RemoteCommand::SetupAnswer,
                    PACKET_PARAM {{0, 0, 0, u16s(answerValues[0], answerValues[1]),
                                   u16s(answerValues[2], answerValues[3])}},
                    record);
    case RemoteCommand::DateTime:
        return send(RemoteCommand::DateTimeAnswer,
                    PACKET_PARAM {{frame.param.words[0], time[0], time[1], time[2], time[3],
                                   time[4], time[5]}});
    case RemoteCommand::SetupWrite:
        return send(RemoteCommand::SetupWriteAck, PACKET_PARAM {{1}});
    }
}

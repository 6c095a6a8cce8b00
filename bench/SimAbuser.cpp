// SPDX-License-Identifier: GPL-3.0-or-later

// sim-abuser PORT N: attaches N connections that never send a frame and one
// client that logs in, asks for the setup record again and again and never
// reads an answer, to the recorder on 127.0.0.1:PORT. Prints "attached" once
// every connection is open, then runs until it is killed. The abuse
// benchmark runs it as a process of its own, as from another terminal.
#include "session/Frame.h"
#include "session/PacketString.h"
#include "session/RemoteCommand.h"
#include "setup/SetupRecordMap.h"

#include <QCoreApplication>
#include <QTcpSocket>
#include <QTimer>

#include <cstdio>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using session::Frame;

namespace {

constexpr int RequestsPerBurst = 50;

class GreedyClient
{
public:
    explicit GreedyClient(quint16 port)
    {
        // Qt stops reading once this buffer is full; the rest waits in the
        // network buffers and then at the recorder.
        m_socket.setReadBufferSize(1);
        QObject::connect(&m_socket, &QTcpSocket::connected, &m_socket, [this] {
            PACKET_STRING login;
            login.memberId = "Admin";
            m_socket.write(Frame::encode(m_sequence++, RemoteCommand::Open, {}));
            m_socket.write(Frame::encode(m_sequence++, RemoteCommand::Login, {}, login.toBytes()));
            m_burst.start(1);
        });
        QObject::connect(&m_burst, &QTimer::timeout, &m_socket, [this] {
            PACKET_PARAM whole;
            whole.words[0] = setup::SetupRecordMap::RecordSize;
            for (int i = 0; i < RequestsPerBurst; ++i)
                m_socket.write(Frame::encode(m_sequence++, RemoteCommand::SetupRequest, whole));
        });
        m_socket.connectToHost(u"127.0.0.1"_s, port);
    }

private:
    QTcpSocket m_socket;
    QTimer m_burst;
    quint32 m_sequence = 0;
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.size() != 3) {
        std::fputs("usage: sim-abuser PORT N (a helper of sim_abuse_bench)\n", stderr);
        return 2;
    }
    const auto port = quint16(arguments.at(1).toUInt());
    const int count = arguments.at(2).toInt();

    std::vector<std::unique_ptr<QTcpSocket>> silent;
    int connected = 0;
    for (int i = 0; i < count; ++i) {
        silent.push_back(std::make_unique<QTcpSocket>());
        QObject::connect(silent.back().get(), &QTcpSocket::connected, &app, [&] {
            if (++connected == count) {
                std::puts("attached");
                std::fflush(stdout);
            }
        });
        silent.back()->connectToHost(u"127.0.0.1"_s, port);
    }
    GreedyClient greedy(port);
    return app.exec();
}

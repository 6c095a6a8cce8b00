// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/CWork.h"
#include "session/Frame.h"
#include "session/FrameReader.h"
#include "session/SocketNotifyEvent.h"

#include <QCoreApplication>

#include <cstdint>
#include <cstdlib>

// Bytes as a recorder might send them: cut into frames in chunks whose sizes
// the input chooses, and every frame handed to a session worker as if it had
// arrived on its connection. Nothing may read outside what arrived.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "frame_stream_fuzz";
    static char *argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);

    if (size < 1)
        return 0;
    const qsizetype chunk = qsizetype(data[0]) + 1;
    const QByteArrayView stream(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));

    session::FrameReader reader;
    CWork work;
    for (qsizetype at = 0; at < stream.size(); at += chunk) {
        reader.feed(stream.sliced(at, std::min(chunk, stream.size() - at)));
        while (reader.hasFrame()) {
            const QByteArray packet = reader.takeFrame();
            if (session::Frame::checkHead(packet) != packet.size())
                std::abort();
            REMOTESOCKET_NOTIFY record;
            record.kind = REMOTESOCKET_NOTIFY::PacketReceived;
            session::SocketNotifyEvent event(record, packet);
            QCoreApplication::sendEvent(&work, &event);
        }
    }
    if (work.mirror().size() != 15148 || work.referenceCopy().size() != 15148)
        std::abort();
    return 0;
}

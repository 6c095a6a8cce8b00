// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <deque>

namespace session {

// Cuts a byte stream into frames, whatever the chunks it arrives in. Each
// frame comes out whole (head and payload in one array, the layout of Frame).
//
// A malformed head puts the reader into a lasting error state: the stream
// has lost its framing and nothing after it can be trusted, so the owner
// closes the connection. Frames completed before the bad head stay available.
// Memory is bounded by what actually arrives: a frame's buffer is sized from
// its head only after the head has passed Frame::checkHead.
class FrameReader
{
public:
    // Returns false once the stream is malformed; later input is ignored.
    bool feed(QByteArrayView bytes);

    bool hasFrame() const { return !m_frames.empty(); }
    // The oldest complete frame; an empty array when there is none.
    QByteArray takeFrame();

    bool failed() const { return m_failed; }
    // Bytes of the frame still being received.
    qsizetype pendingBytes() const { return m_current.size(); }

private:
    std::deque<QByteArray> m_frames;
    QByteArray m_current;
    qsizetype m_expected = 0; // total length of m_current once its head is known
    bool m_failed = false;
};

} // namespace session

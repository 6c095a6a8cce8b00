// SPDX-License-Identifier: GPL-3.0-or-later

#include "session/FrameReader.h"

#include "session/Frame.h"

#include <algorithm>
#include <utility>

namespace session {

bool FrameReader::feed(QByteArrayView bytes)
{
    while (!m_failed && !bytes.isEmpty()) {
        const qsizetype goal = m_expected > 0 ? m_expected : Frame::HeadSize;
        const qsizetype take = std::min(goal - m_current.size(), bytes.size());
        m_current.append(bytes.first(take));
        bytes = bytes.sliced(take);

        if (m_expected == 0 && m_current.size() == Frame::HeadSize) {
            m_expected = Frame::checkHead(m_current);
            if (m_expected < 0) {
                m_failed = true;
                m_current.clear();
                break;
            }
            m_current.reserve(m_expected);
        }
        if (m_expected > 0 && m_current.size() == m_expected) {
            m_frames.push_back(std::exchange(m_current, {}));
            m_expected = 0;
        }
    }
    return !m_failed;
}

QByteArray FrameReader::takeFrame()
{
    if (m_frames.empty())
        return {};
    QByteArray frame = std::move(m_frames.front());
    m_frames.pop_front();
    return frame;
}

} // namespace session

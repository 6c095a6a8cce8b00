// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "session/PacketParam.h"

// The four 16-bit hardware counts a recorder reports with its setup answer
// (parameter byte offsets 12, 14, 16, 18): the simulator writes them, the
// session reads them for the Configuration page and `info`.
struct SetupAnswerValues
{
    quint16 alarmInputs = 0;
    quint16 alarmOutputs = 0;
    quint16 audioInputs = 0;
    quint16 disks = 0;

    // What the simulator reports: plausible counts from its channel count,
    // as a product line scales its back panel with the camera inputs. One
    // alarm input per camera, one alarm output per four cameras, audio
    // inputs up to four, one disk up to 8 channels and two above.
    static SetupAnswerValues forChannels(int channels);

    // Reads bytes 12-19 of a setup answer's `param`.
    static SetupAnswerValues fromParam(const PACKET_PARAM &param);
    // Fills bytes 12-19 of `param`, leaving the other words as they are.
    void writeTo(PACKET_PARAM &param) const;

    friend bool operator==(const SetupAnswerValues &, const SetupAnswerValues &) = default;
};

// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/RecordProfiles.h"

#include "setup/Fields.h"

#include <algorithm>

namespace setup {

namespace {

namespace record = fields::record;

constexpr int Modes = record::widthCode.count;
constexpr quint32 FullWidth = 1;
constexpr quint32 HalfWidth = 2;
constexpr quint32 HighestFrameRate = 5;
constexpr quint32 FirstQuality = 0xFF00;
// The last code the recorder knows; the page offers one item fewer.
constexpr quint32 LastQuality = 0xFF04;

} // namespace

void RecordProfiles::normalise(SectionEdit &section, int channelCount)
{
    const int channels = std::min(channelCount, record::widthCode.count2);
    for (int m = 0; m < Modes; ++m) {
        for (int c = 0; c < channels; ++c) {
            if (const quint32 width = section.number(record::widthCode, m, c)) {
                section.setNumber(record::widthCode, width == FullWidth ? FullWidth : HalfWidth, m,
                                  c);
                section.setNumber(record::heightCode, section.number(record::heightCode, m, c) != 0,
                                  m, c);
            }
            if (const quint32 rate = section.number(record::frameRate, m, c);
                rate <= HighestFrameRate)
                section.setNumber(record::frameRateCopy, rate, m, c);
            if (const quint32 quality = section.number(record::quality, m, c);
                quality >= FirstQuality && quality <= LastQuality)
                section.setNumber(record::qualityCopy, quality, m, c);
        }
    }
}

} // namespace setup

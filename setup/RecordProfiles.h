// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/SectionEdit.h"

namespace setup {

// The recording profiles of the RECORD section (one per record mode and
// channel). The recorder keeps the frame rate and the quality twice and the
// resolution as two codes; it reads the first copies, and a save writes the
// second ones equal and the codes in their own form, whatever was received.
class RecordProfiles
{
public:
    // Brings the profiles of the first `channelCount` channels of every mode
    // to that form: width code 1 or 2 (any other non-zero code is half
    // width) and height code 0 or 1, the copies equal to the first frame rate
    // (0 to 5) and quality (0xFF00 to 0xFF04). A profile without a width code,
    // a frame rate or a quality that is none of these keeps that field as
    // received, and later channels keep every byte.
    static void normalise(SectionEdit &section, int channelCount);
};

} // namespace setup

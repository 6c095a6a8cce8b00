#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <array>

namespace setup {

// The camera section: sixteen channel records of 48 bytes, of which the
// Camera Setup page owns the title, the covert flag and the audio input.
// Every other byte of a record belongs to the recorder or to other pages and
// is written back exactly as it was read.
class CameraSection
{
public:
    static constexpr int Channels = 16;

    // The audio inputs a channel can be given, in the order of the page's
    // list: none, then inputs 1 to 4 as one-bit masks.
    static constexpr std::array<quint8, 5> AudioInputs {0, 1, 2, 4, 8};

    struct Channel
    {
        QByteArray title; // code-page bytes up to the first zero; 20 when full
        bool covert = false;
        quint8 audio = 0; // the stored byte, which need not be one of AudioInputs
    };

    // Channel `index` (0-based) of `section`, laid out as the record's slice.
    // An index or section out of range reads as an empty channel.
    static Channel channel(QByteArrayView section, int index);
    // Writes `values` into channel record `index`: the title zero-padded and
    // cut at the field's width, covert as 0 or 1, the audio byte as given.
    // Returns false, changing nothing, when the record lies outside `section`.
    static bool setChannel(QByteArray &section, int index, const Channel &values);

    // The list position of a stored audio byte; 0 (none) for a byte that is
    // no single input, such as 3.
    static int audioIndex(quint8 audio);
};

} // namespace setup

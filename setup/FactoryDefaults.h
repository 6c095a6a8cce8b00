// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <array>

namespace setup {

// The factory settings of a recorder: the one source of DEFDVRSETUP.DAT and
// of every new simulated recorder.
class FactoryDefaults
{
public:
    using Version = std::array<quint8, 4>; // a, b, c, d

    static constexpr quint32 ModelId = 0x00160001;
    static constexpr Version SoftwareVersion {1, 0, 0, 0};

    // The whole 15,148-byte record; the header carries the given identity.
    static QByteArray record(quint32 modelId = ModelId, Version softwareVersion = SoftwareVersion);
};

} // namespace setup

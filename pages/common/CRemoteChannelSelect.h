// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/ChannelSelectionDialog.h"

// Chooses the alarm outputs an event drives. Two "Select All" boxes: one for
// channels 1 to 4, the recorder's own outputs, which it always covers, and one
// for channels 5 up to the channel count, which covers nothing on a recorder
// of four channels or fewer.
class CRemoteChannelSelect : public ChannelSelectionDialog
{
    Q_OBJECT

public:
    // One word per channel, 0 or 1.
    using Flags = std::array<quint32, Channels>;

    explicit CRemoteChannelSelect(QWidget *parent = nullptr);

    void setFlags(const Flags &flags);
    Flags flags() const;
};

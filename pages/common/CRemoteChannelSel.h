// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/ChannelSelectionDialog.h"

// Chooses any of the recorder's channels (the record channels of an alarm,
// the channels of a schedule or a network event); "Select All" covers the
// channels the recorder has.
class CRemoteChannelSel : public ChannelSelectionDialog
{
    Q_OBJECT

public:
    // One word per channel, 0 or 1.
    using Flags = std::array<quint32, Channels>;

    explicit CRemoteChannelSel(QWidget *parent = nullptr);

    void setFlags(const Flags &flags);
    Flags flags() const;
};

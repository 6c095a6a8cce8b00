// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/ChannelSelectionDialog.h"

// Chooses at most a limit of channels (the spot monitor's). Once the limit is
// reached the unchecked boxes are disabled, so no further channel can be
// added; OK is enabled only while the choice is within the limit. "Select
// All" is offered only when the limit allows every channel.
class CRemoteChannelSel_Spot : public ChannelSelectionDialog
{
    Q_OBJECT

public:
    // One byte per channel, 0 or 1.
    using Flags = std::array<quint8, Channels>;

    explicit CRemoteChannelSel_Spot(QWidget *parent = nullptr);

    void setLimit(int limit);
    int limit() const { return m_limit; }

    void setFlags(const Flags &flags);
    Flags flags() const;

protected:
    void selectionChanged() override;

private:
    int m_limit = Channels;
    QCheckBox *m_selectAll;
};

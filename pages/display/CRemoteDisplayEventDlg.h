// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

class BitGroupEditor;
class ChannelSelectionEditor;

// Display / Event Display: the main monitor (output, resolution, picture,
// pop-up of an event's channel), the spot monitor (mode, channels, pop-up)
// and the channels of the main monitor's sequence. It saves the whole
// DISPLAY block; the other DISPLAY pages' sections go along as the session
// holds them.
class CRemoteDisplayEventDlg : public CSetupPage
{
    Q_OBJECT

public:
    // In "Event" mode the spot monitor rests on one channel between events;
    // in "Sequence" mode it cycles through any number of them.
    static constexpr int EventSpotChannels = 1;

    explicit CRemoteDisplayEventDlg(QWidget *parent = nullptr);
    ~CRemoteDisplayEventDlg() override;

    // How many spot channels the operator may choose in the mode shown.
    int spotChannelLimit() const;

protected:
    void buildControls() override;
    void afterFill() override;

private:
    void updateControls();

    BitGroupEditor *m_sequence = nullptr;
    ChannelSelectionEditor *m_spotChannels = nullptr;
};

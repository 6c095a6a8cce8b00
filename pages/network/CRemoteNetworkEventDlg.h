// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

// Network / Event: which events the recorder reports, for which channels, and
// to whom (by e-mail, to connected clients, to monitoring servers). Camera
// events and the recorder's own events each have a tab.
class CRemoteNetworkEventDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteNetworkEventDlg(QWidget *parent = nullptr);
    ~CRemoteNetworkEventDlg() override;

protected:
    void buildControls() override;
};

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

// Network / Notification: the e-mail and the event settings on one page, one
// tab each, written together as the notification section.
class CRemoteNetworkNotificationDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteNetworkNotificationDlg(QWidget *parent = nullptr);
    ~CRemoteNetworkNotificationDlg() override;

    // Sends nothing while an address is refused.
    int save() override;

protected:
    void buildControls() override;
};

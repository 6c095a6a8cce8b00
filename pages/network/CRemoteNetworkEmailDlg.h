// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

// Network / E-Mail: the mail server and the addresses the recorder mails its
// events to. Writes the e-mail section alone, never the event settings after it.
class CRemoteNetworkEmailDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteNetworkEmailDlg(QWidget *parent = nullptr);
    ~CRemoteNetworkEmailDlg() override;

    // Sends nothing while an address is refused.
    int save() override;

protected:
    void buildControls() override;
};

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

// Device / Smart Backup: an unattended backup of the chosen channels to a
// medium, on the chosen days at a set time, covering the hours before it.
class CRemoteDeviceSmartBackupDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteDeviceSmartBackupDlg(QWidget *parent = nullptr);
    ~CRemoteDeviceSmartBackupDlg() override;

protected:
    void buildControls() override;
};

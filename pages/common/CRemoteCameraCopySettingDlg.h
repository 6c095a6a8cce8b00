// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CopySettingDialog.h"

// Copies settings of one channel to others on the camera pages. The page
// offers the copy properties of the columns shown, sets the channel count,
// opens the dialog and, after OK, copies between its rows
// (SectionBinder::copy).
class CRemoteCameraCopySettingDlg : public CopySettingDialog
{
    Q_OBJECT

public:
    explicit CRemoteCameraCopySettingDlg(QWidget *parent = nullptr);

    void setVisible(bool visible) override;
};

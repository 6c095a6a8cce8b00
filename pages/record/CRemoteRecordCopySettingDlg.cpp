// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/record/CRemoteRecordCopySettingDlg.h"

CRemoteRecordCopySettingDlg::CRemoteRecordCopySettingDlg(QWidget *parent)
    : CopySettingDialog(parent)
{ }

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CopySettingDialog.h"

// Copies the recording profile columns of one channel to others on the
// Record Setup page, within the record mode shown. The page offers the copy
// properties of its columns, sets the channel count, opens the dialog and,
// after OK, copies between its rows (SectionBinder::copy).
class CRemoteRecordCopySettingDlg : public CopySettingDialog
{
    Q_OBJECT

public:
    explicit CRemoteRecordCopySettingDlg(QWidget *parent = nullptr);
};

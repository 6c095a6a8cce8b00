// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMessageBox>

// Asks before "Delete All" clears every holiday of the Holiday page; the page
// clears them when the operator confirms with OK.
class CRemoteRecordDelAllHolidayDlg : public QMessageBox
{
    Q_OBJECT

public:
    explicit CRemoteRecordDelAllHolidayDlg(QWidget *parent = nullptr);
};

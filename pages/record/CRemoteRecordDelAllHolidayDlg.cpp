// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/record/CRemoteRecordDelAllHolidayDlg.h"

#include "i18n/Translator.h"

#include <QPushButton>

CRemoteRecordDelAllHolidayDlg::CRemoteRecordDelAllHolidayDlg(QWidget *parent)
    : QMessageBox(parent)
{
    setWindowTitle(nelib::tr("Delete All"));
    setIcon(QMessageBox::Question);
    setText(nelib::tr("Do you want to delete all holidays?"));
    setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    button(QMessageBox::Ok)->setText(nelib::tr("OK"));
    button(QMessageBox::Cancel)->setText(nelib::tr("Cancel"));
    setDefaultButton(QMessageBox::Cancel);
}

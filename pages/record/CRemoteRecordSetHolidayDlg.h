// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/HolidayList.h"

#include <QDialog>

#include <array>

QT_BEGIN_NAMESPACE
class QCheckBox;
class QComboBox;
class QLabel;
QT_END_NAMESPACE

// Weekday holidays on a month calendar: the rows "1st /" to "6th /" are the
// week rows of the month in the given year, the columns the weekdays, and
// each cell shows the day of the month that falls there. Ticking a cell marks
// that weekday of that week row as a holiday; a cell before the first of the
// month can be ticked too. The dialog edits a copy of the page's holidays;
// the page takes it back after OK.
class CRemoteRecordSetHolidayDlg : public QDialog
{
    Q_OBJECT

public:
    explicit CRemoteRecordSetHolidayDlg(QWidget *parent = nullptr);

    void setYear(int year);
    void setMonth(int month);
    void setHolidays(const setup::HolidayList &holidays);
    const setup::HolidayList &holidays() const { return m_holidays; }

private:
    void showMonth();

    int m_year = 2000;
    setup::HolidayList m_holidays;
    QComboBox *m_month;
    QLabel *m_yearLabel;
    std::array<QCheckBox *, setup::HolidayList::WeekRows * setup::HolidayList::Weekdays> m_cells {};
};

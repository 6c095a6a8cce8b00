// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

class CRemoteRecordDelAllHolidayDlg;
class CRemoteRecordSetHolidayDlg;
class HolidayEditor;

// Record / Holiday: the days on which the schedule's "HOL" entries apply,
// fixed dates picked on a month calendar and weekday holidays (the nth
// weekday of a month) picked in a calendar dialog. Week rows are mapped to
// occurrences with the calendar of the computer's current year.
class CRemoteRecordHolidayDlg : public CSetupPage
{
    Q_OBJECT

public:
    explicit CRemoteRecordHolidayDlg(QWidget *parent = nullptr);
    ~CRemoteRecordHolidayDlg() override;

    // The year the calendars show (the current one unless set); before a load.
    void setYear(int year);

protected:
    void buildControls() override;

private:
    void selectDayOfWeek();
    void deleteAll();

    int m_year;
    HolidayEditor *m_holidays = nullptr;
    CRemoteRecordSetHolidayDlg *m_weekdayDialog = nullptr;
    CRemoteRecordDelAllHolidayDlg *m_deleteDialog = nullptr;
};

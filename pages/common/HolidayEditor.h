// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/FieldEditor.h"
#include "setup/HolidayList.h"

#include <array>

QT_BEGIN_NAMESPACE
class QComboBox;
class QListWidget;
class QToolButton;
QT_END_NAMESPACE

// The holiday list of a holiday section: a month calendar of the page's year
// whose day buttons toggle fixed-date holidays, and a list of every holiday
// set. Weekday holidays come in through setHolidays() (the page's weekday
// calendar). Gather writes the list only when it differs from the one the
// section holds, so entries that the calendar cannot show come back
// unchanged until the operator changes the holidays.
class HolidayEditor : public FieldEditor
{
    Q_OBJECT

public:
    HolidayEditor(const setup::FieldInfo &field, QWidget *parent);
    ~HolidayEditor() override;

    // The year whose calendar maps week rows to occurrences; set before a fill.
    void setYear(int year);
    int year() const { return m_year; }
    // The month on display, 1-12.
    int month() const;

    const setup::HolidayList &holidays() const { return m_holidays; }
    // An operator's change: shown and reported as an edit. More holidays than
    // the section holds are refused with a message.
    bool setHolidays(const setup::HolidayList &holidays);

    QWidget *widget() const override { return m_panel; }
    void fill(const setup::SectionView &section) override;
    void gather(setup::SectionEdit &section) const override;
    void copyFrom(const FieldEditor &other) override;

private:
    void showMonth();
    void showList();
    void dayClicked(int cell);

    int m_year;
    setup::HolidayList m_holidays;
    QWidget *m_panel;
    QComboBox *m_month;
    std::array<QToolButton *, setup::HolidayList::WeekRows * 7> m_cells {};
    QListWidget *m_list;
};

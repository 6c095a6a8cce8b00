// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/record/CRemoteRecordSetHolidayDlg.h"

#include "i18n/Translator.h"
#include "pages/common/DialogButtons.h"
#include "pages/common/HolidayTexts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDate>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using setup::HolidayList;

CRemoteRecordSetHolidayDlg::CRemoteRecordSetHolidayDlg(QWidget *parent)
    : QDialog(parent)
    , m_month(new QComboBox(this))
    , m_yearLabel(new QLabel(this))
{
    setWindowTitle(nelib::tr("Select Day Of Week"));
    for (const char *name : holidayTexts::Months)
        m_month->addItem(nelib::tr(name));
    auto *monthLabel = new QLabel(nelib::tr("Month"), this);
    monthLabel->setBuddy(m_month);
    m_month->setAccessibleName(monthLabel->text());
    auto *top = new QHBoxLayout;
    top->addWidget(monthLabel);
    top->addWidget(m_month);
    top->addStretch(1);
    top->addWidget(m_yearLabel);

    auto *grid = new QGridLayout;
    for (int w = 0; w < HolidayList::Weekdays; ++w) {
        auto *heading = new QLabel(nelib::tr(holidayTexts::Weekdays[w]), this);
        heading->setAlignment(Qt::AlignCenter);
        grid->addWidget(heading, 0, w + 1);
    }
    for (int row = 0; row < HolidayList::WeekRows; ++row) {
        grid->addWidget(new QLabel(nelib::tr(holidayTexts::WeekRows[row]), this), row + 1, 0);
        for (int w = 0; w < HolidayList::Weekdays; ++w) {
            auto *cell = new QCheckBox(this);
            grid->addWidget(cell, row + 1, w + 1, Qt::AlignCenter);
            connect(cell, &QCheckBox::clicked, this, [this, row, w](bool checked) {
                m_holidays.weekday[m_month->currentIndex()][w][row] = checked;
            });
            m_cells[row * HolidayList::Weekdays + w] = cell;
        }
    }

    auto *buttons = DialogButtons::okCancel(this);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(grid);
    layout->addWidget(buttons);
    connect(m_month, &QComboBox::currentIndexChanged, this, &CRemoteRecordSetHolidayDlg::showMonth);
}

void CRemoteRecordSetHolidayDlg::setYear(int year)
{
    m_year = year;
    m_yearLabel->setText(nelib::tr("Year") + u' ' + QString::number(year));
    showMonth();
}

void CRemoteRecordSetHolidayDlg::setMonth(int month)
{
    m_month->setCurrentIndex(month - 1);
    showMonth();
}

void CRemoteRecordSetHolidayDlg::setHolidays(const HolidayList &holidays)
{
    m_holidays = holidays;
    showMonth();
}

void CRemoteRecordSetHolidayDlg::showMonth()
{
    const int m = m_month->currentIndex();
    const int first = HolidayList::firstWeekday(m_year, m + 1);
    const int days = QDate(m_year, m + 1, 1).daysInMonth();
    for (int row = 0; row < HolidayList::WeekRows; ++row) {
        for (int w = 0; w < HolidayList::Weekdays; ++w) {
            QCheckBox *cell = m_cells[row * HolidayList::Weekdays + w];
            const int day = row * HolidayList::Weekdays + w - first + 1;
            cell->setText(day >= 1 && day <= days ? QString::number(day) : QString());
            cell->setAccessibleName(holidayTexts::weekdayHoliday(m, row, w));
            cell->setChecked(m_holidays.weekday[m][w][row]);
        }
    }
}

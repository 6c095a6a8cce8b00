// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/record/CRemoteRecordHolidayDlg.h"

#include "i18n/Translator.h"
#include "pages/common/HolidayEditor.h"
#include "pages/record/CRemoteRecordDelAllHolidayDlg.h"
#include "pages/record/CRemoteRecordSetHolidayDlg.h"
#include "setup/Fields.h"

#include <QDate>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace fields = setup::fields::holiday;
using Kind = FieldEditor::Kind;

CRemoteRecordHolidayDlg::CRemoteRecordHolidayDlg(QWidget *parent)
    : CSetupPage(parent)
    , m_year(QDate::currentDate().year())
{
    setSection(setup::Section::Holiday);
}

CRemoteRecordHolidayDlg::~CRemoteRecordHolidayDlg() = default;

void CRemoteRecordHolidayDlg::setYear(int year)
{
    m_year = year;
    if (m_holidays)
        m_holidays->setYear(year);
}

void CRemoteRecordHolidayDlg::buildControls()
{
    QFormLayout *form = binder().form(contentArea(), {{fields::enabled, Kind::Check}});
    m_holidays = new HolidayEditor(fields::entries, contentArea());
    m_holidays->setYear(m_year);
    binder().add(m_holidays);

    auto *weekdays = new QPushButton(nelib::tr("Select Day Of Week"), contentArea());
    auto *deleteAll = new QPushButton(nelib::tr("Delete All"), contentArea());
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(weekdays);
    buttons->addWidget(deleteAll);
    buttons->addStretch(1);

    auto *layout = new QVBoxLayout(contentArea());
    layout->addLayout(form);
    layout->addWidget(m_holidays->widget(), 1);
    layout->addLayout(buttons);
    connect(weekdays, &QPushButton::clicked, this, &CRemoteRecordHolidayDlg::selectDayOfWeek);
    connect(deleteAll, &QPushButton::clicked, this, &CRemoteRecordHolidayDlg::deleteAll);
}

void CRemoteRecordHolidayDlg::selectDayOfWeek()
{
    if (!m_weekdayDialog) {
        m_weekdayDialog = new CRemoteRecordSetHolidayDlg(this);
        connect(m_weekdayDialog, &QDialog::accepted, this,
                [this] { m_holidays->setHolidays(m_weekdayDialog->holidays()); });
    }
    m_weekdayDialog->setYear(m_year);
    m_weekdayDialog->setHolidays(m_holidays->holidays());
    m_weekdayDialog->setMonth(m_holidays->month());
    m_weekdayDialog->open();
}

void CRemoteRecordHolidayDlg::deleteAll()
{
    if (!m_deleteDialog) {
        m_deleteDialog = new CRemoteRecordDelAllHolidayDlg(this);
        connect(m_deleteDialog, &QDialog::accepted, this,
                [this] { m_holidays->setHolidays(setup::HolidayList {}); });
    }
    m_deleteDialog->open();
}

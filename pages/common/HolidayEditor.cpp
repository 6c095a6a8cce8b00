// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/HolidayEditor.h"

#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "pages/common/HolidayTexts.h"
#include "session/MessageSink.h"
#include "setup/Fields.h"

#include <QComboBox>
#include <QDate>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QListWidget>
#include <QToolButton>
#include <QVBoxLayout>

using setup::HolidayList;

namespace {

constexpr const char *DayHeadings[] = {
    RS_TEXT("SUN"), RS_TEXT("MON"), RS_TEXT("TUE"), RS_TEXT("WED"),
    RS_TEXT("THU"), RS_TEXT("FRI"), RS_TEXT("SAT"),
};

int daysIn(int year, int month)
{
    return QDate(year, month, 1).daysInMonth();
}

} // namespace

HolidayEditor::HolidayEditor(const setup::FieldInfo &field, QWidget *parent)
    : FieldEditor(field, 0, 0, parent)
    , m_year(QDate::currentDate().year())
    , m_panel(new QWidget(parent))
    , m_month(new QComboBox(m_panel))
    , m_list(new QListWidget(m_panel))
{
    for (const char *name : holidayTexts::Months)
        m_month->addItem(nelib::tr(name));
    auto *monthLabel = new CTransparentStatic(nelib::tr("Month"), m_panel);
    monthLabel->setBuddy(m_month);
    m_month->setAccessibleName(monthLabel->text());
    auto *monthRow = new QHBoxLayout;
    monthRow->addWidget(monthLabel);
    monthRow->addWidget(m_month, 1);

    auto *calendar = new QGridLayout;
    calendar->setSpacing(2);
    for (int w = 0; w < 7; ++w) {
        auto *heading = new CTransparentStatic(nelib::tr(DayHeadings[w]), m_panel);
        heading->setAlignment(Qt::AlignCenter);
        calendar->addWidget(heading, 0, w);
    }
    for (int cell = 0; cell < int(m_cells.size()); ++cell) {
        auto *day = new QToolButton(m_panel);
        day->setCheckable(true);
        day->setAutoRaise(true);
        day->setMinimumSize(30, 24);
        calendar->addWidget(day, cell / 7 + 1, cell % 7);
        connect(day, &QToolButton::clicked, this, [this, cell] { dayClicked(cell); });
        m_cells[cell] = day;
    }

    auto *left = new QVBoxLayout;
    left->addLayout(monthRow);
    left->addLayout(calendar);
    left->addStretch(1);
    m_list->setAccessibleName(nelib::tr(field.label));
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    auto *layout = new QHBoxLayout(m_panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(left);
    layout->addWidget(m_list, 1);

    connect(m_month, &QComboBox::currentIndexChanged, this, &HolidayEditor::showMonth);
    showMonth();
}

HolidayEditor::~HolidayEditor() = default;

void HolidayEditor::setYear(int year)
{
    m_year = year;
    showMonth();
}

int HolidayEditor::month() const
{
    return m_month->currentIndex() + 1;
}

bool HolidayEditor::setHolidays(const HolidayList &holidays)
{
    if (holidays.size() > HolidayList::Capacity) {
        MessageSink::show(nelib::tr("No more than 220 holidays can be set."));
        return false;
    }
    m_holidays = holidays;
    showMonth();
    showList();
    Q_EMIT edited();
    return true;
}

void HolidayEditor::fill(const setup::SectionView &section)
{
    m_holidays = HolidayList::fromSection(section, m_year);
    showMonth();
    showList();
}

void HolidayEditor::gather(setup::SectionEdit &section) const
{
    // A list that reads as the one shown is kept in the form it has.
    if (HolidayList::fromSection(section, m_year) != m_holidays)
        m_holidays.toSection(section, m_year);
}

void HolidayEditor::copyFrom(const FieldEditor &other)
{
    m_holidays = static_cast<const HolidayEditor &>(other).m_holidays;
    showMonth();
    showList();
}

// The month's days at their weekday, the first row holding the first of the month.
void HolidayEditor::showMonth()
{
    const int m = month();
    const int first = HolidayList::firstWeekday(m_year, m);
    const int days = daysIn(m_year, m);
    for (int cell = 0; cell < int(m_cells.size()); ++cell) {
        QToolButton *button = m_cells[cell];
        const int day = cell - first + 1;
        const bool exists = day >= 1 && day <= days;
        button->setVisible(exists);
        if (!exists)
            continue;
        button->setText(QString::number(day));
        button->setAccessibleName(m_month->currentText() + u' ' + button->text());
        button->setChecked(m_holidays.fixed[m - 1][day - 1]);
    }
}

void HolidayEditor::showList()
{
    m_list->clear();
    for (int m = 0; m < HolidayList::Months; ++m) {
        for (int d = 0; d < HolidayList::Days; ++d) {
            if (m_holidays.fixed[m][d])
                m_list->addItem(nelib::tr(holidayTexts::Months[m]) + u' ' + QString::number(d + 1));
        }
    }
    for (int m = 0; m < HolidayList::Months; ++m) {
        for (int w = 0; w < HolidayList::Weekdays; ++w) {
            for (int row = 0; row < HolidayList::WeekRows; ++row) {
                if (m_holidays.weekday[m][w][row])
                    m_list->addItem(holidayTexts::weekdayHoliday(m, row, w));
            }
        }
    }
}

void HolidayEditor::dayClicked(int cell)
{
    const int m = month();
    const int day = cell - HolidayList::firstWeekday(m_year, m) + 1;
    HolidayList changed = m_holidays;
    changed.fixed[m - 1][day - 1] = m_cells[cell]->isChecked();
    if (!setHolidays(changed))
        m_cells[cell]->setChecked(false);
}

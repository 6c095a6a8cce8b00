// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/display/CRemoteDisplayIntervalDlg.h"

#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "setup/Fields.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
namespace fields = setup::fields::interval;
using Kind = FieldEditor::Kind;

namespace {

constexpr int EventRecordLowest = 1;
constexpr int EventRecordHighest = 59;

} // namespace

CRemoteDisplayIntervalDlg::CRemoteDisplayIntervalDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Interval);
}

CRemoteDisplayIntervalDlg::~CRemoteDisplayIntervalDlg() = default;

QRadioButton *CRemoteDisplayIntervalDlg::addOnOff(QWidget *parent, const QString &label,
                                                  QLayout *row)
{
    auto *group = new QButtonGroup(parent);
    QRadioButton *on = nullptr;
    for (const char *choice : {RS_TEXT("On"), RS_TEXT("Off")}) {
        auto *button = new QRadioButton(nelib::tr(choice), parent);
        // Told apart from the other pairs of the page.
        button->setAccessibleName(u"%1 %2"_s.arg(label, button->text()));
        group->addButton(button);
        row->addWidget(button);
        if (!on)
            on = button;
    }
    on->setChecked(true);
    return on;
}

void CRemoteDisplayIntervalDlg::buildControls()
{
    QWidget *area = contentArea();
    QFormLayout *form = binder().form(area, {
                                                {fields::sequence, Kind::Number},
                                                {fields::pip, Kind::Number},
                                                {fields::spot, Kind::Number},
                                                {fields::eventUpdate, Kind::Number},
                                            });
    const QString switching = nelib::tr("Switching Interval");
    auto *heading = new CTransparentStatic(switching, area);
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);
    auto *switchingRow = new QHBoxLayout;
    m_switchingOn = addOnOff(area, switching, switchingRow);
    switchingRow->addStretch(1);
    form->insertRow(0, heading, switchingRow);
    connect(m_switchingOn, &QRadioButton::toggled, this, &CRemoteDisplayIntervalDlg::afterFill);

    // "Event Record": the choice, then its time, which counts only while on.
    const QString eventRecord = nelib::tr("Event Record");
    auto *eventRow = new QHBoxLayout;
    m_eventRecordOn = addOnOff(area, eventRecord, eventRow);
    m_eventRecordTime = new QSpinBox(area);
    m_eventRecordTime->setRange(EventRecordLowest, EventRecordHighest);
    m_eventRecordTime->setAccessibleName(nelib::tr("Event Record Time"));
    eventRow->addWidget(m_eventRecordTime, 1);
    auto *eventText = new CTransparentStatic(eventRecord, area);
    eventText->setBuddy(m_eventRecordOn);
    form->addRow(eventText, eventRow);
    connect(m_eventRecordOn, &QRadioButton::toggled, m_eventRecordTime, &QWidget::setEnabled);

    // "Time Out": the switch, then the time the list offers while it is on.
    FieldEditor *onOff
        = binder().add(FieldEditor::create(Kind::Check, fields::timeOutSwitch, 0, 0, area));
    FieldEditor *seconds
        = binder().add(FieldEditor::create(Kind::List, fields::timeOut, 0, 0, area));
    auto *box = qobject_cast<QCheckBox *>(onOff->widget());
    box->setText(nelib::tr("On"));
    const QString label = nelib::tr(fields::timeOut.label);
    box->setAccessibleName(label);
    seconds->widget()->setAccessibleName(label);
    auto *row = new QHBoxLayout;
    row->addWidget(box);
    row->addWidget(seconds->widget(), 1);
    auto *text = new CTransparentStatic(label, area);
    text->setBuddy(box);
    form->addRow(text, row);
    connect(box, &QCheckBox::toggled, seconds->widget(), &QWidget::setEnabled);

    auto *layout = new QVBoxLayout(area);
    layout->addLayout(form);
    layout->addStretch(1);
}

void CRemoteDisplayIntervalDlg::fillControls(QByteArrayView section, Source source)
{
    // A stored time-out that the list does not offer leaves the list as it
    // was; Save then stores the item shown.
    auto *list = binder().widget<QComboBox>(fields::timeOut);
    const int shown = list->currentIndex();
    CSetupPage::fillControls(section, source);
    if (list->currentIndex() < 0)
        list->setCurrentIndex(shown);
}

void CRemoteDisplayIntervalDlg::afterFill()
{
    binder()
        .widget<QComboBox>(fields::timeOut)
        ->setEnabled(binder().widget<QCheckBox>(fields::timeOutSwitch)->isChecked());
    for (const setup::FieldInfo &dwell : {fields::sequence, fields::pip, fields::spot})
        binder().widget<QWidget>(dwell)->setEnabled(m_switchingOn->isChecked());
}

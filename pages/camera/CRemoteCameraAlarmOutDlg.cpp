// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/camera/CRemoteCameraAlarmOutDlg.h"

#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "pages/common/ContactTypeEditor.h"
#include "setup/Fields.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QScrollArea>
#include <QSpinBox>
#include <QVBoxLayout>

#include <tuple>

namespace fields = setup::fields::alarmOut;
using Kind = FieldEditor::Kind;
using Copy = CRemoteCameraCopySettingDlg;
using setup::FieldInfo;

namespace {

constexpr int CopyMode = 3;
// The outputs' settings, bytes 4 to 195, are what Default restores.
constexpr int OutputsFirst = 4;
constexpr int OutputsLength = 192;

} // namespace

CRemoteCameraAlarmOutDlg::CRemoteCameraAlarmOutDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::AlarmOut);
}

CRemoteCameraAlarmOutDlg::~CRemoteCameraAlarmOutDlg() = default;

void CRemoteCameraAlarmOutDlg::buildControls()
{
    setTabs({nelib::tr("Setting"), nelib::tr("Schedule")});
    QGridLayout *outputs = binder().channelGrid(
        tabContent(0), {
                           {fields::enabled, Kind::List, Copy::Type, false, -1,
                            ContactTypeEditor::factory(fields::normallyClosed)},
                           {fields::dwell, Kind::List, Copy::DwellTime},
                       });
    outputs->setColumnStretch(3, 1);
    auto *layout = new QVBoxLayout(tabContent(0));
    layout->addLayout(outputs);
    layout->addStretch(1);
    buildSchedule(tabContent(1));
    addCopySettings(CopyMode);
}

void CRemoteCameraAlarmOutDlg::buildSchedule(QWidget *tab)
{
    auto *outer = new QVBoxLayout(tab);
    outer->setContentsMargins(0, 0, 0, 0);
    auto *scroll = new QScrollArea(tab);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    outer->addWidget(scroll);
    auto *area = new QWidget(scroll);
    scroll->setWidget(area);

    FieldEditor *count
        = binder().add(FieldEditor::create(Kind::Number, fields::lineCount, 0, 0, area));
    m_lineCount = qobject_cast<QSpinBox *>(count->widget());
    count->setAccessibleName(nelib::tr(fields::lineCount.label));
    auto *countLabel = new CTransparentStatic(nelib::tr(fields::lineCount.label), area);
    countLabel->setBuddy(m_lineCount);
    connect(m_lineCount, &QSpinBox::valueChanged, this,
            &CRemoteCameraAlarmOutDlg::enableLinesInUse);
    auto *countRow = new QHBoxLayout;
    countRow->addWidget(countLabel);
    countRow->addWidget(m_lineCount);
    countRow->addStretch(1);

    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(3);
    const QString start = nelib::tr("Start Time");
    const QString end = nelib::tr("End Time");
    const QString headings[] = {
        QString(), nelib::tr(fields::days.label),   start,
        end,       nelib::tr(fields::events.label), nelib::tr(fields::alarmOut.label),
    };
    for (int c = 0; c < int(std::size(headings)); ++c)
        grid->addWidget(new CTransparentStatic(headings[c], area), 0, c);

    for (int line = 0; line < Lines; ++line) {
        const QString number = SectionBinder::channelNumber(line);
        auto *label = new CTransparentStatic(number, area);
        grid->addWidget(label, line + 1, 0);
        QList<QWidget *> &widgets = m_lineWidgets[line];
        widgets.append(label);
        auto bind = [&](Kind kind, const FieldInfo &field, const QString &name) {
            FieldEditor *e = binder().add(FieldEditor::create(kind, field, line, 0, area));
            e->setAccessibleName(name + u' ' + number);
            widgets.append(e->widget());
            return e->widget();
        };
        grid->addWidget(bind(Kind::List, fields::days, headings[1]), line + 1, 1);
        int column = 2;
        for (const auto &[hour, minute, name] :
             {std::tuple {fields::startHour, fields::startMinute, start},
              std::tuple {fields::endHour, fields::endMinute, end}}) {
            QHBoxLayout *time
                = binder().timeEditor(area, hour, minute, line, -1, -1, name + u' ' + number);
            for (int k = 0; k < time->count(); ++k)
                widgets.append(time->itemAt(k)->widget());
            grid->addLayout(time, line + 1, column++);
        }
        grid->addWidget(bind(Kind::List, fields::events, headings[4]), line + 1, 4);
        grid->addWidget(bind(Kind::AlarmOutputs, fields::alarmOut, headings[5]), line + 1, 5);
    }
    grid->setColumnStretch(6, 1);

    auto *layout = new QVBoxLayout(area);
    layout->addLayout(countRow);
    layout->addLayout(grid);
    layout->addStretch(1);
}

// Lines past the number in use keep their values but take no part.
void CRemoteCameraAlarmOutDlg::enableLinesInUse()
{
    for (int line = 0; line < Lines; ++line) {
        for (QWidget *w : std::as_const(m_lineWidgets[line]))
            w->setEnabled(line < m_lineCount->value());
    }
}

void CRemoteCameraAlarmOutDlg::afterFill()
{
    enableLinesInUse();
}

void CRemoteCameraAlarmOutDlg::fillControls(QByteArrayView section, Source source)
{
    if (source != Source::DefaultFile) {
        CSetupPage::fillControls(section, source);
        return;
    }
    // The default file restores the outputs; the schedule stays as shown.
    QByteArray shown = sectionBuffer();
    gatherControls(shown);
    shown.replace(OutputsFirst, OutputsLength, section.sliced(OutputsFirst, OutputsLength));
    CSetupPage::fillControls(shown, source);
}

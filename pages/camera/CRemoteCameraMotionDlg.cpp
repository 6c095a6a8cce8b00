// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/camera/CRemoteCameraMotionDlg.h"

#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "pages/common/MotionMaskEditor.h"
#include "pages/common/NumberListEditor.h"
#include "setup/Fields.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <tuple>

namespace fields = setup::fields::motion;
using Kind = FieldEditor::Kind;
using Copy = CRemoteCameraCopySettingDlg;
using setup::FieldInfo;

namespace {

// The copy mode of each view.
constexpr int CopyModes[] = {5, 6, 7, 12};

constexpr const char *ViewNames[] = {
    RS_TEXT("Time Setting"),
    RS_TEXT("Day Setting"),
    RS_TEXT("Night Setting"),
    RS_TEXT("Action"),
};

// The fields each view shows; a copy stays within them.
const std::vector<FieldInfo> &viewFields(int view)
{
    static const std::vector<FieldInfo> views[] = {
        {fields::dayStartHour, fields::dayStartMinute, fields::nightStartHour,
         fields::nightStartMinute},
        {fields::daySensitivity, fields::dayMinBlocks, fields::dayMask},
        {fields::nightSensitivity, fields::nightMinBlocks, fields::nightMask},
        {fields::beep, fields::alarmOut, fields::dwell},
    };
    return views[view];
}

QWidget *gridView(QGridLayout *grid, QWidget *view)
{
    auto *layout = new QVBoxLayout(view);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(grid);
    layout->addStretch(1);
    return view;
}

} // namespace

CRemoteCameraMotionDlg::CRemoteCameraMotionDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Motion);
}

CRemoteCameraMotionDlg::~CRemoteCameraMotionDlg() = default;

void CRemoteCameraMotionDlg::buildControls()
{
    QWidget *area = contentArea();
    m_views = new QButtonGroup(this);
    m_stack = new QStackedWidget(area);
    auto *selector = new QHBoxLayout;
    for (int v = 0; v < int(std::size(ViewNames)); ++v) {
        auto *button = new QRadioButton(nelib::tr(ViewNames[v]), area);
        button->setAccessibleName(button->text());
        m_views->addButton(button, v);
        selector->addWidget(button);
    }
    selector->addStretch(1);
    connect(m_views, &QButtonGroup::idClicked, this, [this](int v) { showView(View(v)); });

    m_stack->addWidget(buildTimeView());
    for (bool night : {false, true}) {
        auto *view = new QWidget(m_stack);
        QGridLayout *grid = binder().channelGrid(
            view, {
                      {night ? fields::nightSensitivity : fields::daySensitivity, Kind::List,
                       Copy::Sensitivity},
                      {night ? fields::nightMinBlocks : fields::dayMinBlocks, Kind::Number,
                       Copy::MinBlocks},
                      {night ? fields::nightMask : fields::dayMask, Kind::Bits, Copy::MaskZone,
                       false, -1, MotionMaskEditor::factory(night)},
                  });
        grid->setColumnStretch(4, 1);
        m_stack->addWidget(gridView(grid, view));
        // The two settings have the same columns; their names tell them apart.
        const QString setting = nelib::tr(ViewNames[night ? NightView : DayView]);
        for (const FieldInfo &field : viewFields(night ? NightView : DayView)) {
            for (int row = 0; row < MaxChannels; ++row) {
                binder()
                    .editor(field, row)
                    ->setAccessibleName(setting + u' ' + nelib::tr(field.label) + u' '
                                        + channelNumber(row));
            }
        }
    }
    auto *action = new QWidget(m_stack);
    QGridLayout *grid
        = binder().channelGrid(action, {
                                           {fields::beep, Kind::Check, Copy::Beep, true},
                                           {fields::alarmOut, Kind::AlarmOutputs, Copy::AlarmOut},
                                           {fields::dwell, Kind::List, Copy::DwellTime, false, -1,
                                            NumberListEditor::factory(RS_TEXT("%2d Sec"))},
                                       });
    grid->setColumnStretch(4, 1);
    m_stack->addWidget(gridView(grid, action));

    auto *layout = new QVBoxLayout(area);
    layout->addLayout(selector);
    layout->addWidget(m_stack, 1);
    connect(copySettingsButton(), &QPushButton::clicked, this, [this] {
        openCopySettings(CopyModes[m_stack->currentIndex()],
                         [this](int source, int target, const auto &properties) {
                             copyRow(source, target, properties);
                         });
    });
    showView(TimeView);
}

QWidget *CRemoteCameraMotionDlg::buildTimeView()
{
    auto *view = new QWidget(m_stack);
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(14);
    grid->setVerticalSpacing(3);
    const QString day = nelib::tr("Day Time");
    const QString night = nelib::tr("Night Time");
    grid->addWidget(new CTransparentStatic(nelib::tr("Ch."), view), 0, 0);
    grid->addWidget(new CTransparentStatic(day, view), 0, 1);
    grid->addWidget(new CTransparentStatic(night, view), 0, 2);
    for (int row = 0; row < MaxChannels; ++row) {
        const QString number = channelNumber(row);
        auto *label = new CTransparentStatic(number, view);
        grid->addWidget(label, row + 1, 0);
        addChannelRow(row, {label});
        int column = 1;
        for (const auto &[hour, minute, name] :
             {std::tuple {fields::dayStartHour, fields::dayStartMinute, day},
              std::tuple {fields::nightStartHour, fields::nightStartMinute, night}}) {
            QHBoxLayout *time = binder().timeEditor(view, hour, minute, row, row, Copy::DayTime,
                                                    name + u' ' + number);
            time->addStretch(1);
            grid->addLayout(time, row + 1, column++);
        }
    }
    grid->setColumnStretch(3, 1);
    return gridView(grid, view);
}

void CRemoteCameraMotionDlg::showView(View view)
{
    m_views->button(view)->setChecked(true);
    m_stack->setCurrentIndex(view);
}

// Copies the ticked properties of the view shown, and nothing of the others.
void CRemoteCameraMotionDlg::copyRow(int source, int target,
                                     const CRemoteCameraCopySettingDlg::Properties &properties)
{
    const std::vector<FieldInfo> &shown = viewFields(m_stack->currentIndex());
    const auto inView = [&](const FieldEditor &e) {
        return std::any_of(shown.begin(), shown.end(),
                           [&](const FieldInfo &f) { return f == e.field(); });
    };
    for (const SectionBinder::Binding &from : binder().bindings()) {
        if (from.row != source || from.copyProperty < 0 || !properties[from.copyProperty]
            || !inView(*from.editor))
            continue;
        for (const SectionBinder::Binding &to : binder().bindings()) {
            if (to.row == target && to.editor->field() == from.editor->field())
                to.editor->copyFrom(*from.editor);
        }
    }
}

bool CRemoteCameraMotionDlg::checksSaveRules() const
{
    return m_stack && m_stack->currentIndex() == TimeView;
}

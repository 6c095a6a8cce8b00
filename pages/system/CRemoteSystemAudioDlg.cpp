// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/system/CRemoteSystemAudioDlg.h"

#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "setup/Fields.h"

#include <QGridLayout>
#include <QVBoxLayout>

namespace fields = setup::fields::audio;
using Kind = FieldEditor::Kind;

namespace {

// The row of each input, by the names the live output list gives them.
constexpr const char *InputNames[] = {
    RS_TEXT("Audio 1"),
    RS_TEXT("Audio 2"),
    RS_TEXT("Audio 3"),
    RS_TEXT("Audio 4"),
};
static_assert(std::size(InputNames) == CRemoteSystemAudioDlg::Inputs);

} // namespace

CRemoteSystemAudioDlg::CRemoteSystemAudioDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Audio);
}

CRemoteSystemAudioDlg::~CRemoteSystemAudioDlg() = default;

void CRemoteSystemAudioDlg::buildControls()
{
    QWidget *area = contentArea();
    QStringList inputs;
    for (const char *name : InputNames)
        inputs.append(nelib::tr(name));
    // The inputs: one row each, their switch and gain side by side.
    QGridLayout *grid = binder().grid(area, {.count = Inputs, .channels = false, .titles = inputs},
                                      {
                                          {fields::inputEnabled, Kind::List},
                                          {fields::inputVolume, Kind::Number},
                                      });
    grid->setSpacing(-1);
    grid->setHorizontalSpacing(14);
    grid->setColumnStretch(3, 1);

    // The output and what happens to the audio, under the inputs' first column.
    grid->setRowMinimumHeight(Inputs + 1, 12);
    int row = Inputs + 2;
    const std::pair<setup::FieldInfo, Kind> settings[] = {
        {fields::liveOutput, Kind::List},
        {fields::outputVolume, Kind::Number},
        {fields::recordAudio, Kind::List},
        {fields::networkAudio, Kind::List},
    };
    for (const auto &[field, kind] : settings) {
        FieldEditor *e = binder().add(FieldEditor::create(kind, field, 0, 0, area));
        const QString label = nelib::tr(field.label);
        e->widget()->setAccessibleName(label);
        auto *text = new CTransparentStatic(label, area);
        text->setBuddy(e->widget());
        grid->addWidget(text, row, 0);
        grid->addWidget(e->widget(), row, 1);
        ++row;
    }

    auto *layout = new QVBoxLayout(area);
    layout->addLayout(grid);
    layout->addStretch(1);
}

// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/display/CRemoteDisplayOSDDlg.h"

#include "i18n/Translator.h"
#include "pages/common/BitGroupEditor.h"
#include "pages/display/CRemoteDisplayOSDMargin.h"
#include "setup/Fields.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace fields = setup::fields::osd;
using Kind = FieldEditor::Kind;

namespace {

constexpr std::array<setup::FieldInfo, 4> Margins {
    fields::marginTop,
    fields::marginBottom,
    fields::marginLeft,
    fields::marginRight,
};

} // namespace

CRemoteDisplayOSDDlg::CRemoteDisplayOSDDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Osd);
}

CRemoteDisplayOSDDlg::~CRemoteDisplayOSDDlg() = default;

void CRemoteDisplayOSDDlg::buildControls()
{
    QWidget *area = contentArea();
    QFormLayout *form = binder().form(area, {
                                                {fields::timeOut, Kind::List},
                                                {fields::language, Kind::List},
                                            });
    auto *groups = new QHBoxLayout;
    for (const setup::FieldInfo &items : {fields::liveItems, fields::playbackItems})
        groups->addWidget(binder().add(new BitGroupEditor(items, 1, area))->widget(), 0,
                          Qt::AlignTop);
    groups->addStretch(1);

    m_margin = new CRemoteDisplayOSDMargin(this);
    m_margin->setForm(binder().form(m_margin, {
                                                  {Margins[0], Kind::Number},
                                                  {Margins[1], Kind::Number},
                                                  {Margins[2], Kind::Number},
                                                  {Margins[3], Kind::Number},
                                              }));
    connect(m_margin, &QDialog::finished, this, &CRemoteDisplayOSDDlg::marginsClosed);
    auto *marginButton = new QPushButton(nelib::tr("Margin"), area);
    connect(marginButton, &QPushButton::clicked, this, &CRemoteDisplayOSDDlg::openMargins);
    auto *buttonRow = new QHBoxLayout;
    buttonRow->addWidget(marginButton);
    buttonRow->addStretch(1);

    auto *layout = new QVBoxLayout(area);
    layout->addLayout(form);
    layout->addLayout(groups);
    layout->addLayout(buttonRow);
    layout->addStretch(1);
}

void CRemoteDisplayOSDDlg::fillControls(QByteArrayView section, Source source)
{
    // A stored time-out that the list does not offer leaves the list as it was.
    auto *list = binder().widget<QComboBox>(fields::timeOut);
    const int shown = list->currentIndex();
    CSetupPage::fillControls(section, source);
    if (list->currentIndex() < 0)
        list->setCurrentIndex(shown);
}

// The margins change the page only when the operator leaves the dialog
// with OK; Cancel puts back what it showed.
void CRemoteDisplayOSDDlg::openMargins()
{
    for (std::size_t k = 0; k < Margins.size(); ++k) {
        binder().editor(Margins[k])->blockSignals(true);
        m_marginsShown[k] = binder().widget<QSpinBox>(Margins[k])->value();
    }
    m_margin->open();
}

void CRemoteDisplayOSDDlg::marginsClosed(int result)
{
    bool changed = false;
    for (std::size_t k = 0; k < Margins.size(); ++k) {
        auto *box = binder().widget<QSpinBox>(Margins[k]);
        if (result != QDialog::Accepted)
            box->setValue(m_marginsShown[k]);
        changed = changed || box->value() != m_marginsShown[k];
        binder().editor(Margins[k])->blockSignals(false);
    }
    if (changed)
        markModified();
}

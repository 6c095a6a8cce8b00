// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/camera/CRemoteCameraCameraDlg.h"

#include "i18n/Translator.h"
#include "pages/common/TextLimitValidator.h"
#include "session/MessageSink.h"
#include "setup/Fields.h"
#include "setup/SaveRules.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace fields = setup::fields::camera;
using Kind = FieldEditor::Kind;

namespace {

// Titles from the recorder may be typed up to 18 characters, titles restored
// from the default file up to 16.
constexpr int TitleLimit = 18;
constexpr int DefaultTitleLimit = 16;

TextLimitValidator *limitOf(QLineEdit *edit)
{
    return edit->findChild<TextLimitValidator *>();
}

} // namespace

CRemoteCameraCameraDlg::CRemoteCameraCameraDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Camera);
}

CRemoteCameraCameraDlg::~CRemoteCameraCameraDlg() = default;

QLineEdit *CRemoteCameraCameraDlg::title(int row) const
{
    return binder().widget<QLineEdit>(fields::title, row);
}

void CRemoteCameraCameraDlg::buildControls()
{
    QGridLayout *grid = binder().channelGrid(
        contentArea(), {
                           {fields::title, Kind::Text, RS_TEXT("Title")},
                           {fields::covert, Kind::Check, RS_TEXT("Covert"), true},
                           {fields::audio, Kind::List, RS_TEXT("Audio")},
                       });
    grid->setColumnStretch(1, 1);
    for (int row = 0; row < MaxChannels; ++row) {
        QLineEdit *edit = title(row);
        // Titles are typed as plain characters, never composed by an input method.
        edit->setAttribute(Qt::WA_InputMethodEnabled, false);
        edit->setMinimumWidth(edit->fontMetrics().averageCharWidth() * (TitleLimit + 6));
        connect(edit, &QLineEdit::textChanged, this, [this, edit] { titleChanged(edit); });
    }
    auto *layout = new QVBoxLayout(contentArea());
    layout->addLayout(grid);
    layout->addStretch(1);
    addCopySettings();
}

void CRemoteCameraCameraDlg::fillControls(QByteArrayView section, Source source)
{
    const int limit = source == Source::DefaultFile ? DefaultTitleLimit : TitleLimit;
    for (int row = 0; row < channelCount(); ++row)
        limitOf(title(row))->setLimit(limit);
    CSetupPage::fillControls(section, source);
    // An audio byte that is no single input shows "Off", and a save stores 0.
    for (int row = 0; row < channelCount(); ++row) {
        auto *audio = binder().widget<QComboBox>(fields::audio, row);
        if (audio->currentIndex() < 0)
            audio->setCurrentIndex(0);
    }
}

void CRemoteCameraCameraDlg::titleChanged(QLineEdit *edit)
{
    QString text = edit->text();
    int cursor = edit->cursorPosition();
    bool removed = false;
    // From the last to the first, so that the positions still to visit stay valid.
    for (qsizetype i = text.size() - 1; i >= 0; --i) {
        if (!setup::SaveRules::ForbiddenInTitle.contains(text[i]))
            continue;
        text.remove(i, 1);
        if (i < cursor)
            --cursor;
        removed = true;
    }
    if (removed) {
        // Raises this handler again with the clean text.
        limitOf(edit)->setText(edit, text);
        edit->setCursorPosition(cursor);
        MessageSink::show(nelib::tr(setup::SaveRules::TitleMessage));
    }
}

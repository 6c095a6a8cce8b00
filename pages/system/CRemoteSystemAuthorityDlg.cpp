// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/system/CRemoteSystemAuthorityDlg.h"

#include "i18n/Translator.h"
#include "pages/common/BitGridEditor.h"
#include "pages/common/DialogButtons.h"
#include "setup/Fields.h"
#include "setup/LittleEndian.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

using nelib::LittleEndian;

namespace {

constexpr int Columns = 3;

// The grid edits element [0] of the rights; handed the word alone as the
// bytes at that element's record offset, it edits the word it is given.
constexpr setup::FieldInfo Word = setup::fields::users::rights;

} // namespace

CRemoteSystemAuthorityDlg::CRemoteSystemAuthorityDlg(QWidget *parent)
    : QDialog(parent)
    , m_grid(new BitGridEditor(Word, 0, Columns, this))
{
    setWindowTitle(nelib::tr("Authority"));
    auto *buttons = DialogButtons::okCancel(this);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_grid->widget());
    layout->addStretch(1);
    layout->addWidget(buttons);
}

CRemoteSystemAuthorityDlg::~CRemoteSystemAuthorityDlg() = default;

void CRemoteSystemAuthorityDlg::setRights(const QString &account, quint32 rights, bool mayChange)
{
    setWindowTitle(nelib::tr("Authority") + QStringLiteral(" - ") + account);
    m_rights = rights;
    m_mayChange = mayChange;
    QByteArray word(Word.width, '\0');
    LittleEndian::setU32(word, 0, rights);
    m_grid->fill(setup::SectionView(word, Word.offset));
    m_grid->setChangeable(mayChange);
}

quint32 CRemoteSystemAuthorityDlg::rights() const
{
    if (!m_mayChange)
        return m_rights;
    QByteArray word(Word.width, '\0');
    LittleEndian::setU32(word, 0, m_rights);
    setup::SectionEdit edit(word, Word.offset);
    m_grid->gather(edit);
    return LittleEndian::u32(word, 0);
}

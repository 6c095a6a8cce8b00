// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/system/CRemoteSystemPasswdDlg.h"

#include "i18n/CodePage.h"
#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "pages/system/CRemoteSystemAuthorityDlg.h"
#include "session/MessageSink.h"
#include "setup/Fields.h"
#include "setup/SaveRules.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace fields = setup::fields::users;
using Kind = FieldEditor::Kind;
using setup::SaveRules;

namespace {

// The account names, in slot order; the same names as Auto Login's.
constexpr const char *AccountNames[] = {
    RS_TEXT("Admin"), RS_TEXT("Manager1"), RS_TEXT("Manager2"), RS_TEXT("Manager3"),
    RS_TEXT("User1"), RS_TEXT("User2"),    RS_TEXT("User3"),    RS_TEXT("User4"),
    RS_TEXT("User5"), RS_TEXT("User6"),    RS_TEXT("User7"),
};
static_assert(std::size(AccountNames) == CRemoteSystemPasswdDlg::Accounts);

// A password as its slot holds it: code-page bytes, zero-filled to 12.
QByteArray slotBytes(const QString &text)
{
    QByteArray bytes = nelib::CodePage::system().encode(
        QStringView(text).left(CRemoteSystemPasswdDlg::PasswordLength),
        CRemoteSystemPasswdDlg::PasswordLength);
    bytes.resize(CRemoteSystemPasswdDlg::PasswordLength, '\0');
    return bytes;
}

} // namespace

CRemoteSystemPasswdDlg::CRemoteSystemPasswdDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Users);
}

CRemoteSystemPasswdDlg::~CRemoteSystemPasswdDlg() = default;

int CRemoteSystemPasswdDlg::account() const
{
    return m_user ? std::max(m_user->currentIndex(), 0) : 0;
}

void CRemoteSystemPasswdDlg::buildControls()
{
    QWidget *area = contentArea();
    QFormLayout *form = binder().form(area, {
                                                {fields::autoLogout, Kind::List},
                                                {fields::autoLogin, Kind::List},
                                            });

    m_user = new QComboBox(area);
    for (const char *name : AccountNames)
        m_user->addItem(nelib::tr(name));
    const auto addRow = [&](int row, const char *label, QWidget *control) {
        control->setAccessibleName(nelib::tr(label));
        auto *text = new CTransparentStatic(nelib::tr(label), area);
        text->setBuddy(control);
        form->insertRow(row, text, control);
    };
    addRow(0, RS_TEXT("User"), m_user);
    const auto passwordEdit = [&](int row, const char *label) {
        auto *edit = new QLineEdit(area);
        edit->setEchoMode(QLineEdit::Password);
        edit->setMaxLength(PasswordLength);
        addRow(row, label, edit);
        return edit;
    };
    m_current = passwordEdit(1, RS_TEXT("Current Password"));
    m_new = passwordEdit(2, RS_TEXT("New Password"));
    m_confirm = passwordEdit(3, RS_TEXT("Confirm Password"));

    auto *check = new QPushButton(nelib::tr("Password Check"), area);
    auto *authority = new QPushButton(nelib::tr("Authority"), area);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(check);
    buttons->addWidget(authority);
    buttons->addStretch(1);
    form->insertRow(4, QString(), buttons);

    auto *layout = new QVBoxLayout(area);
    layout->addLayout(form);
    layout->addStretch(1);

    // The bound lists were created first; the keyboard follows the form from the top.
    QWidget *const order[] = {m_user,
                              m_current,
                              m_new,
                              m_confirm,
                              check,
                              authority,
                              binder().editor(fields::autoLogout)->widget(),
                              binder().editor(fields::autoLogin)->widget()};
    for (std::size_t i = 1; i < std::size(order); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);

    // Typed passwords belong to the account they were typed for.
    connect(m_user, &QComboBox::currentIndexChanged, this, &CRemoteSystemPasswdDlg::clearPasswords);
    connect(check, &QPushButton::clicked, this, &CRemoteSystemPasswdDlg::checkPassword);
    connect(authority, &QPushButton::clicked, this, &CRemoteSystemPasswdDlg::openAuthority);
}

void CRemoteSystemPasswdDlg::fillControls(QByteArrayView section, Source source)
{
    CSetupPage::fillControls(section, source);
    m_table = section.toByteArray();
    clearPasswords();
}

void CRemoteSystemPasswdDlg::gatherControls(QByteArray &section)
{
    CSetupPage::gatherControls(section);
    if (m_table.size() != section.size())
        return;
    const setup::SectionView table = view(m_table);
    setup::SectionEdit out = edit(section);
    for (int k = 0; k < Accounts; ++k) {
        out.setBytes(fields::password, table.bytes(fields::password, k), k);
        out.setNumber(fields::rights, table.number(fields::rights, k), k);
    }
}

void CRemoteSystemPasswdDlg::clearPasswords()
{
    for (QLineEdit *edit : {m_current, m_new, m_confirm})
        edit->clear();
}

void CRemoteSystemPasswdDlg::checkPassword()
{
    const int k = account();
    const QByteArray changed = slotBytes(m_new->text());
    const auto result = SaveRules::checkPasswordChange(view(m_table).bytes(fields::password, k),
                                                       slotBytes(m_current->text()), changed,
                                                       slotBytes(m_confirm->text()));
    if (result != SaveRules::PasswordChange::Accepted) {
        clearPasswords();
    } else {
        edit(m_table).setBytes(fields::password, changed, k);
        markModified();
    }
    MessageSink::show(nelib::tr(SaveRules::passwordMessage(result)));
}

void CRemoteSystemPasswdDlg::openAuthority()
{
    if (!m_authority) {
        m_authority = new CRemoteSystemAuthorityDlg(this);
        connect(m_authority, &QDialog::accepted, this, [this] {
            const quint32 rights = m_authority->rights();
            if (rights == view(m_table).number(fields::rights, m_rightsOf))
                return;
            edit(m_table).setNumber(fields::rights, rights, m_rightsOf);
            markModified();
        });
    }
    m_rightsOf = account();
    m_authority->setRights(m_user->currentText(), view(m_table).number(fields::rights, m_rightsOf),
                           mayChangeRights(m_rightsOf));
    m_authority->open();
}

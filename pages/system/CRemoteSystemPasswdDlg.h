// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/CSetupPage.h"

QT_BEGIN_NAMESPACE
class QComboBox;
class QLineEdit;
QT_END_NAMESPACE

class CRemoteSystemAuthorityDlg;

// System / Authority: the passwords and rights of the recorder's eleven
// accounts, and its automatic logout and login. A password changes in the
// page's own copy of the account table once "Password Check" accepts it, and
// rights once the Authority dialog is confirmed; both reach the recorder only
// with Save, which writes the whole users section. Passwords are code-page
// text in 12-byte slots; the page never shows one in clear, and a refused
// check empties the three password fields.
//
// Admin holds every right: its rights are shown but cannot be changed. The
// other accounts' rights may be changed freely, Network Access included.
class CRemoteSystemPasswdDlg : public CSetupPage
{
    Q_OBJECT

public:
    static constexpr int Accounts = 11;
    static constexpr int Admin = 0;
    static constexpr int PasswordLength = 12;

    explicit CRemoteSystemPasswdDlg(QWidget *parent = nullptr);
    ~CRemoteSystemPasswdDlg() override;

    // The account chosen in "User" (0 = Admin ... 10 = User7).
    int account() const;
    // Whether the rights of `account` may be changed.
    static bool mayChangeRights(int account) { return account != Admin; }

protected:
    void buildControls() override;
    void fillControls(QByteArrayView section, Source source) override;
    void gatherControls(QByteArray &section) override;

private:
    void checkPassword();
    void openAuthority();
    void clearPasswords();

    QComboBox *m_user = nullptr;
    QLineEdit *m_current = nullptr;
    QLineEdit *m_new = nullptr;
    QLineEdit *m_confirm = nullptr;
    CRemoteSystemAuthorityDlg *m_authority = nullptr;
    int m_rightsOf = 0; // the account whose rights the dialog shows
    // The page's copy of the users section: the passwords and rights shown
    // through the check and the dialog, given back by gather.
    QByteArray m_table;
};

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDialog>

class BitGridEditor;

// The rights of one user account: the recorder's eighteen functions as a
// grid of check boxes under an "all" box. The password page opens it with
// the account's rights word and whether the rights may be changed, and after
// OK takes the word back; bits that stand for no right come back as they went.
class CRemoteSystemAuthorityDlg : public QDialog
{
    Q_OBJECT

public:
    explicit CRemoteSystemAuthorityDlg(QWidget *parent = nullptr);
    ~CRemoteSystemAuthorityDlg() override;

    // Shows `rights` for the account named `account` (already translated).
    void setRights(const QString &account, quint32 rights, bool mayChange);
    // The word with the ticked rights; unchanged when the rights may not change.
    quint32 rights() const;
    bool mayChange() const { return m_mayChange; }

    BitGridEditor *grid() const { return m_grid; }

private:
    BitGridEditor *m_grid;
    quint32 m_rights = 0;
    bool m_mayChange = false;
};

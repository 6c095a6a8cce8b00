// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QValidator>

QT_BEGIN_NAMESPACE
class QLineEdit;
QT_END_NAMESPACE

// The text limit of a recorder-page edit: the operator cannot make the text longer once it holds
// `limit` characters, but text the page puts in is shown whole even when longer (a 20-byte title in
// an 18-character edit), and the operator may still shorten it. So filling
// and saving an edit never cuts what the recorder sent, which
// QLineEdit::setMaxLength would do.
class TextLimitValidator : public QValidator
{
    Q_OBJECT

public:
    explicit TextLimitValidator(QObject *parent = nullptr);

    void setLimit(int limit);
    int limit() const { return m_limit; }

    // Puts text of the page's own choosing into `edit`, never cut or refused.
    // Set texts only this way: a refused text would lift the limit, because
    // QLineEdit stops undoing refused typing once its text is refused.
    void setText(QLineEdit *edit, const QString &text);

    State validate(QString &input, int &pos) const override;

private:
    int m_limit = 32767;
    bool m_settingText = false;
    mutable qsizetype m_length = 0; // of the text last accepted
};

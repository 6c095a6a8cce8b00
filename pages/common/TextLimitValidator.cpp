// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/TextLimitValidator.h"

#include <QLineEdit>

TextLimitValidator::TextLimitValidator(QObject *parent)
    : QValidator(parent)
{ }

void TextLimitValidator::setLimit(int limit)
{
    m_limit = limit;
}

void TextLimitValidator::setText(QLineEdit *edit, const QString &text)
{
    m_settingText = true;
    edit->setText(text);
    m_settingText = false;
}

QValidator::State TextLimitValidator::validate(QString &input, int &) const
{
    if (input.size() > m_limit && input.size() > m_length && !m_settingText)
        return Invalid;
    m_length = input.size();
    return Acceptable;
}

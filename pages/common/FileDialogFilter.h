// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

// File dialog filters are kept in the translation file in one text,
// "Label|*.a;*.b|...||", so that translators see them whole.
class FileDialogFilter
{
public:
    // Qt's form of such a filter: "Label (*.a *.b);;...". The patterns stay
    // as the translator left them.
    static QString toQt(const QString &filter);
};

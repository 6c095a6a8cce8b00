// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

// File dialog filters are kept in the translation file in one text,
// "Label|*.a;*.b|...||", so that translators see them whole.
class FileDialogFilter
{
public:
    // Qt's form of such a filter: "Label (*.a *.A *.b *.B);;...". Each
    // pattern matches in either case; a pattern list at the end of a label
    // gives way to the full list.
    static QString toQt(const QString &filter);
};

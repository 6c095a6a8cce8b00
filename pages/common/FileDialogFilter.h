// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

// File dialog filters are kept in the translation file in the recorder
// tools' form, "Label|*.a;*.b|...||", so that translators see one text.
class FileDialogFilter
{
public:
    // Qt's form of such a filter: "Label (*.a *.b);;...". The patterns stay
    // as the translator left them.
    static QString toQt(const QString &filter);
};

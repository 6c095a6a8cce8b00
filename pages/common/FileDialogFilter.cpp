// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/FileDialogFilter.h"

#include <QStringList>

using namespace Qt::StringLiterals;

QString FileDialogFilter::toQt(const QString &filter)
{
    const QStringList parts = filter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size() && !parts[i].isEmpty(); i += 2) {
        const QStringList patterns = parts[i + 1].split(u';', Qt::SkipEmptyParts);
        filters.append(u"%1 (%2)"_s.arg(parts[i], patterns.join(u' ')));
    }
    return filters.join(u";;"_s);
}

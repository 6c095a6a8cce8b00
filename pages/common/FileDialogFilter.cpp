// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/common/FileDialogFilter.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

QString FileDialogFilter::toQt(const QString &filter)
{
    // A label that names its patterns already, "KRP Files (*.KRP)", gets
    // the whole list in their place, so that they show once.
    static const QRegularExpression namedPatterns(u"\\s*\\([^()]*\\)\\s*$"_s);
    const QStringList parts = filter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size() && !parts[i].isEmpty(); i += 2) {
        QStringList patterns;
        // File names here are case-sensitive, and packages copied from other
        // machines come in either case.
        for (const QString &pattern : parts[i + 1].split(u';', Qt::SkipEmptyParts)) {
            for (const QString &form : {pattern, pattern.toLower(), pattern.toUpper()}) {
                if (!patterns.contains(form))
                    patterns.append(form);
            }
        }
        QString label = parts[i];
        label.remove(namedPatterns);
        filters.append(u"%1 (%2)"_s.arg(label, patterns.join(u' ')));
    }
    return filters.join(u";;"_s);
}

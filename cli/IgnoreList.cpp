// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/IgnoreList.h"

using namespace Qt::StringLiterals;

namespace cli {

std::optional<IgnoreList> IgnoreList::take(QStringList *arguments, QString *error)
{
    IgnoreList list;
    for (qsizetype k = 0; k < arguments->size();) {
        if (arguments->at(k) != u"--ignore"_s) {
            ++k;
            continue;
        }
        if (k + 1 >= arguments->size() || arguments->at(k + 1).isEmpty()) {
            *error = u"--ignore takes a GLOB (users.*, stream.ip-address)"_s;
            return std::nullopt;
        }
        QString pattern = QRegularExpression::escape(arguments->at(k + 1));
        pattern.replace(u"\\*"_s, u".*"_s).replace(u"\\?"_s, u"."_s);
        list.m_patterns.append(QRegularExpression(QRegularExpression::anchoredPattern(pattern)));
        arguments->remove(k, 2);
    }
    return list;
}

bool IgnoreList::ignores(QStringView elementName) const
{
    const QStringView field = elementName.left(elementName.indexOf(u'['));
    for (const QRegularExpression &pattern : m_patterns) {
        if (pattern.match(elementName).hasMatch() || pattern.match(field).hasMatch())
            return true;
    }
    return false;
}

QStringList IgnoreList::kept(const QStringList &lines) const
{
    if (m_patterns.isEmpty())
        return lines;
    QStringList kept;
    for (const QString &line : lines) {
        if (!ignores(QStringView(line).left(line.indexOf(u" = "_s))))
            kept.append(line);
    }
    return kept;
}

} // namespace cli

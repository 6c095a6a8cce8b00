// SPDX-License-Identifier: GPL-3.0-or-later

#include "i18n/Placeholders.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace nelib {

QString Placeholders::fill(const QString &text, std::initializer_list<Value> values)
{
    static const QRegularExpression placeholder(u"%(0?)(\\d?)([ds])"_s);
    QString result;
    qsizetype done = 0;
    auto next = values.begin();
    for (auto it = placeholder.globalMatch(text); it.hasNext() && next != values.end();) {
        const QRegularExpressionMatch m = it.next();
        const bool number = m.captured(3) == u"d"_s;
        if (number != std::holds_alternative<int>(*next))
            continue;
        result += QStringView(text).sliced(done, m.capturedStart() - done);
        if (number) {
            const QChar pad = m.captured(1).isEmpty() ? u' ' : u'0';
            result += u"%1"_s.arg(std::get<int>(*next), m.captured(2).toInt(), 10, pad);
        } else {
            result += std::get<QString>(*next);
        }
        done = m.capturedEnd();
        ++next;
    }
    result += QStringView(text).sliced(done);
    return result;
}

} // namespace nelib

// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/SecretMask.h"

#include "setup/FieldTable.h"
#include "setup/Fields.h"

#include <QLatin1StringView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace cli {

namespace {

namespace fields = setup::fields;

struct Secret
{
    setup::Section section;
    const setup::FieldInfo &field;
};
const Secret Secrets[] = {
    {setup::Section::Users, fields::users::password},
    {setup::Section::Email, fields::email::password},
};

} // namespace

bool SecretMask::isSecret(const setup::FieldInfo &field)
{
    for (const Secret &s : Secrets) {
        if (field == s.field)
            return true;
    }
    return false;
}

bool SecretMask::isSecretName(QStringView name)
{
    // Asked for every line of a dump: the names are made once.
    static const QStringList secretNames = [] {
        QStringList names;
        for (const Secret &s : Secrets)
            names.append(QLatin1StringView(setup::FieldTable::section(s.section).key) + u'.'
                         + QLatin1StringView(s.field.name));
        return names;
    }();
    const QStringView base = name.left(name.indexOf(u'['));
    return std::any_of(secretNames.begin(), secretNames.end(),
                       [base](const QString &secret) { return base == secret; });
}

QStringList SecretMask::masked(QStringList lines, bool changes) const
{
    if (m_show)
        return lines;
    for (QString &line : lines) {
        const qsizetype at = line.indexOf(u" = "_s);
        if (at < 0 || !isSecretName(QStringView(line).left(at)))
            continue;
        line = line.left(at + 3) + Mask + (changes ? u" -> "_s + Mask : QString());
    }
    return lines;
}

QString SecretMask::value(QStringView name, const QString &value) const
{
    return hides(name) ? QString(Mask) : value;
}

} // namespace cli

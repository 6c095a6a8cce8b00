// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/FieldInfo.h"

#include <QLatin1StringView>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace cli {

// The passwords of the record (every account's and the e-mail account's)
// leave the program as Mask unless --show-secrets asks for them, so that a
// dump pasted into a ticket or a terminal watched over a shoulder gives
// nothing away.
class SecretMask
{
public:
    static constexpr QLatin1StringView Mask {"********"};

    explicit SecretMask(bool show)
        : m_show(show)
    { }

    static bool isSecret(const setup::FieldInfo &field);
    // A dump's name of an element: "users.password[3]".
    static bool isSecretName(QStringView name);

    // Dump lines "name = value" with the values of secrets masked.
    QStringList values(QStringList lines) const { return masked(std::move(lines), false); }
    // Diff lines "name = before -> after" likewise.
    QStringList changes(QStringList lines) const { return masked(std::move(lines), true); }
    // Whether the value of the element called `name` leaves masked.
    bool hides(QStringView name) const { return !m_show && isSecretName(name); }
    // One value of the element called `name`.
    QString value(QStringView name, const QString &value) const;

private:
    QStringList masked(QStringList lines, bool changes) const;

    bool m_show;
};

} // namespace cli

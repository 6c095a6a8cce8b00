// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QRegularExpression>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace cli {

// The settings that apply and diff leave out (--ignore GLOB, repeatable).
// In a pattern `*` stands for any run of characters and `?` for one; the
// rest, brackets included, stands for itself, so that "camera.title[2]"
// names one element. A pattern leaves out an element when it matches the
// element's name ("users.password[3]") or its field's ("users.password").
class IgnoreList
{
public:
    // Takes every "--ignore GLOB" out of `arguments`; nullopt with `error`
    // set when one lacks its pattern.
    static std::optional<IgnoreList> take(QStringList *arguments, QString *error);

    bool ignores(QStringView elementName) const;
    // Dump or diff lines ("name = ...") whose element is not left out.
    QStringList kept(const QStringList &lines) const;

private:
    QList<QRegularExpression> m_patterns;
};

} // namespace cli

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "i18n/Translator.h"
#include "setup/SectionView.h"

#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <optional>

namespace setup {

// The checks that guard a save, shared by the settings pages and the command
// line's `set`, so that both refuse the same values with the same message.
// The messages are translation keys; refusal() returns them translated.
class SaveRules
{
public:
    // ---- camera titles ----
    static constexpr QStringView ForbiddenInTitle = u"%&*:\"'<>?/";
    static constexpr char TitleMessage[] = "Can Not Use %, &, *, :, \", ', <, >, ?, / ";
    static bool titleAllowed(QStringView title);

    // ---- the time rules of the sections ----
    // Motion: each channel's day setting starts strictly before its night
    // setting. The check counts the last valid channel's index and takes 0
    // for a failure, so a recorder with one channel is always refused,
    // naming channel 1.
    // Alarm-Out: each schedule line in use starts strictly before it ends.
    // Schedule: only the first entry's times are checked.
    //
    // The message of the rule of section `id` that refuses `section` on a
    // recorder of `channelCount` channels, translated; nullopt when the
    // section may be saved (and for a section without a rule).
    static std::optional<QString> refusal(Section id, const SectionView &section, int channelCount);
    // The same for the section whose rule looks at `changed`, in a whole
    // record; nullopt when no rule looks at that field.
    static std::optional<QString> refusal(QByteArrayView record, const FieldInfo &changed,
                                          int channelCount);

    // ---- users and passwords ----
    static constexpr int PasswordBytes = 12;
    // Every right; the Admin account always holds all of them.
    static constexpr quint32 AllRights = 0x3FFFF;
    static constexpr int AdminAccount = 0;

    enum class PasswordChange { Accepted, CurrentMismatch, ConfirmMismatch, SamePassword };
    // The password page's check. Each argument is a password in the code
    // page; it is compared as PasswordBytes zero-filled bytes (longer ones
    // are cut), `slot` being the account's stored slot.
    static PasswordChange checkPasswordChange(QByteArrayView slot, QByteArrayView current,
                                              QByteArrayView newPassword,
                                              QByteArrayView confirmation);
    // The message the page shows for a check's result.
    static const char *passwordMessage(PasswordChange result);
};

} // namespace setup

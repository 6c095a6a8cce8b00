// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "i18n/Translator.h"

#include <QByteArrayView>
#include <QStringView>

#include <optional>

namespace setup {

// The checks that guard a save, shared by the settings pages and the command
// line's `set`, so that both refuse the same values with the same message.
// Each works on the bytes of one section as the page holds them; the
// messages are translation keys (pass them through nelib::tr).
class SaveRules
{
public:
    // ---- camera titles ----
    static constexpr QStringView ForbiddenInTitle = u"%&*:\"'<>?/";
    static constexpr char TitleMessage[] = "Can Not Use %, &, *, :, \", ', <, >, ?, / ";
    static bool titleAllowed(QStringView title);

    // ---- motion: the day setting starts strictly before the night setting ----
    static constexpr char MotionTimeMessage[] = RS_TEXT("Set Time Error!!\nChannel : %d");
    // `section` starts with the motion section's 64-byte time record. The
    // first channel (1-based) among the first `channelCount` whose day start
    // is not before its night start, or nullopt when all are valid. A
    // recorder with one channel always fails, naming channel 1: the check
    // counts the last valid channel's index and takes 0 for a failure.
    static std::optional<int> motionTimeError(QByteArrayView section, int channelCount);

    // ---- record schedule: only the first entry's times are checked ----
    static constexpr char ScheduleTimeMessage[]
        = RS_TEXT("Set Time Error!!\nCheck Line Number : %d");
    // `section` is the schedule section (the entry count first). The line
    // number (always 1) when the first entry does not start before it ends;
    // nullopt when it does or the list is empty.
    static std::optional<int> scheduleTimeError(QByteArrayView section);

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
    static bool passwordFits(QByteArrayView encoded) { return encoded.size() <= PasswordBytes; }
};

} // namespace setup

// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/SaveRules.h"

#include "setup/LittleEndian.h"

#include <QByteArray>

using nelib::LittleEndian;

namespace setup {

namespace {

constexpr int MotionChannels = 16;
constexpr int MotionTimeStride = 4;
constexpr int ScheduleFirstEntry = 4;

QByteArray paddedPassword(QByteArrayView password)
{
    QByteArray bytes
        = password.first(std::min<qsizetype>(password.size(), SaveRules::PasswordBytes))
              .toByteArray();
    bytes.resize(SaveRules::PasswordBytes, '\0');
    return bytes;
}

} // namespace

bool SaveRules::titleAllowed(QStringView title)
{
    for (QChar c : title) {
        if (ForbiddenInTitle.contains(c))
            return false;
    }
    return true;
}

std::optional<int> SaveRules::motionTimeError(QByteArrayView section, int channelCount)
{
    int lastValid = 0;
    for (int n = 0; n < std::min(channelCount, MotionChannels); ++n) {
        const int at = n * MotionTimeStride;
        const int dayHour = LittleEndian::u8(section, at);
        const int dayMinute = LittleEndian::u8(section, at + 1);
        const int nightHour = LittleEndian::u8(section, at + 2);
        const int nightMinute = LittleEndian::u8(section, at + 3);
        if (dayHour > nightHour || (dayHour == nightHour && dayMinute >= nightMinute))
            return n + 1;
        lastValid = n;
    }
    if (lastValid == 0)
        return 1;
    return std::nullopt;
}

std::optional<int> SaveRules::scheduleTimeError(QByteArrayView section)
{
    if (LittleEndian::u32(section, 0) == 0)
        return std::nullopt;
    const int startHour = LittleEndian::u16(section, ScheduleFirstEntry + 4);
    const int startMinute = LittleEndian::u16(section, ScheduleFirstEntry + 6);
    const int endHour = LittleEndian::u16(section, ScheduleFirstEntry + 8);
    const int endMinute = LittleEndian::u16(section, ScheduleFirstEntry + 10);
    if (startHour < endHour || (startHour == endHour && startMinute < endMinute))
        return std::nullopt;
    return 1;
}

SaveRules::PasswordChange SaveRules::checkPasswordChange(QByteArrayView slot,
                                                         QByteArrayView current,
                                                         QByteArrayView newPassword,
                                                         QByteArrayView confirmation)
{
    const QByteArray stored = paddedPassword(slot);
    const QByteArray wanted = paddedPassword(newPassword);
    if (paddedPassword(current) != stored)
        return PasswordChange::CurrentMismatch;
    if (wanted != paddedPassword(confirmation))
        return PasswordChange::ConfirmMismatch;
    if (wanted == stored)
        return PasswordChange::SamePassword;
    return PasswordChange::Accepted;
}

const char *SaveRules::passwordMessage(PasswordChange result)
{
    switch (result) {
    case PasswordChange::Accepted:
        return RS_TEXT("PASSWORD CHANGE SUCCESS");
    case PasswordChange::CurrentMismatch:
        return RS_TEXT("NO MATCH CURRENT PASSWORD");
    case PasswordChange::ConfirmMismatch:
        return RS_TEXT("PASSWORD MATCH \r\n BUT NOT MATCH NEW PASSWORD");
    case PasswordChange::SamePassword:
        return RS_TEXT("SAME PASSWORD EXIST");
    }
    return "";
}

} // namespace setup

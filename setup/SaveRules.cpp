// SPDX-License-Identifier: GPL-3.0-or-later

#include "setup/SaveRules.h"

#include "setup/FieldTable.h"
#include "setup/Fields.h"

#include <QByteArray>

#include <algorithm>
#include <span>

using namespace Qt::StringLiterals;

namespace setup {

namespace {

QByteArray paddedPassword(QByteArrayView password)
{
    QByteArray bytes
        = password.first(std::min<qsizetype>(password.size(), SaveRules::PasswordBytes))
              .toByteArray();
    bytes.resize(SaveRules::PasswordBytes, '\0');
    return bytes;
}

// Start and end of element `i` of four time fields: start hour, start minute,
// end hour, end minute.
bool startsBeforeEnd(const SectionView &section, const FieldInfo (&times)[4], int i)
{
    const quint32 startHour = section.number(times[0], i);
    const quint32 startMinute = section.number(times[1], i);
    const quint32 endHour = section.number(times[2], i);
    const quint32 endMinute = section.number(times[3], i);
    return startHour < endHour || (startHour == endHour && startMinute < endMinute);
}

namespace motion = fields::motion;
constexpr FieldInfo MotionTimes[4] = {motion::dayStartHour, motion::dayStartMinute,
                                      motion::nightStartHour, motion::nightStartMinute};

std::optional<int> motionChannel(const SectionView &section, int channelCount)
{
    int lastValid = 0;
    for (int n = 0; n < std::min(channelCount, MotionTimes[0].count); ++n) {
        if (!startsBeforeEnd(section, MotionTimes, n))
            return n + 1;
        lastValid = n;
    }
    if (lastValid == 0)
        return 1;
    return std::nullopt;
}

namespace alarmOut = fields::alarmOut;
constexpr FieldInfo AlarmOutTimes[4]
    = {alarmOut::startHour, alarmOut::startMinute, alarmOut::endHour, alarmOut::endMinute};

std::optional<int> alarmOutLine(const SectionView &section, int)
{
    const int lines = int(
        std::min<quint32>(section.number(alarmOut::lineCount), quint32(AlarmOutTimes[0].count)));
    for (int line = 0; line < lines; ++line) {
        if (!startsBeforeEnd(section, AlarmOutTimes, line))
            return line + 1;
    }
    return std::nullopt;
}

namespace schedule = fields::schedule;
constexpr FieldInfo ScheduleTimes[4]
    = {schedule::startHour, schedule::startMinute, schedule::endHour, schedule::endMinute};

std::optional<int> scheduleLine(const SectionView &section, int)
{
    if (section.number(schedule::count) == 0 || startsBeforeEnd(section, ScheduleTimes, 0))
        return std::nullopt;
    return 1;
}

struct Rule
{
    Section section;
    // The fields the rule looks at; empty: every field of the section.
    std::span<const FieldInfo> fields;
    const char *message;
    // The 1-based channel or line that fails, or nullopt.
    std::optional<int> (*failing)(const SectionView &section, int channelCount);
};

constexpr Rule Rules[] = {
    {Section::Motion, MotionTimes, RS_TEXT("Set Time Error!!\nChannel : %d"), motionChannel},
    {Section::AlarmOut, {}, RS_TEXT("Set Time Error!!\nCheck Line Number : %d"), alarmOutLine},
    {Section::Schedule, {}, RS_TEXT("Set Time Error!!\nCheck Line Number : %d"), scheduleLine},
};

bool looksAt(const Rule &rule, const FieldInfo &field)
{
    if (!rule.fields.empty())
        return std::find(rule.fields.begin(), rule.fields.end(), field) != rule.fields.end();
    const FieldGroup &group = FieldTable::section(rule.section);
    return field.offset >= group.offset && field.end() <= group.end();
}

std::optional<QString> refusedBy(const Rule &rule, const SectionView &section, int channelCount)
{
    if (const auto failing = rule.failing(section, channelCount))
        return nelib::tr(rule.message).replace(u"%d"_s, QString::number(*failing));
    return std::nullopt;
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

std::optional<QString> SaveRules::refusal(Section id, const SectionView &section, int channelCount)
{
    for (const Rule &rule : Rules) {
        if (rule.section == id)
            return refusedBy(rule, section, channelCount);
    }
    return std::nullopt;
}

std::optional<QString> SaveRules::refusal(QByteArrayView record, const FieldInfo &changed,
                                          int channelCount)
{
    for (const Rule &rule : Rules) {
        if (looksAt(rule, changed))
            return refusedBy(rule, SectionView::of(record, rule.section), channelCount);
    }
    return std::nullopt;
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

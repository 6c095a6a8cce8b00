// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "setup/FieldInfo.h"

#include <QtGlobal>

#include <array>

// The time zones a recorder knows, in the order of the Date/Time page's list:
// the `time-zone` field of the setup record holds the list index. Each zone
// has its display name, which starts with its offset from UTC ("(GMT+05:45)",
// "(GMT)" for none), and the daylight-saving rule it follows by default, laid
// out as the `dst` section; zones without daylight saving have an all-zero rule.
namespace setup {

struct TimeZone
{
    const char *name;
    // Start month, week (0 fixed date, 1-4, 5 last), weekday, day of month,
    // hour; then the same five for the end.
    std::array<quint16, 10> dstRule;

    // Minutes east of UTC, read from the name.
    constexpr qint32 utcOffset() const
    {
        // "(GMT" then nothing, or a sign, two digits of hours, ':' and two of minutes.
        const char *p = name + 4;
        if (*p != '+' && *p != '-')
            return 0;
        const qint32 minutes
            = ((p[1] - '0') * 10 + (p[2] - '0')) * 60 + (p[4] - '0') * 10 + (p[5] - '0');
        return *p == '-' ? -minutes : minutes;
    }
    constexpr bool hasDst() const { return dstRule[0] != 0; }
};

inline constexpr std::array<TimeZone, 85> TimeZones {{
    {"(GMT-12:00) International Date Line West", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT-11:00) Midway Island, Samoa", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT-10:00) Hawaii", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT-09:00) Alaska", {3, 2, 0, 0, 2, 11, 1, 0, 0, 2}},
    {"(GMT-08:00) Pacific Time (US & Canada)", {3, 2, 0, 0, 2, 11, 1, 0, 0, 2}},
    {"(GMT-08:00) Tijuana, Baja California", {4, 1, 0, 0, 2, 10, 5, 0, 0, 2}},
    {"(GMT-07:00) Chihuahua, La Paz, Mazatlan - Old", {4, 1, 0, 0, 2, 10, 5, 0, 0, 2}},
    {"(GMT-07:00) Mountain Time (US & Canada)", {3, 2, 0, 0, 2, 11, 1, 0, 0, 2}},
    {"(GMT-07:00) Chihuahua, La Paz, Mazatlan - New", {4, 1, 0, 0, 2, 10, 5, 0, 0, 2}},
    {"(GMT-07:00) Arizona", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT-06:00) Saskatchewan", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT-06:00) Central America", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT-06:00) Central Time (US & Canada)", {3, 2, 0, 0, 2, 11, 1, 0, 0, 2}},
    {"(GMT-06:00) Guadalajara, Mexico City, Monterrey-New", {4, 1, 0, 0, 2, 10, 5, 0, 0, 2}},
    {"(GMT-06:00) Guadalajara, Mexico City, Monterrey-Old", {4, 1, 0, 0, 2, 10, 5, 0, 0, 2}},
    {"(GMT-05:00) Eastern Time (US & Canada)", {3, 2, 0, 0, 2, 11, 1, 0, 0, 2}},
    {"(GMT-05:00) Bogota, Lima, Quito, Rio Branco", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT-05:00) Indiana (East)", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT-04:00) Atlantic Time (Canada)", {3, 2, 0, 0, 2, 11, 1, 0, 0, 2}},
    {"(GMT-04:00) Manaus", {10, 3, 0, 0, 0, 2, 3, 0, 0, 0}},
    {"(GMT-04:00) Santiago", {10, 2, 6, 0, 24, 3, 2, 6, 0, 24}},
    {"(GMT-04:00) Caracas, La Paz", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT-03:30) Newfoundland", {3, 2, 0, 0, 0, 11, 1, 0, 0, 0}},
    {"(GMT-03:00) Brasilia", {10, 3, 0, 0, 0, 2, 3, 0, 0, 0}},
    {"(GMT-03:00) Greenland", {3, 5, 6, 0, 22, 10, 5, 6, 0, 23}},
    {"(GMT-03:00) Montevideo", {10, 1, 0, 0, 2, 3, 2, 0, 0, 2}},
    {"(GMT-03:00) Buenos Aires, Georgetown", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT-02:00) Mid-Atlantic", {3, 5, 0, 0, 2, 9, 5, 0, 0, 2}},
    {"(GMT-01:00) Azores", {3, 5, 0, 0, 2, 10, 5, 0, 0, 3}},
    {"(GMT-01:00) Cape Verde Is.", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT)Greenwich Mean Time : London,Dublin,Edinburgh,Lisbon", {3, 5, 0, 0, 1, 10, 5, 0, 0, 2}},
    {"(GMT) Casablanca, Monrovia, Reykjavik", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+01:00) Belgrade,Bratislava,Budapest,Ljubljana,Prague", {3, 5, 0, 0, 2, 10, 5, 0, 0, 3}},
    {"(GMT+01:00) Sarajevo, Skopje, Warsaw, Zagreb", {3, 5, 0, 0, 2, 10, 5, 0, 0, 3}},
    {"(GMT+01:00) Brussels, Copenhagen, Madrid, Paris", {3, 5, 0, 0, 2, 10, 5, 0, 0, 3}},
    {"(GMT+01:00) West Central Africa", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+01:00) Amsterdam,Berlin,Bern,Rome,Stockholm,Vienna", {3, 5, 0, 0, 2, 10, 5, 0, 0, 3}},
    {"(GMT+02:00) Minsk", {3, 5, 0, 0, 2, 10, 5, 0, 0, 3}},
    {"(GMT+02:00) Cairo", {4, 5, 4, 0, 24, 9, 5, 4, 0, 24}},
    {"(GMT+02:00) Helsinki,Kyiv,Riga,Sofia,Tallinn,Vilnius", {3, 5, 0, 0, 3, 10, 5, 0, 0, 4}},
    {"(GMT+02:00) Athens, Bucharest, Istanbul", {3, 5, 0, 0, 3, 10, 5, 0, 0, 4}},
    {"(GMT+02:00) Jerusalem", {3, 5, 5, 0, 2, 10, 1, 0, 0, 2}},
    {"(GMT+02:00) Amman", {3, 5, 4, 0, 24, 10, 5, 5, 0, 1}},
    {"(GMT+02:00) Beirut", {3, 5, 0, 0, 0, 10, 5, 0, 0, 0}},
    {"(GMT+02:00) Windhoek", {9, 1, 0, 0, 2, 4, 1, 0, 0, 2}},
    {"(GMT+02:00) Harare, Pretoria", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+03:00) Kuwait, Riyadh", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+03:00) Baghdad", {4, 0, 0, 1, 3, 10, 0, 0, 1, 4}},
    {"(GMT+03:00) Nairobi", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+03:00) Tbilisi", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+03:00) Moscow, St. Petersburg, Volgograd", {3, 5, 0, 0, 2, 10, 5, 0, 0, 3}},
    {"(GMT+03:30) Tehran", {3, 0, 0, 21, 0, 9, 0, 0, 21, 24}},
    {"(GMT+04:00) Abu Dhabi, Muscat", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+04:00) Baku", {3, 5, 0, 0, 4, 10, 5, 0, 0, 5}},
    {"(GMT+04:00) Yerevan", {3, 5, 0, 0, 2, 10, 5, 0, 0, 3}},
    {"(GMT+04:30) Kabul", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+05:00) Ekaterinburg", {3, 5, 0, 0, 2, 10, 5, 0, 0, 3}},
    {"(GMT+05:00) Islamabad, Karachi, Tashkent", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+05:30) Chennai, Kolkata, Mumbai, New Delhi", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+05:30) Sri Jayawardenepura", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+05:45) Kathmandu", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+06:00) Astana, Dhaka", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+06:00) Almaty, Novosibirsk", {3, 5, 0, 0, 2, 10, 5, 0, 0, 3}},
    {"(GMT+06:30) Yangon (Rangoon)", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+07:00) Krasnoyarsk", {3, 5, 0, 0, 2, 10, 5, 0, 0, 3}},
    {"(GMT+07:00) Bangkok, Hanoi, Jakarta", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+08:00) Beijing, Chongqing, Hong Kong, Urumqi", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+08:00) Kuala Lumpur, Singapore", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+08:00) Irkutsk, Ulaan Bataar", {3, 5, 0, 0, 2, 10, 5, 0, 0, 3}},
    {"(GMT+08:00) Taipei", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+08:00) Perth", {10, 5, 0, 0, 2, 3, 5, 0, 0, 3}},
    {"(GMT+09:00) Seoul", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+09:00) Osaka, Sapporo, Tokyo", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+09:00) Yakutsk", {3, 5, 0, 0, 2, 10, 5, 0, 0, 3}},
    {"(GMT+09:30) Darwin", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+09:30) Adelaide", {10, 1, 0, 0, 2, 4, 1, 0, 0, 3}},
    {"(GMT+10:00) Canberra, Melbourne, Sydney", {10, 1, 0, 0, 2, 4, 1, 0, 0, 3}},
    {"(GMT+10:00) Brisbane", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+10:00) Hobart", {10, 1, 0, 0, 2, 4, 1, 0, 0, 3}},
    {"(GMT+10:00) Vladivostok", {3, 5, 0, 0, 2, 10, 5, 0, 0, 3}},
    {"(GMT+10:00) Guam, Port Moresby", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+11:00) Magadan, Solomon Is., New Caledonia", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+12:00) Fiji, Kamchatka, Marshall Is.", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"(GMT+12:00) Auckland, Wellington", {9, 5, 0, 0, 2, 4, 1, 0, 0, 3}},
    {"(GMT+13:00) Nuku'alofa", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
}};

// The zones' names as the value names of the `time-zone` field.
inline constexpr auto TimeZoneNames = [] {
    std::array<ValueName, TimeZones.size()> names {};
    for (std::size_t i = 0; i < TimeZones.size(); ++i)
        names[i] = {quint32(i), TimeZones[i].name};
    return names;
}();

} // namespace setup

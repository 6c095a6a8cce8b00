// SPDX-License-Identifier: GPL-3.0-or-later

#include "pages/display/CRemoteDisplayDateTimeDlg.h"

#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "session/MessageSink.h"
#include "setup/Fields.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimeZone>
#include <QVBoxLayout>

#include <variant>

using namespace Qt::StringLiterals;
namespace fields = setup::fields::dateTime;
namespace rule = setup::fields::dst;
using Kind = FieldEditor::Kind;

namespace {

constexpr int FirstYear = 2000;
constexpr int LastYear = 2037;
constexpr quint32 TwelveHour = 1;
constexpr quint32 FixedDate = 0;
constexpr int LastHour = 24;
constexpr int NoAnswerLookMs = 250;

// The rule's fields (rule::all) are in section order: start, then end.
enum RuleColumn { Month, Week, Weekday, Day, Hour, Columns };
// The rule's fields by column: start, then end.
constexpr std::array<std::array<setup::FieldInfo, 2>, Columns> RuleColumns {{
    {rule::startMonth, rule::endMonth},
    {rule::startWeek, rule::endWeek},
    {rule::startWeekday, rule::endWeekday},
    {rule::startDay, rule::endDay},
    {rule::startHour, rule::endHour},
}};

const char *const TwelveHourItems[24] = {
    RS_TEXT("AM 00"), RS_TEXT("AM 01"), RS_TEXT("AM 02"), RS_TEXT("AM 03"), RS_TEXT("AM 04"),
    RS_TEXT("AM 05"), RS_TEXT("AM 06"), RS_TEXT("AM 07"), RS_TEXT("AM 08"), RS_TEXT("AM 09"),
    RS_TEXT("AM 10"), RS_TEXT("AM 11"), RS_TEXT("PM 12"), RS_TEXT("PM 01"), RS_TEXT("PM 02"),
    RS_TEXT("PM 03"), RS_TEXT("PM 04"), RS_TEXT("PM 05"), RS_TEXT("PM 06"), RS_TEXT("PM 07"),
    RS_TEXT("PM 08"), RS_TEXT("PM 09"), RS_TEXT("PM 10"), RS_TEXT("PM 11"),
};

// Fills the C-style placeholders of a translated format (%d, %02d, %s) in order.
QString fillIn(const QString &format, std::initializer_list<std::variant<int, QString>> args)
{
    static const QRegularExpression placeholder(u"%(\\d*)([ds])"_s);
    QString text;
    qsizetype from = 0;
    auto arg = args.begin();
    for (const auto &m : placeholder.globalMatch(format)) {
        if (arg == args.end())
            break;
        text += format.mid(from, m.capturedStart() - from);
        from = m.capturedEnd();
        if (const int *n = std::get_if<int>(&*arg)) {
            const QString width = m.captured(1);
            text += QString::number(*n).rightJustified(width.toInt(),
                                                       width.startsWith(u'0') ? u'0' : u' ');
        } else {
            text += std::get<QString>(*arg);
        }
        ++arg;
    }
    return text + format.mid(from);
}

std::optional<QDateTime> dateTimeOf(const RecorderTime &t)
{
    const QDate date(t.year, t.month, t.day);
    const QTime time(t.hour, t.minute, t.second);
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    // Counted in UTC, so that no daylight-saving change of this computer skews it.
    return QDateTime(date, time, QTimeZone::utc());
}

// Whether `to` is `from` advanced by the session's own counting (a second
// a tick, a few ticks between two looks), rather than a new answer.
bool countedFrom(RecorderTime from, const RecorderTime &to)
{
    for (int ticks = 0; ticks <= 3; ++ticks) {
        if (from == to)
            return true;
        RecorderClock::tick(from);
    }
    return false;
}

QComboBox *numberList(QWidget *parent, int first, int last, const QString &name)
{
    auto *list = new QComboBox(parent);
    for (int n = first; n <= last; ++n)
        list->addItem(QString::asprintf("%02d", n), n);
    list->setAccessibleName(name);
    return list;
}

} // namespace

CRemoteDisplayDateTimeDlg::CRemoteDisplayDateTimeDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSections(setup::Section::DateTime, setup::Section::DaylightSaving);
    m_tick.setSingleShot(true);
    m_tick.setTimerType(Qt::PreciseTimer);
    connect(&m_tick, &QTimer::timeout, this, &CRemoteDisplayDateTimeDlg::tick);
}

CRemoteDisplayDateTimeDlg::~CRemoteDisplayDateTimeDlg() = default;

QComboBox *CRemoteDisplayDateTimeDlg::list(const setup::FieldInfo &field) const
{
    return binder().widget<QComboBox>(field);
}

void CRemoteDisplayDateTimeDlg::buildControls()
{
    setTabs({nelib::tr("Date/Time Setup")});
    QWidget *area = contentArea();

    auto *clock = new QGroupBox(nelib::tr("Date/Time"), area);
    buildClock(clock);

    // Time zone, formats and time server.
    auto *settings = new QFormLayout;
    const auto bind = [&](const setup::FieldInfo &field, Kind kind) {
        FieldEditor *e = binder().add(FieldEditor::create(kind, field, 0, 0, area));
        e->widget()->setAccessibleName(nelib::tr(field.label));
        return e->widget();
    };
    // A labelled row of one control, or of two that share the label.
    const auto addRow
        = [&](const setup::FieldInfo &field, QWidget *first, QWidget *second = nullptr) {
              auto *text = new CTransparentStatic(nelib::tr(field.label), area);
              text->setBuddy(first);
              if (!second) {
                  settings->addRow(text, first);
                  return first;
              }
              auto *row = new QHBoxLayout;
              row->addWidget(first);
              row->addWidget(second, 1);
              settings->addRow(text, row);
              return first;
          };
    auto *zone
        = qobject_cast<QComboBox *>(addRow(fields::timeZone, bind(fields::timeZone, Kind::List)));
    zone->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    zone->setMinimumContentsLength(40);
    zone->setMaxVisibleItems(20);
    connect(zone, &QComboBox::activated, this, &CRemoteDisplayDateTimeDlg::zonePicked);
    addRow(fields::dateFormat, bind(fields::dateFormat, Kind::List));
    addRow(fields::timeFormat, bind(fields::timeFormat, Kind::List));
    for (const setup::FieldInfo &format : {fields::dateFormat, fields::timeFormat})
        connect(list(format), &QComboBox::currentIndexChanged, this, [this] {
            fillHours();
            m_clock->setText(clockText());
        });

    m_dst = qobject_cast<QCheckBox *>(addRow(fields::dst, bind(fields::dst, Kind::Check)));
    m_dst->setText(nelib::tr("On"));
    connect(m_dst, &QCheckBox::toggled, this, &CRemoteDisplayDateTimeDlg::updateControls);
    m_rule = buildRule(area);
    settings->addRow(m_rule);

    auto *sync = qobject_cast<QCheckBox *>(bind(fields::timeSync, Kind::Check));
    addRow(fields::timeSync, sync, bind(fields::timeServer, Kind::Address));
    sync->setText(nelib::tr("On"));
    connect(sync, &QCheckBox::toggled, this, &CRemoteDisplayDateTimeDlg::updateControls);
    addRow(fields::syncInterval, bind(fields::syncInterval, Kind::List));

    auto *layout = new QVBoxLayout(area);
    layout->addWidget(clock);
    layout->addLayout(settings);
    layout->addStretch(1);
}

void CRemoteDisplayDateTimeDlg::buildClock(QWidget *group)
{
    m_clock = new QLabel(group);
    m_clock->setAccessibleName(nelib::tr("Date/Time"));
    QFont big = m_clock->font();
    big.setPointSizeF(big.pointSizeF() * 1.3);
    big.setBold(true);
    m_clock->setFont(big);
    m_clock->setTextInteractionFlags(Qt::TextSelectableByMouse);

    m_year = numberList(group, FirstYear, LastYear, nelib::tr("Year"));
    m_month = numberList(group, 1, 12, nelib::tr("Month"));
    m_day = numberList(group, 1, 31, nelib::tr("Date"));
    m_hour = numberList(group, 0, 23, nelib::tr("Hour"));
    // Its items change with the time format.
    m_hour->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_minute = numberList(group, 0, 59, nelib::tr("Minute"));
    m_second = numberList(group, 0, 59, nelib::tr("Second"));
    auto *apply = new QPushButton(nelib::tr("Apply"), group);
    connect(apply, &QPushButton::clicked, this, &CRemoteDisplayDateTimeDlg::apply);

    auto *grid = new QGridLayout(group);
    grid->addWidget(m_clock, 0, 0, 1, 7);
    int column = 0;
    for (QComboBox *selector : {m_year, m_month, m_day, m_hour, m_minute, m_second}) {
        auto *text = new CTransparentStatic(selector->accessibleName(), group);
        text->setBuddy(selector);
        grid->addWidget(text, 1, column);
        grid->addWidget(selector, 2, column++);
        connect(selector, &QComboBox::activated, this, [this] { m_timeEdited = true; });
    }
    grid->addWidget(apply, 2, column);
    grid->setColumnStretch(column, 1);
    for (QComboBox *selector : {m_year, m_month})
        connect(selector, &QComboBox::currentIndexChanged, this,
                &CRemoteDisplayDateTimeDlg::fillDays);
}

QWidget *CRemoteDisplayDateTimeDlg::buildRule(QWidget *parent)
{
    auto *box = new QWidget(parent);
    const auto column = [](int c) {
        return SectionBinder::Column {
            .field = RuleColumns[c][0], .kind = Kind::List, .rowFields = RuleColumns[c]};
    };
    QGridLayout *grid
        = binder().grid(box,
                        {.count = 2,
                         .channels = false,
                         .titles = {nelib::tr("DST Start Time"), nelib::tr("DST End Time")},
                         .titleFirst = true},
                        {column(Month), column(Week), column(Weekday), column(Day), column(Hour)});
    grid->setSpacing(-1);
    grid->setContentsMargins(0, 0, 0, 0);
    box->setLayout(grid);
    for (int r = 0; r < 2; ++r) {
        for (int c = 0; c < Columns; ++c) {
            auto *list = binder().widget<QComboBox>(RuleColumns[c][r]);
            // Narrow lists, so that the row labels keep their room.
            list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
            list->setMinimumContentsLength(c == Day || c == Hour ? 2 : 6);
            if (c != Day)
                connect(list, &QComboBox::activated, this, &CRemoteDisplayDateTimeDlg::checkRule);
            if (c == Week)
                connect(list, &QComboBox::currentIndexChanged, this,
                        &CRemoteDisplayDateTimeDlg::updateControls);
        }
    }
    return box;
}

void CRemoteDisplayDateTimeDlg::fillControls(QByteArrayView section, Source source)
{
    m_zonePicked = false;
    m_offsetFromZone = false;
    m_timeEdited = false;
    CSetupPage::fillControls(section, source);
}

void CRemoteDisplayDateTimeDlg::gatherControls(QByteArray &section)
{
    CSetupPage::gatherControls(section);
    const QComboBox *zone = list(fields::timeZone);
    if (zone->currentIndex() < 0)
        return;
    setup::SectionEdit out = edit(section);
    if (m_zonePicked || m_offsetFromZone)
        out.setNumber(fields::utcOffset,
                      quint32(setup::TimeZones[zone->currentData().toUInt()].utcOffset()));
    if (!m_zonePicked)
        return;
    for (const setup::FieldInfo &field : rule::all) {
        if (list(field)->currentIndex() < 0)
            out.setNumber(field, 0);
    }
}

void CRemoteDisplayDateTimeDlg::afterFill()
{
    updateControls();
    fillHours();
    tick();
}

void CRemoteDisplayDateTimeDlg::showEvent(QShowEvent *event)
{
    CSetupPage::showEvent(event);
    if (m_clock)
        tick();
}

void CRemoteDisplayDateTimeDlg::zonePicked()
{
    const QComboBox *zone = list(fields::timeZone);
    if (zone->currentIndex() < 0)
        return;
    const setup::TimeZone &picked = setup::TimeZones[zone->currentData().toUInt()];
    for (std::size_t k = 0; k < std::size(rule::all); ++k) {
        QComboBox *item = list(rule::all[k]);
        item->setCurrentIndex(item->findData(picked.dstRule[k]));
    }
    m_dst->setChecked(picked.hasDst());
    m_zonePicked = true;
    updateControls();
}

// Start and end on the same day need two hours between them; an end too
// close to the start moves to an hour after it, with a warning.
void CRemoteDisplayDateTimeDlg::checkRule()
{
    int start[Columns];
    int end[Columns];
    for (int c = 0; c < Columns; ++c) {
        if (c == Day)
            continue;
        const QComboBox *s = list(rule::all[c]);
        const QComboBox *e = list(rule::all[Columns + c]);
        if (s->currentIndex() < 0 || e->currentIndex() < 0)
            return;
        start[c] = s->currentData().toInt();
        end[c] = e->currentData().toInt();
    }
    if (start[Month] != end[Month] || start[Week] != end[Week] || start[Weekday] != end[Weekday]
        || end[Hour] >= start[Hour] + 2)
        return;
    QComboBox *endHour = list(rule::endHour);
    endHour->setCurrentIndex(endHour->findData(std::min(start[Hour] + 1, LastHour)));
    MessageSink::show(nelib::tr("Start and End month Error"));
}

void CRemoteDisplayDateTimeDlg::updateControls()
{
    m_rule->setEnabled(m_dst->isChecked());
    for (const auto &[week, day] :
         {std::pair(rule::startWeek, rule::startDay), std::pair(rule::endWeek, rule::endDay)}) {
        const QComboBox *w = list(week);
        list(day)->setEnabled(w->currentIndex() >= 0 && w->currentData().toUInt() == FixedDate);
    }
    const bool sync = binder().widget<QCheckBox>(fields::timeSync)->isChecked();
    list(fields::syncInterval)->setEnabled(sync);
    binder().editor(fields::timeServer)->widget()->setEnabled(sync);
}

void CRemoteDisplayDateTimeDlg::fillHours()
{
    const QComboBox *format = list(fields::timeFormat);
    const bool twelve = format->currentIndex() >= 0 && format->currentData().toUInt() == TwelveHour;
    for (int h = 0; h < m_hour->count(); ++h)
        m_hour->setItemText(h,
                            twelve ? nelib::tr(TwelveHourItems[h]) : QString::asprintf("%02d", h));
}

void CRemoteDisplayDateTimeDlg::fillDays()
{
    const int days
        = QDate(m_year->currentData().toInt(), m_month->currentData().toInt(), 1).daysInMonth();
    while (m_day->count() > days)
        m_day->removeItem(m_day->count() - 1);
    while (m_day->count() < days)
        m_day->addItem(QString::asprintf("%02d", m_day->count() + 1), m_day->count() + 1);
}

void CRemoteDisplayDateTimeDlg::showComputerTime()
{
    const QDateTime now = QDateTime::currentDateTime();
    const QDate date = now.date();
    m_year->setCurrentIndex(std::clamp(date.year(), FirstYear, LastYear) - FirstYear);
    m_month->setCurrentIndex(date.month() - 1);
    m_day->setCurrentIndex(date.day() - 1);
    m_hour->setCurrentIndex(now.time().hour());
    m_minute->setCurrentIndex(now.time().minute());
    m_second->setCurrentIndex(now.time().second());
}

QString CRemoteDisplayDateTimeDlg::clockText() const
{
    if (!m_answer)
        return QString();
    const QDateTime now = m_answer->addMSecs(m_sinceAnswer.elapsed());
    const QDate d = now.date();
    const QTime t = now.time();
    const QString month = QString::asprintf("%02d", d.month());
    const QComboBox *dateFormat = list(fields::dateFormat);
    const bool low = d.day() < 10;
    QString date;
    switch (dateFormat->currentIndex() < 0 ? 0 : dateFormat->currentData().toUInt()) {
    case 1: // MM/DD/YYYY
        date
            = fillIn(nelib::tr(low ? "%s / 0%d / %d" : "%s / %d / %d"), {month, d.day(), d.year()});
        break;
    case 2: // DD/MM/YYYY
        date
            = fillIn(nelib::tr(low ? "0%d / %s / %d" : "%d / %s / %d"), {d.day(), month, d.year()});
        break;
    default: // YYYY/MM/DD
        date
            = fillIn(nelib::tr(low ? "%d / %s / 0%d" : "%d / %s / %d"), {d.year(), month, d.day()});
        break;
    }
    const QComboBox *timeFormat = list(fields::timeFormat);
    const QString time
        = timeFormat->currentIndex() >= 0 && timeFormat->currentData().toUInt() == TwelveHour
              ? fillIn(nelib::tr("%s : %02d : %02d"),
                       {nelib::tr(TwelveHourItems[t.hour()]), t.minute(), t.second()})
              : fillIn(nelib::tr("%02d : %02d : %02d"), {t.hour(), t.minute(), t.second()});
    return fillIn(nelib::tr("%s  %s"), {date, time});
}

void CRemoteDisplayDateTimeDlg::tick()
{
    const std::optional<RecorderTime> reading = recorderTime();
    if (!reading) {
        m_answer.reset();
    } else if (!m_lastReading || !countedFrom(*m_lastReading, *reading)) {
        // A new answer; one that is no possible date shows nothing.
        m_answer = dateTimeOf(*reading);
        m_sinceAnswer.start();
    }
    m_lastReading = reading;
    const QString text = clockText();
    if (m_clock->text() != text)
        m_clock->setText(text);
    if (!m_timeEdited)
        showComputerTime();
    // Wake at the next whole second of the count; look more often while
    // the recorder has not told its time.
    m_tick.start(m_answer ? 1000 - int(m_sinceAnswer.elapsed() % 1000) : NoAnswerLookMs);
}

int CRemoteDisplayDateTimeDlg::apply()
{
    RecorderTime time;
    time.year = quint16(m_year->currentData().toUInt());
    time.month = quint16(m_month->currentIndex() + 1);
    time.day = quint16(m_day->currentIndex() + 1);
    time.hour = quint16(m_hour->currentIndex());
    time.minute = quint16(m_minute->currentIndex());
    time.second = quint16(m_second->currentIndex());
    if (!setRecorderTime(time))
        return 0;
    m_timeEdited = false;
    m_offsetFromZone = true;
    return saveSection(setup::Section::DateTime);
}

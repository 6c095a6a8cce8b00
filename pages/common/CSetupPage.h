// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pages/common/SectionBinder.h"
#include "session/RecorderClock.h"
#include "setup/SectionEdit.h"
#include "setup/SetupRecordMap.h"

#include <QByteArray>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

QT_BEGIN_NAMESPACE
class QHBoxLayout;
class QPushButton;
class QStackedWidget;
class QTabBar;
QT_END_NAMESPACE

class CRemoteCameraCopySettingDlg;

// The base of every settings page: it shows one setup section of the
// recorder, lets the operator edit it, restores it from the default setup
// file and hands it back to the session for writing. The life of a page:
//
//   loadSection(slice, channels) -> fill()   controls show the section, not modified
//   edits                  -> modified       the page's Save is enabled
//   save()                 -> gather(), the writer sends the section; not
//                             modified once it was sent
//   loadDefault(slice)     -> the default slice in the controls, modified
//   cancel()               -> fill() again from the section buffer
//
// A page binds its controls to the section's fields through binder() in
// buildControls(); fill and gather then need no code of the page. Pages with
// controls the binder does not know override fillControls() and
// gatherControls() and call the base for the bound part. The page never
// reaches the session or a file itself: the host gives it a writer and the
// default setup. Values reach the section buffer only through gather.
class CSetupPage : public QWidget
{
    Q_OBJECT

public:
    static constexpr int MaxChannels = setup::SetupRecordMap::MaxChannels;

    // Where fillControls() reads from: the edit limits of some pages differ.
    enum class Source { SectionBuffer, DefaultFile };

    // Sends a page's section; returns non-zero once it was sent.
    using SectionWriter = std::function<int(setup::Section, const QByteArray &section)>;
    // The whole default setup record (zeros where the file has no bytes).
    using DefaultSource = std::function<QByteArray()>;
    // The recorder's running clock; none before the recorder has told its time.
    using ClockReader = std::function<std::optional<RecorderTime>()>;
    // Sets the recorder's clock; returns non-zero once the command was sent.
    using ClockSetter = std::function<int(const RecorderTime &time)>;
    // The setup record as the session holds it now.
    using RecordSource = std::function<QByteArray()>;
    // Keeps the session from announcing the next acknowledgement.
    using AcknowledgementSilencer = std::function<void()>;

    explicit CSetupPage(QWidget *parent = nullptr);
    ~CSetupPage() override;

    // The section the page edits (the first of them); none for pages
    // without a Save action.
    std::optional<setup::Section> section() const { return m_section; }
    // The record offset of the section buffer's first byte.
    int recordOffset() const { return m_offset; }
    bool hasSaveAction() const { return m_section.has_value(); }

    void setSectionWriter(SectionWriter writer) { m_writer = std::move(writer); }
    void setDefaultSource(DefaultSource source) { m_defaults = std::move(source); }
    // For the pages that show or set the recorder's clock.
    void setClock(ClockReader reader, ClockSetter setter)
    {
        m_clockReader = std::move(reader);
        m_clockSetter = std::move(setter);
    }
    // A page that writes a whole block takes the sections of other pages
    // inside it from here when it saves, so that it never sends back older
    // bytes over what those pages saved since it was filled.
    void setRecordSource(RecordSource source) { m_records = std::move(source); }
    // A page that saves in several writes silences the acknowledgement of
    // its first one, so that the operator hears of one save.
    void setAcknowledgementSilencer(AcknowledgementSilencer silencer)
    {
        m_silencer = std::move(silencer);
    }

    // Builds the controls on first use (hidden, so that up to sixteen rows
    // appear at once), then takes the page's slice of `mirror` and fills.
    virtual void load(const QByteArray &mirror, int channelCount);
    // The same with the section's bytes alone; a slice of another length is ignored.
    void loadSection(QByteArrayView section, int channelCount);
    // Takes the page's slice of `mirror` without building the controls: a
    // page that is not built yet shows the slice once it is loaded.
    void keepSection(const QByteArray &mirror, int channelCount);
    // Whether the controls exist; until then the page holds its section only.
    bool isBuilt() const { return m_built; }
    // Gathers the controls, checks the section's save rules (a refusal shows
    // its message and sends nothing) and hands the section (each of them, in
    // order) to the writer. The modified flag clears only when everything was sent, so
    // edits are never dropped silently. Returns the writer's result (0 when
    // something was not sent).
    virtual int save();
    void cancel();
    // Shows `section`, the page's slice of the default setup, in the
    // controls; nothing is sent and the section buffer stays.
    void loadDefault(QByteArrayView section);
    // The same with the slice of the default source.
    void loadDefault();
    // Whether the controls hold other values than the section last loaded or saved.
    bool needsSave();
    // Another page sent `bytes` for the record from `offset` on. Where they
    // overlap this page's section they replace its stale copy, so that a later
    // save does not send old bytes back: an unedited page shows them, an
    // edited one keeps the fields the operator changed and shows the rest.
    void recordWritten(int offset, QByteArrayView bytes);
    // The recorder refused this page's write of the record from `offset`
    // on; `held` is what it still holds there. The edits stay in the
    // controls and the page stays modified, so they can be saved again.
    void writeRefused(int offset, QByteArrayView held);

    void fill();
    void gather();

    bool isModified() const { return m_modified; }
    // The page's controls and the fields they edit.
    const SectionBinder &binder() const { return *m_binder; }
    int channelCount() const { return m_channelCount; }
    const QByteArray &sectionBuffer() const { return m_buffer; }
    // Bytes laid out as the section buffer, read and written by field.
    setup::SectionView view(QByteArrayView section) const { return {section, m_offset}; }
    setup::SectionEdit edit(QByteArray &section) const { return {section, m_offset}; }

    // The default setup file the host reads for its pages: beside the
    // executable unless another path was set (tests, which run from another
    // folder); an empty path restores that.
    static QString defaultSetupPath();
    static void setDefaultSetupPath(const QString &path);

Q_SIGNALS:
    void modifiedChanged(bool modified);

protected:
    void setSection(setup::Section section);
    // A page that edits consecutive sections: the section buffer spans
    // `first` to `last`, and Save sends each of them.
    void setSections(setup::Section first, setup::Section last);
    // Gathers the controls and sends one of the page's sections alone.
    int saveSection(setup::Section section);

    // Creates the page's controls into contentArea() (or the tabs' pages),
    // binding them through binder().
    virtual void buildControls() = 0;
    // Shows `section` (laid out as the record's slice) in the first
    // channelCount() rows. Must not touch the section buffer. The base fills
    // the bound controls.
    virtual void fillControls(QByteArrayView section, Source source);
    // Writes the first channelCount() rows into `section`; other bytes stay.
    // The base gathers the bound controls.
    virtual void gatherControls(QByteArray &section);
    // Called after the controls were filled and the flag cleared, and after
    // every channel-count change; pages re-evaluate derived controls here.
    virtual void afterFill() { }
    // Save calls this on the gathered section, before the rules and the
    // send: a page whose values the recorder keeps in several fields brings
    // them all to what the page shows, which gather leaves as received.
    virtual void prepareSave(QByteArray &section) { Q_UNUSED(section); }
    // Whether Save checks the section's rules (setup::SaveRules) now; a page
    // that shows the fields a rule guards only in one view says so here.
    virtual bool checksSaveRules() const { return true; }

    // Change handlers call this: it sets the flag and enables Save when the
    // flag was clear. While the controls are filled the flag is held set,
    // so the notifications that filling raises change nothing.
    void markModified();
    // Sets or clears the flag and Save's state directly (a page whose view
    // switch counts as a fresh start).
    void setModified(bool modified);

    // The tab strip: one "Setup" tab, or one tab per group of settings.
    // Each returns the content widget of its tab.
    QWidget *contentArea();
    void setTabs(const QStringList &labels);
    QWidget *tabContent(int index);

    // The page's own buttons under the content: Default and Save always,
    // Copy Settings on request (camera pages).
    QPushButton *copySettingsButton();
    // Adds a Copy Settings button. Its dialog (one for the page's life, so
    // its choices survive) offers the copy properties of the bound columns
    // in the copy group `group()` returns (0 without it); after OK the
    // ticked columns are copied between controls only, like every other
    // change before gather.
    void addCopySettings(std::function<int()> group = {});

    SectionBinder &binder() { return *m_binder; }
    std::optional<RecorderTime> recorderTime() const
    {
        return m_clockReader ? m_clockReader() : std::nullopt;
    }
    int setRecorderTime(const RecorderTime &time)
    {
        return m_clockSetter ? m_clockSetter(time) : 0;
    }
    QPushButton *pageSaveButton() const { return m_saveButton; }
    QPushButton *pageDefaultButton() const { return m_defaultButton; }

private:
    void ensureBuilt();
    void takeSection(QByteArrayView section, int channelCount);
    void createFrame();
    void takeNestedSections();

    std::optional<setup::Section> m_section;
    std::vector<setup::Section> m_sections; // what Save sends
    int m_offset = 0;
    SectionBinder *m_binder;
    SectionWriter m_writer;
    DefaultSource m_defaults;
    ClockReader m_clockReader;
    ClockSetter m_clockSetter;
    RecordSource m_records;
    AcknowledgementSilencer m_silencer;
    QByteArray m_buffer;
    QByteArray m_saved; // what the recorder holds as far as the page knows
    int m_channelCount = MaxChannels;
    bool m_modified = false;
    bool m_built = false;

    QTabBar *m_tabs = nullptr;
    QStackedWidget *m_tabPages = nullptr;
    QPushButton *m_defaultButton = nullptr;
    QPushButton *m_copyButton = nullptr;
    QPushButton *m_saveButton = nullptr;
    QHBoxLayout *m_buttonRow = nullptr;
    CRemoteCameraCopySettingDlg *m_copyDialog = nullptr;
    int m_copyGroup = 0;
};

#include "pages/camera/CRemoteCameraCameraDlg.h"

#include "i18n/CodePage.h"
#include "i18n/Translator.h"
#include "pages/common/CTransparentStatic.h"
#include "pages/common/ColumnCheckBox.h"
#include "pages/common/TextLimitValidator.h"
#include "session/MessageSink.h"
#include "setup/CameraSection.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using setup::CameraSection;

namespace {

// The audio list, in the order of CameraSection::AudioInputs.
constexpr const char *AudioNames[] = {
    RS_TEXT("Off"), RS_TEXT("Ch 01"), RS_TEXT("Ch 02"), RS_TEXT("Ch 03"), RS_TEXT("Ch 04"),
};
static_assert(std::size(AudioNames) == CameraSection::AudioInputs.size());

// Characters the recorder does not accept in a camera title.
constexpr QStringView ForbiddenInTitle = u"%&*:\"'<>?/";

// Titles from the recorder may be typed up to 18 characters, titles restored
// from the default file up to 16.
constexpr int TitleLimit = 18;
constexpr int DefaultTitleLimit = 16;

constexpr int CopyMode = 1;

} // namespace

CRemoteCameraCameraDlg::CRemoteCameraCameraDlg(QWidget *parent)
    : CSetupPage(parent)
{
    setSection(setup::Section::Camera);
}

CRemoteCameraCameraDlg::~CRemoteCameraCameraDlg() = default;

void CRemoteCameraCameraDlg::buildControls()
{
    QWidget *content = contentArea();
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(14);
    grid->setVerticalSpacing(3);
    grid->setColumnStretch(1, 1);

    auto *covertAll = new QCheckBox(content);
    covertAll->setAccessibleName(nelib::tr("Covert"));
    auto *covertHeading = new QHBoxLayout;
    covertHeading->setSpacing(4);
    covertHeading->addWidget(covertAll);
    covertHeading->addWidget(new CTransparentStatic(nelib::tr("Covert"), content));
    grid->addWidget(new CTransparentStatic(nelib::tr("Ch."), content), 0, 0);
    grid->addWidget(new CTransparentStatic(nelib::tr("Camera Title"), content), 0, 1);
    grid->addLayout(covertHeading, 0, 2);
    grid->addWidget(new CTransparentStatic(nelib::tr("Audio"), content), 0, 3);

    const QString titleName = nelib::tr("Camera Title");
    const QString covertName = nelib::tr("Covert");
    const QString audioName = nelib::tr("Audio");
    QList<QCheckBox *> covertColumn;
    for (int i = 0; i < MaxChannels; ++i) {
        const QString number = channelNumber(i);
        Row &row = m_rows[i];
        auto *numberLabel = new CTransparentStatic(number, content);

        row.title = new QLineEdit(content);
        row.title->setAccessibleName(titleName + u' ' + number);
        // Titles are typed as plain characters, never composed by an input method.
        row.title->setAttribute(Qt::WA_InputMethodEnabled, false);
        row.titleLimit = new TextLimitValidator(row.title);
        row.title->setValidator(row.titleLimit);
        row.title->setMinimumWidth(row.title->fontMetrics().averageCharWidth() * (TitleLimit + 6));
        connect(row.title, &QLineEdit::textChanged, this, [this, i] { titleChanged(m_rows[i]); });

        row.covert = new QCheckBox(content);
        row.covert->setAccessibleName(covertName + u' ' + number);
        covertColumn.append(row.covert);

        row.audio = new QComboBox(content);
        row.audio->setAccessibleName(audioName + u' ' + number);
        for (const char *name : AudioNames)
            row.audio->addItem(nelib::tr(name));
        row.audio->setCurrentIndex(-1);
        // Only the operator's choice counts as a change; a selection made by
        // filling or copying does not.
        connect(row.audio, &QComboBox::activated, this, [this] { markModified(); });

        grid->addWidget(numberLabel, i + 1, 0);
        grid->addWidget(row.title, i + 1, 1);
        grid->addWidget(row.covert, i + 1, 2);
        grid->addWidget(row.audio, i + 1, 3);
        addChannelRow(i, {numberLabel, row.title, row.covert, row.audio});
    }
    m_covertColumn = new ColumnCheckBox(covertAll, covertColumn, this);
    connect(m_covertColumn, &ColumnCheckBox::columnClicked, this, [this] { markModified(); });

    auto *layout = new QVBoxLayout(content);
    layout->addLayout(grid);
    layout->addStretch(1);

    connect(copySettingsButton(), &QPushButton::clicked, this, [this] {
        openCopySettings(CopyMode, [this](int source, int target, const auto &properties) {
            copyRow(source, target, properties);
        });
    });
}

void CRemoteCameraCameraDlg::fillControls(QByteArrayView section, Source source)
{
    const int limit = source == Source::DefaultFile ? DefaultTitleLimit : TitleLimit;
    for (int i = 0; i < channelCount(); ++i) {
        const CameraSection::Channel values = CameraSection::channel(section, i);
        Row &row = m_rows[i];
        row.titleLimit->setLimit(limit);
        row.titleLimit->setText(row.title, nelib::CodePage::system().decode(values.title));
        row.covert->setChecked(values.covert);
        row.audio->setCurrentIndex(CameraSection::audioIndex(values.audio));
    }
}

void CRemoteCameraCameraDlg::gatherControls(QByteArray &section)
{
    for (int i = 0; i < channelCount(); ++i) {
        const Row &row = m_rows[i];
        CameraSection::Channel values = CameraSection::channel(section, i);
        values.title = nelib::CodePage::system().encode(row.title->text());
        values.covert = row.covert->isChecked();
        if (const int index = row.audio->currentIndex(); index >= 0)
            values.audio = CameraSection::AudioInputs[index];
        CameraSection::setChannel(section, i, values);
    }
}

void CRemoteCameraCameraDlg::afterFill()
{
    m_covertColumn->update();
}

void CRemoteCameraCameraDlg::titleChanged(Row &row)
{
    QString text = row.title->text();
    int cursor = row.title->cursorPosition();
    bool removed = false;
    // From the last to the first, so that the positions still to visit stay valid.
    for (qsizetype i = text.size() - 1; i >= 0; --i) {
        if (!ForbiddenInTitle.contains(text[i]))
            continue;
        text.remove(i, 1);
        if (i < cursor)
            --cursor;
        removed = true;
    }
    if (removed) {
        // Raises this handler again with the clean text.
        row.titleLimit->setText(row.title, text);
        row.title->setCursorPosition(cursor);
        MessageSink::show(nelib::tr("Can Not Use %, &, *, :, \", ', <, >, ?, / "));
    }
    markModified();
}

// Copies between controls only, as every change before gather. A new title
// raises the edit's change handler and so enables Save; check box and list
// selections set here raise none, so a copy of only those leaves Save as it was.
void CRemoteCameraCameraDlg::copyRow(int source, int target,
                                     const CRemoteCameraCopySettingDlg::Properties &properties)
{
    const Row &from = m_rows[source];
    Row &to = m_rows[target];
    if (properties[CRemoteCameraCopySettingDlg::Title])
        to.titleLimit->setText(to.title, from.title->text());
    if (properties[CRemoteCameraCopySettingDlg::Covert])
        to.covert->setChecked(from.covert->isChecked());
    if (properties[CRemoteCameraCopySettingDlg::Audio])
        to.audio->setCurrentIndex(from.audio->currentIndex());
}

// SPDX-License-Identifier: MIT
#include "keys/keycard.h"

#include "base/text.h"
#include "keys/keycap.h"
#include "keys/macropreview.h"
#include "platform/applicationicon.h"
#include "platform/lowbands.h"
#include "platform/spacing.h"

#include <QAccessibleWidget>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int capUnit = 60; // pixels
constexpr qreal widestCap = 1.25;
constexpr int pileStep = 5;
constexpr int pictureSize = 20;
constexpr int markSize = 16;
constexpr qreal nameScale = 1.25; // as the window's title: one font to load

QAccessibleInterface *interfaceOf(const QString &, QObject *object)
{
    auto *card = qobject_cast<KeyCard *>(object);
    return card ? new QAccessibleWidget(card, QAccessible::Grouping) : nullptr;
}

QLabel *makeLabel(QLatin1StringView name)
{
    auto *label = new QLabel;
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText); // names may come from strangers' files
    return label;
}

} // namespace

/// The cap of the selected key, on top of a pile if there are several.
class KeyCard::Cap : public QWidget
{
public:
    explicit Cap(const KeyCardContent &content) : mContent(content)
    {
        setFixedSize(qRound(widestCap * capUnit) + 2 * pileStep, capUnit + 2 * pileStep);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        if (!mContent.shape)
            return;
        QPainter painter(this);
        const QSizeF shape = mContent.shape->place.size();
        const QSize size(qRound(std::clamp(shape.width(), 1.0, widestCap) * capUnit), capUnit);
        const auto caps = static_cast<int>(std::min<qsizetype>(mContent.keys, 3));
        const QPoint top(0, caps > 1 ? 2 * pileStep : pileStep);
        for (int below = caps - 1; below >= 0; --below) {
            KeycapState state{.isEnabled = isEnabled()};
            if (below == 0) {
                state.look = mContent.shape->look;
                state.legend = mContent.legend;
                state.upperLegend = mContent.upperLegend;
                state.mark = mContent.mark;
            }
            paintKeycap(painter, QRect(top + QPoint(below, -below) * pileStep, size), capUnit, state, palette());
        }
    }

private:
    const KeyCardContent &mContent;
};

/// The mark of the assignment, or the icon of its application.
class KeyCard::Picture : public QWidget
{
public:
    explicit Picture(const KeyCardContent &content) : mContent(content) { setFixedSize(pictureSize, pictureSize); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        if (mContent.program.isEmpty()) {
            constexpr qreal margin = (pictureSize - markSize) / 2.0;
            paintKeyMark(painter, QRectF(rect()).adjusted(margin, margin, -margin, -margin), mContent.mark, palette(),
                         isEnabled());
            return;
        }
        // Loaded when it is painted: the icon theme takes a while.
        if (mProgram != mContent.program) {
            mProgram = mContent.program;
            mIcon = ApplicationIcon::ofApplication(mProgram);
        }
        mIcon.paint(&painter, rect(), Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
    }

private:
    const KeyCardContent &mContent;
    QString mProgram; // whose icon it is
    QIcon mIcon;
};

/// One line of text; a text that is too long is elided, never widens the window, and is then the tool tip.
class KeyCard::ElidedLabel : public QLabel
{
public:
    explicit ElidedLabel(QLatin1StringView name)
    {
        setObjectName(name);
        setTextFormat(Qt::PlainText);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }

    void showText(const QString &text)
    {
        mText = text;
        elide();
    }

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        QLabel::resizeEvent(event);
        elide();
    }

private:
    void elide()
    {
        const QString shown = fontMetrics().elidedText(mText, Qt::ElideRight, width());
        setText(shown);
        setToolTip(shown == mText ? QString() : u"<p>"_s + mText.toHtmlEscaped() + u"</p>"_s);
        setAccessibleName(mText);
    }

    QString mText;
};

KeyCard::KeyCard(QWidget *parent) : QWidget(parent)
{
    static const bool isInstalled = (QAccessible::installFactory(interfaceOf), true);
    Q_UNUSED(isInstalled)
    mCap = new Cap(mContent);
    mControls = new QGridLayout;
    mControls->setHorizontalSpacing(Spacing::normal);
    mControls->setVerticalSpacing(Spacing::normal);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(Spacing::separate, Spacing::normal, Spacing::separate, Spacing::normal);
    row->setSpacing(Spacing::separate);
    row->addWidget(mCap, 0, Qt::AlignTop);
    row->addWidget(buildTexts(), 1, Qt::AlignTop);
    row->addLayout(mControls);
    row->setAlignment(mControls, Qt::AlignTop);
    show({});
}

QWidget *KeyCard::buildTexts()
{
    mName = makeLabel("mSelectedKeyLabel"_L1);
    QFont font = mName->font();
    font.setBold(true);
    font.setPixelSize(qRound(QFontInfo(font).pixelSize() * nameScale));
    mName->setFont(font);
    mPicture = new Picture(mContent);
    mWords = new ElidedLabel("mAssignmentWords"_L1);
    mPreview = new MacroPreview;
    mPreview->setObjectName("mMacroPreview"_L1);
    mDetail = makeLabel("mAssignmentDetail"_L1);
    mDetail->setWordWrap(true);
    mProblem = makeLabel("mAssignmentProblemLabel"_L1);
    mProblem->setWordWrap(true);
    mRecord = new QPushButton(localizedText("lkeyManageMacro"));
    mRecord->setObjectName("mRecordFromCard"_L1);
    connect(mRecord, &QPushButton::clicked, this, &KeyCard::recordingRequested);

    auto *texts = new QWidget;
    auto *words = new QHBoxLayout;
    words->setSpacing(Spacing::normal);
    words->addWidget(mPicture);
    words->addWidget(mWords, 1);
    auto *details = new QHBoxLayout;
    details->setSpacing(Spacing::normal);
    details->addWidget(mPreview, 1);
    details->addWidget(mDetail, 1, Qt::AlignTop);
    details->addWidget(mProblem, 1);
    details->addWidget(mRecord);
    auto *column = new QVBoxLayout(texts);
    column->setContentsMargins({});
    column->setSpacing(Spacing::tight);
    column->addWidget(mName);
    column->addLayout(words);
    column->addLayout(details);
    return texts;
}

void KeyCard::addControl(QLabel *caption, QWidget *control)
{
    const int row = mControls->rowCount();
    mControls->addWidget(caption, row, 0);
    mControls->addWidget(control, row, 1, Qt::AlignLeading | Qt::AlignVCenter);
    mLastControl = control;
    setHeight();
}

/// Puts the button of the texts behind the controls, which come later.
void KeyCard::showEvent(QShowEvent *event)
{
    if (QWidget *last = std::exchange(mLastControl, nullptr))
        setTabOrder(last, mRecord);
    QWidget::showEvent(event);
}

void KeyCard::show(const KeyCardContent &content)
{
    mContent = content;
    mName->setText(content.name);
    mName->setVisible(content.shape);
    mPicture->setVisible(content.mark != KeyMark::none);
    mWords->showText(content.words);
    mPreview->show(content.macro);
    mDetail->setText(content.detail);
    mDetail->setVisible(content.problem.isEmpty() && !content.detail.isEmpty());
    // Beside a preview, the detail takes no more room than its text.
    mDetail->setWordWrap(content.macro.bars.isEmpty());
    mDetail->setSizePolicy(content.macro.bars.isEmpty() ? QSizePolicy::Preferred : QSizePolicy::Fixed,
                           QSizePolicy::Preferred);
    mProblem->setText(content.problem);
    mProblem->setVisible(!content.problem.isEmpty());
    mRecord->setVisible(content.offersRecording);
    mCap->update();
    mPicture->update();
    describe();
}

/// Keys with little to say have as high a card as others: the picture above must not change its size while the user
/// selects keys.
void KeyCard::setHeight()
{
    const int lines = mName->fontMetrics().height() + std::max(mWords->fontMetrics().height(), pictureSize)
                      + 2 * mDetail->fontMetrics().height() + 2 * Spacing::tight;
    setMinimumHeight(std::max(lines, mCap->height()) + 2 * Spacing::normal);
}

void KeyCard::describe()
{
    setAccessibleName(mContent.shape ? localizedText("lkeySelectedKey") + u' ' + mContent.name : mContent.words);
    QStringList parts{mContent.words, mContent.problem.isEmpty() ? mContent.detail : mContent.problem};
    QStringList keys;
    for (const MacroTimeline::Bar &bar : mContent.macro.bars)
        keys += bar.name;
    const QString preview = keys.isEmpty() ? QString() : localizedFormat("lkeyKeysCardPreview", {keys.join(u", "_s)});
    mPreview->setAccessibleName(preview);
    mPreview->setToolTip(preview.toHtmlEscaped());
    parts += preview;
    parts.removeAll(QString());
    setAccessibleDescription(mContent.shape ? parts.join(u". "_s) : QString());
}

void KeyCard::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        setHeight();
}

void KeyCard::paintEvent(QPaintEvent *event)
{
    constexpr int frameAlpha = 45; // as the frame of a group box
    constexpr qreal radius = 6;
    QColor frame = palette().color(QPalette::WindowText);
    frame.setAlpha(frameAlpha);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(frame);
    painter.setBrush(palette().color(QPalette::Base));
    constexpr int spansPerLine = 3;
    paintInLowBands(painter, rect() & event->rect(), spansPerLine, [this, &painter] {
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    });
}

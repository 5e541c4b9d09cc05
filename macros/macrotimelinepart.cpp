// SPDX-License-Identifier: MIT
#include "macros/macrotimelinepart.h"

#include "base/text.h"
#include "macros/macrorecord.h"
#include "macros/macrotimelineview.h"
#include "platform/mnemonics.h"
#include "platform/spacing.h"
#include "platform/symbol.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

using namespace Qt::StringLiterals;

MacroTimelinePart::MacroTimelinePart(QWidget *parent) : QWidget(parent), mView(new MacroTimelineView)
{
    setObjectName("mMacroTimelinePart"_L1);
    mView->setObjectName("mMacroTimelineView"_L1);
    auto *label = new QLabel(localizedText("lkeyTimelineLabel"));
    mTotal = new QLabel;
    mTotal->setObjectName("mMacroTimelineTotal"_L1);
    auto *heading = new QHBoxLayout;
    heading->setSpacing(Spacing::tight);
    heading->addWidget(label);
    heading->addWidget(mTotal, 1);
    heading->addWidget(addButton("mZoomOutTimeline", Symbols::icon(Symbol::zoomOut), "lkeyTimelineZoomOut",
                                 &MacroTimelineView::zoomOut));
    heading->addWidget(
        addButton("mZoomInTimeline", Symbols::icon(Symbol::add), "lkeyTimelineZoomIn", &MacroTimelineView::zoomIn));
    heading->addWidget(
        addButton("mFitTimeline", Symbols::icon(Symbol::fit), "lkeyTimelineFitTip", &MacroTimelineView::fit));
    mNotice = new QLabel;
    mNotice->setObjectName("mMacroTimelineNotice"_L1);
    mNotice->setTextFormat(Qt::PlainText);
    mNotice->setWordWrap(true);
    mRelease = new QPushButton(localizedText("lkeyTimelineRelease"));
    mRelease->setObjectName("mReleaseKeysAtEnd"_L1);
    mRelease->setToolTip(localizedText("lkeyTimelineReleaseTip"));
    mRelease->setAccessibleDescription(localizedText("lkeyTimelineReleaseTip"));
    mRelease->setAutoDefault(false);
    Mnemonics::exclude(mRelease); // the tab has few letters left, and this button is rarely there
    connect(mRelease, &QPushButton::clicked, this, &MacroTimelinePart::releasesWanted);
    auto *notice = new QHBoxLayout;
    notice->addWidget(mNotice, 1);
    notice->addWidget(mRelease);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(Spacing::tight);
    column->addLayout(heading);
    column->addWidget(mView, 1);
    column->addLayout(notice);
    showNotice();
}

QAbstractButton *MacroTimelinePart::addButton(const char *name, const QIcon &icon, const char *tipKey,
                                              void (MacroTimelineView::*zoom)())
{
    auto *button = new QToolButton;
    button->setObjectName(QLatin1StringView(name));
    button->setIcon(icon);
    button->setToolTip(localizedText(tipKey));
    button->setAccessibleName(localizedText(tipKey));
    button->setFocusPolicy(Qt::StrongFocus);
    connect(button, &QToolButton::clicked, mView, zoom);
    mZoomButtons += button;
    return button;
}

QList<QWidget *> MacroTimelinePart::controls() const
{
    return mZoomButtons + QList<QWidget *>{mView, mRelease};
}

bool MacroTimelinePart::shows(const QVariant &macro, const QStringList &lines, const QVariantMap &record) const
{
    const bool needsEvents = mView->timeline().hasSharedNames;
    return mMacro == macro && mLines == lines && (!needsEvents || mSequence == MacroRecord::sequence(record));
}

void MacroTimelinePart::showEvents(const QVariant &macro, const QStringList &lines, const QVariantMap &record)
{
    const bool isOther = macro != mMacro;
    mMacro = macro;
    mLines = lines;
    mSequence = MacroRecord::sequence(record);
    mView->showEvents(lines, MacroRecord::events(record));
    if (isOther)
        mView->fit();
    const MacroTimeline &timeline = mView->timeline();
    mTotal->setText(
        localizedFormat("lkeyTimelineTotal", {QString::number(timeline.eventCount()),
                                              QString::number(double(timeline.durationMs) / 1000, 'f', 3)}));
    showNotice();
}

void MacroTimelinePart::setRecording(bool isRecording)
{
    if (isRecording == mIsRecording)
        return;
    mIsRecording = isRecording;
    mView->setWatched(isRecording);
    showNotice();
}

/// Names the keys that stay down, and counts the events that have no partner.
void MacroTimelinePart::showNotice()
{
    const MacroTimeline &timeline = mView->timeline();
    const QString leftDown = mView->leftDownText();
    QStringList sentences;
    if (!leftDown.isEmpty())
        sentences += leftDown;
    const auto unpaired = timeline.unpairedPresses.size() + timeline.unpairedReleases.size();
    if (unpaired > 0)
        sentences += localizedFormat("lkeyTimelineUnpaired", {QString::number(unpaired)});
    mNotice->setText(sentences.join(u'\n'));
    mNotice->setVisible(!sentences.isEmpty() && !mIsRecording);
    mRelease->setVisible(!leftDown.isEmpty() && !mIsRecording);
}

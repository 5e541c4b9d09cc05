// SPDX-License-Identifier: MIT
// The layout of the macros tab and its sheets.
#include "macros/keyboardmacroscontroller.h"

#include "base/text.h"
#include "macros/macrodelegate.h"
#include "macros/macrosearchfield.h"
#include "macros/macrotimelinepart.h"
#include "macros/macrotrysheet.h"
#include "macros/macrouseslinks.h"
#include "macros/nstableviewmacrodetailssubclass.h"
#include "macros/nstableviewmacrosubclass.h"
#include "macros/numberonlytextfield.h"
#include "platform/buttonarea.h"
#include "platform/emptystate.h"
#include "platform/pulldownbutton.h"
#include "platform/spacing.h"
#include "platform/symbol.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// Returns the view around the table. It is only a frame: a Qt table scrolls itself.
QWidget *makeScrollView(TableView *table, QLatin1StringView name)
{
    auto *view = new QWidget;
    view->setObjectName(name);
    auto *layout = new QVBoxLayout(view);
    layout->setContentsMargins({});
    layout->addWidget(table);
    return view;
}

QLabel *makeLabel(const char *name, const char *textKey)
{
    auto *label = new QLabel(localizedText(textKey));
    label->setObjectName(QLatin1StringView(name));
    return label;
}

/// Describes a button whose title is too short, in its tool tip and for screen readers. The name contains the title:
/// users who speak to the computer say what they see.
void describe(QPushButton *button, const char *textKey)
{
    const QString text = localizedText(textKey);
    button->setToolTip(text);
    const bool hasTitle = text.contains(button->text(), Qt::CaseInsensitive);
    button->setAccessibleName(hasTitle ? text : button->text() + u", "_s + text);
}

/// A label whose text says where and how the user presses keys.
QLabel *makeHint(const char *name)
{
    auto *hint = new QLabel;
    hint->setObjectName(QLatin1StringView(name));
    hint->setTextFormat(Qt::PlainText); // the names of keyboards come from outside
    hint->setWordWrap(true);
    return hint;
}

constexpr int belowTheField = 2; // in the column of layOutSheet()

/// Places a label over a field over two buttons at the right. Returns their column.
QVBoxLayout *layOutSheet(Sheet *sheet, QLabel *label, QLineEdit *field, QPushButton *cancel, QPushButton *ok)
{
    label->setBuddy(field);
    ok->setDefault(true);
    sheet->setCancelButton(cancel);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(ok);
    auto *column = new QVBoxLayout(sheet);
    column->setSpacing(Spacing::normal);
    column->addWidget(label);
    column->addWidget(field);
    column->addLayout(buttons);
    sheet->setMinimumWidth(320);
    return column;
}

} // namespace

QPushButton *KeyboardMacrosController::makeButton(QPushButton *&field, const char *name, const char *textKey,
                                                  void (KeyboardMacrosController::*action)(QObject *))
{
    field = new QPushButton(localizedText(textKey));
    field->setObjectName(QLatin1StringView(name));
    field->setAutoDefault(false);
    connect(field, &QPushButton::clicked, this, [this, button = field, action] {
        mMacroTableView->endEditing();
        (this->*action)(button);
    });
    return field;
}

QWidget *KeyboardMacrosController::buildMacroList()
{
    using Self = KeyboardMacrosController;
    mMacroTableView = new NSTableViewMacroSubClass;
    mMacroTableView->setObjectName("mMacroTableView"_L1);
    mMacroTableView->setAccessibleName(localizedText("lkeyMacroList"));
    mMacroTableView->addColumn({u"macroName"_s, localizedText("lkeyMacroList"), TableCell::text, true, true});
    connect(mMacroTableView, &TableView::editedRowChanged, this, &Self::updateEventButtons);
    mMacroTableView->horizontalHeader()->hide(); // the label has this text
    mMacroScrollView = makeScrollView(mMacroTableView, "mMacroScrollView"_L1);
    mSettingsMacro = new PulldownButton;
    mSettingsMacro->setObjectName("mSettingsMacro"_L1);
    mSettingsMacro->setAccessibleName(localizedText("lkeyMacroCommands"));
    mSettingsMacro->setToolTip(localizedText("lkeyMacroCommands"));

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(makeButton(mAddMacro, "mAddMacro", "lkeyAddMacro", &Self::clickAddMacro));
    buttons->addWidget(makeButton(mDeleteMacro, "mDeleteMacro", "lkeyDeleteMacro", &Self::clickDeleteMacro));
    describe(mAddMacro, "lkeyAddMacroTip");
    describe(mDeleteMacro, "lkeyDeleteMacroTip");
    mAddMacro->setIcon(Symbols::icon(Symbol::add, u"list-add"_s));
    mDeleteMacro->setIcon(Symbols::icon(Symbol::remove, u"edit-delete"_s));
    buttons->addWidget(mSettingsMacro);
    buttons->addStretch();
    auto *part = new QWidget;
    auto *column = new QVBoxLayout(part);
    column->setContentsMargins({});
    column->setSpacing(Spacing::normal);
    QLabel *label = makeLabel("mMacroListLabel", "lkeyMacroListLabel");
    label->setBuddy(mMacroTableView);
    mMacroSearch = new MacroSearchField;
    connect(mMacroSearch, &QLineEdit::textChanged, this, [this] {
        showSearchResult();
        updatePlaceholders();
    });
    connect(mMacroSearch, &MacroSearchField::stepRequested, this, &Self::stepThroughSearch);
    connect(mMacroSearch, &MacroSearchField::listRequested, mMacroTableView, qOverload<>(&QWidget::setFocus));
    auto *header = new QHBoxLayout;
    header->addWidget(label);
    header->addWidget(mMacroSearch, 1);
    column->addLayout(header);
    column->addWidget(mMacroScrollView, 1);
    column->addLayout(buttons);
    return part;
}

QWidget *KeyboardMacrosController::buildEventList()
{
    using Self = KeyboardMacrosController;
    mMacroAssignmentLabel = makeLabel("mMacroAssignmentLabel", "lkeyMacroAssignment");
    mMacroAssignmentLabel->setWordWrap(true);
    mMacroDetailsTableView = new NSTableViewMacroDetailsSubClass;
    mMacroDetailsTableView->setObjectName("mMacroDetailsTableView"_L1);
    mMacroDetailsTableView->setAccessibleName(localizedText("lkeyMacroEvents"));
    mMacroDetailsTableView->addColumn({u"command"_s, localizedText("lkeyMacroEvents"), TableCell::text, false, true});
    mMacroDetailsTableView->setAllowsSeveralRows(true);
    mMacroDetailsTableView->setAllowsMovingRows(true);
    mMacroDetailsTableView->horizontalHeader()->hide();
    mMacroAssignmentLabel->setBuddy(mMacroDetailsTableView);
    mMacroDetailsScrollView = makeScrollView(mMacroDetailsTableView, "mMacroDetailsScrollView"_L1);
    mSettingsMacroDetails = new PulldownButton;
    mSettingsMacroDetails->setObjectName("mSettingsMacroDetails"_L1);
    mSettingsMacroDetails->setAccessibleName(localizedText("lkeyMacroEventCommands"));
    mSettingsMacroDetails->setToolTip(localizedText("lkeyMacroEventCommands"));
    makeButton(mRecordMacroDetails, "mRecordMacroDetails", "lkeyRecord", &Self::clickRecordMacroDetails);
    mRecordMacroDetails->setCheckable(true);
    mRecordMacroDetails->setIcon(EventIcons::recordIcon(false));
    mNoMacroState = new EmptyState(Symbol::macro);
    mNoMacroState->setObjectName("mNoMacroState"_L1);
    mNoMacroLabel = mNoMacroState->label();
    mNoMacroLabel->setObjectName("mNoMacroLabel"_L1);
    mFirstMacro = mNoMacroState->addButton(localizedText("lkeyAddMacroTip"));
    mFirstMacro->setObjectName("mFirstMacro"_L1);
    mFirstMacro->setIcon(Symbols::icon(Symbol::add, u"list-add"_s));
    connect(mFirstMacro, &QPushButton::clicked, mAddMacro, &QPushButton::click);
    mRecordingHint = makeHint("mRecordingHint");
    mRecordingHint->hide();
    mButtonArea = new ButtonArea;
    mButtonArea->setObjectName("mButtonArea"_L1);
    mButtonArea->setText(localizedText("lkeyButtonArea"));
    mButtonArea->hide();
    connect(mButtonArea, &ButtonArea::buttonChanged, this, &Self::recordButton);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(
        makeButton(mAddMacroDetails, "mAddMacroDetails", "lkeyAppendEvents", &Self::clickAddMacroDetails));
    buttons->addWidget(makeButton(mDeleteMacroDetails, "mDeleteMacroDetails", "lkeyDeleteSelectedEvent",
                                  &Self::clickDeleteMacroDetails));
    buttons->addWidget(mSettingsMacroDetails);
    buttons->addStretch();
    buttons->addWidget(makeButton(mTryMacro, "mTryMacro", "lkeyTryMacro", &Self::clickTryMacro));
    buttons->addWidget(mRecordMacroDetails);
    describe(mTryMacro, "lkeyTryMacroTip");
    describe(mAddMacroDetails, "lkeyAppendEventsTip");
    describe(mDeleteMacroDetails, "lkeyDeleteSelectedEventTip");
    mAddMacroDetails->setIcon(Symbols::icon(Symbol::add, u"list-add"_s));
    mDeleteMacroDetails->setIcon(Symbols::icon(Symbol::remove, u"edit-delete"_s));
    mMacroUses = new MacroUsesLinks;
    connect(mMacroUses, &MacroUsesLinks::chosen, this, [this](const KeyMappings::MacroUse &use) {
        if (mMacroDelegate)
            mMacroDelegate->showKeyOfProfile(use.keyCode, use.profileIndex);
    });
    mEventPart = new QWidget;
    mEventPart->setFocusPolicy(Qt::ClickFocus); // a click gives a recording its keys again
    auto *column = new QVBoxLayout(mEventPart);
    column->setContentsMargins({});
    column->setSpacing(Spacing::normal);
    column->addWidget(mMacroUses);
    column->addWidget(buildTimeline(), 1);
    column->addWidget(mMacroAssignmentLabel);
    column->addWidget(mMacroDetailsScrollView, 2);
    column->addWidget(mNoMacroState, 1);
    column->addWidget(mRecordingHint);
    column->addWidget(mButtonArea);
    column->addLayout(buttons);
    return mEventPart;
}

void KeyboardMacrosController::buildDelaySheet()
{
    using Self = KeyboardMacrosController;
    mEditDelayWindow = new Sheet;
    mEditDelayWindow->setObjectName("mEditDelayWindow"_L1);
    mEditDelayWindow->setWindowTitle(localizedText("lkeyEditDelayTitle"));
    mEnterMacroDelayLabel = makeLabel("mEnterMacroDelayLabel", "lkeyEnterMacroDelay");
    mInputMacroDelay = new NumberOnlyTextField;
    mInputMacroDelay->setObjectName("mInputMacroDelay"_L1);
    makeButton(mMacroDelayCancel, "mMacroDelayCancel", "lkeyCancel", &Self::clickMacroDelayCancel);
    makeButton(mMacroDelayOK, "mMacroDelayOK", "lkeyOK", &Self::clickMacroDelayOK);
    QVBoxLayout *column =
        layOutSheet(mEditDelayWindow, mEnterMacroDelayLabel, mInputMacroDelay, mMacroDelayCancel, mMacroDelayOK);
    mMacroDelayHint = makeHint("mMacroDelayHint");
    column->insertWidget(belowTheField, mMacroDelayHint);
}

void KeyboardMacrosController::buildEventSheet()
{
    using Self = KeyboardMacrosController;
    mEditEventWindow = new Sheet;
    mEditEventWindow->setObjectName("mEditEventWindow"_L1);
    mEditEventWindow->setWindowTitle(localizedText("lkeyEditEventTitle"));
    mEnterMacroEventLabel = makeHint("mEnterMacroEventLabel");
    mInputMacroEvent = new QLineEdit;
    mInputMacroEvent->setObjectName("mInputMacroEvent"_L1);
    // The daemon reports the pressed key; typing here would only put that key's text into the field.
    mInputMacroEvent->setReadOnly(true);
    makeButton(mMacroEventEditCancel, "mMacroEventEditCancel", "lkeyCancel", &Self::clickMacroEventCancel);
    makeButton(mMacroEventEditOK, "mMacroEventEditOK", "lkeyOK", &Self::clickMacroEventOK);
    QVBoxLayout *column = layOutSheet(mEditEventWindow, mEnterMacroEventLabel, mInputMacroEvent, mMacroEventEditCancel,
                                      mMacroEventEditOK);
    mEnterMacroEventLabel->setBuddy(nullptr); // it may show the name of a keyboard, with ampersands
    mMacroEventHint = makeHint("mMacroEventHint");
    column->insertWidget(belowTheField, mMacroEventHint);
}

void KeyboardMacrosController::buildView()
{
    mView = new QWidget;
    mView->setObjectName("macrosView"_L1);
    auto *row = new QHBoxLayout(mView);
    row->setContentsMargins(Spacing::separate, Spacing::separate, Spacing::separate, Spacing::separate);
    row->setSpacing(Spacing::separate);
    row->addWidget(buildMacroList(), 2);
    row->addWidget(buildEventList(), 3);
    buildDelaySheet();
    buildEventSheet();
    buildTrySheet();
    buildInsertSheet();
    mPauseWindow = new MacroPauseSheet;
    connect(mPauseWindow, &MacroPauseSheet::changeRequested, this, &KeyboardMacrosController::changePauses);
    showCaptureSource({});
    mMacroTableView->setDataSource(this);
    mMacroDetailsTableView->setDataSource(this);
    connectKeys();
    setTabOrder();
}

/// Connects the keys that are usual in a desktop's lists; each is off while its button or list is.
void KeyboardMacrosController::connectKeys()
{
    const auto addKey = [this](QWidget *table, QKeySequence key, auto action) {
        auto *shortcut = new QShortcut(key, table);
        shortcut->setContext(Qt::WidgetShortcut); // not in a name's editor
        connect(shortcut, &QShortcut::activated, this, action);
    };
    const auto editEvent = [this] {
        if (mSettingsMacroDetails->isEnabled())
            editSelectedEvent();
    };
    const auto rename = [this] {
        if (mSettingsMacro->isEnabled() && macroRow() >= 0)
            startRenaming();
    };
    addKey(mMacroTableView, Qt::Key_Delete, [this] { mDeleteMacro->click(); });
    addKey(mMacroDetailsTableView, Qt::Key_Delete, [this] { mDeleteMacroDetails->click(); });
    for (const Qt::Key key : {Qt::Key_F2, Qt::Key_Return, Qt::Key_Enter}) {
        addKey(mMacroTableView, key, rename);
        addKey(mMacroDetailsTableView, key, editEvent);
    }
    connect(mMacroDetailsTableView, &TableView::doubleClicked, this, editEvent);
    addKey(mMacroDetailsTableView, Qt::Key_Insert, [this] { editEvents(MacroCommands::insertEvents); });
    addKey(mMacroDetailsTableView, Qt::ALT | Qt::Key_Up, [this] { editEvents(MacroCommands::moveUp); });
    addKey(mMacroDetailsTableView, Qt::ALT | Qt::Key_Down, [this] { editEvents(MacroCommands::moveDown); });
    auto *find = new QShortcut(QKeySequence(QKeySequence::Find), mView);
    connect(find, &QShortcut::activated, mMacroSearch, &MacroSearchField::beginSearch);
}

/// Orders the controls by their places, from left to right and down.
void KeyboardMacrosController::setTabOrder()
{
    QList<QWidget *> controls{mMacroSearch, mMacroTableView, mAddMacro, mDeleteMacro, mSettingsMacro, mMacroUses};
    controls += mTimeline->controls();
    controls += {mMacroDetailsTableView, mAddMacroDetails, mDeleteMacroDetails,
                 mSettingsMacroDetails,  mTryMacro,        mRecordMacroDetails};
    for (qsizetype index = 1; index < controls.size(); ++index)
        QWidget::setTabOrder(controls.at(index - 1), controls.at(index));
}

// SPDX-License-Identifier: MIT
// The macros tab: the list of macros, the events of the selected one, recording and editing events. Keeps copies of the
// main controller's data and asks its delegate for every change. Main thread only.
#pragma once

#include "base/capturesource.h"
#include "base/statusreport.h"
#include "keys/macrouses.h"
#include "macros/eventicons.h"
#include "macros/macrocommands.h"
#include "macros/macroinsertion.h"
#include "macros/macrolines.h"
#include "macros/macropausesheet.h"
#include "macros/macrorecord.h"
#include "macros/macrotry.h"
#include "platform/sheet.h"
#include "platform/sheetsubject.h"
#include "platform/tableview.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <optional>

class ButtonArea;
class DistributedNotificationCenter;
class MacroDelegate;
class MacroInsertSheet;
class MacroTimelinePart;
class MacroTrySheet;
class MacroTypeText;
class NSTableViewMacroDetailsSubClass;
class NSTableViewMacroSubClass;
class NumberOnlyTextField;
class OpenPanel;
class QAction;
class EmptyState;
class QLabel;
class QLineEdit;
class MacroSearchField;
class MacroUsesLinks;
class QPushButton;
class SavePanel;

class KeyboardMacrosController : public QObject, public TableViewDataSource
{
    Q_OBJECT

public:
    explicit KeyboardMacrosController(QObject *parent = nullptr);
    ~KeyboardMacrosController() override;

    /// Context numbers of the tab's sheets.
    enum SheetContext { confirmDelete = 5, exportMacro = 10 };

    /// The use that the tab makes of the keyboard.
    enum class Activity {
        idle,
        recording,        ///< a new recording runs
        appending,        ///< an appended recording runs
        appendingAgain,   ///< Record started the appended recording again; possible after a late captured key
        stoppingAppended, ///< an appended recording takes no more events, but has not been saved yet
        editingEvent,     ///< the event sheet is up
        choosingKey,      ///< the sheet for new events waits for the key
    };
    Q_ENUM(Activity)

    // Content of the tab
    [[nodiscard]] QWidget *view() const { return mView; }
    [[nodiscard]] QPushButton *addButton() const { return mAddMacro; }
    [[nodiscard]] TableView *macroTableView() const;
    [[nodiscard]] TableView *macroDetailsTableView() const;
    [[nodiscard]] QWidget *macrosWindow() const { return mMacrosWindow; }
    [[nodiscard]] MacroDelegate *macroDelegate() const { return mMacroDelegate; }
    [[nodiscard]] QVariantList macrosSettingsArray() const { return mMacrosSettingsArray; }
    [[nodiscard]] QStringList macroDetailsArray() const { return mLines.shown(); }
    [[nodiscard]] MacroCommands::EventListState eventListState() const;
    /// True while a recording, new or appended, runs. Also true from the start of a single-key capture until Stop or OK
    /// ends it; Cancel does not.
    [[nodiscard]] bool isRecordingOrCapturing() const;
    [[nodiscard]] bool recordButtonReadsStop() const { return mState.readsStop; }
    [[nodiscard]] Activity activity() const { return mState.activity; }
    // The fixed fields of the activity
    /// A new recording runs. Also true for an appended recording that was started again by Record.
    [[nodiscard]] bool isRecording() const;
    /// An appended recording runs, or is being stopped.
    [[nodiscard]] bool isAppendMacro() const;
    /// The last recording was stopped.
    [[nodiscard]] bool isStopRecording() const { return mState.wasStopped; }
    /// A single key is being captured, or was when the event sheet was cancelled.
    [[nodiscard]] bool isEditingMacro() const { return mState.isCapturing; }
    /// The event sheet is up.
    [[nodiscard]] bool isMacroEventEdit() const { return mState.activity == Activity::editingEvent; }

    // From the main controller
    /// Observes the recording notifications, at the centre of setNotificationCenter() if one was set, else at the
    /// default one.
    void awakeFromNib();
    /// The controller does not own `center`, which must outlive it.
    void setNotificationCenter(DistributedNotificationCenter *center) { mNotificationCenter = center; }
    void setMMacrosSettingsArray(const QVariantList &macros);
    /// The profiles whose keys play the macros; `activeProfile` is the index of the active one.
    void setProfiles(const QVariantList &profiles, int activeProfile);
    /// The controller owns neither of the two.
    void setMMacroDelegate(MacroDelegate *delegate) { mMacroDelegate = delegate; }
    void setMMacrosWindow(QWidget *window) { mMacrosWindow = window; }
    void setControlsState(bool isEnabled);
    void refreshTableDisplay();
    /// `lines` are the display lines of the selected macro (texts).
    void updateSelectedMacroWithMacroDetails(const QVariantList &lines);
    /// Shows macros that were recorded on the keyboard and handed over.
    void updateTableWithNewMacro();
    void stopAllMacroRecording();
    /// The widget that waits for keys of the keyboard: the event sheet while it is up, the event part during a
    /// recording, a button of the sheet for new events while that waits for a key, else null.
    [[nodiscard]] QWidget *captureArea() const;
    /// Shows in that widget where the user presses the keys.
    void showCaptureSource(const CaptureSource &source);
    /// Restarts the capture of an open event sheet when the keyboard is back after it, or its daemon, was gone. Ends a
    /// recording that is still shown as running, whose events are gone with the daemon.
    void keyboardCameBack();
    /// The user selected a tab; leaving this one stops a recording. `label` is the label of the selected tab.
    void checkMacroRecordingStatus(const QString &label);

    // States of groups of controls
    void setStateOfMacroDetailsTableWithState(bool isHidden);
    void setStateOfTableButtonsWithState(bool isEnabled);
    void setStateOfMacroTableWithState(bool isEnabled);

    // The macro list
    void clickAddMacro(QObject *sender);
    void clickDeleteMacro(QObject *sender);
    void clickMacroSettingsMenuItem(const QAction *item);
    void deleteMacro();
    /// Adds a copy of the selected macro under a name of its own, and selects it.
    void duplicateMacro();
    /// `context` is a SheetContext.
    void sheetDidEndReturnCodeContextInfo(int returnCode, int context);
    /// Asks for a file from which to import a macro.
    void loadPanel();
    void openPanelDidEndReturnCodeContextInfo(int returnCode);
    /// Asks for a file to which to export the selected macro.
    void loadSaveAsPanel();
    /// Returns `name`, or `name` with a number if a record in `macros` has it; the rule is uniqueName().
    [[nodiscard]] QString checkForDuplicateMacroNameUsingDefaultName(const QVariantList &macros,
                                                                     const QString &name) const;
    void setupSettingsMenus();
    /// True if a gear menu enables the item.
    [[nodiscard]] bool validateMenuItem(const QAction *item) const;

    // The event list and recording
    void clickRecordMacroDetails(QObject *sender);
    void clickAddMacroDetails(QObject *sender);
    void clickDeleteMacroDetails(QObject *sender);
    void clickMacroDetailsSettingsMenuItem(const QAction *item);
    void clickMacroDelayOK(QObject *sender);
    void clickMacroDelayCancel(QObject *sender);
    void clickMacroEventOK(QObject *sender);
    void clickMacroEventCancel(QObject *sender);
    void clickTryMacro(QObject *sender);
    /// Performs a command that edits the events of all selected rows, unless events cannot be edited now.
    void editEvents(MacroCommands::EventTag tag);
    /// Shows the output of the running try.
    void showTriedKeys(const QList<TriedKey> &keys);
    /// The running try is over.
    void endTry(TryEnd end);
    /// `userInfo` is that of the notification of new events ("messagesArray").
    void recordEvents(const QVariantMap &userInfo);
    /// `userInfo` is that of the notification of a captured key ("singleKey", "singleKeyModif").
    void singleKeyEvents(const QVariantMap &userInfo);

    // The data source of both tables. Columns: "macroName" of the list, "command" of the event list.
    int numberOfRowsInTableView(TableView *tableView) override;
    QVariant tableViewObjectValueForTableColumnRow(TableView *tableView, const QString &column, int row) override;
    void tableViewSetObjectValueForTableColumnRow(TableView *tableView, const QVariant &value, const QString &column,
                                                  int row) override;
    void tableViewSelectionDidChange(TableView *tableView) override;
    /// Returns an arrow or a clock for each line of the event list.
    QIcon tableViewImageForTableColumnRow(TableView *tableView, const QString &column, int row) override;
    /// Says of a press or release that it has no counterpart.
    QString tableViewRemarkForTableColumnRow(TableView *tableView, const QString &column, int row) override;
    /// A delay goes with the event below it: the place between the two is the one before the delay.
    int tableViewPlaceOfDrop(TableView *tableView, int place) override;
    void tableViewMoveSelectedRows(TableView *tableView, int place) override;

Q_SIGNALS:
    void captureAreaChanged(); ///< also when a capture begins again in the same area

private:
    void buildView();
    QWidget *buildMacroList();
    QWidget *buildEventList();
    MacroTimelinePart *buildTimeline();
    void connectKeys();
    void setTabOrder();
    void buildDelaySheet();
    void buildEventSheet();
    QPushButton *makeButton(QPushButton *&field, const char *name, const char *textKey,
                            void (KeyboardMacrosController::*action)(QObject *));

    /// True from the start of a recording, new or appended, until it has ended.
    [[nodiscard]] bool hasRecording() const { return isRecording() || isAppendMacro(); }
    /// All of what the tab does. The capture and the title of the button follow the activity, with two deliberate
    /// exceptions: Cancel leaves the capture to be ended once more, and a recording runs on behind a button that reads
    /// "Record" when a late key has ended that capture.
    struct State
    {
        Activity activity = Activity::idle;
        bool isCapturing = false; ///< mIsEditingMacro
        bool readsStop = false;   ///< the title of the record button
        bool wasStopped = false;  ///< mIsStopRecording; for completeness
    };
    /// The only place that changes what the tab does. Shows it: the record button, the hints, the colour of the lines,
    /// and the controls that are disabled while the tab waits for keys.
    void setActivity(const State &state);
    /// The state after the last event: a new recording is over, an appended one has yet to be saved.
    [[nodiscard]] State stateWithoutEvents() const;
    void beginRecording(Activity recording);
    [[nodiscard]] int macroRow() const;
    [[nodiscard]] int eventRow() const;
    [[nodiscard]] QVariantMap macroAt(int row) const; ///< empty if there is no such row

    void exportMacroToFile(const QString &path);
    void importMacroFromFile(const QString &path);
    void report(StatusReport::Event event, const QString &subject, const QString &reason = {}) const;
    /// Adds `macro` as a new record, and selects it. Selects the earlier macro again if the daemon does not accept it.
    void addFinishedMacro(const QVariantMap &macro);
    [[nodiscard]] QList<KeyMappings::MacroUse> usesOfSelectedMacro() const;
    void showUses();
    void showSearchResult();
    /// Selects the next macro found in the direction of `step`, 1 or -1; after the last comes the first.
    void stepThroughSearch(int step);
    /// Returns the first row from `row` on whose macro fits the search, or else the last one before it; -1 for none.
    [[nodiscard]] int rowInSearch(int row) const;
    /// Sends the record that was just appended to the list. Returns its row in the new list. Returns -1 when the daemon
    /// has not accepted the record, which is then removed from the list. Also returns -1 when another macro of the same
    /// name is there.
    [[nodiscard]] int sendAppendedMacro();
    void renameMacro(int row, const QString &newName);
    void startRenaming();
    /// Fetches the lines of the selected macro. Without a reply, shows the lines that came last if they are of this
    /// macro.
    void fetchLines();
    /// Shows the lines that came last if they are of the selected macro; otherwise fetches them.
    void showLinesAgain();
    void linesHaveChanged();
    /// Fetches the lines if those shown are no longer those of the selected macro.
    void fetchChangedLines();
    /// Shows a new list and selects the macro that was selected before. Ends the recording of a macro that is gone.
    void showNewList();
    /// Returns the row of the selected macro by its "macroID", or the selected row if it has none; -1 if the macro is
    /// gone.
    [[nodiscard]] int rowOfSelectedMacro() const;
    void noteSelectedMacro();
    struct Selection
    {
        int row = -1;
        QVariant macroId;
    };
    void selectAgain(const Selection &before);
    /// Sends only the end of the recording: the recorded events no longer belong to a macro.
    void abandonRecording();
    /// Ends open dialogs about a macro other than the selected one, or about events that have changed since.
    void endOutdatedSheets();
    [[nodiscard]] QVariant selectedMacro() const;         ///< its identifier and its name
    [[nodiscard]] QVariant eventsOfSelectedMacro() const; ///< its identifier, or else its name, and its lines
    /// Fetches the lines after a command that changed the events.
    void eventsWereEdited();
    void updateEventPart();
    void updatePlaceholders();
    void updateLineColor();
    void updateEventButtons();
    void enableDeleteEventBySelection();
    void setRecordButton(bool readsStop); ///< without a change of the activity
    void showRecordButton();
    void describeRecordButton();
    void startRecording();
    void stopRecording();
    void selectEvent(int row);
    void editSelectedEvent();
    void openDelaySheet();
    /// Shows the delay of the selected row in the sheet that replaces it.
    void showPresentDelay();
    void openEventSheet();
    /// Starts the capture of a key for the open event sheet.
    void captureEditedEvent();
    void closeEventSheet();
    /// Gives the edited event the captured key; with a `page` below 0, the event keeps its page.
    void storeCapturedKey(int page);
    void buildTrySheet();
    void recordButton(int button, bool isDown);
    void setDelayOfRow(int row, int delayMs);
    void releaseKeysAtEnd();
    /// Reads the macros again if events were edited since they came. False if they have not come: the records must not
    /// be used. The reason was reported.
    [[nodiscard]] bool hasPresentRecords();
    void updateTimeline();
    void markUnpairedEvents();
    /// The events of the selected macro, and which of them the selected rows belong to (ascending).
    struct SelectedEvents
    {
        QVariantList all;
        QList<int> indexes;
    };
    /// Absent without present records; the reason was reported.
    [[nodiscard]] std::optional<SelectedEvents> readSelectedEvents();
    /// Stores `changed` in place of `read`, as one change, and selects `chosen` of it.
    void storeEvents(const QVariantList &read, const QVariantList &changed, const QList<int> &chosen);
    void selectEvents(const QList<int> &indexes);
    void selectEventRows(const QList<int> &rows);
    /// Returns false if nothing is selected. Also returns false, and reports it, if one of the events could not be
    /// pasted. The clipboard then stays as it was.
    bool copySelectedEvents();
    void deleteSelectedEvents();
    void pasteEvents();
    void moveSelectedEvents(int step);
    /// Moves them before the event that is now at `place`.
    void moveEvents(const SelectedEvents &selected, int place);
    /// Stores `changed` in place of the event that `row` belongs to, over the request without a limit for rows.
    void storeEventOutOfReach(int row, const std::function<QVariantMap(const QVariantMap &event)> &changed);
    void openPauseSheet(MacroPauseSheet::Change change);
    void changePauses(MacroPauseSheet::Change change, int number);
    void buildInsertSheet();
    void openInsertSheet();
    void insertEvents(const MacroInsertion::Outcome &outcome);
    void captureInsertedKey(bool begins);
    [[nodiscard]] bool isChoosingKey() const { return mState.activity == Activity::choosingKey; }
    void openTypeTextSheet();
    void insertTypedText(const QList<MacroRecord::Event> &typed, int index, int pauseMs);
    void removeAllEvents();
    void copySelectedDelayToAll();
    void removeAllDelays();

    QWidget *mView = nullptr;
    QWidget *mMacroScrollView = nullptr;
    NSTableViewMacroSubClass *mMacroTableView = nullptr;
    MacroSearchField *mMacroSearch = nullptr;
    MacroUsesLinks *mMacroUses = nullptr;
    QPushButton *mAddMacro = nullptr;
    QPushButton *mDeleteMacro = nullptr;
    PulldownButton *mSettingsMacro = nullptr;
    QLabel *mMacroAssignmentLabel = nullptr;
    EmptyState *mNoMacroState = nullptr;
    QLabel *mNoMacroLabel = nullptr;
    QPushButton *mFirstMacro = nullptr;
    QWidget *mMacroDetailsScrollView = nullptr;
    NSTableViewMacroDetailsSubClass *mMacroDetailsTableView = nullptr;
    QPushButton *mAddMacroDetails = nullptr;
    QPushButton *mDeleteMacroDetails = nullptr;
    QPushButton *mRecordMacroDetails = nullptr;
    MacroTimelinePart *mTimeline = nullptr; ///< shown while the selected macro has events
    QWidget *mEventPart = nullptr;          ///< with everything from mMacroAssignmentLabel to mRecordMacroDetails
    QLabel *mRecordingHint = nullptr;
    ButtonArea *mButtonArea = nullptr;
    QPushButton *mTryMacro = nullptr;
    QPointer<MacroTrySheet> mTryWindow;
    PulldownButton *mSettingsMacroDetails = nullptr;
    QPointer<Sheet> mEditDelayWindow;
    QLabel *mEnterMacroDelayLabel = nullptr;
    QLabel *mMacroDelayHint = nullptr;
    NumberOnlyTextField *mInputMacroDelay = nullptr;
    QPushButton *mMacroDelayOK = nullptr;
    QPushButton *mMacroDelayCancel = nullptr;
    QPointer<Sheet> mEditEventWindow;
    QLabel *mEnterMacroEventLabel = nullptr;
    QLabel *mMacroEventHint = nullptr;
    QLineEdit *mInputMacroEvent = nullptr;
    QPushButton *mMacroEventEditOK = nullptr;
    QPushButton *mMacroEventEditCancel = nullptr;
    QPointer<MacroTypeText> mTypeTextWindow; ///< made when it first comes up
    QPointer<MacroPauseSheet> mPauseWindow;
    QPointer<MacroInsertSheet> mInsertWindow;

    QPointer<OpenPanel> mOpenPanel; ///< both panels: kept until the next is opened
    QPointer<SavePanel> mSavePanel;

    SheetSubject mMacroSubject;  ///< the selectedMacro() of an open alert or panel
    SheetSubject mImportSubject; ///< of the import panel, which is about no macro
    SheetSubject mTrySubject;    ///< the selectedMacro() of the sheet for a try
    SheetSubject mEventsSubject; ///< the eventsOfSelectedMacro() that a sheet edits

    QVariantList mMacrosSettingsArray;
    QVariantList mProfiles;
    int mActiveProfile = -1;
    QVariantMap mSequenceDict;           ///< the event record being edited
    QVariantList mEventsBeforeTyping;    ///< of the macro for which a text is being written
    QVariantList mEventsBeforeInsertion; ///< of the open sheet for new events
    SelectedEvents mEventsToPause;       ///< of the open sheet for pauses
    MacroLines mLines;
    QVariant mSelectedMacroId; ///< of the selected macro; invalid without one
    EventIcons mEventIcons;
    QList<int> mUnpairedRows; ///< of the event list, ascending; none during a recording
    QPointer<QWidget> mMacrosWindow;
    DistributedNotificationCenter *mNotificationCenter = nullptr;
    MacroDelegate *mMacroDelegate = nullptr;

    State mState;
    int mEditedRow = -1;               ///< row of a rename started from a menu
    quint8 mMacroEventEditHIDCode = 0; ///< the key captured for the edited event; 0 for none
    bool mIsAddMacro = false;          ///< an add is in progress: the daemon does not know the new row yet
    bool mIsRenamingMacroName = false; ///< a rename was started from a menu
    bool mIsListNew = false;           ///< a list was handed over since an add was sent
    bool mHasDeviceConnected = true;   ///< the latest argument of setControlsState()
    // For completeness: the delay field checks each edit itself.
    [[maybe_unused]] int mCountDecimal = 0;
    [[maybe_unused]] bool mIsDecimalPointDuplicate = false;
};

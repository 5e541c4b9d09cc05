// SPDX-License-Identifier: MIT
// The keys tab: the keyboard picture, the assignment pop-up and the controls around them. The main controller owns the
// tab, passes it the settings through the setters and drives it with populateUIControls() and updateUISettings(). The
// tab never changes these settings: each change goes to the delegate and returns by updateUISettings(). Main thread
// only.
#pragma once

#include "base/capturesource.h"
#include "keys/keybutton.h"
#include "keys/keymapping.h"
#include "keys/keysdelegate.h"
#include "platform/sheetsubject.h"

#include <QObject>
#include <QPointer>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <optional>

class DistributedNotificationCenter;
struct DistributedNotification;
class KeyCard;
struct KeyCardContent;
class KeyMarksLegend;
class KeySearchBar;
class NewMacro;
class KeyboardPicture;
class PopUpButton;
class QAction;
class ApplicationChooser;
struct AssignmentClip;
class OpenPanel;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class Sheet;

class KeyboardKeysController : public QObject
{
    Q_OBJECT

public:
    explicit KeyboardKeysController(QObject *parent = nullptr);
    ~KeyboardKeysController() override;

    /// Returns the content of the tab. The controller creates and owns it until a window adds it.
    [[nodiscard]] QWidget *view() const { return mView; }
    /// Must be called once, when the window is assembled.
    void awakeFromNib();

    [[nodiscard]] QVariantMap deviceSettingsDict() const { return mDeviceSettingsDict; }
    [[nodiscard]] QVariantMap defaultDict() const { return mDefaultDict; }
    [[nodiscard]] QVariantMap keysCurrentProfileDict() const { return mKeysCurrentProfileDict; }
    [[nodiscard]] QVariantList allProfilesArray() const { return mAllProfilesArray; }
    [[nodiscard]] QVariantList allMacrosArray() const { return mAllMacrosArray; }
    [[nodiscard]] QWidget *keysWindow() const { return mKeysWindow; }
    [[nodiscard]] KeysDelegate *keysDelegate() const { return mKeysDelegate; }
    void setMDeviceSettingsDict(const QVariantMap &settings) { mDeviceSettingsDict = settings; }
    void setMDefaultDict(const QVariantMap &profile) { mDefaultDict = profile; }
    void setMKeysCurrentProfileDict(const QVariantMap &profile) { mKeysCurrentProfileDict = profile; }
    void setMAllProfilesArray(const QVariantList &profiles) { mAllProfilesArray = profiles; }
    void setMAllMacrosArray(const QVariantList &macros);
    void setMKeysWindow(QWidget *window) { mKeysWindow = window; }
    /// The delegate must outlive the controller, or be set to null before.
    void setMKeysDelegate(KeysDelegate *delegate);

    /// Code text of the selected key; of several, the one selected last.
    [[nodiscard]] QString selectedKey() const { return mSelectedKey; }
    /// Returns the codes of all selected keys, the one selected last at the end.
    [[nodiscard]] QList<int> selectedCodes() const;
    [[nodiscard]] KeyButton *currentButton() const { return mCurrentButton; }
    [[nodiscard]] QString currentButtonValue() const { return mCurrentButtonValue; }
    [[nodiscard]] KeyButton *previousButton() const { return mPreviousButton; }
    [[nodiscard]] QString previousButtonValue() const { return mPreviousButtonValue; }
    [[nodiscard]] QString keyName() const { return mKeyName; }
    [[nodiscard]] bool gameMode() const { return mGameMode; }
    [[nodiscard]] bool isFunctionKeySelected() const { return mIsFunctionKeySelected; }
    [[nodiscard]] bool isFirstLaunch() const { return mIsFirstLaunch; }
    [[nodiscard]] bool isCancelSingleKey() const { return mIsCancelSingleKey; }
    [[nodiscard]] qint32 singleKeyHIDCode() const { return mSingleKeyHIDCode; }
    [[nodiscard]] qint32 singleKeyModifierCode() const { return mSingleKeyModifierCode; }
    [[nodiscard]] int selectedIndexOfMacroSubMenu() const { return mSelectedIndexOfMacroSubMenu; }
    [[nodiscard]] QVariantMap devicePlist() const { return mDevicePlist; }
    [[nodiscard]] ApplicationChooser *applicationChooser() const; ///< null until one was opened
    [[nodiscard]] OpenPanel *openPanel() const; ///< null unless the chooser's "Other…" has opened it
    [[nodiscard]] KeyboardPicture *picture() const { return mPicture; }

    // Calls from the main controller
    void populateUIControls();
    void updateUISettings();
    void setControlsState(bool isEnabled);
    void saveLastSelectedKey();
    /// Selects the keys with these codes, the last one last. Ignores codes without a key.
    void selectKeys(QList<int> codes);
    /// The widget that waits for keys of the keyboard: the single-key sheet while it is up, that of a new macro while
    /// it records, else null.
    [[nodiscard]] QWidget *captureArea() const;
    /// Ends the recording of a new macro; its sheet stays. The user has gone to another program.
    void stopNewMacroRecording();
    /// Ends the sheet of a new macro and keeps what was recorded. For the end of the program.
    void keepNewMacro();
    /// Shows in the sheet where the user presses the key.
    void showCaptureSource(const CaptureSource &source);
    /// Restarts the capture of an open sheet when the keyboard is back after it, or its daemon, was gone.
    void keyboardCameBack();
    /// `mappingType` is 10 after a macro was deleted and 17 after a profile was.
    void removeDeletedMacroProfileMappingsForMapping(int deletedIndex, int mappingType);

    // Actions. `sender` is the clicked button. The action of a key uses the key's own outlet instead of the sender.
#define KESTRA_KEY(outlet, action, code, functionKeyName) void action(QObject *sender);
#define KESTRA_FIXED_KEY(outlet, action, disabledAtStart) void action(QObject *sender);
#include "keys/keytable.inc"
    void clickKeyboardButton(QObject *sender);
    void clickAssignFunction(QObject *sender);
    void clickMacroPlayback(QObject *sender);
    void profileSubMenuSelector(QAction *sender);
    void macroSubMenuSelector(QAction *sender);
    void clickSingleKeyOK(QObject *sender);
    void clickSingleKeyCancel(QObject *sender);
    /// Hides and disables an item titled like the active profile; shows and enables every other. Returns whether the
    /// item is enabled.
    bool validateMenuItem(QAction *item);

    void updatePopUpSelection();
    void setupPreviousKey();
    void setupProfileSubMenu();
    void setupMacroSubMenu();
    void updateCurrentButton(int code);
    [[nodiscard]] bool isKeyMapped(int code) const;
    [[nodiscard]] int checkPopUpAssignmentIndexForValue(int command) const;
    [[nodiscard]] int macroRepeat(int value) const;
    void updateSelectedKeyCommandValueParamOneAndParamTwo(int command, int paramOne, int paramTwo);
    void checkLastSelectedKey();
    void checkKeyAssignment();
    void resetKeys();
    void checkForSelectedFunctionKey();
    /// `position` is that of the selected key's assignment in the pop-up.
    void functionKeysInfoDisplay(int position);
    void registerNotification();
    void singleKeyEvents(const DistributedNotification &notification);
    void gameModeSwitch(const DistributedNotification &notification);
    void sheetDidEndReturnCodeContextInfo(Sheet *sheet, int returnCode, void *contextInfo);
    /// `returnCode` is 1 for OK and 0 for cancelled; any other does nothing.
    void openPanelDidEndReturnCodeContextInfo(OpenPanel *panel, int returnCode, void *contextInfo);

Q_SIGNALS:
    void captureAreaChanged(); ///< also when a capture begins again in the same area

private:
    void buildView();
    QWidget *buildHeader();
    QWidget *buildKeyboard();
    QWidget *buildCard();
    QWidget *buildNotice();
    void buildSingleKeySheet();
    void connectActions();

    void selectKey(KeyButton *button, int code, bool isFunctionKey);
    void showEntry(const KeyMappings::Entry &entry, int position);
    void resetAssignmentTitles();
    void setPlaybackVisible(bool isVisible);
    void validateItems(const QMenu *menu);
    void openSingleKeySheet();
    void connectNewMacro();
    void makeNewMacro();
    void captureSingleKey();
    void openApplicationChooser();
    void openApplicationPanel();
    /// `name` of what was chosen, for a report that nothing there can be launched.
    void applicationChoiceDidEnd(int returnCode, const std::optional<QVariantMap> &information, const QString &name);
    /// Gives all selected keys this assignment. When they become default keys, `param1` is that of the key selected
    /// last; every other one gets that of its own default entry.
    void writeEntry(KeyMappings::Assignment assignment, const QVariant &param1, const QVariant &param2);
    void updateDescriptions();
    /// Returns the character that the key shows and its fixed name, or the name alone if the two are the same.
    [[nodiscard]] QString shownKeyName(int code) const;
    void showKeyNames();
    /// Explains an M or T key; empty for every other key.
    [[nodiscard]] QString extraKeyInfo(int code) const;
    void connectPicture();
    void connectSelection();
    void addClipboardItems();
    void setOtherSelectedKeys(const QList<int> &codes);
    void showSelectedKeys();
    /// Adds the part of the card's content that describes `entry`.
    void addAssignment(KeyCardContent &content, const KeyMappings::Entry &entry) const;
    void addToSelection(KeyButton *key, int code);
    void toggleSelection(KeyButton *key, int code);
    void copyAssignment();
    void pasteAssignment();
    /// Absent for an unknown assignment and for one of a macro or profile that does not exist.
    [[nodiscard]] std::optional<AssignmentClip> clipOfSelectedKey() const;
    /// Returns the assignment on the clipboard; its macro or profile has the index of today. Absent without one.
    [[nodiscard]] std::optional<AssignmentClip> clipToPaste() const;
    void openAssignmentMenu(KeyButton *key, const QPoint &position);
    void showSearchResult();
    /// Selects the next key found in the direction of `step`, 1 or -1; after the last comes the first.
    void stepThroughSearch(int step);
    /// `titles` are indexed by tag.
    void setupSubMenu(int position, const QStringList &titles, void (KeyboardKeysController::*selector)(QAction *));
    /// The item of the record that the selected key uses, in the sub-menu of the pop-up's item `position`; null if the
    /// key has another assignment.
    [[nodiscard]] QAction *itemOfSelectedKey(const QMenu *menu, int position) const;
    [[nodiscard]] KeyMappings::Entry entryForKey(int code) const;
    [[nodiscard]] int selectedCode() const;
    [[nodiscard]] QVariant profile() const; ///< identifies the active profile
    /// Absent when "ActiveProfile" points to no profile. No item then has its title, not even an item without a title.
    [[nodiscard]] std::optional<QString> activeProfileName() const;
    /// Returns the effect of `entry` for the pop-up's title. Absent if the entry points to nothing or has no further
    /// detail.
    [[nodiscard]] std::optional<QString> assignmentDetail(const KeyMappings::Entry &entry) const;
    /// Returns why the key with `entry` does nothing although it is not disabled: its macro or profile is gone, or the
    /// program does not know the kind of its assignment. Null if there is no such reason.
    [[nodiscard]] const char *assignmentProblem(const KeyMappings::Entry &entry) const;
    [[nodiscard]] QString assignmentDescription(const KeyMappings::Entry &entry) const;

    QWidget *mView = nullptr;
    KeyboardPicture *mPicture = nullptr;
    QGroupBox *mKeysBox = nullptr;
#define KESTRA_KEY(outlet, action, code, functionKeyName) KeyButton *outlet = nullptr;
#define KESTRA_FIXED_KEY(outlet, action, disabledAtStart) KeyButton *outlet = nullptr;
#include "keys/keytable.inc"
    PopUpButton *mAssignFunction = nullptr;
    QLabel *mAssignLabel = nullptr;
    PopUpButton *mMacroPlaybackPopUp = nullptr;
    QLabel *mPlaybackOptionLabel = nullptr;
    QLabel *mFunctionKeysInfoLabel = nullptr;
    QLabel *mFunctionKeysInfoImage = nullptr;
    Sheet *mSingleKeyWindow = nullptr;
    QLineEdit *mSingleKeyInput = nullptr;
    QLabel *mSingleKeyInputLabel = nullptr;
    QLabel *mSingleKeyHint = nullptr;
    QPushButton *mSingleKeyOK = nullptr;
    QPushButton *mSingleKeyCancel = nullptr;
    QLabel *mProfileNameLabel = nullptr;
    QLabel *mCurrentProfileLabel = nullptr;
    KeyCard *mKeyCard = nullptr;
    KeyMarksLegend *mMarksLegend = nullptr;
    KeySearchBar *mSearchBar = nullptr;
    NewMacro *mNewMacro = nullptr;
    QAction *mSeparator = nullptr;
    QAction *mMakeMacro = nullptr;
    QAction *mCopy = nullptr;
    QAction *mPaste = nullptr;

    QVariantMap mKeysCurrentProfileDict;
    QVariantMap mDeviceSettingsDict;
    QVariantMap mDefaultDict;
    QVariantList mAllProfilesArray;
    QVariantList mAllMacrosArray;
    QVariantMap mDevicePlist;
    QString mSelectedKey;
    QPointer<QWidget> mKeysWindow;
    DistributedNotificationCenter *mKeysNotificationCenter = nullptr;
    QPointer<ApplicationChooser> mApplicationChooser;
    QPointer<OpenPanel> mOpenPanel;
    SheetSubject mSheetSubject; ///< the profile() in which the sheet or the panel changes a key
    KeyButton *mCurrentButton = nullptr;
    QString mCurrentButtonValue;
    KeyButton *mPreviousButton = nullptr;
    QString mPreviousButtonValue;
    QString mKeyName;
    KeysDelegate *mKeysDelegate = nullptr;
    int mSelectedIndexOfMacroSubMenu = 0;
    bool mIsCancelSingleKey = false;
    qint32 mSingleKeyHIDCode = 0;
    qint32 mSingleKeyModifierCode = 0;
    bool mIsFirstLaunch = true;
    bool mGameMode = false;
    bool mIsFunctionKeySelected = false;
    QList<int> mOtherSelectedKeys;   ///< codes of the selected keys but mSelectedKey, in the order of their selection
    QList<int> mFoundKeys;           ///< codes of the keys that fit the search
    bool mHasDeviceConnected = true; ///< the latest argument of setControlsState()
};

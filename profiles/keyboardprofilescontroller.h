// SPDX-License-Identifier: MIT
// The profiles tab: the list of profiles, with adding, copying, renaming, deleting, restoring and the on-screen
// display. Keeps copies of the main controller's data and asks its delegate for every change. Main thread only.
#pragma once

#include "base/statusreport.h"
#include "platform/sheetsubject.h"
#include "platform/tableview.h"
#include "profiles/profilecommands.h"

#include <QObject>
#include <QPointer>
#include <QVariantList>
#include <QVariantMap>

#include <optional>

class ApplicationChooser;
class OpenPanel;
class ProfileDelegate;
class PulldownButton;
class QAction;
class QCheckBox;
class QLTableView;
class QPushButton;
class SavePanel;

class KeyboardProfilesController : public QObject, public TableViewDataSource
{
    Q_OBJECT

public:
    explicit KeyboardProfilesController(QObject *parent = nullptr);
    ~KeyboardProfilesController() override;

    /// Context numbers of the tab's sheets.
    enum SheetContext {
        chooseApplication = 1,
        chooseProfileFile = 2,
        confirmDelete = 5,
        confirmRestore = 9,
        exportProfile = 10
    };

    // Content of the tab
    [[nodiscard]] QWidget *view() const { return mView; }
    [[nodiscard]] QPushButton *addButton() const { return mAddProfile; }
    [[nodiscard]] TableView *profilesTableView() const;
    [[nodiscard]] QWidget *profilesWindow() const { return mProfilesWindow; }
    [[nodiscard]] ProfileDelegate *profileDelegate() const { return mProfileDelegate; }
    [[nodiscard]] QVariantMap defaultProfileDict() const { return mDefaultProfileDict; }
    [[nodiscard]] QVariantMap currentProfileDict() const { return mCurrentProfileDict.value_or(QVariantMap()); }
    [[nodiscard]] QVariantMap deviceSettingsDict() const { return mDeviceSettingsDict; }
    [[nodiscard]] QVariantList allProfilesArray() const { return mAllProfilesArray; }
    [[nodiscard]] QVariantMap userSettingsDict() const { return mUserSettingsDict; }
    [[nodiscard]] QVariantMap selectedProfile() const; ///< empty if no row is selected
    [[nodiscard]] QString selectedProfileName() const; ///< empty if no row is selected
    [[nodiscard]] int activeProfile() const;
    /// Returns the state that decides which commands can be chosen.
    [[nodiscard]] ProfileCommands::State commandState() const;

    // From the main controller
    void awakeFromNib();
    void setMDefaultProfileDict(const QVariantMap &profile) { mDefaultProfileDict = profile; }
    void setMCurrentProfileDict(const std::optional<QVariantMap> &profile) { mCurrentProfileDict = profile; }
    void setMDeviceSettingsDict(const QVariantMap &settings) { mDeviceSettingsDict = settings; }
    void setMAllProfilesArray(const QVariantList &profiles);
    /// The controller owns neither of the two.
    void setMProfileDelegate(ProfileDelegate *delegate) { mProfileDelegate = delegate; }
    void setMProfilesWindow(QWidget *window) { mProfilesWindow = window; }
    /// Shows the latest settings. Does nothing before there is a current profile.
    void updateUISettings();
    void setControlsState(bool isEnabled);
    void refreshTableDisplay();

    // Actions and their parts
    void clickAddProfile(QObject *sender);
    void clickDeleteProfile(QObject *sender);
    void tickEnableOnScreenDisplay(QObject *sender);
    /// Runs the command with this number (ProfileCommands); any other number does nothing.
    void runCommand(int tag);
    /// Runs the command whose number is the item's data().
    void selectMenuItem(const QAction *item);
    /// True if the gear menu enables the item.
    [[nodiscard]] bool validateMenuItem(const QAction *item) const;
    void setupSettingsButton();
    void enableControlsForAddProfiles(bool isEnabled);
    void updateValueOfSetting(int value, const QString &key);
    void deleteProfile();
    void restoreProfileToDefaultSettings();
    /// Returns `name`, or `name` with a number if a record in `profiles` has it; the rule is uniqueName().
    [[nodiscard]] QString checkForDuplicateNameUsingDefaultName(const QVariantList &profiles,
                                                                const QString &name) const;
    void sheetDidEndReturnCodeContextInfo(int returnCode, int context);

    // Panels. A panel is kept until the next one of its kind is opened.
    [[nodiscard]] ApplicationChooser *applicationChooser() const; ///< null until one was opened
    [[nodiscard]] OpenPanel *profileFileBrowserPanel() const;     ///< null until one was opened
    [[nodiscard]] SavePanel *profileSavePanel() const;            ///< null until one was opened
    /// Opens the list of applications, whose "Other…" opens the panel for an application, or the panel for a profile
    /// file (SheetContext). For any other number, opens a panel that accepts every file.
    void loadPanelForIdentifier(int identifier);
    void loadSaveAsPanel();
    void openPanelDidEndReturnCodeContextInfo(OpenPanel *panel, int returnCode, int context);

    // The table's data source. Columns: "id", "name", "application", "auto switch".
    /// Also enables the delete button, but only with a device and with a number of profiles other than one.
    int numberOfRowsInTableView(TableView *tableView) override;
    QVariant tableViewObjectValueForTableColumnRow(TableView *tableView, const QString &column, int row) override;
    void tableViewSetObjectValueForTableColumnRow(TableView *tableView, const QVariant &value, const QString &column,
                                                  int row) override;
    void tableViewSelectionDidChange(TableView *tableView) override;
    std::optional<TableCell> tableViewDataCellForTableColumnRow(TableView *tableView, const QString &column,
                                                                int row) override;

private:
    void buildView();
    void buildTable();
    QWidget *buildApplicationHint();
    void showApplicationHint();
    [[nodiscard]] int profileCount() const { return int(mAllProfilesArray.size()); }
    [[nodiscard]] QVariantMap profileAt(int row) const; ///< empty if there is no such row
    [[nodiscard]] bool canDelete() const;
    void enableAddButtonByCount();
    [[nodiscard]] QVariant profile() const; ///< identifies the selected profile
    void editName(int row, bool selectText);
    [[nodiscard]] bool isInLastRow(const QVariantMap &added) const;
    void selectLastRow();
    void showActiveProfile();
    void showOnScreenDisplay();
    void confirm(const char *titleKey, const char *descriptionKey, SheetContext context);
    void addProfileWithSettings(const QVariantMap &profile);
    void copyProfile();
    void renameProfile(int row, const QString &newName);
    void setAutoSwitch(int row, int value);
    void removeApplication();
    /// Reports an event with the file at `path`, or what has this name.
    void report(StatusReport::Event event, const QString &path, const QString &reason = {}) const;
    void openApplicationChooser();
    void openFilePanel(int identifier);
    /// `name` of what was chosen, for a report that this cannot be bound.
    void applicationChoiceDidEnd(int returnCode, const std::optional<QVariantMap> &information, const QString &name);
    void bindApplication(const QVariantMap &information, const QString &name);
    void showOtherProfileFollowing(const QVariantMap &appInfo);
    void importProfileFrom(const QString &path);
    void exportProfileTo(const QString &path);
    void reselectRow();

    QWidget *mView = nullptr;
    QLTableView *mProfilesTableView = nullptr;
    QPushButton *mAddProfile = nullptr;
    QPushButton *mDeleteProfile = nullptr;
    PulldownButton *mSettingsProfile = nullptr;
    QWidget *mApplicationHint = nullptr;
    QPushButton *mFirstApplication = nullptr;
    QCheckBox *mEnableOnScreenDisplay = nullptr;

    QVariantMap mDefaultProfileDict;
    std::optional<QVariantMap> mCurrentProfileDict;
    QVariantMap mDeviceSettingsDict;
    QVariantList mAllProfilesArray;
    QVariantMap mUserSettingsDict;
    QPointer<QWidget> mProfilesWindow;
    QPointer<ApplicationChooser> mApplicationChooser;
    QPointer<OpenPanel> mProfileFileBrowserPanel;
    QPointer<SavePanel> mProfileSavePanel;
    SheetSubject mSheetSubject; ///< the profile() of an open alert or panel, if it is about one
    ProfileDelegate *mProfileDelegate = nullptr;
    int mTableObjectValue = 0;

    bool mIsAddProfile = false;        ///< an add or copy is in progress: selecting switches no profile
    bool mIsListNew = false;           ///< a list was handed over since an add or copy was sent
    bool mNeedsUpdate = false;         ///< a delete is in progress, or an application was bound
    bool mIsFirstLaunch = true;        ///< the first selection change switches no profile
    bool mHasDeviceConnected = true;   ///< the latest argument of setControlsState()
    bool mNeedsProfileEditing = false; ///< the next refresh opens the last row's name
    bool mIsRenamingProfile = false;   ///< a rename was started from a menu
};

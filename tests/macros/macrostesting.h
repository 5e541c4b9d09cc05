// SPDX-License-Identifier: MIT
// Shared parts of the tests of the macros tab: a delegate that records its calls, and the tab in a window.
#pragma once

#include "base/statusreport.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macrodelegate.h"
#include "platform/distributednotificationcenter.h"

#include <QObject>
#include <QWidget>

#include <functional>
#include <memory>

class QLineEdit;

namespace MacrosTesting {

using namespace Qt::StringLiterals;

[[nodiscard]] QVariantMap macroNamed(const QString &name);

/// "Macro 1" and so on, each with its number as "macroID".
[[nodiscard]] QVariantList numberedMacros(const QList<int> &numbers);

/// The lines of three events: rows 0, 2 and 4 are events, 1 and 3 delays.
[[nodiscard]] QVariantList threeEvents();

/// A main controller that records the calls of the tab and answers with the lines and macros it holds.
class RecordingDelegate : public MacroDelegate
{
public:
    void addMacroWithSettings(const QVariantMap &macro) override;
    void startMacroRecordingMacroIndex(int appendFlag, int macroIndex) override;
    void stopMacroRecording() override;
    void saveRecordedEventsForMacroAtIndexIsNewRecording(int macroIndex, int isNewRecording) override;
    void getMacroDetailsForMacroAtIndex(int macroIndex) override;
    void deleteMacroAtIndex(int macroIndex) override;
    void renameMacroAtIndexWithNewName(int macroIndex, const QString &newName) override;
    void removeEventAtIndexForMacroAtIndex(int eventIndex, int macroIndex) override;
    void removeAllEventsForMacroAtIndex(int macroIndex) override;
    void setAllEventsDelayForMacroAtIndexHasNoDelay(int delay, int macroIndex, bool hasNoDelay) override;
    void setNewDelayAtMacroEventIndexForMacroAtIndex(int delay, int eventIndex, int macroIndex) override;
    void updateSequenceInfoEventIndexNewDict(int macroIndex, int eventIndex, const QVariantMap &changed) override;
    QVariantMap getSequenceDetailsEventIndex(int macroIndex, int eventIndex) override;
    bool replaceEventsOfMacroAtIndex(int macroIndex, const QVariantList &readEvents,
                                     const QVariantList &changed) override;
    bool reloadMacros() override;
    void recordButton(int button, bool isDown) override;
    void startTryMacroIndex(int repeat, int macroIndex) override;
    void stopTry() override;
    void startEditHID() override;
    void showKeyOfProfile(int keyCode, int profileIndex) override;
    void stopSingleKeyRecording() override;
    void report(const StatusReport &report) override { reports += report.event; }

    /// Hands the macros over, as it does after each successful command.
    void refresh();

    KeyboardMacrosController *controller = nullptr;
    bool answers = true;      ///< false: a reply never comes
    bool storesEvents = true; ///< false: refuses to replace the events of a macro, as it does with other `readEvents`
    bool storesRequests = false; ///< true: also performs the requests for one delay and for the removal of one event
    bool refusesToAdd = false;   ///< refuses like the daemon when a macro does not fit
    bool areEventsOld = false;   ///< a request has changed events; the tab has not got them
    QVariantList macros;
    QVariantMap addedByOthers; ///< another client adds this macro after the next added one
    QVariantList lines = threeEvents();
    QVariantList linesAfterRemoval;
    QVariantMap event{{u"command"_s, 1}, {u"delay"_s, 20}, {u"page"_s, 9}, {u"argument"_s, 1}};
    QVariantMap record; ///< the record of the last call that carried one
    QStringList calls;
    QList<StatusReport::Event> reports;
    std::function<void()> duringAdd;                     ///< runs before the tab is refreshed
    std::function<void(const QString &call)> duringCall; ///< runs at the start of each call

private:
    void note(const QString &call);
    [[nodiscard]] QVariantList eventsOf(int macroIndex) const;
    void store(int macroIndex, const std::optional<QVariantList> &events);
};

/// The outlets that are shown only while a macro is selected, the buttons and the tables that are enabled together.
extern const QStringList eventPart;
extern const QStringList tableButtons;
extern const QStringList tables;

/// The tags of the enabled items.
[[nodiscard]] QList<int> enabledTags(const QList<QAction *> &items);

/// A test that creates the tab in its own window for each test function.
class MacrosTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

protected:
    /// Hands over macros with these names, selects a row and forgets the earlier calls.
    void fill(const QStringList &names, int selected = -1);
    /// The open editor of a macro's name; nullptr when there is none.
    [[nodiscard]] QLineEdit *editor() const;
    /// Chooses a command of a gear menu.
    void choose(const char *button, int tag);
    template <typename T = QWidget> [[nodiscard]] T *outlet(const QString &name) const
    {
        return mWindow->findChild<T *>(name);
    }
    [[nodiscard]] TableView *list() const { return mController->macroTableView(); }
    [[nodiscard]] TableView *events() const { return mController->macroDetailsTableView(); }

    std::unique_ptr<QWidget> mWindow;
    std::unique_ptr<DistributedNotificationCenter> mCenter;
    std::unique_ptr<KeyboardMacrosController> mController;
    std::unique_ptr<RecordingDelegate> mDelegate;
};

} // namespace MacrosTesting

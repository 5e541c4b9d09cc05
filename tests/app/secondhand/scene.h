// SPDX-License-Identifier: MIT
// The surroundings of one combination: a daemon, the window, a user in front of it, another client, and a ledger of the
// settings. Used on the test's thread; needs a private session bus.
#pragma once

#include "app/fileopener.h"
#include "tests/app/hubfixture.h"
#include "tests/app/secondhand/ledger.h"
#include "tests/app/secondhand/obstructeddaemon.h"
#include "tests/support/daemonprocessfixture.h"

#include <QPointer>
#include <QTemporaryDir>

class QDialog;
class QLineEdit;
class QMenu;
class TableView;

enum Tab { keysTab, profilesTab, macrosTab, lightingTab };

/// The settings at the beginning of every combination: three profiles, of which the second is active and has an
/// application, and three macros. `profile` and `macro` are the rows that operations are about.
namespace StartSettings {
inline constexpr int profile = 1;
inline constexpr int macro = 1;
[[nodiscard]] QVariantMap document();
[[nodiscard]] QVariantMap profileNamed(const QString &name, int brightness);
[[nodiscard]] QVariantMap macroNamed(const QString &name);
} // namespace StartSettings

/// The state of the window besides the settings.
struct View
{
    int tab = keysTab;
    int macroRow = -1;
    int eventRow = -1;
};

class Scene
{
public:
    using Command = DaemonProtocol::Command;

    Scene() = default;
    ~Scene();
    Q_DISABLE_COPY_MOVE(Scene)

    /// Starts a daemon with `document` and opens the window at `tab`. Returns the problem; empty on success.
    [[nodiscard]] QString begin(const QVariantMap &document, Tab tab, bool isObstructable);
    /// Closes the window and opens a new one with this view. Returns the problem; empty on success.
    [[nodiscard]] QString openWindow(const View &view);
    [[nodiscard]] View view() const;
    /// Opens a file as if another program had passed its path.
    void openFile(const QString &path) { mOpener->open({path}); }
    /// Waits for the question about an opened file, and cancels it. Returns false if the question does not come.
    [[nodiscard]] bool cancelFileQuestion();
    [[nodiscard]] Hub &hub() const { return *mHub; }
    template <typename Widget> Widget *find(const char *name) const { return mHub->find<Widget>(name); }

    Ledger ledger;
    /// A path in a temporary folder.
    [[nodiscard]] QString file(const QString &name) const { return mFiles.filePath(name); }

    // The daemon and the other client
    /// The daemon's document. The window has handled all earlier notifications when this returns.
    [[nodiscard]] QVariantMap kept();
    /// Sends a request as another client and enters it into the ledger.
    void ask(Command command, const QVariantMap &request);
    QVariantMap request(Command command, const QVariantMap &request = {});
    /// Waits until the window has handled all earlier notifications.
    void settle() { (void)kept(); }
    void obstruct(const std::optional<ObstructedCommand> &command);
    [[nodiscard]] bool hasObstructed() const { return mObstructable && mObstructable->hasObstructed(); }
    void unplug();
    void plugIn();
    void pressBrightnessUp();
    /// Presses and releases a key of the keyboard. Returns whether the computer received it.
    bool typeKey(uint usage);
    /// Ends the daemon. Until startDaemon() the window's requests stay unanswered, and the window does not wait for
    /// replies.
    void endDaemon();
    void startDaemon();
    /// Whether startDaemon() was called: a capture that began before has ended.
    [[nodiscard]] bool hasRestarted() const { return mHasRestarted; }
    [[nodiscard]] bool isDaemonRunning() const { return mObstructable || mClient.isRunning(); }

private:
    DaemonProcessFixture mClient; // also runs the daemon's process, unless mObstructable is the daemon
    std::unique_ptr<ObstructedDaemon> mObstructable;
    std::unique_ptr<Hub> mHub;
    std::unique_ptr<FileOpener> mOpener;
    QTemporaryDir mFiles;
    bool mHasRestarted = false;
};

/// The actions of the user, with the mouse and the computer's keys. An action does nothing when its control is hidden,
/// disabled or closed.
namespace Person {
/// The question about a file that was opened from outside.
inline constexpr char fileQuestion[] = "mFileQuestion";

void click(const Scene &scene, const char *button);
void chooseFrom(const Scene &scene, const char *gearButton, int tag);
void openGearMenu(const Scene &scene, const char *gearButton);
void openContextMenu(const Scene &scene, const char *table);
/// The open menu; null without one.
[[nodiscard]] QMenu *openMenu();
/// Chooses the item with this title in the open menu, by the keyboard.
void chooseItem(const QString &title);
void closeMenus();

[[nodiscard]] QLineEdit *nameEditor(const Scene &scene, const char *table);
/// Types into the editor of a name, or into the focus widget when no name is being edited.
void typeName(const Scene &scene, const char *table, const QString &text);
/// Presses a key in the editor of a name, or in the focus widget when no name is being edited.
void pressInName(const Scene &scene, const char *table, Qt::Key key);

/// The visible sheet, panel or alert named `name`; null without one.
[[nodiscard]] QDialog *dialog(const char *name);
/// The names of all visible ones except the device-not-found sheet.
[[nodiscard]] QStringList openDialogs();
void clickIn(const char *dialogName, const char *button);
void cancel(const char *dialogName);
/// Chooses the file `path` in the open or save panel.
void chooseFile(const char *panelName, const QString &path);
/// Chooses the desktop entry `path` in the list of applications.
void chooseApplication(const QString &path);
} // namespace Person

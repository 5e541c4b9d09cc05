// SPDX-License-Identifier: MIT
// One combination's world: a daemon, the window with the person before it, another client, and what the settings have
// to be. The test's thread; needs a session bus of the test's own.
#pragma once

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

/// The settings that every combination begins with: three profiles, the second active and with an application, and
/// three macros. Rows of what an operation is about:
namespace StartSettings {
inline constexpr int profile = 1;
inline constexpr int macro = 1;
[[nodiscard]] QVariantMap document();
[[nodiscard]] QVariantMap profileNamed(const QString &name, int brightness);
[[nodiscard]] QVariantMap macroNamed(const QString &name);
} // namespace StartSettings

/// What of the window can be seen or chosen besides the settings.
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

    /// Starts a daemon with `document` and opens the window at `tab`. What went wrong; empty when nothing did.
    [[nodiscard]] QString begin(const QVariantMap &document, Tab tab, bool isObstructable);
    /// Closes the window and opens a new one, with this view.
    [[nodiscard]] QString openWindow(const View &view);
    [[nodiscard]] View view() const;
    [[nodiscard]] Hub &hub() const { return *mHub; }
    template <typename Widget> Widget *find(const char *name) const { return mHub->find<Widget>(name); }

    Ledger ledger;
    /// A path in a folder of this combination's own.
    [[nodiscard]] QString file(const QString &name) const { return mFiles.filePath(name); }

    // The daemon and the other client
    /// The document as the daemon keeps it; what the window does about earlier notifications is done then.
    [[nodiscard]] QVariantMap kept();
    /// Sends a request as another client, and has the ledger follow it.
    void ask(Command command, const QVariantMap &request);
    QVariantMap request(Command command, const QVariantMap &request = {});
    /// Waits until the window has dealt with all that happened.
    void settle() { (void)kept(); }
    void obstruct(const std::optional<ObstructedCommand> &command);
    [[nodiscard]] bool hasObstructed() const { return mObstructable && mObstructable->hasObstructed(); }
    void unplug();
    void plugIn();
    void pressBrightnessUp();
    /// Presses and releases a key of the keyboard; whether it came out.
    bool typeKey(uint usage);
    /// Ends the daemon. What the window asks until startDaemon() gets no answer, and it does not wait for one.
    void endDaemon();
    void startDaemon();
    [[nodiscard]] bool isDaemonRunning() const { return mObstructable || mClient.isRunning(); }

private:
    DaemonProcessFixture mClient; // and the daemon's process, where it is one
    std::unique_ptr<ObstructedDaemon> mObstructable;
    std::unique_ptr<Hub> mHub;
    QTemporaryDir mFiles;
};

/// What the person does with the mouse and the keys of the computer. They act on what is there to be seen and enabled,
/// and do nothing where it is not.
namespace Person {
void click(const Scene &scene, const char *button);
void chooseFrom(const Scene &scene, const char *gearButton, int tag);
void openGearMenu(const Scene &scene, const char *gearButton);
void openContextMenu(const Scene &scene, const char *table);
/// The menu that is open; null when none is.
[[nodiscard]] QMenu *openMenu();
/// Chooses the item with this title in the menu that is open, by the keyboard.
void chooseItem(const QString &title);
void closeMenus();

[[nodiscard]] QLineEdit *nameEditor(const Scene &scene, const char *table);
/// Types into the name that is being edited, or where the focus is if none is.
void typeName(const Scene &scene, const char *table, const QString &text);
/// Presses a key where the name is edited, or where the focus is if it no longer is.
void pressInName(const Scene &scene, const char *table, Qt::Key key);

/// The sheet, panel or alert named `name` if it is on the screen; null otherwise.
[[nodiscard]] QDialog *dialog(const char *name);
/// The same but for the sheet that tells of the missing keyboard.
[[nodiscard]] QStringList openDialogs();
void clickIn(const char *dialogName, const char *button);
void cancel(const char *dialogName);
/// Chooses the file `path` in the panel, to read or to write it.
void chooseFile(const char *panelName, const QString &path);
} // namespace Person

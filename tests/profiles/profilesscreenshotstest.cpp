// SPDX-License-Identifier: MIT
// Draws the tab, its sheets, panels and menus in both palettes into the folder `screenshots` beside the tests, for a
// person to inspect. Checks that no button is cut off and no sheet is larger than a screen.
#include "platform/filepanels.h"
#include "platform/pulldownbutton.h"
#include "platform/sheet.h"
#include "profiles/qltableview.h"
#include "tests/profiles/profilestabfixture.h"
#include "tests/support/applicationchoice.h"
#include "tests/support/picturefolder.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QDir>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>

#include <array>

using namespace Qt::StringLiterals;

namespace {

enum class Scene {
    one,
    five,
    twenty,
    absent,
    editing,
    longName,
    gearMenu,
    contextMenu,
    fullMenu,
    deleteAlert,
    longAlert,
    restoreAlert,
    importPanel,
    exportPanel,
    applicationList,
    applicationSearch,
    sharedApplication,
    applicationPanel
};

struct NamedScene
{
    const char *name;
    Scene scene;
};

constexpr std::array scenes{
    NamedScene{"1", Scene::one},
    NamedScene{"5", Scene::five},
    NamedScene{"20", Scene::twenty},
    NamedScene{"absent", Scene::absent},
    NamedScene{"editing", Scene::editing},
    NamedScene{"long-name", Scene::longName},
    NamedScene{"gear-menu", Scene::gearMenu},
    NamedScene{"context-menu", Scene::contextMenu},
    NamedScene{"full-menu", Scene::fullMenu},
    NamedScene{"delete-alert", Scene::deleteAlert},
    NamedScene{"long-alert", Scene::longAlert},
    NamedScene{"restore-alert", Scene::restoreAlert},
    NamedScene{"import-panel", Scene::importPanel},
    NamedScene{"export-panel", Scene::exportPanel},
    NamedScene{"application-list", Scene::applicationList},
    NamedScene{"application-search", Scene::applicationSearch},
    NamedScene{"shared-application", Scene::sharedApplication},
    NamedScene{"application-panel", Scene::applicationPanel},
};

QVariantList fiveProfiles()
{
    return {profileNamed(u"Desktop"_s), profileNamed(u"Raid night"_s, u"Racer"_s, 1), profileNamed(u"Photo editing"_s),
            profileNamed(u"Writing"_s, u"Text Editor"_s, 0),
            profileNamed(u"Untitled Profile(2)"_s, u"An Application With a Rather Long Name 2026"_s, 1)};
}

QVariantList twentyProfiles()
{
    QVariantList profiles = fiveProfiles();
    while (profiles.size() < ProfileCommands::maximumProfileCount)
        profiles.append(profileNamed(u"Profile %1"_s.arg(profiles.size() + 1)));
    return profiles;
}

QString longName()
{
    return u"A name that somebody did not mean to type, "_s.repeated(60) + QString(500, u'm');
}

} // namespace

class ProfilesScreenshotsTest : public ProfilesTabFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { closeTab(); }
    void drawsTheTab_data();
    void drawsTheTab();

private:
    void fillFor(Scene scene);
    /// Opens the sheet, panel or menu of the scene; null for none.
    QWidget *open(Scene scene);
    QWidget *openFilledChooser(Scene scene);

    QTemporaryDir mHome;
};

void ProfilesScreenshotsTest::initTestCase()
{
    qputenv("QUILL_KESTRA_RESOURCES", qgetenv("KESTRA_BIN_DIR") + "/resources");
    // One home folder for all, because file panels list the places of the first one.
    qputenv("HOME", QFile::encodeName(mHome.path()));
    qunsetenv("XDG_CONFIG_HOME");
    QDir home(mHome.path());
    QVERIFY(home.mkpath(u"Documents/Games"_s) && home.mkpath(u"share/applications/Racer.app/Contents"_s));
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath(u"share"_s)));
    for (const QString &name :
         {u"Documents/Raid night.KestraProfile"_s, u"share/applications/editor.desktop"_s, u"Documents/letter.txt"_s})
        writeFile(home.filePath(name));
}

void ProfilesScreenshotsTest::init()
{
    openTab();
    mWindow->resize(900, 520);
}

void ProfilesScreenshotsTest::fillFor(Scene scene)
{
    switch (scene) {
    case Scene::one: fillWith({profileNamed(u"Desktop"_s)}); break;
    case Scene::twenty:
    case Scene::fullMenu: fillWith(twentyProfiles(), 1); break;
    case Scene::longName:
    case Scene::longAlert: fillWith({profileNamed(u"Desktop"_s), profileNamed(longName())}, 1); break;
    default: fillWith(fiveProfiles(), 1); break;
    }
}

QWidget *ProfilesScreenshotsTest::open(Scene scene)
{
    auto *gear = outlet<PulldownButton>("mSettingsProfile");
    switch (scene) {
    case Scene::absent: mController->setControlsState(false); return nullptr;
    case Scene::editing: choose(ProfileCommands::rename); return nullptr;
    case Scene::gearMenu:
    case Scene::fullMenu:
        gear->validateItems();
        gear->menu()->popup(gear->mapToGlobal(QPoint(0, -gear->menu()->sizeHint().height())));
        return gear->menu();
    case Scene::contextMenu: {
        QMenu *menu = outlet<QLTableView>("mProfilesTableView")->makeContextMenu();
        menu->popup(table()->mapToGlobal(QPoint(200, 60)));
        return menu;
    }
    case Scene::deleteAlert:
    case Scene::longAlert: choose(ProfileCommands::deleteProfile); return alert();
    case Scene::restoreAlert: choose(ProfileCommands::restoreDefault); return alert();
    case Scene::importPanel: choose(ProfileCommands::importProfile); return mController->profileFileBrowserPanel();
    case Scene::exportPanel: choose(ProfileCommands::exportProfile); return mController->profileSavePanel();
    case Scene::applicationList:
    case Scene::applicationSearch: return openFilledChooser(scene);
    case Scene::sharedApplication:
        choose(ProfileCommands::assignApplication);
        openApplicationChooser()->setApplications(
            {}, {{.windowClass =
                      fiveProfiles().last().toMap().value(u"AppInfo"_s).toMap().value(u"signature"_s).toString()}});
        return chooseApplicationByName(u"long"_s) ? alert() : nullptr;
    case Scene::applicationPanel:
        choose(ProfileCommands::assignApplication);
        return chooseOtherApplication() ? mController->profileFileBrowserPanel() : nullptr;
    default: return nullptr;
    }
}

QWidget *ProfilesScreenshotsTest::openFilledChooser(Scene scene)
{
    choose(ProfileCommands::assignApplication);
    QList<InstalledApplication> installed;
    for (const QString &name :
         {u"Archive Manager"_s, u"Calculator"_s, u"Document Viewer"_s, u"Files"_s, u"Racer"_s,
          u"An application with a name that is much too long for any list of this width"_s, u"Photo Album"_s,
          u"Text Editor"_s, u"Video Player"_s, u"Web Browser"_s, u"ファイル"_s}) {
        InstalledApplication application;
        application.path = u"/usr/share/applications/%1.desktop"_s.arg(installed.size());
        application.name = name;
        application.windowClass = name;
        installed += application;
    }
    ApplicationChooser *chooser = openApplicationChooser();
    chooser->setApplications(
        installed,
        {{.windowClass = u"Racer"_s}, {.windowClass = installed.at(5).name}, {.windowClass = u"Game.exe"_s}});
    if (scene == Scene::applicationSearch)
        QTest::keyClicks(chooser->focusWidget(), u"ra"_s);
    return chooser;
}

void ProfilesScreenshotsTest::drawsTheTab_data()
{
    addSceneRows(scenes);
}

void ProfilesScreenshotsTest::drawsTheTab()
{
    QFETCH(bool, isDark);
    QFETCH(int, scene);
    wearPalette(isDark);
    fillFor(Scene(scene));
    QWidget *opened = open(Scene(scene));
    if (opened)
        QVERIFY(QTest::qWaitForWindowExposed(opened));
    QCoreApplication::processEvents(); // a changed palette reaches the widgets by events
    QCOMPARE(cutButtons(mWindow.get()), QStringList());
    QPoint position;
    if (opened) {
        position = qobject_cast<QMenu *>(opened) ? mWindow->mapFromGlobal(opened->pos())
                                                 : QPoint((mWindow->width() - opened->width()) / 2, 20);
        QVERIFY2(opened->width() <= 900 && opened->height() <= 600,
                 qPrintable(u"%1 x %2"_s.arg(opened->width()).arg(opened->height())));
    }
    QVERIFY(savePicture(pictureOf(mWindow.get(), opened, position), u"profiles"_s));
}

QTEST_MAIN(ProfilesScreenshotsTest)
#include "profilesscreenshotstest.moc"

// SPDX-License-Identifier: MIT
// The complete path of automatic switching, on real desktops without a screen. Profiles are bound in the window, two
// real windows get the focus in turn, and both the window and kestractl show the profile that follows.
#include "base/settingskeys.h"
#include "daemonlink/daemontransport.h"
#include "platform/filepanels.h"
#include "platform/pulldownbutton.h"
#include "platform/tableview.h"
#include "profiles/keyboardprofilescontroller.h"
#include "tests/app/hubfixture.h"
#include "tests/support/applicationchoice.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/kestractlprocess.h"
#include "tests/support/testdesktop.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QAction>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

Q_DECLARE_METATYPE(TestDesktop::Kind)

class ProfilesFocusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void windowAndKestractlFollowTheFocus_data();
    void windowAndKestractlFollowTheFocus();

private:
    void startDaemon(const TestDesktop &desktop);
    /// Selects the row and binds it to the application whose window has the class `windowClass`.
    void bind(int row, const QString &windowClass);
    [[nodiscard]] TableView *table() const { return mHub->find<TableView>("mProfilesTableView"); }
    [[nodiscard]] static QString activeProfile()
    {
        return runKestractl({u"status"_s, u"--json"_s}).json().object().value(u"activeProfileName"_s).toString();
    }

    HubResources mResources;
    QTemporaryDir mFolder;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<Hub> mHub;
};

void ProfilesFocusTest::startDaemon(const TestDesktop &desktop)
{
    mDaemon.reset(); // before the next one takes its names
    mDaemon = std::make_unique<DaemonProcessFixture>();
    mDaemon->environment() = desktop.in(mDaemon->environment());
    QVERIFY(mDaemon->start());
    for (const QString &name : {u"A"_s, u"B"_s})
        QVERIFY(mDaemon->request(Command::addProfile,
                                 {{u"DeviceSettingsDictionary"_s, QVariantMap{{SettingsKeys::profileName, name}}}}));
    QVERIFY(mDaemon->request(Command::switchProfile, {{u"ProfileID"_s, 0}}));
}

void ProfilesFocusTest::bind(int row, const QString &windowClass)
{
    const QByteArray name = windowClass.toUtf8();
    const QString entry = writeDesktopEntry(mFolder.filePath(windowClass + u".desktop"_s),
                                            "Name=" + name + "\nExec=x-" + name + "\nStartupWMClass=" + name + '\n');
    table()->selectRow(row);
    mHub->find<PulldownButton>("mSettingsProfile")->itemWithTag(ProfileCommands::assignApplication)->trigger();
    QVERIFY(chooseOtherApplication());
    OpenPanel *panel = mHub->controller->profilesController()->profileFileBrowserPanel();
    QVERIFY(panel && panel->isVisible());
    panel->setDirectory(mFolder.path());
    panel->selectFile(entry);
    panel->accept();
    QVERIFY(!panel->isVisible());
}

void ProfilesFocusTest::windowAndKestractlFollowTheFocus_data()
{
    QTest::addColumn<TestDesktop::Kind>("kind");
    QTest::newRow("X11") << TestDesktop::Kind::x11;
    QTest::newRow("Wayland") << TestDesktop::Kind::wayland;
}

void ProfilesFocusTest::windowAndKestractlFollowTheFocus()
{
    QFETCH(TestDesktop::Kind, kind);
    TestDesktop desktop(kind);
    QVERIFY(desktop.start());
    setReplyPollInterval(replyPollInterval); // long enough for a real daemon, which saves before it answers
    startDaemon(desktop);
    mHub = std::make_unique<Hub>();
    mHub->controller->initializeDevice();
    bind(1, u"kestra-a"_s);
    bind(2, u"kestra-b"_s);
    table()->selectRow(0);
    QCOMPARE(activeProfile(), u"Default Profile"_s);

    const auto follow = [this](int row, const QString &name) {
        QTRY_COMPARE(table()->selectedRow(), row);
        QCOMPARE(activeProfile(), name);
        QCOMPARE(mHub->controller->profilesController()->selectedProfile().value(SettingsKeys::profileName),
                 QVariant(name));
    };
    QVERIFY(desktop.open(u"kestra-a"_s));
    follow(1, u"A"_s);
    QVERIFY(desktop.open(u"kestra-b"_s));
    follow(2, u"B"_s);
    QVERIFY(desktop.focus(u"kestra-a"_s));
    follow(1, u"A"_s);
    desktop.close(u"kestra-a"_s);
    follow(2, u"B"_s);
    desktop.close(u"kestra-b"_s);
    follow(0, u"Default Profile"_s);
    mHub.reset();
    mDaemon.reset();
}

QTEST_MAIN(ProfilesFocusTest)
#include "profilesfocustest.moc"

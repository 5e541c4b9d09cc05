// SPDX-License-Identifier: MIT
// Files that the user opens from outside the program, in the real window with the real daemon: nothing is added without
// consent, and the question names the effect of the file.
#include "app/fileopener.h"
#include "base/devicesettings.h"
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "daemonlink/daemontransport.h"
#include "keys/keyboardkeyscontroller.h"
#include "keys/keymapping.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macrorecord.h"
#include "macros/macrotimelineview.h"
#include "platform/popupbutton.h"
#include "platform/pulldownbutton.h"
#include "platform/sheet.h"
#include "platform/statusline.h"
#include "platform/tableview.h"
#include "profiles/keyboardprofilescontroller.h"
#include "profiles/profilecommands.h"
#include "tests/app/hubfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/fulldocument.h"
#include "tests/support/picturefolder.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

enum Tab { keysTab, profilesTab, macrosTab };

QVariantMap profileOf(const QString &name, const QVariantMap &keys = {}, const QVariantMap &appInfo = {})
{
    return {{SettingsKeys::profileName, name}, {SettingsKeys::keys, keys}, {SettingsKeys::appInfo, appInfo}};
}

QVariantMap macroOf(const QString &name)
{
    QVariantList events;
    for (const int command : {MacroRecord::keyDown, MacroRecord::keyUp})
        events += MacroRecord::eventRecord({.command = command, .delayMs = 20, .argument = 4});
    return MacroRecord::withEvents({{SettingsKeys::macroName, name}}, events);
}

QVariantMap withPrograms(QVariantMap keys, const QList<std::pair<int, QString>> &programs)
{
    for (const auto &[code, path] : programs)
        keys = KeyMappings::withEntry(keys, QString::number(code), KeyMappings::Assignment::launchProgram, path,
                                      QString());
    return keys;
}

QVariantMap withMacros(QVariantMap keys, const QList<std::pair<int, int>> &macros)
{
    for (const auto &[code, index] : macros)
        keys = KeyMappings::withEntry(keys, QString::number(code), KeyMappings::Assignment::playMacro, index, 1);
    return keys;
}

/// A state of the window that the question must not interrupt.
struct Obstacle
{
    const char *name;
    Tab tab;
    void (*begin)(Hub &hub);
    void (*end)(Hub &hub);
};

void endSheet(const Hub &hub, const char *name)
{
    hub.find<Sheet>(name)->endSheet();
}

void clickRecord(Hub &hub)
{
    QTest::mouseClick(hub.find<QPushButton>("mRecordMacroDetails"), Qt::LeftButton);
}

const Obstacle obstacles[] = {
    {"sheet", profilesTab,
     [](Hub &hub) {
         QTest::mouseClick(hub.find<QWidget>("mHistoryButton"), Qt::LeftButton);
         QTRY_VERIFY(hub.find<Sheet>("mHistorySheet")->isUp());
     },
     [](Hub &hub) { endSheet(hub, "mHistorySheet"); }},
    {"name", profilesTab,
     [](Hub &hub) {
         auto *table = hub.controller->profilesController()->profilesTableView();
         table->editColumnRow(1, 0, true);
         QCOMPARE(table->editedRow(), 0);
     },
     [](Hub &hub) { hub.controller->profilesController()->profilesTableView()->abortEditing(); }},
    {"recording", macrosTab,
     [](Hub &hub) {
         hub.controller->macrosController()->macroTableView()->selectRow(0);
         clickRecord(hub);
         QVERIFY(hub.controller->macrosController()->captureArea());
     },
     clickRecord},
    {"change of a pause", macrosTab,
     [](Hub &hub) {
         hub.controller->macrosController()->macroTableView()->selectRow(0);
         hub.find<TableView>("mMacroDetailsTableView")->selectRow(2); // the second event
         auto *timeline = hub.find<MacroTimelineView>("mMacroTimelineView");
         timeline->setFocus();
         QTest::keyPress(timeline, Qt::Key_Right, Qt::AltModifier);
         QVERIFY(timeline->isChangingPause());
     },
     [](Hub &hub) { QTest::keyRelease(hub.find<MacroTimelineView>("mMacroTimelineView"), Qt::Key_Alt); }},
    {"key capture", keysTab,
     [](Hub &hub) {
         QTest::mouseClick(hub.find<QWidget>("mZ"), Qt::LeftButton);
         hub.find<PopUpButton>("mAssignFunction")->itemAtIndex(KeyMappings::singleKeyPosition)->trigger();
         QVERIFY(hub.controller->keysController()->captureArea());
     },
     [](Hub &hub) { endSheet(hub, "mSingleKeyWindow"); }},
    {"recording for a key", keysTab,
     [](Hub &hub) {
         QTest::mouseClick(hub.find<QWidget>("mZ"), Qt::LeftButton);
         hub.controller->keysController()->findChild<QAction *>(u"mMakeMacro"_s)->trigger();
         QVERIFY(hub.controller->keysController()->captureArea());
     },
     [](Hub &) { QApplication::activeModalWidget()->close(); }},
    {"menu", profilesTab,
     [](Hub &hub) {
         hub.find<PulldownButton>("mSettingsProfile")->menu()->popup({});
         QVERIFY(QApplication::activePopupWidget());
     },
     [](Hub &) { QApplication::activePopupWidget()->close(); }},
    {"file panel", profilesTab,
     [](Hub &hub) {
         hub.find<PulldownButton>("mSettingsProfile")->itemWithTag(ProfileCommands::importProfile)->trigger();
         QVERIFY(qobject_cast<QFileDialog *>(QApplication::activeModalWidget()));
     },
     [](Hub &) { QApplication::activeModalWidget()->close(); }},
    {"mouse button", profilesTab, [](Hub &hub) { QTest::mousePress(hub.window.get(), Qt::LeftButton); },
     [](Hub &hub) { QTest::mouseRelease(hub.window.get(), Qt::LeftButton); }},
};

} // namespace

Q_DECLARE_METATYPE(const Obstacle *)

class FileOpenerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void addsAProfileWithoutSwitchingToIt();
    void addsAMacro();
    void cancelAddsNothing_data();
    void cancelAddsNothing();
    void saysWhatAProfileWouldDo();
    void saysThatAProfileStartsNothing();
    void namesOfTheFileCannotDisguiseIt();
    void everyProgramIsNamed();
    void longTextsHideNothing_data();
    void longTextsHideNothing();
    void kindIsDecidedByTheContent();
    void reportsWhatCannotBeAdded_data();
    void reportsWhatCannotBeAdded();
    void asksForOneFileAtATime();
    void waitsForTheWindow_data();
    void waitsForTheWindow();
    void saysThatThereIsNoRoom_data();
    void saysThatThereIsNoRoom();
    void waitsForTheKeyboard();
    void waitsForTheService();
    void questionWaitsWithoutTheKeyboard();
    void takesALimitedNumberOfFiles();
    void nameIsUniqueWhenTheFileIsAdded();
    void saysThatTheRoomWasTakenMeanwhile();

private:
    /// Starts a daemon with these records and opens the window and the opener.
    void start(QVariantList profiles = {profileOf(u"First"_s), profileOf(u"Second"_s)},
               const QVariantList &macros = {});
    void openWindow();
    void endMessages() const;
    QString file(const QString &name, const QVariantMap &record) const;
    [[nodiscard]] Sheet *question() const;
    void answer(const char *button) const;
    [[nodiscard]] QString text(const char *label) const
    {
        const auto *found = question()->findChild<QLabel *>(QLatin1StringView(label));
        return found ? found->text() : QString();
    }
    [[nodiscard]] QString lines(const char *list) const
    {
        const auto *found = question()->findChild<QPlainTextEdit *>(QLatin1StringView(list));
        return found ? found->toPlainText() : QString();
    }
    [[nodiscard]] QString status() const { return mHub->find<StatusLine>("mStatusLine")->text(); }
    [[nodiscard]] QStringList storedNames(SettingsKeys::Key array, SettingsKeys::Key name) const;
    [[nodiscard]] QStringList storedProfiles() const
    {
        return storedNames(SettingsKeys::profiles, SettingsKeys::profileName);
    }
    [[nodiscard]] QStringList storedMacros() const
    {
        return storedNames(SettingsKeys::macros, SettingsKeys::macroName);
    }

    HubResources mResources;
    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<Hub> mHub;
    std::unique_ptr<FileOpener> mOpener;
};

void FileOpenerTest::init()
{
    setReplyPollInterval(replyPollInterval);
    mFolder = std::make_unique<QTemporaryDir>();
}

void FileOpenerTest::cleanup()
{
    mOpener.reset();
    mHub.reset();
    mDaemon.reset();
}

void FileOpenerTest::start(QVariantList profiles, const QVariantList &macros)
{
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->store({{SettingsKeys::profiles, profiles},
                            {SettingsKeys::macros, macros},
                            {SettingsKeys::deviceSettings, QVariantMap{{SettingsKeys::activeProfile, 0}}}}));
    QVERIFY(mDaemon->start());
    openWindow();
}

void FileOpenerTest::openWindow()
{
    mHub = std::make_unique<Hub>();
    mOpener = std::make_unique<FileOpener>(*mHub->controller, *mHub->window);
    QVERIFY(mHub->openInFront());
}

/// The user has read that there is no service.
void FileOpenerTest::endMessages() const
{
    for (Sheet *sheet : mHub->window->findChildren<Sheet *>()) {
        if (sheet->isUp())
            sheet->endSheet();
    }
}

QString FileOpenerTest::file(const QString &name, const QVariantMap &record) const
{
    const QString path = mFolder->filePath(name);
    return PropertyList::writePropertyListFile(path, record) ? path : QString();
}

Sheet *FileOpenerTest::question() const
{
    const QList<Sheet *> sheets = mHub->window->findChildren<Sheet *>(u"mFileQuestion"_s);
    const auto up = std::ranges::find_if(sheets, [](const Sheet *sheet) { return sheet->isUp(); });
    return up == sheets.end() ? nullptr : *up;
}

void FileOpenerTest::answer(const char *button) const
{
    QTest::mouseClick(question()->findChild<QPushButton *>(QLatin1StringView(button)), Qt::LeftButton);
}

QStringList FileOpenerTest::storedNames(SettingsKeys::Key array, SettingsKeys::Key name) const
{
    const QVariantMap stored =
        PropertyList::readPropertyListFile(mDaemon->settingsFolder() + u"/settings.plist"_s).valueOr({});
    QStringList names;
    for (const QVariant &record : stored.value(array).toList())
        names += record.toMap().value(name).toString();
    return names;
}

void FileOpenerTest::addsAProfileWithoutSwitchingToIt()
{
    start();
    mHub->controller->selectTabAtIndex(profilesTab);
    mOpener->open({file(u"Game.KestraProfile"_s, profileOf(u"Game"_s))});
    QVERIFY(question());
    QCOMPARE(text("mFileTitle"), u"Add the profile “Game”?"_s);
    QCOMPARE(lines("mFilePath"), mFolder->filePath(u"Game.KestraProfile"_s));
    QCOMPARE(storedProfiles(), (QStringList{u"First"_s, u"Second"_s}));
    answer("mFileAdd");
    QVERIFY(!question());
    QCOMPARE(storedProfiles(), (QStringList{u"First"_s, u"Second"_s, u"Game"_s}));
    QCOMPARE(DeviceSettings(mHub->controller->deviceSettingsDict()).activeProfileIndex(), 0);
    QCOMPARE(mHub->controller->profilesController()->profilesTableView()->numberOfRows(), 3);
    QCOMPARE(mHub->controller->profilesController()->profilesTableView()->selectedRow(), 0);
    QCOMPARE(status(), u"The file “Game.KestraProfile” was added."_s);
}

void FileOpenerTest::addsAMacro()
{
    start();
    mOpener->open({file(u"Combo.KestraMacro"_s, macroOf(u"Combo"_s))});
    QVERIFY(question());
    QCOMPARE(text("mFileTitle"), u"Add the macro “Combo”?"_s);
    QCOMPARE(text("mFileEvents"), u"Events: 2"_s);
    answer("mFileAdd");
    QCOMPARE(storedMacros(), QStringList{u"Combo"_s});
    QCOMPARE(storedProfiles(), (QStringList{u"First"_s, u"Second"_s}));
}

void FileOpenerTest::cancelAddsNothing_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("button") << 0;
    QTest::newRow("Escape") << int(Qt::Key_Escape);
    QTest::newRow("Return, which presses the default button") << int(Qt::Key_Return);
    QTest::newRow("Space, which presses the button with the focus") << int(Qt::Key_Space);
}

void FileOpenerTest::cancelAddsNothing()
{
    QFETCH(int, key);
    start();
    mOpener->open({file(u"Game.KestraProfile"_s, profileOf(u"Game"_s))});
    QVERIFY(question());
    QVERIFY(QTest::qWaitForWindowActive(question()));
    // Add and Cancel, and no way to be asked no more.
    QCOMPARE(question()->findChildren<QAbstractButton *>().size(), 2);
    if (key == 0)
        answer("mFileCancel");
    else
        QTest::keyClick(question()->focusWidget() ? question()->focusWidget() : question(), Qt::Key(key));
    QTRY_VERIFY(!question());
    QCOMPARE(storedProfiles(), (QStringList{u"First"_s, u"Second"_s}));
}

void FileOpenerTest::saysWhatAProfileWouldDo()
{
    start();
    const QVariantMap keys = withMacros(withPrograms({}, {{5, u"/usr/bin/two words"_s}, {4, u"/opt/evil\u202Etxt"_s}}),
                                        {{6, 0}, {7, 0}, {8, 3}});
    const QVariantMap application{{SettingsKeys::application, u"Harmless"_s}, {SettingsKeys::executable, u"bank"_s}};
    mOpener->open({file(u"Game.KestraProfile"_s, profileOf(u"Game"_s, keys, application))});
    QVERIFY(question());
    QCOMPARE(text("mFileApplicationTitle"), u"It is assigned to this application:"_s);
    QCOMPARE(lines("mFileApplication"), u"Harmless\nbank"_s);
    QCOMPARE(text("mFileMacros"), u"Macros that its keys play: 2"_s);
    QCOMPARE(lines("mFilePrograms"), u"A: /opt/evil\uFFFDtxt\nB: /usr/bin/two words"_s);
    QVERIFY(!question()->findChild<QLabel *>(u"mFileNoPrograms"_s));
    const auto *programs = question()->findChild<QPlainTextEdit *>(u"mFilePrograms"_s);
    QTRY_VERIFY(!programs->verticalScrollBar()->isVisible()); // two lines have room
    QVERIFY(savePicture(question()->grab().toImage(), u"filequestion"_s));
}

void FileOpenerTest::saysThatAProfileStartsNothing()
{
    start();
    mOpener->open({file(u"Game.KestraProfile"_s, profileOf(u"Game"_s))});
    QVERIFY(question());
    QCOMPARE(text("mFileNoPrograms"), u"None of its keys starts a program."_s);
    QCOMPARE(text("mFileNoApplication"), u"It is not assigned to an application."_s);
    QCOMPARE(text("mFileMacros"), u"Macros that its keys play: 0"_s);
}

void FileOpenerTest::namesOfTheFileCannotDisguiseIt()
{
    start();
    const QVariantMap keys = withPrograms({}, {{4, u"/bin/sh\nB: /bin/true"_s}});
    const QVariantMap application{{SettingsKeys::application, u"<b>x</b>\nNone"_s}};
    mOpener->open({file(u"a\nb.KestraProfile"_s, profileOf(u"<i>Game</i>\n"_s, keys, application))});
    QVERIFY(question());
    QCOMPARE(text("mFileTitle"), u"Add the profile “<i>Game</i> ”?"_s);
    for (const QLabel *label : question()->findChildren<QLabel *>()) {
        QCOMPARE(label->textFormat(), Qt::PlainText);
        QVERIFY2(!label->text().contains(u'\n'), qPrintable(label->text()));
    }
    QCOMPARE(lines("mFileApplication"), u"<b>x</b>\uFFFDNone"_s);
    QCOMPARE(lines("mFilePrograms"), u"A: /bin/sh\uFFFDB: /bin/true"_s);
    QVERIFY(lines("mFilePath").endsWith(u"/a\uFFFDb.KestraProfile"_s));
}

void FileOpenerTest::everyProgramIsNamed()
{
    start();
    QVariantMap keys = withPrograms({}, {{4, u"/bin/real"_s}});
    // No other entry may hide the one that the daemon uses.
    for (const QString &code : {u"04"_s, u"4 "_s, u"+4"_s})
        keys.insert(code, withPrograms({}, {{4, u"/bin/of "_s + code}}).first());
    keys.insert(u"999"_s, withPrograms({}, {{4, u"/bin/unknown"_s}}).first());
    mOpener->open({file(u"Game.KestraProfile"_s, profileOf(u"Game"_s, keys))});
    QVERIFY(question());
    QStringList programs = lines("mFilePrograms").split(u'\n');
    QCOMPARE(programs.takeFirst(), u"A: /bin/real"_s);
    QCOMPARE(programs.takeFirst(), u"999: /bin/unknown"_s);
    programs.sort();
    QCOMPARE(programs, (QStringList{u"+4: /bin/of +4"_s, u"04: /bin/of 04"_s, u"4 : /bin/of 4 "_s}));
}

void FileOpenerTest::longTextsHideNothing_data()
{
    QTest::addColumn<QString>("part");
    QTest::addColumn<QString>("text");
    constexpr int many = 20'000;
    for (const char *part : {"application", "name", "program"}) {
        QTest::addRow("%s without spaces", part) << QString::fromLatin1(part) << QString(many, u'W');
        QTest::addRow("%s of short words", part) << QString::fromLatin1(part) << u"no "_s.repeated(many);
    }
    QTest::newRow("all") << u"application name program"_s << QString(many, u'W');
}

void FileOpenerTest::longTextsHideNothing()
{
    QFETCH(QString, part);
    QFETCH(QString, text);
    const auto textOf = [&](QLatin1StringView name) { return part.contains(name) ? text : u"/bin/true"_s; };
    start();
    const QVariantMap application{{SettingsKeys::application, textOf("application"_L1)},
                                  {SettingsKeys::executable, textOf("application"_L1) + u'2'}};
    mOpener->open({file(u"Game.KestraProfile"_s,
                        profileOf(textOf("name"_L1), withPrograms({}, {{4, textOf("program"_L1)}}), application))});
    QVERIFY(question());
    QVERIFY(QTest::qWaitForWindowExposed(question()));
    QCOMPARE_LE(question()->width(), mHub->window->width());
    const QList<QWidget *> widgets = question()->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        if (widget->objectName().startsWith("mFile"_L1))
            QVERIFY2(widget->visibleRegion().boundingRect() == widget->rect(), qPrintable(widget->objectName()));
    }
    for (const QString &name : {u"mFileTitle"_s, u"mFilePath"_s, u"mFileApplication"_s, u"mFilePrograms"_s,
                                u"mFileStays"_s, u"mFileAdd"_s, u"mFileCancel"_s})
        QVERIFY2(question()->findChild<QWidget *>(name), qPrintable(name));
}

void FileOpenerTest::kindIsDecidedByTheContent()
{
    start();
    mOpener->open({file(u"Combo.KestraProfile"_s, macroOf(u"Combo"_s))});
    QVERIFY(question());
    QCOMPARE(text("mFileTitle"), u"Add the macro “Combo”?"_s);
    answer("mFileAdd");
    QCOMPARE(storedMacros(), QStringList{u"Combo"_s});
    QCOMPARE(storedProfiles().size(), 2);
}

void FileOpenerTest::reportsWhatCannotBeAdded_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("words");
    QTest::newRow("text") << u"note"_s << QByteArray("hello") << u"The file “note” is neither a profile nor a macro."_s;
    QTest::newRow("other dictionary") << u"other"_s << *PropertyList::writeBinary(QVariantMap{{u"a"_s, 1}})
                                      << u"The file “other” is neither a profile nor a macro."_s;
    QTest::newRow("absent") << QString() << QByteArray()
                            << u"The file “absent” could not be read: No such file or directory."_s;
    QTest::newRow("folder") << u"folder/"_s << QByteArray()
                            << u"The file “folder” could not be read: Is a directory."_s;
    QTest::newRow("pipe") << u"pipe|"_s << QByteArray() << u"The file “pipe” could not be read: Not a regular file."_s;
    QTest::newRow("device") << u"/dev/zero"_s << QByteArray()
                            << u"The file “zero” could not be read: Not a regular file."_s;
    QTest::newRow("address of another computer")
        << u"file://elsewhere/x.KestraProfile"_s << QByteArray()
        << u"“file://elsewhere/x.KestraProfile” is not a file on this computer."_s;
    QTest::newRow("address") << u"https://example.org/x.KestraProfile"_s << QByteArray()
                             << u"“https://example.org/x.KestraProfile” is not a file on this computer."_s;
}

void FileOpenerTest::reportsWhatCannotBeAdded()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, words);
    start();
    QString argument = mFolder->filePath(u"absent"_s);
    if (name.endsWith(u'/')) {
        argument = mFolder->filePath(name.chopped(1));
        QVERIFY(QDir().mkpath(argument));
    } else if (name.endsWith(u'|')) {
        argument = mFolder->filePath(name.chopped(1));
        QCOMPARE(::mkfifo(QFile::encodeName(argument).constData(), 0600), 0);
    } else if (name.contains("://"_L1) || name.startsWith(u'/')) {
        argument = name;
    } else if (!name.isEmpty()) {
        argument = mFolder->filePath(name);
        writeFile(argument, content);
    }
    mOpener->open({argument});
    QVERIFY(!question());
    QCOMPARE(status(), words);
    // It does not hold up the next file.
    mOpener->open({file(u"Game.KestraProfile"_s, profileOf(u"Game"_s))});
    QVERIFY(question());
}

void FileOpenerTest::asksForOneFileAtATime()
{
    start();
    mOpener->open({file(u"a.KestraProfile"_s, profileOf(u"One"_s)), mFolder->filePath(u"absent"_s),
                   QUrl::fromLocalFile(file(u"b c.KestraProfile"_s, profileOf(u"Two"_s))).toString()});
    mOpener->open({file(u"c.KestraMacro"_s, macroOf(u"Three"_s))});
    QVERIFY(question());
    QCOMPARE(text("mFileTitle"), u"Add the profile “One”?"_s);
    answer("mFileAdd");
    QTRY_VERIFY(question());
    QCOMPARE(text("mFileTitle"), u"Add the profile “Two”?"_s);
    answer("mFileCancel");
    QTRY_VERIFY(question());
    QCOMPARE(text("mFileTitle"), u"Add the macro “Three”?"_s);
    answer("mFileAdd");
    QVERIFY(!question());
    QCOMPARE(storedProfiles(), (QStringList{u"First"_s, u"Second"_s, u"One"_s}));
    QCOMPARE(storedMacros(), QStringList{u"Three"_s});
}

void FileOpenerTest::waitsForTheWindow_data()
{
    QTest::addColumn<const Obstacle *>("obstacle");
    for (const Obstacle &obstacle : obstacles)
        QTest::newRow(obstacle.name) << &obstacle;
}

void FileOpenerTest::waitsForTheWindow()
{
    QFETCH(const Obstacle *, obstacle);
    start({profileOf(u"First"_s)}, {macroOf(u"Combo"_s)});
    mHub->controller->selectTabAtIndex(obstacle->tab);
    obstacle->begin(*mHub);
    if (QTest::currentTestFailed())
        return;
    mOpener->open({file(u"Game.KestraProfile"_s, profileOf(u"Game"_s))});
    QVERIFY(!question());
    QCOMPARE(status(), u"The file “Game.KestraProfile” opens when the open sheet, name or recording has ended."_s);
    obstacle->end(*mHub);
    QTRY_VERIFY(question());
    answer("mFileAdd");
    QCOMPARE(storedProfiles().last(), u"Game"_s);
}

void FileOpenerTest::saysThatThereIsNoRoom_data()
{
    QTest::addColumn<bool>("isProfile");
    QTest::addColumn<int>("eventsOfMacros");
    QTest::newRow("profile") << true << 0;
    QTest::newRow("macro") << false << 0;
    QTest::newRow("macro for whose events there is no room") << false << MacroRecord::maximumTotalEvents - 1;
}

void FileOpenerTest::saysThatThereIsNoRoom()
{
    QFETCH(bool, isProfile);
    QFETCH(int, eventsOfMacros);
    QVariantList profiles{profileOf(u"First"_s)};
    QVariantList macros;
    for (int left = eventsOfMacros; left > 0; left -= MacroRecord::maximumEvents)
        macros += fullMacro(u"Long"_s, int(macros.size()) + 1, std::min(left, MacroRecord::maximumEvents));
    while (isProfile && profiles.size() < ProfileCommands::maximumProfileCount)
        profiles += profileOf(u"P%1"_s.arg(profiles.size()));
    while (!isProfile && eventsOfMacros == 0 && macros.size() < MacroRecord::maximumMacros)
        macros += macroOf(u"M%1"_s.arg(macros.size()));
    start(profiles, macros);
    const QString path = file(u"x"_s, isProfile ? profileOf(u"Game"_s) : macroOf(u"Combo"_s));
    mOpener->open({path});
    QVERIFY(!question());
    QCOMPARE(status(), u"The file “x” was not added: there is no more room."_s);
    // There is room for the other kind.
    mOpener->open({file(u"y"_s, isProfile ? macroOf(u"Combo"_s) : profileOf(u"Game"_s))});
    QVERIFY(question());
}

void FileOpenerTest::waitsForTheKeyboard()
{
    start();
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    QTRY_VERIFY(!mHub->controller->areControlsOn());
    mOpener->open({file(u"Game.KestraProfile"_s, profileOf(u"Game"_s))});
    QVERIFY(!question());
    QCOMPARE(status(), u"The file “Game.KestraProfile” opens when the keyboard is ready."_s);
    QCOMPARE(mDaemon->callKeyboard(u"Attach"_s), QString());
    QTRY_VERIFY(question());
    answer("mFileAdd");
    QCOMPARE(storedProfiles().last(), u"Game"_s);
}

void FileOpenerTest::waitsForTheService()
{
    mDaemon = std::make_unique<DaemonProcessFixture>();
    openWindow();
    mOpener->open({file(u"Game.KestraProfile"_s, profileOf(u"Game"_s))});
    QVERIFY(!question());
    QCOMPARE(status(), u"The file “Game.KestraProfile” opens when the keyboard is ready."_s);
    QVERIFY(mDaemon->start());
    QTRY_VERIFY(mHub->controller->areControlsOn());
    QVERIFY(!question());
    endMessages();
    QTRY_VERIFY(question());
    answer("mFileAdd");
    QCOMPARE(storedProfiles().last(), u"Game"_s);
}

void FileOpenerTest::questionWaitsWithoutTheKeyboard()
{
    start();
    mOpener->open({file(u"Game.KestraProfile"_s, profileOf(u"Game"_s)), file(u"Second"_s, profileOf(u"Other"_s))});
    QVERIFY(question());
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    QTRY_VERIFY(!question());
    QCOMPARE(status(), u"The file “Game.KestraProfile” opens when the keyboard is ready."_s);
    QCOMPARE(storedProfiles().size(), 2);
    QCOMPARE(mDaemon->callKeyboard(u"Attach"_s), QString());
    QTRY_VERIFY(question());
    QCOMPARE(text("mFileTitle"), u"Add the profile “Game”?"_s);
    answer("mFileCancel");
    QTRY_VERIFY(question());
    QCOMPARE(text("mFileTitle"), u"Add the profile “Other”?"_s);
}

void FileOpenerTest::takesALimitedNumberOfFiles()
{
    start();
    const QString path = file(u"Game.KestraProfile"_s, profileOf(u"Game"_s));
    mOpener->open(QStringList(FileOpener::maximumWaiting + 5, path));
    QVERIFY(question());
    QCOMPARE(status(), u"Files that were not opened, because too many are already waiting: 5"_s);
    // Twenty wait, the first of them was asked for; the rest is not taken.
    for (int count = 0; count < FileOpener::maximumWaiting; ++count) {
        QTRY_VERIFY(question());
        answer("mFileCancel");
    }
    QVERIFY(!question());
    // No other report hides how many were not taken.
    QCOMPARE(mDaemon->callKeyboard(u"Remove"_s), QString());
    QTRY_VERIFY(!mHub->controller->areControlsOn());
    mOpener->open(QStringList(FileOpener::maximumWaiting + 1, path));
    QCOMPARE(status(), u"Files that were not opened, because too many are already waiting: 1"_s);
}

void FileOpenerTest::nameIsUniqueWhenTheFileIsAdded()
{
    start();
    mOpener->open({file(u"x"_s, profileOf(u"Second"_s))});
    QVERIFY(question());
    QCOMPARE(text("mFileTitle"), u"Add the profile “Second(2)”?"_s);
    mHub->controller->addNewProfileWithSettings(profileOf(u"Second(2)"_s));
    answer("mFileAdd");
    QCOMPARE(storedProfiles(), (QStringList{u"First"_s, u"Second"_s, u"Second(2)"_s, u"Second(3)"_s}));
}

void FileOpenerTest::saysThatTheRoomWasTakenMeanwhile()
{
    QVariantList profiles{profileOf(u"First"_s)};
    while (profiles.size() < ProfileCommands::maximumProfileCount - 1)
        profiles += profileOf(u"P%1"_s.arg(profiles.size()));
    start(profiles);
    mOpener->open({file(u"x"_s, profileOf(u"Game"_s))});
    QVERIFY(question());
    mHub->controller->addNewProfileWithSettings(profileOf(u"Last"_s));
    answer("mFileAdd");
    QCOMPARE(storedProfiles().size(), ProfileCommands::maximumProfileCount);
    QCOMPARE(storedProfiles().last(), u"Last"_s);
    QVERIFY2(!status().contains("was added"_L1), qPrintable(status()));
    QVERIFY2(status().contains("no more room"_L1), qPrintable(status()));
}

QTEST_MAIN(FileOpenerTest)
#include "fileopenertest.moc"

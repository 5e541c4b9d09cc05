// SPDX-License-Identifier: MIT
#include "platform/applicationchooser.h"
#include "tests/support/testmain.h"

#include "platform/filepanels.h"
#include "tests/support/texts.h"
#include "tests/support/writtenfile.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class ApplicationChooserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void listsTheInstalledApplications();
    void nothingIsChosenBeforeTheUserDoes();
    void typingSearchesAndReturnChooses();
    void arrowsMoveInTheListAndTypingGoesOnSearching();
    void escapeCancels_data();
    void escapeCancels();
    void aDoubleClickChooses();
    void otherEndsWithItsOwnCode();
    void nothingFoundIsShownAndCannotBeChosen();
    void aWindowGivesItsClassAsNameAndSignature();
    void anEntryThatIsGoneGivesNothing();
    void screenReadersHaveNames();
    void longNamesStayInTheList();

private:
    [[nodiscard]] QLineEdit *field() const { return mChooser->findChild<QLineEdit *>(u"mApplicationSearchField"_s); }
    [[nodiscard]] QListView *list() const { return mChooser->findChild<QListView *>(u"mApplicationList"_s); }
    [[nodiscard]] QPushButton *button(const char *name) const
    {
        return mChooser->findChild<QPushButton *>(QLatin1StringView(name));
    }
    [[nodiscard]] QString current() const { return list()->currentIndex().data().toString(); }
    /// Presses a key where the focus is, as a person does.
    void press(Qt::Key key) const { QTest::keyClick(mChooser->focusWidget(), key); }
    void type(const QString &text) const { QTest::keyClicks(mChooser->focusWidget(), text); }
    [[nodiscard]] int result() const { return mFinished->isEmpty() ? -1 : mFinished->first().first().toInt(); }

    QTemporaryDir mFolder;
    std::unique_ptr<QWidget> mWindow;
    std::unique_ptr<ApplicationChooser> mChooser;
    std::unique_ptr<QSignalSpy> mFinished;
};

void ApplicationChooserTest::initTestCase()
{
    QVERIFY(installEnglishTexts());
    qputenv("HOME", QFile::encodeName(mFolder.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(mFolder.filePath(u"share"_s)));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(mFolder.filePath(u"nothing"_s)));
    const auto write = [this](const QString &id, const QByteArray &name) {
        writeDesktopEntry(mFolder.filePath(u"share/applications/"_s + id),
                          "Name=" + name + "\nExec=/opt/bin/" + name.toLower() + "\n");
    };
    write(u"archive.desktop"_s, "Archive");
    write(u"browser.desktop"_s, "Browser");
    write(u"racer.desktop"_s, "Racer");
    write(u"radio.desktop"_s, "Radio");
}

void ApplicationChooserTest::init()
{
    mWindow = std::make_unique<QWidget>();
    mWindow->resize(600, 400);
    mWindow->show();
    mChooser = std::make_unique<ApplicationChooser>(ApplicationList::Windows::all, mWindow.get());
    mFinished = std::make_unique<QSignalSpy>(mChooser.get(), &QDialog::finished);
    mChooser->open();
    QVERIFY(QTest::qWaitForWindowActive(mChooser.get()));
    // The machine that runs the tests may have applications of its own in folders that no variable names.
    const QString own = mFolder.filePath(u"share/applications"_s);
    mChooser->setApplications(InstalledApplications::read({own}), {});
}

void ApplicationChooserTest::cleanup()
{
    mFinished.reset();
    mChooser.reset();
    mWindow.reset();
}

void ApplicationChooserTest::listsTheInstalledApplications()
{
    const ApplicationChooser fresh(ApplicationList::Windows::all, mWindow.get());
    const auto *shown = fresh.findChild<QListView *>(u"mApplicationList"_s);
    for (const QString &name : {u"Archive"_s, u"Browser"_s, u"Racer"_s, u"Radio"_s}) {
        const QModelIndex first = shown->model()->index(0, 0);
        QCOMPARE(shown->model()->match(first, Qt::DisplayRole, name, -1, Qt::MatchExactly).size(), 1);
    }
    QCOMPARE(mChooser->windowModality(), Qt::WindowModal);
    QCOMPARE(mChooser->parentWidget(), mWindow.get());
}

void ApplicationChooserTest::nothingIsChosenBeforeTheUserDoes()
{
    QVERIFY(!button("mChooseApplication")->isEnabled());
    QVERIFY(!mChooser->chosenInformation());
    press(Qt::Key_Return);
    mChooser->accept();
    QCOMPARE(result(), -1);
    QVERIFY(mChooser->isVisible());
}

void ApplicationChooserTest::typingSearchesAndReturnChooses()
{
    type(u"rac"_s);
    QCOMPARE(list()->model()->rowCount(), 1);
    QCOMPARE(current(), u"Racer"_s);
    press(Qt::Key_Return);
    QCOMPARE(result(), panelOK);
    QCOMPARE(mFinished->size(), 1);
    const QVariantMap information = mChooser->chosenInformation().value_or(QVariantMap());
    QCOMPARE(information.value(ApplicationInformation::nameKey), QVariant(u"Racer"_s));
    QCOMPARE(information.value(ApplicationInformation::identifierKey), QVariant(u"racer.desktop"_s));
    QCOMPARE(information.value(ApplicationInformation::executableKey), QVariant(u"racer"_s));
    const QString file = QFileInfo(mFolder.filePath(u"share/applications/racer.desktop"_s)).canonicalFilePath();
    QCOMPARE(information.value(ApplicationInformation::resolvedPathKey), QVariant(file));
}

void ApplicationChooserTest::arrowsMoveInTheListAndTypingGoesOnSearching()
{
    press(Qt::Key_Down);
    QCOMPARE(current(), u"Archive"_s);
    press(Qt::Key_Down);
    QCOMPARE(current(), u"Browser"_s);
    press(Qt::Key_Up);
    QCOMPARE(current(), u"Archive"_s);
    type(u"ra"_s);
    QCOMPARE(field()->text(), u"ra"_s);
    QCOMPARE(current(), u"Racer"_s);
    press(Qt::Key_Down);
    QCOMPARE(current(), u"Radio"_s);
    type(u"d"_s);
    QCOMPARE(field()->text(), u"rad"_s);
    press(Qt::Key_Down);
    press(Qt::Key_Backspace);
    QCOMPARE(field()->text(), u"ra"_s);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    QCOMPARE(result(), panelOK);
    QCOMPARE(mFinished->size(), 1);
    QCOMPARE(current(), u"Radio"_s);
}

void ApplicationChooserTest::escapeCancels_data()
{
    QTest::addColumn<bool>("isInList");
    QTest::newRow("in the field") << false;
    QTest::newRow("in the list") << true;
}

void ApplicationChooserTest::escapeCancels()
{
    QFETCH(bool, isInList);
    type(u"rac"_s);
    if (isInList)
        press(Qt::Key_Down);
    press(Qt::Key_Escape);
    QCOMPARE(result(), panelCancel);
    QVERIFY(!mChooser->isVisible());
}

void ApplicationChooserTest::aDoubleClickChooses()
{
    const QPoint second = list()->visualRect(list()->model()->index(1, 0)).center();
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, second);
    QCOMPARE(result(), -1);
    QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, second);
    QCOMPARE(result(), panelOK);
    QCOMPARE(current(), u"Browser"_s);
}

void ApplicationChooserTest::otherEndsWithItsOwnCode()
{
    button("mOtherApplication")->click();
    QCOMPARE(result(), ApplicationChooser::otherReturn);
    QVERIFY(!mChooser->isVisible());
    for (const int code : {panelOK, panelCancel, 2}) // 2: the end of an outdated sheet
        QVERIFY(code != ApplicationChooser::otherReturn);
}

void ApplicationChooserTest::nothingFoundIsShownAndCannotBeChosen()
{
    const auto *shown = mChooser->findChild<QLabel *>(u"mApplicationSearchResult"_s);
    QCOMPARE(shown->text(), u"Applications: 4"_s);
    type(u"xyz"_s);
    QCOMPARE(shown->text(), u"No application found"_s);
    QCOMPARE(field()->accessibleDescription(), u"No application found"_s);
    QVERIFY(!button("mChooseApplication")->isEnabled());
    press(Qt::Key_Return);
    QCOMPARE(result(), -1);
    field()->clear();
    QCOMPARE(shown->text(), u"Applications: 4"_s);
    QVERIFY(!button("mChooseApplication")->isEnabled());
}

void ApplicationChooserTest::aWindowGivesItsClassAsNameAndSignature()
{
    mChooser->setApplications({}, {{.windowClass = u"Game.exe"_s, .windowInstance = u"game.exe"_s}});
    press(Qt::Key_Down);
    QCOMPARE(current(), u"Game.exe"_s);
    const QVariantMap expected{{u"CFBundleName"_s, u"Game.exe"_s}, {u"CFBundleSignature"_s, u"Game.exe"_s}};
    QCOMPARE(mChooser->chosenInformation().value_or(QVariantMap()), expected);
}

void ApplicationChooserTest::anEntryThatIsGoneGivesNothing()
{
    const QString file = writeDesktopEntry(mFolder.filePath(u"other/gone.desktop"_s), "Name=Gone\nExec=gone\n");
    mChooser->setApplications(InstalledApplications::read({mFolder.filePath(u"other"_s)}), {});
    type(u"gone"_s);
    QVERIFY(mChooser->chosenInformation());
    QVERIFY(QFile::remove(file));
    QVERIFY(!mChooser->chosenInformation());
}

void ApplicationChooserTest::screenReadersHaveNames()
{
    QCOMPARE(field()->accessibleName(), u"Search applications"_s);
    QCOMPARE(list()->accessibleName(), u"Applications"_s);
    mChooser->setApplications(InstalledApplications::read({mFolder.filePath(u"share/applications"_s)}),
                              {{.windowClass = u"Radio"_s}});
    QAccessibleInterface *readList = QAccessible::queryAccessibleInterface(list());
    QVERIFY(readList && readList->childCount() == 4);
    QCOMPARE(readList->child(0)->text(QAccessible::Name), u"Radio, Running"_s);
    QCOMPARE(readList->child(1)->text(QAccessible::Name), u"Archive"_s);
    // A screen reader reads the row that has the focus.
    press(Qt::Key_Down);
    QCOMPARE(mChooser->focusWidget(), list());
}

void ApplicationChooserTest::longNamesStayInTheList()
{
    InstalledApplication application;
    application.path = u"/a.desktop"_s;
    application.name = QString(300, u'W');
    application.identifier = u"a.desktop"_s;
    const int widthBefore = mChooser->width();
    mChooser->setApplications({application}, {{.desktopEntry = u"a"_s}});
    QCoreApplication::processEvents();
    QCOMPARE(mChooser->width(), widthBefore);
    // The end of the row shows the note, with the name cut off before it: the same pixels as for a short name.
    const auto noteOf = [this] {
        const QRect row = list()->visualRect(list()->model()->index(0, 0));
        const int noteWidth = list()->fontMetrics().horizontalAdvance(u"Running"_s);
        return list()
            ->viewport()
            ->grab(QRect(list()->viewport()->width() - noteWidth - 12, row.top(), noteWidth + 12, row.height()))
            .toImage();
    };
    const QImage withLongName = noteOf();
    application.name = u"W"_s;
    mChooser->setApplications({application}, {{.desktopEntry = u"a"_s}});
    QCOMPARE(withLongName, noteOf());
}

QTEST_MAIN(ApplicationChooserTest)
#include "applicationchoosertest.moc"

// SPDX-License-Identifier: MIT
#include "platform/filepanels.h"
#include "tests/support/testmain.h"

#include "platform/sheet.h"
#include "tests/support/writtenfile.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;

class FilePanelsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mFolder = std::make_unique<QTemporaryDir>();
        mWindow = std::make_unique<QWidget>();
        mWindow->show();
        QVERIFY(QDir(mFolder->path()).mkpath(u"Racer.app/Contents"_s));
        QVERIFY(QDir(mFolder->path()).mkpath(u"Folder"_s));
        writeFile(mFolder->filePath(u"a.desktop"_s));
        writeFile(mFolder->filePath(u"Work.Kind"_s));
    }

    void cleanup() { mWindow.reset(); }

    void theOpenPanelIsASheetForItsTypes()
    {
        const auto panel = openPanel();
        QCOMPARE(panel->windowModality(), Qt::WindowModal);
        QCOMPARE(panel->parentWidget(), mWindow.get());
        QCOMPARE(panel->windowTitle(), u"Choose"_s);
        QCOMPARE(panel->nameFilters(), QStringList{u"Things (*.app *.desktop)"_s});
        QCOMPARE(panel->directory().absolutePath(), mFolder->path());
        QCOMPARE(panel->fileMode(), QFileDialog::ExistingFile);
    }

    void withoutTypesEveryFileCanBeChosen()
    {
        OpenPanel panel({}, mWindow.get());
        QVERIFY(!panel.nameFilters().join(u' ').contains(u"*."_s));
    }

    void aTypedFileIsChosen()
    {
        const auto panel = openPanel();
        QSignalSpy finished(panel.get(), &QDialog::finished);
        type(*panel, u"a.desktop"_s);
        QCOMPARE(finished, QList<QVariantList>{{panelOK}});
        QCOMPARE(panel->chosenPath(), mFolder->filePath(u"a.desktop"_s));
    }

    void aFolderOfATypeIsChosenByItsName()
    {
        const auto panel = openPanel();
        QSignalSpy finished(panel.get(), &QDialog::finished);
        type(*panel, u"Racer.app"_s);
        QCOMPARE(finished, QList<QVariantList>{{panelOK}});
        QCOMPARE(panel->chosenPath(), mFolder->filePath(u"Racer.app"_s));
    }

    void aFolderOfATypeIsChosenByActivatingIt()
    {
        const auto panel = openPanel();
        QSignalSpy finished(panel.get(), &QDialog::finished);
        activate(*panel, u"Racer.app"_s);
        QCOMPARE(finished, QList<QVariantList>{{panelOK}});
        QCOMPARE(panel->chosenPath(), mFolder->filePath(u"Racer.app"_s));
    }

    void aFolderOfATypeIsChosenByTheOpenButton()
    {
        const auto panel = openPanel();
        QSignalSpy finished(panel.get(), &QDialog::finished);
        select(*panel, u"Racer.app"_s);
        QPushButton *open = panel->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open);
        QVERIFY(open->isEnabled());
        open->click();
        QCOMPARE(finished, QList<QVariantList>{{panelOK}});
        QCOMPARE(panel->chosenPath(), mFolder->filePath(u"Racer.app"_s));
    }

    void anotherFolderIsOpened()
    {
        const auto panel = openPanel();
        QSignalSpy finished(panel.get(), &QDialog::finished);
        activate(*panel, u"Folder"_s);
        QVERIFY(finished.isEmpty());
        QCOMPARE(panel->directory().absolutePath(), mFolder->filePath(u"Folder"_s));
    }

    void cancellingGivesTheOtherCode()
    {
        const auto panel = openPanel();
        QSignalSpy finished(panel.get(), &QDialog::finished);
        QTest::keyClick(panel.get(), Qt::Key_Escape);
        QCOMPARE(finished, QList<QVariantList>{{panelCancel}});
    }

    void theSuffixIsAlwaysAppended_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("file");
        QTest::newRow("a name") << u"Play"_s << u"Play.Kind"_s;
        QTest::newRow("a name with the suffix") << u"Play.Kind"_s << u"Play.Kind.Kind"_s;
        QTest::newRow("a name with a dot") << u"Play 1.5"_s << u"Play 1.5.Kind"_s;
    }

    void theSuffixIsAlwaysAppended()
    {
        QFETCH(QString, typed);
        QFETCH(QString, file);
        const auto panel = savePanel(u"Proposed"_s);
        QSignalSpy finished(panel.get(), &QDialog::finished);
        type(*panel, typed);
        QCOMPARE(finished, QList<QVariantList>{{panelOK}});
        QCOMPARE(panel->chosenPath(), mFolder->filePath(file));
    }

    void theProposedNameIsAFileName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("file");
        QTest::newRow("with a slash") << u"Work/Play"_s << u"Work-Play.Kind"_s;
        QTest::newRow("with quotation marks") << u"My \"best\" 12\""_s << u"My 'best' 12'.Kind"_s;
        QTest::newRow("the folder above") << u".."_s << u"-..Kind"_s;
        QTest::newRow("a hidden file") << u".quiet"_s << u"-quiet.Kind"_s;
        QTest::newRow("the home folder") << u"~"_s << u"-.Kind"_s;
        QTest::newRow("with ends of lines") << u"One\nTwo\r\u2028"_s << u"One-Two--.Kind"_s;
        QTest::newRow("with a turn of direction") << u"Game\u202eexe"_s << u"Game-exe.Kind"_s;
        QTest::newRow("with control characters") << u"Game\u001b\u007f\u009b"_s << u"Game---.Kind"_s;
        QTest::newRow("any language") << u"Größe 漢字 (2)"_s << u"Größe 漢字 (2).Kind"_s;
    }

    void theProposedNameIsAFileName()
    {
        QFETCH(QString, name);
        QFETCH(QString, file);
        const auto panel = savePanel(name);
        QSignalSpy finished(panel.get(), &QDialog::finished);
        panel->accept();
        QCOMPARE(finished, QList<QVariantList>{{panelOK}});
        QCOMPARE(panel->chosenPath(), mFolder->filePath(file));
    }

    void aLongNameIsCutToWhatAFileCanBear()
    {
        const auto panel = savePanel(QString(300, u'a'));
        QCOMPARE(panel->chosenPath(), mFolder->filePath(QString(250, u'a') + u".Kind"_s));
        QSignalSpy finished(panel.get(), &QDialog::finished);
        type(*panel, QString(300, u'b'));
        QCOMPARE(finished, QList<QVariantList>{{panelOK}});
        QCOMPARE(panel->chosenPath(), mFolder->filePath(QString(250, u'b') + u".Kind"_s));
    }

    void aFolderOfTheProposedNameIsNotInTheWay()
    {
        const auto panel = savePanel(u"Folder"_s);
        QSignalSpy finished(panel.get(), &QDialog::finished);
        panel->accept();
        QCOMPARE(finished, QList<QVariantList>{{panelOK}});
        QCOMPARE(panel->chosenPath(), mFolder->filePath(u"Folder.Kind"_s));
    }

    void aFolderOfATypedNameIsOpened()
    {
        const auto panel = savePanel(u"Proposed"_s);
        QSignalSpy finished(panel.get(), &QDialog::finished);
        type(*panel, u"Folder"_s);
        QVERIFY(finished.isEmpty());
        QCOMPARE(panel->directory().absolutePath(), mFolder->filePath(u"Folder"_s));
    }

    void thePanelShowsItsColumnsWhole()
    {
        const auto panel = openPanel();
        QVERIFY(panel->width() >= 800);
        const QHeaderView *header = panel->findChild<QTreeView *>(u"treeView"_s)->header();
        for (int column = 0; column < 4; ++column)
            QVERIFY2(header->sectionSize(column) >= header->sectionSizeHint(column),
                     qPrintable(QString::number(column)));
        QVERIFY(panel->findChild<QWidget *>(u"sidebar"_s)->width() >= 150);
    }

    void replacingAFileIsAsked()
    {
        const auto panel = savePanel(u"Work"_s);
        QSignalSpy finished(panel.get(), &QDialog::finished);
        type(*panel, u"Work"_s);
        QVERIFY(finished.isEmpty());
        pressAlertButton(*panel, "alertAlternativeButton"_L1);
        QVERIFY(finished.isEmpty());
        QVERIFY(panel->isVisible());

        type(*panel, u"Work"_s);
        pressAlertButton(*panel, "alertDefaultButton"_L1);
        QCOMPARE(finished, QList<QVariantList>{{panelOK}});
        QCOMPARE(panel->chosenPath(), mFolder->filePath(u"Work.Kind"_s));
    }

    void theListOfCompletionsGoesWithThePanel_data()
    {
        QTest::addColumn<bool>("byReturn");
        QTest::newRow("that Return ends") << true;
        QTest::newRow("that a call ends") << false;
    }

    void theListOfCompletionsGoesWithThePanel()
    {
        QFETCH(bool, byReturn);
        writeFile(mFolder->filePath(u"Folder/Inner.desktop"_s));
        const auto panel = openPanel();
        QVERIFY(QTest::qWaitForWindowActive(panel.get()));
        auto *field = panel->findChild<QLineEdit *>(u"fileNameEdit"_s);
        const QPointer<QCompleter> completer = field->completer();
        QVERIFY(completer);
        QSignalSpy loaded(panel->findChild<QFileSystemModel *>(), &QFileSystemModel::directoryLoaded);
        // The folder has not been listed yet, so the list changes once more after the listing.
        QTest::keyClicks(field, mFolder->filePath(u"Folder/Inner.desktop"_s));
        QTRY_VERIFY(completer->popup()->isVisible());
        if (byReturn)
            QTest::keyClick(completer->popup(), Qt::Key_Return);
        else
            panel->QDialog::accept();
        QVERIFY(!panel->isVisible());
        QTRY_VERIFY(loaded.contains(QVariantList{mFolder->filePath(u"Folder"_s)}));
        QCoreApplication::processEvents();
        QVERIFY(!completer || !completer->popup()->isVisible());
        QVERIFY(!QApplication::activePopupWidget());
    }

    void aQuestionAboutReplacingGoesWithThePanel()
    {
        const auto panel = savePanel(u"Work"_s);
        QSignalSpy finished(panel.get(), &QDialog::finished);
        type(*panel, u"Work"_s);
        const QPointer<Sheet> question = panel->findChild<Sheet *>(u"alert"_s);
        QVERIFY(question && question->isUp());
        QDialog *dialog = panel.get();
        dialog->done(panelCancel);
        QCOMPARE(finished, QList<QVariantList>{{panelCancel}});
        QTRY_VERIFY(!question);
        QCOMPARE(finished.count(), 1);
    }

private:
    std::unique_ptr<OpenPanel> openPanel()
    {
        auto panel = std::make_unique<OpenPanel>(
            OpenPanel::Options{u"Choose"_s, u"Things (%@)"_s, {u"app"_s, u"desktop"_s}, mFolder->path()},
            mWindow.get());
        panel->open();
        return panel;
    }

    std::unique_ptr<SavePanel> savePanel(const QString &name)
    {
        auto panel = std::make_unique<SavePanel>(
            SavePanel::Options{u"Save"_s, u"Kinds (%@)"_s, u"Kind"_s, mFolder->path(), name}, mWindow.get());
        panel->open();
        return panel;
    }

    static void type(QFileDialog &panel, const QString &name)
    {
        auto *field = panel.findChild<QLineEdit *>();
        field->setText(name);
        QMetaObject::invokeMethod(&panel, "accept"); // the action of Return when no list of completions is open
    }

    static void activate(QFileDialog &panel, const QString &name)
    {
        select(panel, name);
        auto *tree = panel.findChild<QTreeView *>(u"treeView"_s);
        emit tree->activated(tree->currentIndex());
    }

    static void select(QFileDialog &panel, const QString &name)
    {
        panel.setViewMode(QFileDialog::Detail);
        auto *tree = panel.findChild<QTreeView *>(u"treeView"_s);
        const auto find = [&] {
            const QModelIndexList found =
                tree->model()->match(tree->model()->index(0, 0, tree->rootIndex()), Qt::DisplayRole, name);
            return found.value(0);
        };
        QTRY_VERIFY(find().isValid());
        tree->setCurrentIndex(find());
    }

    static void pressAlertButton(QWidget &panel, QLatin1StringView name)
    {
        const QList<Sheet *> alerts = panel.findChildren<Sheet *>(u"alert"_s);
        const auto shown = std::ranges::find_if(alerts, &QWidget::isVisible);
        QVERIFY(shown != alerts.end());
        (*shown)->findChild<QPushButton *>(name)->click();
    }

    std::unique_ptr<QTemporaryDir> mFolder;
    std::unique_ptr<QWidget> mWindow;
};

QTEST_MAIN(FilePanelsTest)
#include "filepanelstest.moc"

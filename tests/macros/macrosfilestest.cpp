// SPDX-License-Identifier: MIT
// Exporting and importing macros: the panels, the files and the requests.
#include "base/propertylist.h"
#include "macros/nstableviewmacrosubclass.h"
#include "platform/filepanels.h"
#include "tests/macros/macrostesting.h"
#include "tests/support/testmain.h"
#include "tests/support/writtenfile.h"

#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>

using namespace MacrosTesting;

class MacrosFilesTest : public MacrosTest
{
    Q_OBJECT

private Q_SLOTS:
    void exportWritesTheRecordWithoutItsIdentity();
    void exportProposesANameInTheDocumentsFolder();
    void cancelledExportWritesNothing();
    void suffixIsAppendedEvenToANameThatHasIt();
    void exportAfterAnEditWritesTheEditedEvents();
    void exportWithoutThePresentEventsWritesNothing();
    void exportNeedsASelectedMacro();
    void importAddsTheMacroUnderAUniqueName();
    void importingTwiceNumbersTheName();
    void importWithoutANameIsUntitled();
    void fileWithoutADictionaryIsIgnored_data();
    void fileWithoutADictionaryIsIgnored();
    void cancelledImportSendsNothing();
    void importPanelChoosesOneMacroFile();
    void contextMenuOpensThePanels();
    void refusedMacroIsNotListed_data();
    void refusedMacroIsNotListed();
    void exportPanelClosesWithItsMacro();
    void importPanelStaysWhenTheMacrosChange();

private:
    [[nodiscard]] QString inFolder(const QString &name) const { return mFolder.filePath(name); }
    /// Exports the selected macro under `name`, without the suffix, and returns the content of the file.
    std::optional<QVariantMap> exportTo(const QString &name);
    void importFrom(const QString &name);

    QTemporaryDir mFolder;
};

std::optional<QVariantMap> MacrosFilesTest::exportTo(const QString &name)
{
    choose("mSettingsMacro", MacroCommands::exportMacro);
    auto *panel = outlet<SavePanel>(u"mSavePanel"_s);
    panel->setDirectory(mFolder.path());
    panel->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(inFolder(name));
    panel->accept();
    const auto content = PropertyList::readPropertyListFile(inFolder(name + u".KestraMacro"_s));
    return content ? std::optional(*content) : std::nullopt;
}

void MacrosFilesTest::importFrom(const QString &name)
{
    choose("mSettingsMacro", MacroCommands::importMacro);
    auto *panel = outlet<OpenPanel>(u"mOpenPanel"_s);
    panel->setDirectory(mFolder.path());
    panel->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(inFolder(name));
    panel->accept();
}

void MacrosFilesTest::exportWritesTheRecordWithoutItsIdentity()
{
    fill({u"A"_s, u"B"_s}, 1);
    QVariantMap record = macroNamed(u"B"_s);
    record[u"macroID"_s] = 7;
    record[u"Colour"_s] = u"red"_s;
    mDelegate->macros[1] = record;
    mDelegate->refresh();
    mDelegate->calls.clear();
    const std::optional<QVariantMap> written = exportTo(u"full"_s);
    record.remove(u"macroID"_s);
    QCOMPARE(written.value_or(QVariantMap()), record);
    QVERIFY(mDelegate->calls.isEmpty());
}

void MacrosFilesTest::exportProposesANameInTheDocumentsFolder()
{
    fill({u"Heal"_s}, 0);
    choose("mSettingsMacro", MacroCommands::exportMacro);
    auto *panel = outlet<SavePanel>(u"mSavePanel"_s);
    QVERIFY(panel->isVisible());
    QCOMPARE(panel->parentWidget(), mWindow.get());
    QCOMPARE(panel->directory(), QDir(documentsFolder()));
    QCOMPARE(panel->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), u"Heal"_s);
    panel->reject();
}

void MacrosFilesTest::cancelledExportWritesNothing()
{
    fill({u"A"_s}, 0);
    choose("mSettingsMacro", MacroCommands::exportMacro);
    auto *panel = outlet<SavePanel>(u"mSavePanel"_s);
    panel->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(inFolder(u"cancelled"_s));
    panel->reject();
    QVERIFY(!QFile::exists(inFolder(u"cancelled.KestraMacro"_s)));
}

void MacrosFilesTest::suffixIsAppendedEvenToANameThatHasIt()
{
    fill({u"A"_s}, 0);
    QVERIFY(exportTo(u"twice.KestraMacro"_s));
    QVERIFY(QFile::exists(inFolder(u"twice.KestraMacro.KestraMacro"_s)));
}

void MacrosFilesTest::exportAfterAnEditWritesTheEditedEvents()
{
    fill({u"A"_s}, 0);
    events()->selectRow(0);
    choose("mSettingsMacroDetails", MacroCommands::noDelay);
    QVariantMap edited = macroNamed(u"A"_s);
    edited[u"sequence"_s] = QVariantMap{{u"Events"_s, QVariantList{mDelegate->event}}};
    mDelegate->macros[0] = edited; // the daemon's macros; those of the tab remain unchanged
    QCOMPARE(exportTo(u"edited"_s).value_or(QVariantMap()), edited);
    QCOMPARE(mDelegate->calls.count(u"reload"_s), 1);
    QCOMPARE(exportTo(u"again"_s).value_or(QVariantMap()), edited); // present by now
    QCOMPARE(mDelegate->calls.count(u"reload"_s), 1);
}

void MacrosFilesTest::exportWithoutThePresentEventsWritesNothing()
{
    fill({u"A"_s}, 0);
    events()->selectRow(0);
    choose("mSettingsMacroDetails", MacroCommands::noDelay);
    // A refused change hands over the records that the window has.
    mController->setMMacrosSettingsArray(mDelegate->macros);
    mController->refreshTableDisplay();
    mDelegate->answers = false;
    QVERIFY(!exportTo(u"old"_s));
    QVERIFY(!QFile::exists(inFolder(u"old.KestraMacro"_s)));
    QCOMPARE(mDelegate->calls.count(u"reload"_s), 1);
}

void MacrosFilesTest::exportNeedsASelectedMacro()
{
    fill({u"A"_s});
    choose("mSettingsMacro", MacroCommands::exportMacro);
    QVERIFY(!outlet<SavePanel>(u"mSavePanel"_s));
}

void MacrosFilesTest::importAddsTheMacroUnderAUniqueName()
{
    fill({u"A"_s, u"B"_s}, 0);
    const QVariantMap file{{u"MacroName"_s, u"A"_s}, {u"sequence"_s, QVariantMap()}, {u"Colour"_s, u"red"_s}};
    writeFile(inFolder(u"a.KestraMacro"_s), *PropertyList::writeBinary(file));
    importFrom(u"a.KestraMacro"_s);
    QVariantMap sent = file;
    sent[u"MacroName"_s] = u"A(2)"_s;
    QCOMPARE(mDelegate->record, sent);
    QCOMPARE(mDelegate->calls, (QStringList{u"add"_s, u"details 2"_s}));
    QCOMPARE(list()->selectedRow(), 2);
}

void MacrosFilesTest::importingTwiceNumbersTheName()
{
    writeFile(inFolder(u"n.KestraMacro"_s), *PropertyList::writeBinary(macroNamed(u"N"_s)));
    importFrom(u"n.KestraMacro"_s);
    QCOMPARE(mDelegate->record.value(u"MacroName"_s), QVariant(u"N"_s));
    importFrom(u"n.KestraMacro"_s);
    QCOMPARE(mDelegate->record.value(u"MacroName"_s), QVariant(u"N(2)"_s));
}

void MacrosFilesTest::importWithoutANameIsUntitled()
{
    fill({u"Untitled Macro"_s});
    writeFile(inFolder(u"nameless.KestraMacro"_s), *PropertyList::writeBinary(QVariantMap{{u"delay"_s, 20}}));
    importFrom(u"nameless.KestraMacro"_s);
    QCOMPARE(mDelegate->record.value(u"MacroName"_s), QVariant(u"Untitled Macro(2)"_s));
}

void MacrosFilesTest::fileWithoutADictionaryIsIgnored_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no property list") << QByteArray("bplist00 and then nothing");
    QTest::newRow("an array") << *PropertyList::writeBinary(QVariantList{1, 2});
}

void MacrosFilesTest::fileWithoutADictionaryIsIgnored()
{
    QFETCH(QByteArray, data);
    fill({u"A"_s}, 0);
    writeFile(inFolder(u"bad.KestraMacro"_s), data);
    importFrom(u"bad.KestraMacro"_s);
    QVERIFY(mDelegate->calls.isEmpty());
    QCOMPARE(mController->macrosSettingsArray(), mDelegate->macros);
    QCOMPARE(list()->selectedRow(), 0);
}

void MacrosFilesTest::cancelledImportSendsNothing()
{
    writeFile(inFolder(u"c.KestraMacro"_s), *PropertyList::writeBinary(macroNamed(u"C"_s)));
    choose("mSettingsMacro", MacroCommands::importMacro);
    auto *panel = outlet<OpenPanel>(u"mOpenPanel"_s);
    panel->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(inFolder(u"c.KestraMacro"_s));
    panel->reject();
    QVERIFY(mDelegate->calls.isEmpty());
}

void MacrosFilesTest::importPanelChoosesOneMacroFile()
{
    choose("mSettingsMacro", MacroCommands::importMacro);
    auto *panel = outlet<OpenPanel>(u"mOpenPanel"_s);
    QVERIFY(panel->isVisible());
    QCOMPARE(panel->parentWidget(), mWindow.get());
    QCOMPARE(panel->fileMode(), QFileDialog::ExistingFile);
    QCOMPARE(panel->nameFilters(), QStringList{u"Macros (*.KestraMacro)"_s});
    QCOMPARE(panel->directory(), QDir(documentsFolder()));
    panel->reject();
}

void MacrosFilesTest::contextMenuOpensThePanels()
{
    fill({u"A"_s}, 0);
    const std::unique_ptr<QMenu> menu(outlet<NSTableViewMacroSubClass>(u"mMacroTableView"_s)->makeContextMenu());
    menu->actions().at(2)->trigger();
    QVERIFY(outlet<OpenPanel>(u"mOpenPanel"_s)->isVisible());
    outlet<OpenPanel>(u"mOpenPanel"_s)->reject();
    menu->actions().at(3)->trigger();
    QVERIFY(outlet<SavePanel>(u"mSavePanel"_s)->isVisible());
    outlet<SavePanel>(u"mSavePanel"_s)->reject();
}

void MacrosFilesTest::refusedMacroIsNotListed_data()
{
    QTest::addColumn<bool>("answers");
    QTest::newRow("refused") << true;
    QTest::newRow("not answered for") << false;
}

void MacrosFilesTest::refusedMacroIsNotListed()
{
    QFETCH(bool, answers);
    fill({u"A"_s, u"B"_s}, 0);
    mDelegate->refusesToAdd = true;
    mDelegate->answers = answers;
    writeFile(inFolder(u"s.KestraMacro"_s), *PropertyList::writeBinary(macroNamed(u"S"_s)));
    importFrom(u"s.KestraMacro"_s);
    QCOMPARE(mDelegate->calls, (QStringList{u"add"_s, u"details 0"_s}));
    QCOMPARE(mController->macrosSettingsArray(), mDelegate->macros);
    QCOMPARE(list()->numberOfRows(), 2);
    QCOMPARE(list()->selectedRow(), 0);
    QCOMPARE(events()->numberOfRows(), 5); // those that arrived last, because none arrive now
}

void MacrosFilesTest::exportPanelClosesWithItsMacro()
{
    fill({u"A"_s, u"B"_s, u"C"_s}, 1);
    choose("mSettingsMacro", MacroCommands::exportMacro);
    auto *panel = outlet<SavePanel>(u"mSavePanel"_s);
    panel->setDirectory(mFolder.path());
    mDelegate->refresh();
    QVERIFY(panel->isVisible());
    mDelegate->macros.removeFirst(); // like another client
    mDelegate->refresh();
    QVERIFY(!panel->isVisible());
    QVERIFY(!QFile::exists(inFolder(u"B.KestraMacro"_s)));
}

void MacrosFilesTest::importPanelStaysWhenTheMacrosChange()
{
    fill({u"A"_s, u"B"_s}, 1);
    choose("mSettingsMacro", MacroCommands::importMacro);
    mDelegate->macros.removeFirst();
    mDelegate->refresh();
    QVERIFY(outlet<OpenPanel>(u"mOpenPanel"_s)->isVisible());
    outlet<OpenPanel>(u"mOpenPanel"_s)->reject();
}

QTEST_MAIN(MacrosFilesTest)
#include "macrosfilestest.moc"

// SPDX-License-Identifier: MIT
// Import and export of macros: the panels that ask for a file, and the reading and writing of the files.
#include "macros/keyboardmacroscontroller.h"

#include "base/propertylist.h"
#include "base/text.h"
#include "macros/macrodelegate.h"
#include "macros/macrofile.h"
#include "macros/macrorecord.h"
#include "macros/nstableviewmacrosubclass.h"
#include "platform/filepanels.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

// Export

void KeyboardMacrosController::loadSaveAsPanel()
{
    if (macroRow() < 0)
        return;
    delete mSavePanel.data();
    mSavePanel = new SavePanel({.title = localizedText("lkeyExportMacroTitle"),
                                .filter = localizedText("lkeyMacroFileFilter"),
                                .suffix = MacroFile::suffix,
                                .folder = documentsFolder(),
                                .name = MacroRecord::name(macroAt(macroRow()))},
                               mMacrosWindow);
    mSavePanel->setObjectName("mSavePanel"_L1);
    connect(mSavePanel, &QDialog::finished, this,
            [this](int returnCode) { sheetDidEndReturnCodeContextInfo(returnCode, exportMacro); });
    mSavePanel->open();
    mMacroSubject.note(mSavePanel, selectedMacro());
}

void KeyboardMacrosController::exportMacroToFile(const QString &path)
{
    if (!hasPresentRecords())
        return;
    const QVariantMap record = macroAt(macroRow());
    if (path.isEmpty() || record.isEmpty())
        return;
    const Result<void> written = PropertyList::writePropertyListFile(path, MacroFile::exportedRecord(record));
    if (!written)
        report(StatusReport::Event::exportFailed, QFileInfo(path).fileName(), written.error().message);
}

void KeyboardMacrosController::report(StatusReport::Event event, const QString &subject, const QString &reason) const
{
    if (mMacroDelegate)
        mMacroDelegate->report({.event = event, .subject = subject, .reason = reason});
}

// Import

void KeyboardMacrosController::loadPanel()
{
    delete mOpenPanel.data();
    mOpenPanel = new OpenPanel({.title = localizedText("lkeyImportMacroTitle"),
                                .filter = localizedText("lkeyMacroFileFilter"),
                                .types = {MacroFile::suffix},
                                .folder = documentsFolder()},
                               mMacrosWindow);
    mOpenPanel->setObjectName("mOpenPanel"_L1);
    connect(mOpenPanel, &QDialog::finished, this, &KeyboardMacrosController::openPanelDidEndReturnCodeContextInfo);
    mOpenPanel->open();
    mImportSubject.note(mOpenPanel);
}

void KeyboardMacrosController::openPanelDidEndReturnCodeContextInfo(int returnCode)
{
    if (returnCode == panelOK && mOpenPanel)
        importMacroFromFile(mOpenPanel->chosenPath());
}

void KeyboardMacrosController::importMacroFromFile(const QString &path)
{
    const auto contents = PropertyList::readPropertyListFile(path);
    if (!contents) {
        const bool isUnreadable = contents.error().cause == PropertyList::ReadError::Cause::unreadable;
        return report(isUnreadable ? StatusReport::Event::importFailed : StatusReport::Event::notAMacro,
                      QFileInfo(path).fileName(), contents.error().message);
    }
    addFinishedMacro(MacroFile::importedRecord(*contents, mMacrosSettingsArray));
}

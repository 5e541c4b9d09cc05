// SPDX-License-Identifier: MIT
#include "platform/filepanels.h"

#include "base/exportpath.h"
#include "base/text.h"
#include "base/visibletext.h"
#include "platform/sheet.h"

#include <QAbstractItemView>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLineEdit>
#include <QPointer>
#include <QRegularExpression>
#include <QSplitter>
#include <QStandardPaths>
#include <QTreeView>

#include <array>

using namespace Qt::StringLiterals;

namespace {

QString patternsOf(const QStringList &types)
{
    QStringList patterns;
    for (const QString &type : types)
        patterns.append("*."_L1 + type);
    return patterns.join(u' ');
}

/// Makes `panel` a sheet that looks the same on every desktop. A desktop's own panel would open a bundle instead of
/// choosing it. It would also ask about replacing the wrong file: the one without the suffix.
void makeSheet(QFileDialog *panel, const QString &title)
{
    panel->setOption(QFileDialog::DontUseNativeDialog);
    panel->setWindowModality(Qt::WindowModal);
    panel->setWindowTitle(title);
    // Wide enough for the sidebar and for all columns of the list.
    constexpr QSize size(820, 500);
    constexpr int sidebarWidth = 180;
    constexpr std::array columnWidths{240, 80, 120, 160}; // name, size, kind, date
    panel->resize(size);
    if (auto *splitter = panel->findChild<QSplitter *>(u"splitter"_s))
        splitter->setSizes({sidebarWidth, size.width() - sidebarWidth});
    if (const auto *list = panel->findChild<QTreeView *>(u"treeView"_s)) {
        for (size_t column = 0; column < columnWidths.size(); ++column)
            list->header()->resizeSection(int(column), columnWidths[column]);
    }
    // The list of completions is a separate window that reappears whenever a folder has been listed. Without this, it
    // would stay on the screen after the panel and take the next click.
    QObject::connect(panel, &QDialog::finished, panel, [panel] {
        if (auto *field = panel->findChild<QLineEdit *>(u"fileNameEdit"_s))
            field->setCompleter(nullptr);
    });
}

/// `name` in a form that the file name field accepts as one visible file in the current folder. The result names no
/// other folder, home folder, hidden file or list of files (in quotation marks), has no invisible character, and is not
/// longer than file names may be.
QString proposedFileName(QString name, const QString &suffix)
{
    name = visibleText(name, u'-').replace(u'/', u'-').replace(u'"', u'\'');
    if (name.startsWith(u'.') || name.startsWith(u'~'))
        name[0] = u'-';
    return exportFileName(name, suffix);
}

} // namespace

QString documentsFolder()
{
    const QString named = u"/Documents/"_s;
    const QString own = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    for (const QString &folder : {named, own}) {
        if (QFileInfo(folder).isDir())
            return folder;
    }
    return QDir::homePath();
}

OpenPanel::OpenPanel(const Options &options, QWidget *window) : QFileDialog(window, Qt::Sheet), mTypes(options.types)
{
    makeSheet(this, options.title);
    setAcceptMode(AcceptOpen);
    setFileMode(ExistingFile);
    if (!mTypes.isEmpty())
        setNameFilter(formatted(options.filter, {patternsOf(mTypes)}));
    if (!options.folder.isEmpty())
        setDirectory(options.folder);
    chooseFoldersAsFiles();
}

bool OpenPanel::isFolderAsFile(const QString &path) const
{
    const QFileInfo file(path);
    return file.isDir() && mTypes.contains(file.suffix());
}

/// Replaces the behaviour of the panel's own lists, which open every activated folder.
void OpenPanel::chooseFoldersAsFiles()
{
    for (auto *list : findChildren<QAbstractItemView *>(QRegularExpression(u"^(list|tree)View$"_s))) {
        disconnect(list, &QAbstractItemView::activated, this, nullptr);
        connect(list, &QAbstractItemView::activated, this, [this](const QModelIndex &index) {
            const QString path = index.siblingAtColumn(0).data(QFileSystemModel::FilePathRole).toString();
            if (QFileInfo(path).isDir() && !isFolderAsFile(path))
                setDirectory(path);
            else
                accept();
        });
    }
}

void OpenPanel::accept()
{
    if (isFolderAsFile(chosenPath()))
        QDialog::accept();
    else
        QFileDialog::accept();
}

SavePanel::SavePanel(const Options &options, QWidget *window)
    : QFileDialog(window, Qt::Sheet), mSuffix(options.suffix), mProposal(proposedFileName(options.name, options.suffix))
{
    makeSheet(this, options.title);
    setAcceptMode(AcceptSave);
    setFileMode(AnyFile);
    // accept() asks instead, about the right file.
    setOption(DontConfirmOverwrite);
    setNameFilter(formatted(options.filter, {patternsOf({options.suffix})}));
    setDirectory(options.folder);
    selectFile(mProposal);
}

QString SavePanel::chosenPath() const
{
    const QString path = selectedFiles().value(0);
    return path.isEmpty() ? QString() : exportPath(path, mSuffix);
}

/// Typing the name of a folder opens it. A folder that happens to have the proposed name does not count: the user wants
/// to save.
bool SavePanel::isFolderToOpen(const QString &path) const
{
    const auto *field = findChild<QLineEdit *>(u"fileNameEdit"_s);
    const bool isProposal = field && field->text() == mProposal && path == directory().filePath(mProposal);
    return QFileInfo(path).isDir() && !isProposal;
}

void SavePanel::accept()
{
    const QString typed = selectedFiles().value(0);
    if (typed.isEmpty() || isFolderToOpen(typed)) {
        QFileDialog::accept();
        return;
    }
    // Bypasses QFileDialog::accept(), which would open a folder of that name and reject a long name without a message.
    const QString path = chosenPath();
    if (!QFileInfo::exists(path)) {
        QDialog::accept();
        return;
    }
    Sheet *question =
        showAlert({localizedFormat("lkeyReplaceFileTitle", {nameInAlert(QFileInfo(path).fileName())}),
                   localizedText("lkeyReplaceFileDesc"), localizedText("lkeyReplace"), localizedText("lkeyCancel")},
                  this, [panel = QPointer(this)](int returnCode) {
                      if (panel && returnCode == alertFirstButtonReturn)
                          panel->QDialog::accept();
                  });
    // Once the panel has finished, there is nothing left to replace.
    connect(this, &QDialog::finished, question, [question] { question->reject(); });
}

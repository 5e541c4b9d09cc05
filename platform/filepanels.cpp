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

/// What both panels are: sheets that look the same on every desktop. A desktop's own panel would open a bundle instead
/// of choosing it, and would ask about replacing a file that is not the one with the suffix.
void makeSheet(QFileDialog *panel, const QString &title)
{
    panel->setOption(QFileDialog::DontUseNativeDialog);
    panel->setWindowModality(Qt::WindowModal);
    panel->setWindowTitle(title);
    // Wide enough for the folders beside the list and for all of the list's columns.
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
    // The list of completions is a window of its own, and is shown anew whenever a folder has been listed. Without this
    // it would stay on the screen after the panel, and take the next click.
    QObject::connect(panel, &QDialog::finished, panel, [panel] {
        if (auto *field = panel->findChild<QLineEdit *>(u"fileNameEdit"_s))
            field->setCompleter(nullptr);
    });
}

/// `name` as the field for file names takes it: no other folder, no home folder, no hidden file, no list of files
/// (which quotation marks make), no character that is not shown, and no longer than a file can be called.
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

/// The panel's own lists open every folder that is activated.
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
    // accept() asks, about the right file.
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

/// A folder is opened when its name is typed, but one that happens to bear the proposed name is not in the way.
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
    // Past QFileDialog::accept(), which would open a folder of the name and refuse a long name without a word.
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
    // Without the panel there is nothing left to replace.
    connect(this, &QDialog::finished, question, [question] { question->reject(); });
}

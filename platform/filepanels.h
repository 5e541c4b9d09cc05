// SPDX-License-Identifier: MIT
// Open and save panels: sheets on a window, which owns them, in which the user chooses a file. Main thread only.
#pragma once

#include <QFileDialog>

#include <functional>

/// Return codes of both panels.
inline constexpr int panelOK = 1;
inline constexpr int panelCancel = 0;

/// The folder in which panels for macro and profile files start: "/Documents/" if it exists, otherwise the user's
/// documents folder, otherwise the home folder.
[[nodiscard]] QString documentsFolder();

/// Lets the user choose one existing file. A folder with one of the types as its suffix, such as an application bundle,
/// counts as a file: it is chosen, not opened.
class OpenPanel : public QFileDialog
{
    Q_OBJECT

public:
    struct Options
    {
        QString title;
        QString filter;    ///< name of the types together, a format with one argument ("Applications (%@)")
        QStringList types; ///< suffixes without a dot; empty for every file
        QString folder;    ///< initial folder; empty for that of the last panel
    };

    OpenPanel(const Options &options, QWidget *window);

    /// The path of the chosen file; empty without a choice.
    [[nodiscard]] QString chosenPath() const { return selectedFiles().value(0); }

    void accept() override;

private:
    [[nodiscard]] bool isFolderAsFile(const QString &path) const;
    void chooseFoldersAsFiles();

    QStringList mTypes;
};

/// Lets the user choose a name for a new file. exportPath() appends the suffix; before the panel replaces a file with
/// the resulting name, it asks the user.
class SavePanel : public QFileDialog
{
    Q_OBJECT

public:
    struct Options
    {
        QString title;
        QString filter; ///< name of such files, a format with one argument ("Profiles (%@)")
        QString suffix; ///< without a dot
        QString folder; ///< initial folder
        QString name;   ///< proposed, without the suffix; invalid characters are replaced, excess ones cut off
    };

    SavePanel(const Options &options, QWidget *window);

    /// The path with the suffix; empty without a choice.
    [[nodiscard]] QString chosenPath() const;

    void accept() override;

private:
    [[nodiscard]] bool isFolderToOpen(const QString &path) const;

    QString mSuffix;
    QString mProposal;
};

// SPDX-License-Identifier: MIT
// Open and save panels: sheets of a window in which the user chooses a file. The window owns them. Main thread only.
#pragma once

#include <QFileDialog>

#include <functional>

/// Return codes of both panels.
inline constexpr int panelOK = 1;
inline constexpr int panelCancel = 0;

/// The folder that panels for macro and profile files start in: "/Documents/" where that exists, else the user's
/// folder of documents, else the home folder.
[[nodiscard]] QString documentsFolder();

/// Chooses one file that exists. A folder whose name ends in one of the types counts as a file: it is chosen, not
/// opened. (A program's bundle is such a folder.)
class OpenPanel : public QFileDialog
{
    Q_OBJECT

public:
    struct Options
    {
        QString title;
        QString filter;    ///< what the types are together, a format with one argument ("Applications (%@)")
        QStringList types; ///< suffixes without a dot; empty: every file
        QString folder;    ///< where it starts; empty: where the last panel was
    };

    OpenPanel(const Options &options, QWidget *window);

    /// What was chosen; empty when nothing is.
    [[nodiscard]] QString chosenPath() const { return selectedFiles().value(0); }

    void accept() override;

private:
    [[nodiscard]] bool isFolderAsFile(const QString &path) const;
    void chooseFoldersAsFiles();

    QStringList mTypes;
};

/// Chooses a name for a new file. The suffix is appended by exportPath(); the file that this gives is the one the user
/// is asked about before it is replaced.
class SavePanel : public QFileDialog
{
    Q_OBJECT

public:
    struct Options
    {
        QString title;
        QString filter; ///< what such files are, a format with one argument ("Profiles (%@)")
        QString suffix; ///< without a dot
        QString folder; ///< where it starts
        QString name;   ///< proposed, without the suffix; what a file name cannot bear is replaced or cut off
    };

    SavePanel(const Options &options, QWidget *window);

    /// The path with the suffix; empty when nothing is chosen.
    [[nodiscard]] QString chosenPath() const;

    void accept() override;

private:
    [[nodiscard]] bool isFolderToOpen(const QString &path) const;

    QString mSuffix;
    QString mProposal;
};

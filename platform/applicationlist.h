// SPDX-License-Identifier: MIT
// The rows of an ApplicationChooser: applications and windows that fit the search. Main thread only.
#pragma once

#include "base/frontapplication.h"
#include "platform/installedapplications.h"

#include <QAbstractListModel>
#include <QHash>
#include <QIcon>

#include <optional>

/// Applications that are running come first, then windows of programs without an entry, then the other applications. An
/// icon is loaded when a view first asks for it, which a view does for the rows that it paints.
class ApplicationList : public QAbstractListModel
{
    Q_OBJECT

public:
    /// Whether windows of programs without a desktop entry are rows of their own.
    enum class Windows { ofEntries, all };

    /// The note beside the name: that the application is running, or that the row is only a window.
    static constexpr int noteRole = Qt::UserRole;

    explicit ApplicationList(QObject *parent = nullptr) : QAbstractListModel(parent) {}

    /// Replaces all rows. `windows` are those that are open, as far as the desktop reports them.
    void setApplications(const QList<InstalledApplication> &installed, const QList<FrontApplication> &windows,
                         Windows offered);
    /// Leaves the rows that contain each word of `query` in one of their names or keywords, in any letter case. Rows
    /// with a name that begins with the query come first. Empty: all rows.
    void setQuery(const QString &query);

    /// The path of the row's desktop entry; empty for a window.
    [[nodiscard]] QString pathOf(const QModelIndex &index) const;
    /// The class of the row's window; empty for an application with an entry.
    [[nodiscard]] QString windowClassOf(const QModelIndex &index) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    struct Row
    {
        InstalledApplication application; // of a window: the name and the class alone
        bool isRunning = false;
        QString searched; // in folded letter case, one text a line
    };

    void addWindow(const FrontApplication &window, Windows offered);
    [[nodiscard]] Row *entryOf(const FrontApplication &window);
    [[nodiscard]] const Row *rowAt(const QModelIndex &index) const;
    [[nodiscard]] QIcon iconOf(const Row &row) const;

    QList<Row> mRows;
    QList<qsizetype> mShown;              // places in mRows
    mutable QHash<QString, QIcon> mIcons; // by the entry's "Icon"
};

// SPDX-License-Identifier: MIT
// The sheet with the history of the settings: the changes by day, a search, what a change did and what taking it back
// would do. It changes nothing itself. Main thread only.
#pragma once

#include "app/historystatus.h"
#include "platform/sheet.h"

class KeyMiniature;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

class HistorySheet : public Sheet
{
    Q_OBJECT

public:
    /// `history` must outlive this.
    HistorySheet(HistoryStatus &history, QWidget *parent);

    void show(QWidget *window);
    /// Shows how a restoration has ended, in the words of the status line, until the user selects another entry. Asks
    /// again for the effect that restoring the selected entry would have.
    void say(const QString &words);
    /// Whether the user can ask for a restoration now.
    void setCanRestore(bool canRestore);

Q_SIGNALS:
    /// `newest` is the id of the newest entry when the user was shown the effect of the restoration.
    void restoreRequested(const QVariantMap &entry, uint newest);
    void clearRequested();

private:
    void read();
    void fill(const QList<QVariantMap> &entries);
    void search();
    [[nodiscard]] const QVariantMap *selected() const; ///< null without a selected entry
    void showSelected();
    void showParts(const HistoryParts &parts);
    void showPreview(const HistoryStatus::Outcome &outcome);
    void showButtons();
    void askToClear();

    HistoryStatus &mHistory;
    QList<QVariantMap> mEntries; ///< the newest first
    QLineEdit *mSearch;
    QTreeWidget *mList;
    QLabel *mWords;
    QTreeWidget *mParts;
    QLabel *mPartsNote;
    QLabel *mEffect;
    QLabel *mNotice;
    KeyMiniature *mPicture;
    QPushButton *mRestore;
    QPushButton *mClear;
    uint mPreviewed = 0;     ///< the id of the entry whose effect is shown; 0 for none that can be taken back
    uint mNewest = 0;        ///< the newest entry at that time
    bool mIsAnswered = true; ///< false when the daemon did not list its entries
    bool mCanRestore = false;
};

// SPDX-License-Identifier: MIT
// The window of the help book: contents or search results on the left, the page on the right. Main thread only.
#pragma once

#include "platform/helpbook.h"

#include <QWidget>

class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QTextBrowser;
class QToolButton;

/// Keys: Alt+Left and Alt+Right go back and forward, Alt+Home goes to the contents, Ctrl+F to the search field. Down
/// and Return in the search field go to the results. Escape ends the search; without a search it closes the window.
class HelpWindow : public QWidget
{
    Q_OBJECT

public:
    /// Shows the book in `folder` without opening a page.
    HelpWindow(const QString &title, const QString &folder, QWidget *parent = nullptr);

    /// Shows the page in `fileName`, or the first page if that page does not exist.
    void gotoPage(const QString &fileName);

protected:
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *buildBar();
    QWidget *buildBody();
    QToolButton *addButton(const char *name, const char *textKey, const QKeySequence &key,
                           void (HelpWindow::*action)());
    void goBack();
    void goForward();
    void goHome();
    void beginSearch();
    void escape();

    void list(const QString &query);
    void addToList(qsizetype page, const QString &excerpt);
    void openItem(const QListWidgetItem *item);
    void pageShown();
    void markWords();
    [[nodiscard]] QString shownFile() const;

    QString mFolder;
    HelpBook mBook;
    QToolButton *mBack = nullptr;
    QToolButton *mForward = nullptr;
    QToolButton *mHome = nullptr;
    QLineEdit *mSearch = nullptr;
    QListWidget *mList = nullptr;
    QTextBrowser *mBrowser = nullptr;
};

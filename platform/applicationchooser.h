// SPDX-License-Identifier: MIT
// A sheet with a searchable list, in which the user chooses an application. Main thread only.
#pragma once

#include "platform/applicationlist.h"

#include <QDialog>
#include <QVariantMap>

#include <optional>

class QLabel;
class QLineEdit;
class QListView;
class QPushButton;

/// Ends with panelOK (platform/filepanels.h), panelCancel or otherReturn. Typing searches wherever the focus is; Return
/// chooses. No application is chosen before the user has typed or moved to one.
class ApplicationChooser : public QDialog
{
    Q_OBJECT

public:
    /// The user wants to choose a file instead.
    static constexpr int otherReturn = 3;

    /// A sheet on `window` with the installed applications. Open windows are known on X11 alone.
    ApplicationChooser(ApplicationList::Windows offered, QWidget *window);

    /// Replaces the applications of the list.
    void setApplications(const QList<InstalledApplication> &installed, const QList<FrontApplication> &windows);

    /// The information dictionary (platform/applicationinformation.h) of the chosen application. For a window it has
    /// the window's class as name and signature, and nothing else. Absent without a choice, and when the application's
    /// entry is gone.
    [[nodiscard]] std::optional<QVariantMap> chosenInformation() const;
    /// The title of the chosen row; empty without a choice.
    [[nodiscard]] QString chosenTitle() const;

    /// Does nothing without a choice.
    void accept() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildContent();
    void search();
    void showResult();
    [[nodiscard]] bool takeFieldKey(QEvent *event);
    [[nodiscard]] bool takeListKey(QEvent *event);

    ApplicationList::Windows mOffered;
    ApplicationList *mApplications;
    QLineEdit *mField;
    QListView *mList;
    QLabel *mResult;
    QPushButton *mChoose;
};

// SPDX-License-Identifier: MIT
// The sheet on which the user chooses the keyboard that the daemon uses. It lists the keyboards that are plugged in
// with their state, and removes the obstacle if it can. Main thread only.
#pragma once

#include "app/ruleprocess.h"
#include "platform/sheet.h"

#include <QVariantMap>

class AttachedKeyboards;
class QCheckBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTreeWidget;

class KeyboardChooser : public Sheet
{
    Q_OBJECT

public:
    /// `keyboards` and `rules` must outlive this.
    KeyboardChooser(AttachedKeyboards &keyboards, RuleProcess &rules, QWidget *parent);

    void show(QWidget *window);

private:
    [[nodiscard]] QVariantMap selected() const;      ///< a keyboard of the list; empty without a selection
    [[nodiscard]] QList<QVariantMap> chosen() const; ///< the keyboards that are in use, or wait for it
    [[nodiscard]] QVariantMap toRelease() const;     ///< by the button; empty for none
    void readList();
    void showSelected();
    void showRemedy(const QVariantMap &keyboard);
    void say(const QString &text);
    void use();
    void useSelected();
    void release();
    void ruleFinished(const RuleProcess::Outcome &outcome);

    AttachedKeyboards &mKeyboards;
    RuleProcess &mRules;
    QTreeWidget *mList;
    QLabel *mState;
    QLabel *mRemedy;
    QPlainTextEdit *mRemedyText;
    QCheckBox *mUseAlso;
    QCheckBox *mRemoveRule;
    QPushButton *mRelease;
    QPushButton *mUse;
    QString mKeyboardOfRule; ///< the id of the keyboard whose rule is being installed or removed
    bool mIsRemoval = false;
};

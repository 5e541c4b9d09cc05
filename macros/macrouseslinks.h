// SPDX-License-Identifier: MIT
// The keys that play a macro, as a row of links. Main thread only.
#pragma once

#include "keys/macrouses.h"

#include <QList>
#include <QWidget>

class QLabel;
class QToolButton;

/// "M1 in Game", on one line.
[[nodiscard]] QString macroUseWords(const KeyMappings::MacroUse &use);

/// "Played by: M1 in Game, F5 in Default Profile"; a long list ends with the number of further keys. Empty without
/// uses.
[[nodiscard]] QString macroUsesWords(const QList<KeyMappings::MacroUse> &uses);

/// Shows the first keys as links, and opens a menu with the further ones.
class MacroUsesLinks : public QWidget
{
    Q_OBJECT

public:
    explicit MacroUsesLinks(QWidget *parent = nullptr);

    /// The links of profiles other than `activeProfile` say that they make their profile active.
    void show(const QList<KeyMappings::MacroUse> &uses, int activeProfile);

Q_SIGNALS:
    void chosen(const KeyMappings::MacroUse &use);

private:
    void build();
    QToolButton *addLink(const QString &text);
    void addMenu();
    [[nodiscard]] QString tipOf(const KeyMappings::MacroUse &use) const;

    QList<KeyMappings::MacroUse> mUses;
    int mActiveProfile = -1;
    QLabel *mLabel;
    QLabel *mNote;
    QList<QToolButton *> mLinks;
};

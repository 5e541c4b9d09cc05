// SPDX-License-Identifier: MIT
// The keyboard as a picture: a case with one button per key, scaled as a whole. Main thread only.
#pragma once

#include "keys/keygeometry.h"
#include "keys/picturelayout.h"
#include "keys/picturelight.h"

#include <QHash>
#include <QWidget>

class KeyButton;
class Keymap;

/// Keeps the ratio of the keyboard and centres it in the available space. The keys are one stop in the tab order: the
/// selected key, or else the first. From there the arrow keys select the next key in their direction, Home and End the
/// first and the last key; with Shift they add it to the selected keys. A character selects the key that shows it;
/// typed again, the next such key.
class KeyboardPicture : public QWidget
{
    Q_OBJECT

public:
    explicit KeyboardPicture(QWidget *parent = nullptr);

    /// Returns the button named `outlet`; never null for a name of the key table.
    [[nodiscard]] KeyButton *button(QLatin1StringView outlet) const;
    [[nodiscard]] const QList<KeyButton *> &buttons() const { return mButtons; }

    /// Returns the nearest selectable key from `from` in the direction of `arrow`; null if there is none.
    [[nodiscard]] KeyButton *neighbour(const KeyButton *from, Qt::Key arrow) const;

    /// Returns the first or the last selectable key, in the order of KeyGeometry::shapes().
    [[nodiscard]] KeyButton *firstKey() const;
    [[nodiscard]] KeyButton *lastKey() const;
    /// Returns the next selectable key after `from` that shows `character`. The search continues at the first key and
    /// ends at `from`. Null if no key shows it.
    [[nodiscard]] KeyButton *keyShowing(const QString &character, const KeyButton *from) const;

    /// The key lighting between the keys. The picture repaints itself when the lighting changes.
    [[nodiscard]] PictureLight &light() { return mLight; }

    /// Shows the characters of `keymap` on the keys; without one, those that are printed on the keyboard. While it can
    /// be seen, the picture follows the desktop's layout.
    void showKeymap(const Keymap &keymap);

    /// Makes `button` the only stop in the tab order.
    void setTabStop(KeyButton *button);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

Q_SIGNALS:
    void legendsChanged();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void layOut();
    void followLayout();
    [[nodiscard]] QList<QRect> keyPlaces() const;
    void moveSelection(const KeyButton *from, Qt::Key key, bool isExtending);
    void select(KeyButton *button);

    QList<KeyButton *> mButtons;
    QHash<QLatin1StringView, KeyButton *> mButtonsByOutlet;
    KeyButton *mTabStop = nullptr;
    PictureLayout mLayout;
    PictureLight mLight;
    bool mFollowsLayout = false; ///< from the first painting on
};

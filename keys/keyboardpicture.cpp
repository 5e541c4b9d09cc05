// SPDX-License-Identifier: MIT
#include "keys/keyboardpicture.h"

#include "base/text.h"
#include "keys/keybutton.h"
#include "keys/keycap.h"
#include "keys/keylayout.h"
#include "keys/layoutlegends.h"
#include "platform/keymap.h"
#include "platform/waylandkeymap.h"
#include "platform/x11keymap.h"

#include <QEvent>
#include <QGuiApplication>
#include <QLayout>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr QRectF wordmarkPlace(16.6, 6.5, 7.2, 0.9); // under the arrow keys and the keypad, in key units
constexpr qreal preferredUnit = 44;
constexpr qreal smallestUnit = 30;

bool isSelectableOutlet(QLatin1StringView outlet)
{
    return std::ranges::none_of(KeyLayout::fixedKeys(), [&](const FixedKeyRow &row) { return row.outlet == outlet; });
}

/// Reports the heights of the picture to the surrounding layouts: that for its width, and the lowest, down to which it
/// may shrink. A widget alone cannot report the second.
class PictureHeights : public QLayout
{
public:
    explicit PictureHeights(KeyboardPicture *picture) : QLayout(picture), mPicture(picture)
    {
        setContentsMargins(0, 0, 0, 0);
    }

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return mPicture->heightForWidth(width); }
    int minimumHeightForWidth(int) const override { return minimumSize().height(); }
    QSize sizeHint() const override { return mPicture->sizeHint(); }
    QSize minimumSize() const override { return mPicture->minimumSizeHint(); }

    // The picture itself places its keys.
    void addItem(QLayoutItem *) override {}
    int count() const override { return 0; }
    QLayoutItem *itemAt(int) const override { return nullptr; }
    QLayoutItem *takeAt(int) override { return nullptr; }

private:
    const KeyboardPicture *mPicture;
};

// Returns how far `to` is from `from` in the direction of `arrow`; infinite if it does not lie there. The distance
// across this direction is weighted: keys of the same row or column come first.
qreal distance(const QRectF &from, const QRectF &to, Qt::Key arrow)
{
    const bool isHorizontal = arrow == Qt::Key_Left || arrow == Qt::Key_Right;
    const qreal sign = arrow == Qt::Key_Left || arrow == Qt::Key_Up ? -1 : 1;
    const QPointF way = to.center() - from.center();
    const qreal along = sign * (isHorizontal ? way.x() : way.y());
    if (along < 0.3)
        return std::numeric_limits<qreal>::infinity();
    // The distance across matters little for keys that lie side by side.
    const qreal overlap = isHorizontal ? std::min(from.bottom(), to.bottom()) - std::max(from.top(), to.top())
                                       : std::min(from.right(), to.right()) - std::max(from.left(), to.left());
    const qreal off = std::abs(isHorizontal ? way.y() : way.x());
    if (isHorizontal && overlap <= 0)
        return std::numeric_limits<qreal>::infinity();
    return along + (overlap > 0.2 ? off * 0.1 : off * 2);
}

} // namespace

KeyboardPicture::KeyboardPicture(QWidget *parent) : QWidget(parent)
{
    for (const KeyShape &shape : KeyGeometry::shapes()) {
        auto *button = new KeyButton(shape, isSelectableOutlet(shape.outlet), this);
        connect(button, &KeyButton::moveRequested, this,
                [this, button](Qt::Key key, bool isExtending) { moveSelection(button, key, isExtending); });
        connect(button, &KeyButton::characterTyped, this,
                [this, button](const QString &character) { select(keyShowing(character, button)); });
        mButtons.append(button);
        mButtonsByOutlet.insert(shape.outlet, button);
        if (!mTabStop && button->isSelectable())
            setTabStop(button);
    }
    mLight.follow(this);
    // The width determines the height; the surrounding layout gets the remaining space.
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    new PictureHeights(this);
}

KeyButton *KeyboardPicture::button(QLatin1StringView outlet) const
{
    return mButtonsByOutlet.value(outlet);
}

KeyButton *KeyboardPicture::neighbour(const KeyButton *from, Qt::Key arrow) const
{
    KeyButton *nearest = nullptr;
    qreal shortest = std::numeric_limits<qreal>::infinity();
    for (KeyButton *candidate : mButtons) {
        if (candidate == from || !candidate->isSelectable())
            continue;
        const qreal length = distance(from->shape().place, candidate->shape().place, arrow);
        if (length < shortest) {
            shortest = length;
            nearest = candidate;
        }
    }
    return nearest;
}

KeyButton *KeyboardPicture::firstKey() const
{
    const auto key = std::ranges::find_if(mButtons, &KeyButton::isSelectable);
    return key == mButtons.end() ? nullptr : *key;
}

KeyButton *KeyboardPicture::lastKey() const
{
    const auto key = std::find_if(mButtons.rbegin(), mButtons.rend(), std::mem_fn(&KeyButton::isSelectable));
    return key == mButtons.rend() ? nullptr : *key;
}

KeyButton *KeyboardPicture::keyShowing(const QString &character, const KeyButton *from) const
{
    const auto count = mButtons.size();
    const auto start = static_cast<qsizetype>(std::ranges::find(mButtons, from) - mButtons.begin());
    for (qsizetype step = 1; step <= count; ++step) {
        KeyButton *button = mButtons[(start + step) % count];
        if (button->isSelectable() && button->shows(character))
            return button;
    }
    return nullptr;
}

void KeyboardPicture::moveSelection(const KeyButton *from, Qt::Key key, bool isExtending)
{
    KeyButton *next = nullptr;
    switch (key) {
    case Qt::Key_Home: next = firstKey(); break;
    case Qt::Key_End: next = lastKey(); break;
    default: next = neighbour(from, key);
    }
    if (!next || !isExtending) {
        select(next);
        return;
    }
    next->setFocus(Qt::OtherFocusReason);
    Q_EMIT next->additionRequested();
}

void KeyboardPicture::select(KeyButton *button)
{
    if (!button)
        return;
    button->setFocus(Qt::OtherFocusReason);
    button->click();
}

void KeyboardPicture::showKeymap(const Keymap &keymap)
{
    for (KeyButton *button : std::as_const(mButtons)) {
        const LayoutLegends::Legend legend = LayoutLegends::legendOf(button->shape(), keymap);
        button->setLegend(legend.lower, legend.upper);
    }
    Q_EMIT legendsChanged();
}

void KeyboardPicture::followLayout()
{
    const QString platform = QGuiApplication::platformName();
    if (platform == "xcb"_L1) {
        auto *source = new X11Keymap({}, this);
        connect(source, &X11Keymap::changed, this, [this, source] { showKeymap(source->keymap()); });
        showKeymap(source->keymap());
    } else if (platform.startsWith("wayland"_L1)) {
        auto *source = new WaylandKeymap({}, this);
        connect(source, &WaylandKeymap::changed, this, [this, source] { showKeymap(source->keymap()); });
    }
}

void KeyboardPicture::setTabStop(KeyButton *button)
{
    if (mTabStop)
        mTabStop->setFocusPolicy(Qt::ClickFocus);
    mTabStop = button;
    if (mTabStop)
        mTabStop->setFocusPolicy(Qt::StrongFocus);
}

QSize KeyboardPicture::sizeHint() const
{
    return PictureLayout::sizeForUnit(preferredUnit);
}

QSize KeyboardPicture::minimumSizeHint() const
{
    return PictureLayout::sizeForUnit(smallestUnit);
}

int KeyboardPicture::heightForWidth(int width) const
{
    return PictureLayout::heightForWidth(width);
}

void KeyboardPicture::layOut()
{
    mLayout = PictureLayout(size());
    for (KeyButton *button : std::as_const(mButtons)) {
        button->setUnit(mLayout.unit());
        button->setGeometry(mLayout.placeOf(button->shape()));
    }
}

void KeyboardPicture::resizeEvent(QResizeEvent *)
{
    layOut();
}

void KeyboardPicture::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange || event->type() == QEvent::PaletteChange)
        update();
    QWidget::changeEvent(event);
}

QList<QRect> KeyboardPicture::keyPlaces() const
{
    QList<QRect> places;
    for (const KeyButton *button : mButtons)
        places += button->geometry();
    return places;
}

void KeyboardPicture::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const bool isActive = std::ranges::any_of(mButtons, [](const KeyButton *button) { return button->isEnabled(); });
    paintKeyboardCase(painter, mLayout.caseRect(), mLayout.unit(), palette(), isActive);
    if (isActive)
        mLight.paint(painter, keyPlaces(), mLayout.unit());
    paintWordmark(painter, mLayout.rectOf(wordmarkPlace), mLayout.unit(), localizedText("lkeyKeysWordmark"), palette(),
                  isActive);
    if (!mFollowsLayout) {
        mFollowsLayout = true;
        QTimer::singleShot(0, this, &KeyboardPicture::followLayout); // the first picture must not wait for it
    }
}

// SPDX-License-Identifier: MIT
// Draws the tab and the single-key sheet in both palettes and several sizes into the folder `screenshots` beside the
// tests, for a person to inspect. Checks that a screen with twice the dots shows more than an enlarged picture.
#include "tests/keys/keystesting.h"
#include "tests/support/testmain.h"

#include "keys/keyboardpicture.h"
#include "keys/keybutton.h"
#include "platform/distributednotificationcenter.h"
#include "platform/keymap.h"
#include "platform/popupbutton.h"
#include "platform/sheet.h"
#include "tests/support/picturefolder.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>

using namespace KeysTesting;

namespace {

QVariantMap workingKeys()
{
    return {{u"58"_s, entry(10, 0, 2)},
            {u"26"_s, entry(16, 80, 0)},
            {u"20"_s, entry(17, 1, 0)},
            {u"8"_s, entry(46, u"/Applications/Browser.app"_s, QString())},
            {u"57"_s, entry(20)},
            {u"83"_s, entry(16, 4, 0)},
            {u"106"_s, entry(10, 1, 255)},
            {u"107"_s, entry(10, 0, 1)},
            {u"111"_s, entry(17, 1, 0)},
            {u"140"_s, entry(10, 9, 1)},
            {u"227"_s, entry(20)},
            {u"96"_s, entry(16, 82, 0)},
            {u"53"_s, entry(16, 41, 0)},
            {u"78"_s, entry(30)},
            {u"88"_s, entry(46, u"/Applications/Calculator.app"_s, QString())},
            {u"40"_s, entry(10, 1, 254)}};
}

/// A tab with many assignments, another profile and two macros, with its keyboard attached.
struct RaidTab : Tab
{
    RaidTab()
        : Tab(profile(u"Raid night"_s, workingKeys()), {profile(u"Desktop"_s)},
              {macro(u"Opening burst"_s), macro(u"Heal"_s)})
    {
        controller->setControlsState(true);
    }

    [[nodiscard]] bool appears(int width, int height)
    {
        window.resize(width, height);
        window.show();
        return QTest::qWaitForWindowExposed(&window);
    }
};

QImage grabAt(QWidget &widget, qreal ratio)
{
    QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(widget.palette().color(QPalette::Window));
    widget.render(&image);
    return image;
}

} // namespace

class KeysScreenshotsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void drawsTheTab_data();
    void drawsTheTab();
    void drawsTheSearch_data();
    void drawsTheSearch();
    void drawsSeveralSelectedKeys_data();
    void drawsSeveralSelectedKeys();
    void drawsALongSubMenu_data() { drawsSeveralSelectedKeys_data(); }
    void drawsALongSubMenu();
    void drawsTheSingleKeySheet();
    void isSharpAtTwiceTheDots();

private:
    QTemporaryDir mResources;
};

void KeysScreenshotsTest::initTestCase()
{
    QVERIFY(loadTexts());
    qputenv("QUILL_KESTRA_RESOURCES", mResources.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", mResources.path().toLocal8Bit());
}

void KeysScreenshotsTest::drawsTheTab_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<int>("width");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<bool>("isEnabled");
    QTest::addColumn<QString>("selected");
    QTest::newRow("light-1100") << false << 1100 << 1.0 << true << u"mF1"_s;
    QTest::newRow("dark-1100") << true << 1100 << 1.0 << true << u"mF1"_s;
    QTest::newRow("light-1100-2x") << false << 1100 << 2.0 << true << u"mF1"_s;
    QTest::newRow("dark-1100-2x") << true << 1100 << 2.0 << true << u"mF1"_s;
    QTest::newRow("light-3800") << false << 3800 << 1.0 << true << u"mF1"_s;
    QTest::newRow("light-extra-key") << false << 1100 << 2.0 << true << u"mM2"_s;
    QTest::newRow("dark-extra-key") << true << 1100 << 2.0 << true << u"mM2"_s;
    QTest::newRow("light-num-lock") << false << 1100 << 2.0 << true << u"mNumlock"_s;
    QTest::newRow("light-macro-gone") << false << 1100 << 2.0 << true << u"mT7"_s;
    QTest::newRow("dark-unknown-kind") << true << 1100 << 2.0 << true << u"mPageDown"_s;
    QTest::newRow("light-absent") << false << 1100 << 1.0 << false << u"mF1"_s;
    QTest::newRow("dark-absent") << true << 1100 << 1.0 << false << u"mF1"_s;
}

void KeysScreenshotsTest::drawsTheTab()
{
    QFETCH(bool, isDark);
    QFETCH(int, width);
    QFETCH(double, ratio);
    QFETCH(bool, isEnabled);
    QFETCH(QString, selected);
    wearPalette(isDark);
    RaidTab tab;
    QVERIFY(tab.appears(width, width * 9 / 16));
    QTest::mouseClick(tab.key(qPrintable(selected)), Qt::LeftButton);
    tab.controller->setControlsState(isEnabled);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);

    const QImage image = grabAt(tab.window, ratio);
    QVERIFY(savePicture(image, u"keys"_s));
    QCOMPARE(image.width(), qRound(width * ratio));
}

void KeysScreenshotsTest::drawsTheSearch_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<QString>("query");
    QTest::newRow("light") << false << u"Heal"_s;
    QTest::newRow("dark") << true << u"Heal"_s;
    QTest::newRow("nothing") << false << u"Banana"_s;
    QTest::newRow("german") << false << u"z"_s;
}

void KeysScreenshotsTest::drawsTheSearch()
{
    QFETCH(bool, isDark);
    QFETCH(QString, query);
    wearPalette(isDark);
    RaidTab tab;
    QVERIFY(tab.appears(1100, 620));
    tab.find<QLineEdit>("mKeySearchField")->setText(query);
    QTest::keyClick(tab.find<QLineEdit>("mKeySearchField"), Qt::Key_Return);
    if (query == u"z"_s)
        tab.controller->picture()->showKeymap(Keymap::fromNames("de"));
    const QWidget *bar = tab.find<QLineEdit>("mKeySearchField")->parentWidget();
    QTRY_COMPARE(bar->width(), bar->sizeHint().width());
    QVERIFY(savePicture(grabAt(tab.window, 2), u"keys-search"_s));
}

void KeysScreenshotsTest::drawsSeveralSelectedKeys_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void KeysScreenshotsTest::drawsSeveralSelectedKeys()
{
    QFETCH(bool, isDark);
    wearPalette(isDark);
    RaidTab tab;
    QVERIFY(tab.appears(1100, 620));
    QTest::mouseClick(tab.key("mM2"), Qt::LeftButton);
    for (const char *key : {"mQ", "mCapsLock", "mR"})
        QTest::mouseClick(tab.key(key), Qt::LeftButton, Qt::ControlModifier);
    auto *popUp = tab.find<PopUpButton>("mAssignFunction");
    popUp->openMenuAt(tab.window.mapToGlobal(QPoint(300, 250)));
    QTRY_VERIFY(popUp->popUpMenu()->isVisible());
    QVERIFY(savePicture(pictureOf(&tab.window, popUp->popUpMenu(), QPoint(300, 250)), u"keys-several"_s));
}

void KeysScreenshotsTest::drawsALongSubMenu()
{
    QFETCH(bool, isDark);
    wearPalette(isDark);
    QVariantList macros;
    for (int number = 1; number <= 120; ++number)
        macros << macro(u"Macro %1"_s.arg(number));
    Tab tab(profile(u"Raid night"_s, {{u"4"_s, entry(10, 59, 1)}}), {profile(u"Desktop"_s)}, macros);
    tab.controller->setControlsState(true);
    tab.window.resize(1100, 820);
    tab.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tab.window));
    QTest::mouseClick(tab.key("mA"), Qt::LeftButton);
    QMenu *menu = tab.find<PopUpButton>("mAssignFunction")->submenuAtIndex(2);
    menu->popup({0, 0});
    QTRY_VERIFY(menu->activeAction());
    QCOMPARE(menuItemTitle(menu->activeAction()), u"Macro 60"_s);
    QVERIFY(savePicture(pictureOf(&tab.window, menu, QPoint(300, 10)), u"keys-long-menu"_s));
    menu->close();
}

void KeysScreenshotsTest::drawsTheSingleKeySheet()
{
    wearPalette(false);
    Tab tab(profile(u"Raid night"_s));
    tab.window.show();
    tab.find<PopUpButton>("mAssignFunction")->itemAtIndex(1)->trigger();
    auto *sheet = tab.find<Sheet>("mSingleKeyWindow");
    QVERIFY(QTest::qWaitForWindowExposed(sheet));
    tab.controller->singleKeyEvents({u"SingleKeyEvent271"_s, {{u"singleKey"_s, 6}, {u"singleKeyModif"_s, 8}}});
    QVERIFY(savePicture(grabAt(*sheet, 2), u"single-key-sheet-2x"_s));
}

void KeysScreenshotsTest::isSharpAtTwiceTheDots()
{
    wearPalette(false);
    Tab tab(profile(u"Raid night"_s, workingKeys()));
    tab.window.resize(1100, 620);
    tab.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tab.window));
    const QImage sharp = grabAt(*tab.controller->picture(), 2);
    const QImage enlarged =
        grabAt(*tab.controller->picture(), 1).scaled(sharp.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    int differing = 0;
    for (int y = 0; y < sharp.height(); ++y)
        for (int x = 0; x < sharp.width(); ++x)
            differing += std::abs(qGray(sharp.pixel(x, y)) - qGray(enlarged.pixel(x, y))) > 40;
    QVERIFY2(differing > 5000, qPrintable(QString::number(differing)));
}

QTEST_MAIN(KeysScreenshotsTest)
#include "keysscreenshotstest.moc"

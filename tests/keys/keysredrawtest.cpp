// SPDX-License-Identifier: MIT
// The parts that the keys tab paints and recreates after a change: only those that look different.
#include "tests/keys/keystesting.h"
#include "tests/support/testmain.h"

#include "base/propertylist.h"
#include "keys/keyboardpicture.h"
#include "platform/popupbutton.h"

#include <QApplication>
#include <QMenu>
#include <QPaintEvent>
#include <QPointer>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace KeysTesting;

namespace {

/// The keys painted since the construction.
class PaintedKeys : public QObject
{
public:
    explicit PaintedKeys(const KeyboardPicture *picture)
    {
        for (KeyButton *button : picture->buttons())
            button->installEventFilter(this);
    }

    [[nodiscard]] QStringList names() const
    {
        QStringList sorted(mNames.begin(), mNames.end());
        sorted.sort();
        return sorted;
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            mNames.insert(watched->objectName());
        return false;
    }

private:
    QSet<QString> mNames;
};

// Waits until every requested repaint is done. A posted event arrives after all pending ones, and a second one is
// needed because an event also requests a repaint.
void paintAll()
{
    for (int round = 0; round < 4; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

} // namespace

class KeysRedrawTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void selectingAKeyPaintsTwoKeys();
    void unchangedSettingsPaintNoKey();
    void changedEntryPaintsItsKey();
    void undoneHighlightPaintsNothing();
    void highlightedKeyIsPainted();
    void restoredKeyLooksLikeASelectedKey();
    void selectedMappedKeyIsNotDrawnHighlighted();
    void refreshAfterSelectingAMappedKeyPaintsNoKey();
    void disabledKeysLookDisabledAtOnce();
    void subMenusStayWhileTheirTitlesDo();
    void subMenuFollowsARenamedProfile();
    void subMenuFollowsTheActiveProfile();

private:
    void makeTab(const QVariantMap &keys = {});

    std::unique_ptr<QTemporaryDir> mResources;
    std::unique_ptr<Tab> mTab;
};

void KeysRedrawTest::initTestCase()
{
    QVERIFY2(loadTexts(), "the texts of the build tree are missing");
}

void KeysRedrawTest::init()
{
    mResources = std::make_unique<QTemporaryDir>();
    qputenv("QUILL_KESTRA_RESOURCES", mResources->path().toLocal8Bit());
    const QVariantMap plist{{u"Device Info"_s, QVariantMap{{u"Last selected key"_s, u"4"_s}}}};
    QVERIFY(
        PropertyList::writeFileAtomically(mResources->filePath(u"Kestra.plist"_s), *PropertyList::writeBinary(plist)));
    mTab.reset();
}

void KeysRedrawTest::makeTab(const QVariantMap &keys)
{
    mTab = std::make_unique<Tab>(profile(u"First"_s, keys), QVariantList{profile(u"Second"_s)},
                                 QVariantList{macro(u"Hello"_s)});
    mTab->window.resize(1200, 700);
    mTab->window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&mTab->window));
    paintAll();
}

void KeysRedrawTest::selectingAKeyPaintsTwoKeys()
{
    makeTab({{u"4"_s, entry(20)}, {u"15"_s, entry(17, 1)}});
    const PaintedKeys painted(mTab->controller->picture());
    mTab->controller->clickL(nullptr);
    paintAll();
    QCOMPARE(painted.names(), QStringList({u"mA"_s, u"mL"_s}));
}

void KeysRedrawTest::unchangedSettingsPaintNoKey()
{
    makeTab({{u"5"_s, entry(20)}, {u"15"_s, entry(17, 1)}});
    const PaintedKeys painted(mTab->controller->picture());
    mTab->controller->updateUISettings();
    paintAll();
    QCOMPARE(painted.names(), QStringList());
}

void KeysRedrawTest::changedEntryPaintsItsKey()
{
    makeTab({{u"5"_s, entry(20)}, {u"15"_s, entry(17, 1)}});
    const PaintedKeys painted(mTab->controller->picture());
    mTab->giveBack({{u"5"_s, entry(45)}, {u"15"_s, entry(17, 1)}});
    paintAll();
    QCOMPARE(painted.names(), QStringList(u"mB"_s));
}

void KeysRedrawTest::undoneHighlightPaintsNothing()
{
    makeTab();
    const PaintedKeys painted(mTab->controller->picture());
    mTab->key("mB")->highlight(true);
    mTab->key("mB")->highlight(false);
    paintAll();
    QCOMPARE(painted.names(), QStringList());
}

void KeysRedrawTest::highlightedKeyIsPainted()
{
    makeTab();
    const PaintedKeys painted(mTab->controller->picture());
    mTab->key("mB")->highlight(true);
    paintAll();
    QCOMPARE(painted.names(), QStringList(u"mB"_s));
}

void KeysRedrawTest::restoredKeyLooksLikeASelectedKey()
{
    makeTab();
    KeyButton *restored = mTab->key("mA");
    QCOMPARE(restored->state(), 0); // never pressed
    const QImage atStart = restored->grab().toImage();
    mTab->controller->clickL(nullptr);
    QVERIFY(restored->grab().toImage() != atStart);
    mTab->controller->clickA(nullptr);
    QCOMPARE(restored->grab().toImage(), atStart);
}

void KeysRedrawTest::selectedMappedKeyIsNotDrawnHighlighted()
{
    // The half of a key that does not contain the mark of its assignment.
    const auto cap = [this](const char *key) {
        const QImage image = mTab->key(key)->grab().toImage();
        return image.copy(0, 0, image.width() / 2, image.height());
    };
    makeTab();
    const QImage selected = cap("mA"); // restored at the start
    mTab->controller->clickL(nullptr);
    const QImage plain = cap("mA");

    makeTab({{u"4"_s, entry(10, 0)}});
    QCOMPARE(cap("mA"), selected);
    mTab->controller->updateUISettings();
    QCOMPARE(cap("mA"), selected);
    mTab->controller->clickL(nullptr);
    const QImage mapped = cap("mA");
    QVERIFY(mapped != plain);
    QVERIFY(mapped != selected);
    mTab->controller->updateUISettings();
    QCOMPARE(cap("mA"), mapped);
    mTab->controller->clickA(nullptr);
    QCOMPARE(cap("mA"), selected);
    mTab->controller->clickA(nullptr); // the second click on A
    QCOMPARE(cap("mA"), selected);
    mTab->controller->updateUISettings();
    QCOMPARE(cap("mA"), selected);
}

void KeysRedrawTest::refreshAfterSelectingAMappedKeyPaintsNoKey()
{
    makeTab({{u"15"_s, entry(10, 0)}});
    mTab->controller->clickL(nullptr);
    paintAll();
    const PaintedKeys painted(mTab->controller->picture());
    mTab->controller->updateUISettings();
    paintAll();
    QCOMPARE(painted.names(), QStringList());
}

void KeysRedrawTest::disabledKeysLookDisabledAtOnce()
{
    makeTab();
    const PaintedKeys painted(mTab->controller->picture());
    mTab->controller->setControlsState(false);
    paintAll();
    QCOMPARE(painted.names().size(), mTab->controller->picture()->buttons().size());
}

void KeysRedrawTest::subMenusStayWhileTheirTitlesDo()
{
    makeTab();
    const PopUpButton *popUp = mTab->find<PopUpButton>("mAssignFunction");
    const QPointer<QMenu> profiles = popUp->submenuAtIndex(3), macros = popUp->submenuAtIndex(2);
    mTab->giveBack({{u"5"_s, entry(20)}});
    QCOMPARE(popUp->submenuAtIndex(3), profiles.data());
    QCOMPARE(popUp->submenuAtIndex(2), macros.data());
}

void KeysRedrawTest::subMenuFollowsARenamedProfile()
{
    makeTab();
    const PopUpButton *popUp = mTab->find<PopUpButton>("mAssignFunction");
    mTab->controller->setMAllProfilesArray({profile(u"First"_s), profile(u"Renamed"_s)});
    mTab->controller->updateUISettings();
    QCOMPARE(menuItemTitle(popUp->submenuAtIndex(3)->actions().last()), u"Renamed"_s);
    QCOMPARE(menuItemTag(popUp->submenuAtIndex(3)->actions().last()), 2);
}

void KeysRedrawTest::subMenuFollowsTheActiveProfile()
{
    makeTab();
    const PopUpButton *popUp = mTab->find<PopUpButton>("mAssignFunction");
    const QAction *second = popUp->submenuAtIndex(3)->actions().last();
    QVERIFY(second->isVisible());
    mTab->controller->setMDeviceSettingsDict({{SettingsKeys::activeProfile, 1}});
    mTab->controller->updateUISettings();
    QVERIFY(!popUp->submenuAtIndex(3)->actions().last()->isVisible());
    QVERIFY(popUp->submenuAtIndex(3)->actions().at(2)->isVisible());
}

QTEST_MAIN(KeysRedrawTest)
#include "keysredrawtest.moc"

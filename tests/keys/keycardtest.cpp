// SPDX-License-Identifier: MIT
// The card under the picture: what it shows for each kind of assignment, for several keys and without a key, after a
// change, for eyes and for screen readers.
#include "tests/keys/keystesting.h"
#include "tests/support/testmain.h"

#include "keys/keyboardpicture.h"
#include "keys/keycard.h"
#include "keys/macropreview.h"
#include "macros/macrorecord.h"
#include "tests/support/drawncontrols.h"
#include "tests/support/picturefolder.h"
#include "tests/support/writtenfile.h"

#include <QAccessible>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace KeysTesting;

namespace {

constexpr double leastTextContrast = 4.5; // WCAG 2, 1.4.3

QVariant event(int command, int delayMs, uint key)
{
    return MacroRecord::eventRecord({command, delayMs, MacroRecord::keyboardPage, key});
}

/// Presses A for 0.1 s and, after 1.4 s, B for 0.5 s.
QVariantMap macroOfTwoKeys(const QString &name)
{
    return MacroRecord::withEvents(macro(name),
                                   {event(1, 0, 4), event(0, 100, 4), event(1, 1400, 5), event(0, 500, 5)});
}

std::unique_ptr<Tab> tabWith(const QVariantMap &keys)
{
    auto tab = std::make_unique<Tab>(
        profile(u"Raid"_s, keys),
        QVariantList{profile(u"Desktop"_s, {{u"4"_s, entry(20)}, {u"5"_s, entry(20)}, {u"6"_s, entry(45)}})},
        QVariantList{macroOfTwoKeys(u"Heal"_s), macro(u"Empty"_s)});
    tab->controller->setControlsState(true);
    return tab;
}

const KeyCard *cardOf(const Tab &tab)
{
    return tab.find<KeyCard>("mKeyCard");
}

QString shownText(const Tab &tab, const char *label)
{
    const auto *found = tab.find<QLabel>(label);
    return found->isHidden() ? QString() : found->text();
}

QString accessibleText(QWidget *widget, QAccessible::Text text)
{
    return QAccessible::queryAccessibleInterface(widget)->text(text);
}

} // namespace

class KeyCardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void describesTheAssignment_data();
    void describesTheAssignment();
    void showsTheNameOfTheApplication();
    void showsTheCapOfTheKey();
    void explainsAnExtraKeyWithoutAssignment();
    void followsAChange();
    void followsTheMacro();
    void showsTheBarsOfTheMacro();
    void emptyMacroOffersTheMacrosTab();
    void severalKeysWithOneAssignment();
    void severalKeysWithDifferentAssignments();
    void saysWhatToDoWithoutAKey();
    void screenReadersFindTheWholeCard();
    void longNamesDoNotWidenTheWindow();
    void keepsItsHeight();
    void textsAreReadable_data();
    void textsAreReadable();

private:
    QTemporaryDir mFolder;
};

void KeyCardTest::initTestCase()
{
    QVERIFY(loadTexts());
    qputenv("QUILL_KESTRA_RESOURCES", mFolder.path().toLocal8Bit());
    qputenv("XDG_DATA_HOME", mFolder.path().toLocal8Bit());
}

void KeyCardTest::describesTheAssignment_data()
{
    QTest::addColumn<QVariantMap>("assigned");
    QTest::addColumn<int>("mark");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("detail");
    QTest::addColumn<QString>("problem");
    const QString none;
    QTest::newRow("nothing stored") << QVariantMap() << int(KeyMark::none) << u"Default key"_s
                                    << u"The key works as usual."_s << none;
    QTest::newRow("default key") << entry(45, 4) << int(KeyMark::none) << u"Default key"_s
                                 << u"The key works as usual."_s << none;
    QTest::newRow("single key") << entry(16, 5, 2) << int(KeyMark::singleKey) << u"Single key: Left Shift + B"_s
                                << u"The computer receives this key instead of the pressed one."_s << none;
    QTest::newRow("macro") << entry(10, 0, 2) << int(KeyMark::macro) << u"Macro: Heal (Play 2 times)"_s
                           << u"Events: 4 · 2.0 s"_s << none;
    QTest::newRow("macro without events") << entry(10, 1, 1) << int(KeyMark::macro) << u"Macro: Empty (Play once)"_s
                                          << u"This macro has no events yet. Record them on the Macros tab."_s << none;
    QTest::newRow("macro that is gone")
        << entry(10, 9, 1) << int(KeyMark::macro) << u"Macro: no. 10 (does not exist)"_s << none
        << u"This key plays a macro that no longer exists. It does nothing until you choose another assignment."_s;
    QTest::newRow("profile") << entry(17, 1) << int(KeyMark::profile) << u"Switch profile: Desktop"_s
                             << u"Assigned keys in this profile: 2"_s << none;
    QTest::newRow("profile that is gone")
        << entry(17, 5) << int(KeyMark::profile) << u"Switch profile: no. 6 (does not exist)"_s << none
        << u"This key switches to a profile that no longer exists. It does nothing until you choose another assignment."_s;
    QTest::newRow("program that is gone")
        << entry(46, u"/nowhere/Tool.app"_s, QString()) << int(KeyMark::launchProgram) << u"Launch program: Tool"_s
        << u"This program was removed. Choose another assignment."_s << none;
    QTest::newRow("disabled") << entry(20) << int(KeyMark::disabled) << u"Disable key"_s << u"The key does nothing."_s
                              << none;
    QTest::newRow("unknown") << entry(30) << int(KeyMark::other) << u"Unknown assignment"_s << none
                             << u"This program does not know the kind of assignment that this key has. The key does "
                                "nothing until you choose another assignment."_s;
}

void KeyCardTest::describesTheAssignment()
{
    QFETCH(QVariantMap, assigned);
    const auto tab = tabWith({{u"4"_s, assigned}});
    tab->window.resize(1100, 700);
    tab->window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tab->window));
    tab->key("mA")->click();
    QCOMPARE(shownText(*tab, "mSelectedKeyLabel"), u"A"_s);
    QTEST(int(cardOf(*tab)->content().mark), "mark");
    QTEST(shownText(*tab, "mAssignmentWords"), "words");
    QTEST(shownText(*tab, "mAssignmentDetail"), "detail");
    QTEST(shownText(*tab, "mAssignmentProblemLabel"), "problem");
    // The card and the key use the same words.
    QTEST(tab->key("mA")->accessibleDescription(), "words");
}

void KeyCardTest::showsTheNameOfTheApplication()
{
    const QString path = mFolder.filePath(u"org.example.Tool.desktop"_s);
    QPixmap red(32, 32);
    red.fill(Qt::red);
    const QString icon = mFolder.filePath(u"tool.png"_s);
    QVERIFY(red.save(icon));
    writeDesktopEntry(path, "Name=Handy Tool\nExec=true\nIcon=" + icon.toUtf8());
    const auto tab = tabWith({{u"4"_s, entry(46, path, QString())}});
    tab->window.resize(1100, 700);
    tab->window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tab->window));
    tab->key("mA")->click();
    QCOMPARE(shownText(*tab, "mAssignmentDetail"), u"Handy Tool"_s);
    const auto redDots = [&] {
        const QImage picture = drawn(tab->find<QWidget>("mKeyCard"));
        int count = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                count += QColor(picture.pixel(x, y)) == QColor(Qt::red);
        return count;
    };
    QVERIFY(redDots() > 100);
    tab->key("mB")->click();
    QCOMPARE(redDots(), 0);
}

void KeyCardTest::showsTheCapOfTheKey()
{
    const auto tab = tabWith({{u"28"_s, entry(20)}});
    tab->key("mY")->click();
    QCOMPARE(cardOf(*tab)->content().shape, &tab->key("mY")->shape());
    QCOMPARE(cardOf(*tab)->content().legend, u"Y"_s);
    tab->key("mY")->setLegend(u"Z"_s, {});
    Q_EMIT tab->controller->picture()->legendsChanged();
    QCOMPARE(cardOf(*tab)->content().legend, u"Z"_s);
    QCOMPARE(shownText(*tab, "mSelectedKeyLabel"), u"Z (key Y)"_s);
}

void KeyCardTest::explainsAnExtraKeyWithoutAssignment()
{
    const auto tab = tabWith({});
    tab->key("mM2")->click();
    QCOMPARE(shownText(*tab, "mAssignmentDetail"),
             u"An extra key. Most programs ignore it until you assign something to it."_s);
}

void KeyCardTest::followsAChange()
{
    const auto tab = tabWith({});
    tab->window.resize(1100, 700);
    tab->window.show();
    tab->key("mA")->click();
    tab->giveBack({{u"4"_s, entry(20)}});
    QCOMPARE(shownText(*tab, "mAssignmentWords"), u"Disable key"_s);
    tab->giveBack({{u"4"_s, entry(10, 0, 1)}});
    QCOMPARE(shownText(*tab, "mAssignmentWords"), u"Macro: Heal (Play once)"_s);
    tab->key("mB")->click();
    QCOMPARE(shownText(*tab, "mAssignmentWords"), u"Default key"_s);
    QVERIFY(tab->find<MacroPreview>("mMacroPreview")->isHidden());
}

void KeyCardTest::followsTheMacro()
{
    const auto tab = tabWith({{u"4"_s, entry(10, 1, 1)}});
    tab->key("mA")->click();
    tab->controller->setMAllMacrosArray({macroOfTwoKeys(u"Heal"_s), macroOfTwoKeys(u"Empty no more"_s)});
    tab->controller->updateUISettings();
    QCOMPARE(shownText(*tab, "mAssignmentDetail"), u"Events: 4 · 2.0 s"_s);
    tab->controller->setMAllMacrosArray({macroOfTwoKeys(u"Heal"_s)});
    tab->controller->updateUISettings();
    QVERIFY(shownText(*tab, "mAssignmentProblemLabel").contains(u"no longer exists"_s));
    QVERIFY(tab->find<MacroPreview>("mMacroPreview")->isHidden());
}

void KeyCardTest::showsTheBarsOfTheMacro()
{
    const auto tab = tabWith({{u"4"_s, entry(10, 0, 1)}});
    tab->key("mA")->click();
    auto *preview = tab->find<MacroPreview>("mMacroPreview");
    QVERIFY(!preview->isHidden());
    QCOMPARE(preview->timeline().bars.size(), 2);
    QCOMPARE(accessibleText(preview, QAccessible::Name), u"Keys of the macro: A, B"_s);
}

void KeyCardTest::emptyMacroOffersTheMacrosTab()
{
    const auto tab = tabWith({{u"4"_s, entry(10, 1, 1)}, {u"5"_s, entry(10, 0, 1)}});
    auto *button = tab->find<QPushButton>("mRecordFromCard");
    tab->key("mB")->click();
    QVERIFY(button->isHidden());
    tab->key("mA")->click();
    QVERIFY(!button->isHidden());
    button->click();
    QCOMPARE(tab->delegate.calls, QStringList{u"selectTabAtIndex 2"_s});
}

void KeyCardTest::severalKeysWithOneAssignment()
{
    const auto tab = tabWith({{u"4"_s, entry(20)}, {u"5"_s, entry(20)}});
    tab->window.resize(1100, 700);
    tab->window.show();
    tab->key("mA")->click();
    QTest::mouseClick(tab->key("mB"), Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(cardOf(*tab)->content().keys, 2);
    QCOMPARE(shownText(*tab, "mSelectedKeyLabel"), u"B and 1 more"_s);
    QCOMPARE(shownText(*tab, "mAssignmentWords"), u"Disable key"_s);
    QCOMPARE(shownText(*tab, "mAssignmentDetail"), u"A choice here changes all 2 selected keys."_s);
}

void KeyCardTest::severalKeysWithDifferentAssignments()
{
    const auto tab = tabWith({{u"4"_s, entry(20)}, {u"5"_s, entry(10, 0, 1)}});
    tab->window.resize(1100, 700);
    tab->window.show();
    tab->key("mA")->click();
    QTest::mouseClick(tab->key("mB"), Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(shownText(*tab, "mAssignmentWords"), u"Different assignments"_s);
    QCOMPARE(int(cardOf(*tab)->content().mark), int(KeyMark::none));
    QVERIFY(tab->find<MacroPreview>("mMacroPreview")->isHidden());
    tab->giveBack({{u"4"_s, entry(20)}, {u"5"_s, entry(20)}});
    QCOMPARE(shownText(*tab, "mAssignmentWords"), u"Disable key"_s);
}

void KeyCardTest::saysWhatToDoWithoutAKey()
{
    QMainWindow window;                // outlives the controller, which deletes a view without a window
    KeyboardKeysController controller; // has received no settings, and therefore no key
    window.setCentralWidget(controller.view());
    window.resize(1100, 700);
    controller.awakeFromNib();
    controller.populateUIControls();
    controller.updatePopUpSelection();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(window.findChild<QLabel *>(u"mSelectedKeyLabel"_s)->isHidden());
    QCOMPARE(window.findChild<QLabel *>(u"mAssignmentWords"_s)->text(),
             u"Select a key in the picture to see and change its assignment."_s);
}

void KeyCardTest::screenReadersFindTheWholeCard()
{
    const auto tab = tabWith({{u"4"_s, entry(10, 0, 1)}, {u"5"_s, entry(10, 9, 1)}});
    auto *card = tab->find<QWidget>("mKeyCard");
    tab->key("mA")->click();
    QCOMPARE(QAccessible::queryAccessibleInterface(card)->role(), QAccessible::Grouping);
    QCOMPARE(accessibleText(card, QAccessible::Name), u"Selected key: A"_s);
    QCOMPARE(accessibleText(card, QAccessible::Description),
             u"Macro: Heal (Play once). Events: 4 · 2.0 s. Keys of the macro: A, B"_s);
    tab->key("mB")->click();
    QCOMPARE(accessibleText(card, QAccessible::Name), u"Selected key: B"_s);
    QVERIFY(accessibleText(card, QAccessible::Description).contains(u"a macro that no longer exists"_s));
}

void KeyCardTest::longNamesDoNotWidenTheWindow()
{
    const QString name = u"Endless"_s.repeated(100);
    Tab tab(profile(u"Raid"_s, {{u"4"_s, entry(10, 0, 1)}}), {}, {macroOfTwoKeys(name)});
    const int width = tab.window.minimumSizeHint().width();
    tab.key("mA")->click();
    tab.window.resize(1100, 700);
    tab.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tab.window));
    QCOMPARE(tab.window.minimumSizeHint().width(), width);
    const auto *words = tab.find<QLabel>("mAssignmentWords");
    QVERIFY(words->text().endsWith(u'…'));
    QVERIFY(words->toolTip().contains(name));
}

void KeyCardTest::keepsItsHeight()
{
    const auto tab = tabWith({{u"4"_s, entry(10, 0, 1)}, {u"5"_s, entry(10, 9, 1)}, {u"6"_s, entry(10, 1, 1)}});
    tab->window.resize(1100, 700);
    tab->window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tab->window));
    const int height = cardOf(*tab)->height();
    for (const char *key : {"mA", "mB", "mC", "mD", "mM2", "mSpace"}) {
        tab->key(key)->click();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        QVERIFY2(cardOf(*tab)->height() == height, key);
    }
}

void KeyCardTest::textsAreReadable_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<QString>("outlet");
    for (const bool isDark : {false, true}) {
        for (const char *outlet : {"mA", "mB", "mC", "mD", "mE", "mF"})
            QTest::addRow("%s-%s", outlet, isDark ? "dark" : "light") << isDark << QString::fromLatin1(outlet);
    }
}

void KeyCardTest::textsAreReadable()
{
    QFETCH(bool, isDark);
    QFETCH(QString, outlet);
    wearPalette(isDark);
    const auto tab = tabWith({{u"4"_s, entry(10, 0, 1)},
                              {u"5"_s, entry(10, 9, 1)},
                              {u"6"_s, entry(10, 1, 1)},
                              {u"7"_s, entry(16, 80)},
                              {u"8"_s, entry(17, 1)},
                              {u"9"_s, entry(46, u"/nowhere/Tool.app"_s, QString())}});
    tab->window.resize(1100, 700);
    tab->window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tab->window));
    tab->key(qPrintable(outlet))->click();
    QCoreApplication::processEvents(); // a changed palette reaches the widgets by events
    QVERIFY(savePicture(drawn(&tab->window), u"card"_s));
    const QStringList faults = cutTexts(&tab->window) + faintTexts(&tab->window, leastTextContrast);
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
}

QTEST_MAIN(KeyCardTest)
#include "keycardtest.moc"

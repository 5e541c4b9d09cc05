// SPDX-License-Identifier: MIT
// Selecting keys, redrawing, the last selected key, clean-up and accessibility of the keys tab, with real widgets.
#include "tests/keys/keystesting.h"
#include "tests/support/testmain.h"

#include "base/propertylist.h"
#include "base/text.h"
#include "keys/keyboardpicture.h"
#include "keys/keylayout.h"
#include "keys/keynames.h"
#include "platform/popupbutton.h"

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace KeysTesting;

class KeyboardKeysControllerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void everyOutletHasItsName();
    void hasItsInitialStateAfterAwakening();
    void everyKeySelectsItselfBothWays();
    void onlyFunctionKeysSetTheFlag();
    void fixedKeysSelectNothing_data();
    void fixedKeysSelectNothing();
    void selectionMovesTheOnOffTypeAndThePressedState();
    void previousMappedKeyIsLeftHighlighted();
    void previousUnmappedKeyIsNotHighlighted();
    void clickingTheSelectedKeyAgainKeepsItSelected();
    void actionUsesItsOwnOutletNotTheSender();
    void updateCurrentButtonIgnoresCodesOutsideTheLayout_data();
    void updateCurrentButtonIgnoresCodesOutsideTheLayout();
    void updateCurrentButtonFindsM1();
    void highlightsMappedKeysExceptTheSelectedKey();
    void redrawClearsUnmappedKeys();
    void resetKeysLeavesFixedKeysAlone();
    void laterRedrawsKeepTheSelection();
    void showsTheActiveProfilesName();
    void readsGameModeFromTheDeviceSettings();

    void emptyLastSelectedKeyIsEsc();
    void restoresTheLastSelectedKey();
    void restoresAFunctionKeyWithItsName();
    void lastSelectedKeyOutsideTheLayoutSelectsNoButton();
    void assignsNothingToAnInvalidKey_data();
    void assignsNothingToAnInvalidKey();
    void savesOnlyTheLastSelectedKey();
    void missingFileIsNotCreated();

    void controlsStateReachesEveryControl();
    void absentKeyboardLooksInactive();
    void pictureIsAsLargeAsTheWindowAllows_data();
    void pictureIsAsLargeAsTheWindowAllows();

    void cleanUpSendsTheRepairedProfiles();
    void cleanUpSendsNothingWhenNothingChanged();
    void cleanUpWithoutProfilesSendsNothing();

    void everyControlHasAnAccessibleName();
    void everySelectableKeyDescribesItsAction();
    void namesFromFilesAreNotMarkup();
    void namesFromFilesStayOnTheirLine();
    void tabKeyReachesKeysAndPopUps();
    void arrowKeysSelectKeys();
    void worksWithoutADelegate();

private:
    void writePlist(const QVariantMap &plist);
    [[nodiscard]] QVariantMap readPlist() const;
    [[nodiscard]] QString plistPath() const { return mResources->filePath(u"Kestra.plist"_s); }

    std::unique_ptr<QTemporaryDir> mResources;
};

void KeyboardKeysControllerTest::initTestCase()
{
    QVERIFY2(loadTexts(), "the texts of the build tree are missing");
}

void KeyboardKeysControllerTest::init()
{
    mResources = std::make_unique<QTemporaryDir>();
    qputenv("QUILL_KESTRA_RESOURCES", mResources->path().toLocal8Bit());
    writePlist({{u"Device Info"_s, QVariantMap{{u"Last selected key"_s, QString()}}}});
}

void KeyboardKeysControllerTest::writePlist(const QVariantMap &plist)
{
    const std::optional<QByteArray> data = PropertyList::writeBinary(plist);
    QVERIFY(data);
    QVERIFY(PropertyList::writeFileAtomically(plistPath(), *data));
}

QVariantMap KeyboardKeysControllerTest::readPlist() const
{
    return PropertyList::readPropertyListFile(plistPath()).valueOr({});
}

void KeyboardKeysControllerTest::everyOutletHasItsName()
{
    const Tab tab(profile(u"P"_s));
    for (const KeyRow &row : KeyLayout::selectableKeys())
        QVERIFY2(tab.window.findChild<KeyButton *>(row.outlet), qPrintable(QString(row.outlet)));
    for (const FixedKeyRow &row : KeyLayout::fixedKeys())
        QVERIFY2(tab.window.findChild<KeyButton *>(row.outlet), qPrintable(QString(row.outlet)));
    QVERIFY(tab.find<QGroupBox>("mKeysBox"));
    QVERIFY(tab.find<QGroupBox>("mKeysBox")->isAncestorOf(tab.key("mA")));
    for (const char *name : {"mAssignFunction", "mMacroPlaybackPopUp"})
        QVERIFY2(tab.find<PopUpButton>(name), name);
    for (const char *name : {"mAssignLabel", "mPlaybackOptionLabel", "mFunctionKeysInfoLabel", "mFunctionKeysInfoImage",
                             "mProfileNameLabel", "mCurrentProfileLabel", "mSingleKeyInputLabel"})
        QVERIFY2(tab.find<QLabel>(name), name);
    QVERIFY(tab.find<QLineEdit>("mSingleKeyInput"));
    QVERIFY(tab.find<QPushButton>("mSingleKeyOK"));
    QVERIFY(tab.find<QPushButton>("mSingleKeyCancel"));
}

void KeyboardKeysControllerTest::hasItsInitialStateAfterAwakening()
{
    KeyboardKeysController controller;
    controller.setMKeysCurrentProfileDict(profile(u"P"_s));
    controller.awakeFromNib();
    const auto isHidden = [&](const char *name) {
        return controller.view()->findChild<QWidget *>(QString::fromLatin1(name))->isHidden();
    };
    QVERIFY(isHidden("mMacroPlaybackPopUp"));
    QVERIFY(isHidden("mPlaybackOptionLabel"));
    QVERIFY(isHidden("mFunctionKeysInfoLabel"));
    QVERIFY(isHidden("mFunctionKeysInfoImage"));
    for (const FixedKeyRow &row : KeyLayout::fixedKeys())
        QCOMPARE(controller.picture()->button(row.outlet)->isEnabled(), !row.disabledAtStart);
    QVERIFY(controller.isFirstLaunch());
    QVERIFY(!controller.gameMode());
    QVERIFY(!controller.isFunctionKeySelected());
    QVERIFY(controller.selectedKey().isEmpty());
    QVERIFY(controller.keysCurrentProfileDict().isEmpty());
}

void KeyboardKeysControllerTest::everyKeySelectsItselfBothWays()
{
    Tab tab(profile(u"P"_s));
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        KeyButton *button = tab.controller->picture()->button(row.outlet);
        button->click();
        QCOMPARE(tab.controller->selectedKey(), QString::number(row.code));
        QCOMPARE(tab.controller->currentButton(), button);
        QCOMPARE(tab.controller->currentButtonValue(), QString::number(row.code));
        QVERIFY(button->isShownSelected());
    }
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        tab.controller->updateCurrentButton(row.code);
        QCOMPARE(tab.controller->currentButton()->objectName(), row.outlet);
        QCOMPARE(tab.controller->currentButtonValue(), QString::number(row.code));
    }
}

void KeyboardKeysControllerTest::onlyFunctionKeysSetTheFlag()
{
    Tab tab(profile(u"P"_s));
    for (const KeyRow &row : KeyLayout::selectableKeys()) {
        tab.controller->picture()->button(row.outlet)->click();
        QCOMPARE(tab.controller->isFunctionKeySelected(), row.isFunctionKey());
        if (row.isFunctionKey())
            QCOMPARE(tab.controller->keyName(), row.functionKeyName);
    }
}

void KeyboardKeysControllerTest::fixedKeysSelectNothing_data()
{
    QTest::addColumn<QString>("outlet");
    for (const FixedKeyRow &row : KeyLayout::fixedKeys())
        QTest::addRow("%s", row.outlet.data()) << QString(row.outlet);
}

void KeyboardKeysControllerTest::fixedKeysSelectNothing()
{
    QFETCH(QString, outlet);
    Tab tab(profile(u"P"_s));
    tab.controller->setControlsState(true);
    tab.key("mA")->click();
    KeyButton *fixed = tab.window.findChild<KeyButton *>(outlet);
    QTest::mouseClick(fixed, Qt::LeftButton);
    QCOMPARE(tab.controller->selectedKey(), u"4"_s);
    QCOMPARE(tab.controller->currentButton(), tab.key("mA"));
    QVERIFY(!fixed->isShownSelected());
    QVERIFY(tab.delegate.calls.isEmpty());
    tab.controller->clickKeyboardButton(fixed);
    QCOMPARE(tab.controller->selectedKey(), u"4"_s);
}

void KeyboardKeysControllerTest::selectionMovesTheOnOffTypeAndThePressedState()
{
    Tab tab(profile(u"P"_s));
    tab.key("mA")->click();
    QCOMPARE(tab.key("mA")->buttonType(), KeyButton::Type::onOff);
    QCOMPARE(tab.key("mA")->state(), 1);
    QCOMPARE(tab.controller->previousButton(), tab.key("mESC")); // restored at the start
    QCOMPARE(tab.key("mESC")->buttonType(), KeyButton::Type::momentaryPushIn);
    tab.key("mB")->click();
    QCOMPARE(tab.key("mA")->buttonType(), KeyButton::Type::momentaryPushIn);
    QCOMPARE(tab.key("mA")->state(), 0);
    QCOMPARE(tab.key("mB")->state(), 1);
    QCOMPARE(tab.controller->previousButton(), tab.key("mA"));
    QCOMPARE(tab.controller->previousButtonValue(), u"4"_s);
}

void KeyboardKeysControllerTest::previousMappedKeyIsLeftHighlighted()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(20)}}));
    tab.key("mA")->click();
    tab.controller->updateUISettings();
    QVERIFY(!tab.key("mA")->isHighlighted());
    tab.key("mB")->click();
    QVERIFY(tab.key("mA")->isHighlighted());
}

void KeyboardKeysControllerTest::previousUnmappedKeyIsNotHighlighted()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(45)}}));
    tab.key("mA")->click();
    tab.key("mB")->click();
    QVERIFY(!tab.key("mA")->isHighlighted());
}

void KeyboardKeysControllerTest::clickingTheSelectedKeyAgainKeepsItSelected()
{
    Tab tab(profile(u"P"_s));
    tab.key("mA")->click();
    tab.key("mA")->click();
    QCOMPARE(tab.key("mA")->state(), 1);
    QVERIFY(tab.key("mA")->isShownSelected());
    QCOMPARE(tab.controller->currentButton(), tab.key("mA"));
}

void KeyboardKeysControllerTest::actionUsesItsOwnOutletNotTheSender()
{
    Tab tab(profile(u"P"_s));
    tab.controller->clickA(tab.key("mB"));
    QCOMPARE(tab.controller->currentButton(), tab.key("mA"));
    QVERIFY(!tab.key("mB")->isShownSelected());
}

void KeyboardKeysControllerTest::updateCurrentButtonIgnoresCodesOutsideTheLayout_data()
{
    QTest::addColumn<int>("code");
    for (const int code : {-1, 0, 3, 100, 232})
        QTest::addRow("%d", code) << code;
}

void KeyboardKeysControllerTest::updateCurrentButtonIgnoresCodesOutsideTheLayout()
{
    QFETCH(int, code);
    Tab tab(profile(u"P"_s));
    tab.key("mA")->click();
    tab.key("mA")->setButtonType(KeyButton::Type::momentaryPushIn);
    tab.controller->updateCurrentButton(code);
    QCOMPARE(tab.controller->currentButton(), tab.key("mA"));
    QCOMPARE(tab.controller->currentButtonValue(), u"4"_s);
    QCOMPARE(tab.key("mA")->buttonType(), KeyButton::Type::onOff); // stored in any case
}

void KeyboardKeysControllerTest::updateCurrentButtonFindsM1()
{
    Tab tab(profile(u"P"_s));
    tab.controller->updateCurrentButton(106);
    QCOMPARE(tab.controller->currentButton(), tab.key("mM1"));
    QCOMPARE(tab.controller->currentButtonValue(), u"106"_s);
}

void KeyboardKeysControllerTest::highlightsMappedKeysExceptTheSelectedKey()
{
    Tab tab(profile(u"P"_s, {{u"41"_s, entry(20)}, // Esc, the selected key at the start
                             {u"4"_s, entry(20)},
                             {u"5"_s, entry(30)},
                             {u"6"_s, entry(45)},
                             {u"7"_s, QVariantMap()},
                             {u"8"_s, entry(-10)},
                             {u"106"_s, entry(10)}}));
    QStringList highlighted;
    for (const KeyButton *button : tab.controller->picture()->buttons())
        if (button->isHighlighted())
            highlighted << button->objectName();
    highlighted.sort();
    QCOMPARE(highlighted, (QStringList{u"mA"_s, u"mB"_s, u"mM1"_s}));
    QVERIFY(tab.controller->isKeyMapped(41));
    QVERIFY(!tab.controller->isKeyMapped(6));
    QVERIFY(!tab.controller->isKeyMapped(1000));
}

void KeyboardKeysControllerTest::redrawClearsUnmappedKeys()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(20)}}));
    QVERIFY(tab.key("mA")->isHighlighted());
    QCOMPARE(tab.key("mA")->mark(), KeyMark::disabled);
    tab.giveBack({{u"4"_s, entry(45)}});
    QVERIFY(!tab.key("mA")->isHighlighted());
    QCOMPARE(tab.key("mA")->mark(), KeyMark::none);
}

void KeyboardKeysControllerTest::resetKeysLeavesFixedKeysAlone()
{
    Tab tab(profile(u"P"_s));
    for (KeyButton *button : tab.controller->picture()->buttons())
        button->highlight(true);
    tab.controller->resetKeys();
    for (const KeyButton *button : tab.controller->picture()->buttons())
        QCOMPARE(button->isHighlighted(), !button->isSelectable());
}

void KeyboardKeysControllerTest::laterRedrawsKeepTheSelection()
{
    Tab tab(profile(u"P"_s));
    QVERIFY(!tab.controller->isFirstLaunch());
    tab.key("mQ")->click();
    writePlist({{u"Device Info"_s, QVariantMap{{u"Last selected key"_s, u"5"_s}}}});
    tab.controller->updateUISettings();
    QCOMPARE(tab.controller->selectedKey(), u"20"_s);
    QVERIFY(tab.key("mQ")->isShownSelected());
    QCOMPARE(tab.key("mQ")->state(), 1);
}

void KeyboardKeysControllerTest::showsTheActiveProfilesName()
{
    const Tab tab(profile(u"Raid & <b>night</b>"_s));
    QCOMPARE(tab.find<QLabel>("mProfileNameLabel")->text(), u"Raid & <b>night</b>"_s);
    QCOMPARE(tab.find<QLabel>("mProfileNameLabel")->textFormat(), Qt::PlainText);
}

void KeyboardKeysControllerTest::readsGameModeFromTheDeviceSettings()
{
    Tab tab(profile(u"P"_s), {}, {}, {{u"ActiveProfile"_s, 0}, {u"GameMode"_s, true}});
    QVERIFY(tab.controller->gameMode());
    tab.controller->setMDeviceSettingsDict({{u"ActiveProfile"_s, 0}});
    tab.controller->updateUISettings();
    QVERIFY(!tab.controller->gameMode());
}

void KeyboardKeysControllerTest::emptyLastSelectedKeyIsEsc()
{
    const Tab tab(profile(u"P"_s));
    QCOMPARE(tab.controller->selectedKey(), u"41"_s);
    QCOMPARE(tab.controller->currentButton(), tab.key("mESC"));
    QVERIFY(tab.key("mESC")->isShownSelected());
    QVERIFY(!tab.controller->isFirstLaunch());
}

void KeyboardKeysControllerTest::restoresTheLastSelectedKey()
{
    const QVariantMap info{{u"Last selected key"_s, u"225"_s}, {u"other"_s, 1}};
    writePlist({{u"Device Info"_s, info}});
    const Tab tab(profile(u"P"_s, {{u"225"_s, entry(20)}}));
    QCOMPARE(tab.controller->selectedKey(), u"225"_s);
    QCOMPARE(tab.controller->currentButtonValue(), u"225"_s);
    QCOMPARE(tab.controller->currentButton(), tab.key("mLeftShift"));
    QCOMPARE(tab.controller->devicePlist(), info);
    QCOMPARE(tab.find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(), 5);
}

void KeyboardKeysControllerTest::restoresAFunctionKeyWithItsName()
{
    writePlist({{u"Device Info"_s, QVariantMap{{u"Last selected key"_s, u"105"_s}}}});
    const Tab tab(profile(u"P"_s));
    QVERIFY(tab.controller->isFunctionKeySelected());
    QCOMPARE(tab.controller->keyName(), u"F14"_s);
}

void KeyboardKeysControllerTest::lastSelectedKeyOutsideTheLayoutSelectsNoButton()
{
    writePlist({{u"Device Info"_s, QVariantMap{{u"Last selected key"_s, u"100"_s}}}});
    Tab tab(profile(u"P"_s));
    QVERIFY(!tab.controller->currentButton());
    QCOMPARE(tab.controller->currentButtonValue(), u"100"_s);
    tab.key("mA")->click();
    QCOMPARE(tab.controller->currentButton(), tab.key("mA"));
}

void KeyboardKeysControllerTest::assignsNothingToAnInvalidKey_data()
{
    QTest::addColumn<QString>("lastSelected");
    for (const QString &text : {u"100"_s, u"garbage"_s, u"-1"_s, u"99999999999"_s})
        QTest::newRow(qUtf8Printable(text)) << text;
}

void KeyboardKeysControllerTest::assignsNothingToAnInvalidKey()
{
    QFETCH(QString, lastSelected);
    writePlist({{u"Device Info"_s, QVariantMap{{u"Last selected key"_s, lastSelected}}}});
    Tab tab(profile(u"P"_s));
    auto *assignments = tab.find<PopUpButton>("mAssignFunction");
    const int shown = assignments->indexOfSelectedItem();
    for (const int position : {KeyMappings::disablePosition, KeyMappings::defaultKeyPosition})
        assignments->itemAtIndex(position)->trigger();
    QCOMPARE(tab.delegate.sent.size(), 0);
    QCOMPARE(assignments->indexOfSelectedItem(), shown);
}

void KeyboardKeysControllerTest::savesOnlyTheLastSelectedKey()
{
    const QVariantMap before{{u"Device Info"_s, QVariantMap{{u"Last selected key"_s, u"41"_s}, {u"kept"_s, true}}},
                             {u"Default Settings"_s, QVariantMap{{u"Profiles"_s, QVariantList{profile(u"D"_s)}}}}};
    writePlist(before);
    Tab tab(profile(u"P"_s));
    tab.key("mT7")->click();
    tab.controller->saveLastSelectedKey();
    QVariantMap expected = before;
    expected.insert(u"Device Info"_s, QVariantMap{{u"Last selected key"_s, u"140"_s}, {u"kept"_s, true}});
    QCOMPARE(readPlist(), expected);
    QFile file(plistPath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().startsWith("bplist00"));
    const Tab again(profile(u"P"_s));
    QCOMPARE(again.controller->selectedKey(), u"140"_s);
}

void KeyboardKeysControllerTest::missingFileIsNotCreated()
{
    qputenv("XDG_DATA_HOME", mResources->filePath(u"data"_s).toLocal8Bit());
    QVERIFY(QFile::remove(plistPath()));
    Tab tab(profile(u"P"_s));
    QCOMPARE(tab.controller->selectedKey(), u"41"_s);
    tab.controller->saveLastSelectedKey();
    QVERIFY(!QFile::exists(plistPath()));
    qunsetenv("XDG_DATA_HOME");
}

void KeyboardKeysControllerTest::controlsStateReachesEveryControl()
{
    Tab tab(profile(u"P"_s));
    const auto textColor = [&](const char *name) {
        const QLabel *label = tab.find<QLabel>(name);
        return label->palette().color(label->isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText);
    };
    for (const bool isEnabled : {false, true}) {
        tab.controller->setControlsState(isEnabled);
        QCOMPARE(tab.controller->picture()->buttons().size(), 124);
        for (const KeyButton *button : tab.controller->picture()->buttons())
            QCOMPARE(button->isEnabled(), isEnabled);
        QCOMPARE(tab.find<PopUpButton>("mAssignFunction")->isEnabled(), isEnabled);
        QCOMPARE(tab.find<PopUpButton>("mMacroPlaybackPopUp")->isEnabled(), isEnabled);
        const QColor expected =
            QApplication::palette().color(isEnabled ? QPalette::Active : QPalette::Disabled, QPalette::WindowText);
        QCOMPARE(textColor("mAssignLabel"), expected);
        QCOMPARE(textColor("mPlaybackOptionLabel"), expected);
    }
}

void KeyboardKeysControllerTest::absentKeyboardLooksInactive()
{
    Tab tab(profile(u"P"_s));
    tab.window.resize(1100, 620);
    tab.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tab.window));
    // The spread of the brightness of all pixels.
    const auto contrast = [&] {
        const QImage image = tab.controller->picture()->grab().toImage().convertToFormat(QImage::Format_Grayscale8);
        qint64 sum = 0, squares = 0;
        const qint64 count = qint64(image.width()) * image.height();
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const qint64 gray = image.constScanLine(y)[x];
                sum += gray;
                squares += gray * gray;
            }
        return squares / count - (sum / count) * (sum / count);
    };
    tab.controller->setControlsState(true);
    const qint64 active = contrast();
    tab.controller->setControlsState(false);
    const qint64 inactive = contrast();
    QVERIFY2(inactive * 2 < active, qPrintable(u"%1 and %2"_s.arg(inactive).arg(active)));
}

void KeyboardKeysControllerTest::pictureIsAsLargeAsTheWindowAllows_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("isWidthFilled");
    QTest::newRow("smallest") << QSize(1100, 660) << true;
    QTest::newRow("full HD") << QSize(1920, 1080) << true;
    QTest::newRow("4K") << QSize(3840, 2160) << true;
    QTest::newRow("wide and low") << QSize(3840, 900) << false;
}

void KeyboardKeysControllerTest::pictureIsAsLargeAsTheWindowAllows()
{
    QFETCH(QSize, size);
    QFETCH(bool, isWidthFilled);
    Tab tab(profile(u"P"_s, {{u"58"_s, entry(10, 0)}}), {}, {macro(u"Heal"_s)});
    tab.window.resize(size);
    tab.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tab.window));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    const QRect keys = tab.key("mM5")->geometry().united(tab.key("mNumPadEnter")->geometry());
    QCOMPARE(keys.width() > size.width() * 9 / 10, isWidthFilled);
    // Where the height limits the size, all of it is used.
    const QWidget *row = tab.find<PopUpButton>("mAssignFunction")->parentWidget();
    const int rest = size.height() - row->geometry().bottom();
    QVERIFY2(isWidthFilled || rest < 80, qPrintable(QString::number(rest)));
    QVERIFY(tab.controller->picture()->rect().contains(keys));
    QVERIFY(row->geometry().top() > tab.find<QWidget>("mKeysBox")->geometry().bottom());
}

void KeyboardKeysControllerTest::cleanUpSendsTheRepairedProfiles()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(10, 1)}}), {profile(u"Q"_s, {{u"5"_s, entry(10, 0)}})},
            {macro(u"One"_s), macro(u"Two"_s)});
    tab.controller->removeDeletedMacroProfileMappingsForMapping(1, 10);
    QCOMPARE(tab.delegate.sentProfiles.size(), 1);
    const QVariantList sent = tab.delegate.sentProfiles.first();
    QCOMPARE(sent,
             (QVariantList{profile(u"P"_s, {{u"4"_s, QVariantMap()}}), profile(u"Q"_s, {{u"5"_s, entry(10, 0)}})}));
    QCOMPARE(tab.controller->allProfilesArray().first(), QVariant(profile(u"P"_s, {{u"4"_s, entry(10, 1)}})));
}

void KeyboardKeysControllerTest::cleanUpSendsNothingWhenNothingChanged()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(10, 1)}}), {}, {macro(u"One"_s), macro(u"Two"_s)});
    tab.controller->removeDeletedMacroProfileMappingsForMapping(0, 10);
    tab.controller->removeDeletedMacroProfileMappingsForMapping(1, 17);
    tab.controller->removeDeletedMacroProfileMappingsForMapping(1, 46);
    QVERIFY(tab.delegate.calls.isEmpty());
}

void KeyboardKeysControllerTest::cleanUpWithoutProfilesSendsNothing()
{
    Tab tab(profile(u"P"_s));
    tab.controller->setMAllProfilesArray({});
    tab.controller->removeDeletedMacroProfileMappingsForMapping(0, 17);
    QVERIFY(tab.delegate.calls.isEmpty());
}

void KeyboardKeysControllerTest::everyControlHasAnAccessibleName()
{
    const Tab tab(profile(u"P"_s));
    QSet<QString> names;
    for (const KeyButton *button : tab.controller->picture()->buttons()) {
        QVERIFY2(!button->accessibleName().isEmpty(), qPrintable(button->objectName()));
        QVERIFY(button->accessibleName() != u"No Translation"_s);
        names << button->accessibleName();
    }
    QCOMPARE(names.size(), 124);
    QCOMPARE(tab.key("mLeftShift")->accessibleName(), u"Left Shift"_s);
    for (const char *name : {"mAssignFunction", "mMacroPlaybackPopUp", "mSingleKeyInput", "mKeyboardPicture"})
        QVERIFY2(!tab.find<QWidget>(name)->accessibleName().isEmpty(), name);
}

void KeyboardKeysControllerTest::everySelectableKeyDescribesItsAction()
{
    const Tab tab(
        profile(u"P"_s,
                {{u"4"_s, entry(10, 0, 254)}, {u"5"_s, entry(16, 6, 1)}, {u"6"_s, entry(10, 9)}, {u"8"_s, entry(30)}}),
        {}, {macro(u"Heal"_s)});
    QVERIFY(tab.key("mA")->toolTip().contains(u"Heal"_s));
    QVERIFY(tab.key("mA")->toolTip().contains(localizedText("lkeyRepeatUntilPressedAgain")));
    QVERIFY(tab.key("mB")->toolTip().contains(u"Left Control + C"_s));
    QVERIFY(tab.key("mC")->toolTip().contains(u"Macro: no. 10 (does not exist)"_s));
    QVERIFY(tab.key("mD")->toolTip().contains(localizedText("lkeyDefaultKey")));
    QVERIFY(tab.key("mE")->toolTip().contains(localizedText("lkeyKeysUnknownAssignment")));
    QVERIFY(!tab.key("mE")->toolTip().contains(u"No Translation"_s));
    for (const KeyButton *button : tab.controller->picture()->buttons()) {
        QVERIFY(!button->accessibleDescription().isEmpty());
        QVERIFY(button->toolTip().contains(button->accessibleName()));
    }
}

void KeyboardKeysControllerTest::namesFromFilesAreNotMarkup()
{
    const Tab tab(profile(u"P"_s, {{u"4"_s, entry(10, 0)}}), {}, {macro(u"<img src='x'>"_s)});
    QVERIFY(tab.key("mA")->toolTip().contains(u"&lt;img"_s));
    QVERIFY(!tab.key("mA")->toolTip().contains(u"<img"_s));
}

void KeyboardKeysControllerTest::namesFromFilesStayOnTheirLine()
{
    const QString name = u"Game\n\u202eexe"_s;
    const Tab tab(profile(name, {{u"4"_s, entry(10, 0)}}), {}, {macro(name)});
    QCOMPARE(tab.find<QLabel>("mProfileNameLabel")->text(), u"Game  exe"_s);
    QVERIFY(tab.key("mA")->toolTip().contains(u"Game  exe"_s));
    QVERIFY(tab.key("mA")->accessibleDescription().contains(u"Game  exe"_s));
}

void KeyboardKeysControllerTest::tabKeyReachesKeysAndPopUps()
{
    Tab tab(profile(u"P"_s, {{u"41"_s, entry(10, 0)}}), {}, {macro(u"Heal"_s)});
    tab.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tab.window));
    tab.window.activateWindow();
    tab.key("mESC")->setFocus();
    QTRY_VERIFY(tab.key("mESC")->hasFocus());
    QTest::keyClick(tab.key("mESC"), Qt::Key_Tab);
    QVERIFY(tab.find<PopUpButton>("mAssignFunction")->hasFocus());
    QTest::keyClick(tab.find<PopUpButton>("mAssignFunction"), Qt::Key_Tab);
    QVERIFY(tab.find<PopUpButton>("mMacroPlaybackPopUp")->hasFocus());
}

void KeyboardKeysControllerTest::arrowKeysSelectKeys()
{
    Tab tab(profile(u"P"_s));
    tab.window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&tab.window));
    tab.key("mA")->click();
    QTest::keyClick(tab.key("mA"), Qt::Key_Right);
    QCOMPARE(tab.controller->currentButton(), tab.key("mS"));
    QTest::keyClick(tab.key("mS"), Qt::Key_Up);
    QCOMPARE(tab.controller->currentButton(), tab.key("mW"));
    QVERIFY(tab.key("mW")->focusPolicy() & Qt::TabFocus);
    QVERIFY(!(tab.key("mS")->focusPolicy() & Qt::TabFocus));
}

void KeyboardKeysControllerTest::worksWithoutADelegate()
{
    Tab tab(profile(u"P"_s, {{u"4"_s, entry(10, 0)}}), {}, {macro(u"Heal"_s)});
    tab.controller->setMKeysDelegate(nullptr);
    tab.key("mA")->click();
    tab.find<PopUpButton>("mAssignFunction")->itemAtIndex(5)->trigger();
    tab.controller->removeDeletedMacroProfileMappingsForMapping(0, 10);
    QVERIFY(tab.delegate.calls.isEmpty());
}

QTEST_MAIN(KeyboardKeysControllerTest)
#include "keyboardkeyscontrollertest.moc"

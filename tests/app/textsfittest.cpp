// SPDX-License-Identifier: MIT
// Every language of the program in the real window at its smallest size: no text is cut off in its control.
#include "app/connectionnotice.h"
#include "base/devicekeys.h"
#include "base/frontapplicationkeys.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "keys/keyboardkeyscontroller.h"
#include "keys/keybutton.h"
#include "macros/keyboardmacroscontroller.h"
#include "macros/macroinsertsheet.h"
#include "platform/applicationchooser.h"
#include "platform/popupbutton.h"
#include "platform/sheet.h"
#include "platform/statusline.h"
#include "tests/app/hubfixture.h"
#include "tests/support/drawncontrols.h"
#include "tests/support/languages.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// An assignment of each kind that the card of the selected key describes in words of its own.
QList<QVariantMap> assignments()
{
    const auto entry = [](int command, const QVariant &param1) {
        return QVariantMap{{SettingsKeys::command, command}, {SettingsKeys::param1, param1}, {SettingsKeys::param2, 0}};
    };
    constexpr int none = 99; // no macro and no profile has this index
    return {entry(45, 0), entry(16, 4),    entry(10, none),
            entry(17, 0), entry(17, none), entry(46, u"/nowhere/Tool.app"_s),
            entry(20, 0), entry(30, 0)};
}

} // namespace

class TextsFitTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        for (const QString &language : {u"de"_s, u"en"_s, u"es"_s, u"fr"_s, u"ja"_s, u"zh_Hans"_s})
            QVERIFY2(QFile::exists(textsFolder() + u'/' + language + u".qm"_s), qPrintable(language));
    }

    void aDesktopLanguageChoosesItsTable_data()
    {
        QTest::addColumn<QStringList>("languages");
        QTest::addColumn<QString>("cancel");
        QTest::newRow("German") << QStringList{u"de-Latn-AT"_s, u"de-AT"_s} << u"Abbrechen"_s;
        QTest::newRow("the first that there is") << QStringList{u"nl-NL"_s, u"fr-FR"_s, u"de-DE"_s} << u"Annuler"_s;
        QTest::newRow("English before another") << QStringList{u"en-GB"_s, u"de-DE"_s} << u"Cancel"_s;
        QTest::newRow("Simplified Chinese") << QStringList{u"zh-Hans-CN"_s, u"zh-CN"_s, u"zh"_s} << u"取消"_s;
        // English is better than the other script.
        QTest::newRow("Traditional Chinese") << QStringList{u"zh-Hant-TW"_s, u"zh-TW"_s} << u"Cancel"_s;
        QTest::newRow("none that there is") << QStringList{u"nl-NL"_s, u"nl"_s} << u"Cancel"_s;
    }

    void aDesktopLanguageChoosesItsTable()
    {
        QFETCH(QStringList, languages);
        installTexts(textsFolder(), languages);
        QTEST(localizedText("lkeyCancel"), "cancel");
    }

    void qtsOwnTextsAreInTheSameLanguage_data()
    {
        QTest::addColumn<QStringList>("languages");
        QTest::addColumn<QString>("cancel");
        QTest::newRow("German") << QStringList{u"de-DE"_s, u"de"_s} << u"Abbrechen"_s;
        QTest::newRow("French") << QStringList{u"fr-Latn-FR"_s, u"fr-FR"_s, u"fr"_s} << u"Annuler"_s;
        QTest::newRow("Simplified Chinese") << QStringList{u"zh-Hans-CN"_s, u"zh-CN"_s, u"zh"_s} << u"取消"_s;
    }

    void qtsOwnTextsAreInTheSameLanguage()
    {
        QFETCH(QStringList, languages);
        installTexts(textsFolder(), languages);
        QTEST(QCoreApplication::translate("QPlatformTheme", "Cancel"), "cancel");
    }

    void everyTextFits_data() { addLanguageRows(); }

    void everyTextFits()
    {
        QFETCH(QString, language);
        installTexts(textsFolder(), {language});
        Hub hub;
        hub.window->resize(hub.window->minimumSize());
        QVERIFY(QTest::qWaitForWindowExposed(hub.window.get()));
        QCOMPARE(hub.window->size(), hub.window->minimumSize());

        // As during a recording.
        hub.controller->macrosController()->setStateOfMacroDetailsTableWithState(false);
        hub.find<QLabel>("mRecordingHint")->show();
        auto *tabs = hub.find<QTabWidget>("mKeyboardTabView");
        QStringList cut;
        for (int index = 0; index < tabs->count(); ++index) {
            tabs->setCurrentIndex(index);
            QCoreApplication::processEvents();
            cut += cutTexts(hub.window.get());
        }
        tabs->setCurrentIndex(0);
        hub.controller->keysController()->setControlsState(true);
        for (const QVariantMap &assignment : assignments()) {
            const QVariantMap keys{{u"106"_s, assignment}}; // M1, whose explanation is the longest
            hub.controller->keysController()->setMKeysCurrentProfileDict({{SettingsKeys::keys, keys}});
            hub.controller->keysController()->updateUISettings();
            hub.find<KeyButton>("mM1")->click();
            QCOMPARE(hub.find<QLabel>("mSelectedKeyLabel")->text(), u"M1"_s);
            QCoreApplication::processEvents();
            cut += cutTexts(hub.window.get());
        }
        auto *notice = hub.find<ConnectionNotice>("mConnectionNotice");
        // This test answers instead of the service manager.
        disconnect(notice, &ConnectionNotice::serviceMissed, nullptr, nullptr);
        for (const auto service :
             {StatusState::Service::running, StatusState::Service::silent, StatusState::Service::absent}) {
            notice->show({.service = service});
            notice->setCanStartService(true);
            QCoreApplication::processEvents();
            QVERIFY(notice->isVisible());
            cut += cutTexts(hub.window.get());
            const auto *last = hub.find<QWidget>("mHelpButton");
            QVERIFY(last->mapTo(hub.window.get(), last->rect().bottomRight()).x() < hub.window->width());
        }
        disconnect(notice, &ConnectionNotice::startRequested, nullptr, nullptr);
        auto *start = hub.find<QPushButton>("mConnectionNoticeHelp");
        QVERIFY(start->isEnabled());
        start->click();
        QVERIFY(!start->isEnabled());
        QCoreApplication::processEvents();
        cut += cutTexts(hub.window.get());
        notice->showStartFailure();
        QVERIFY(start->isEnabled());
        QCoreApplication::processEvents();
        cut += cutTexts(hub.window.get());
        for (Sheet *sheet : hub.window->findChildren<Sheet *>()) {
            sheet->beginSheet(hub.window.get());
            QVERIFY(QTest::qWaitForWindowExposed(sheet));
            cut += cutTexts(sheet);
            sheet->endSheet();
        }
        MacroInsertSheet insertion;
        insertion.showSource({CaptureSource::Kind::realKeyboards, u"Quill Kestra"_s});
        insertion.ask(hub.window.get(), {}, 0, {0});
        QVERIFY(QTest::qWaitForWindowExposed(&insertion));
        auto *kinds = insertion.findChild<PopUpButton *>(u"mInsertKind"_s);
        for (int kind = 0; kind < kinds->numberOfItems(); ++kind) {
            kinds->itemAtIndex(kind)->trigger();
            insertion.showCapturing(kind == 0);
            QCoreApplication::processEvents();
            cut += cutTexts(&insertion);
        }
        insertion.endSheet();
        ApplicationChooser chooser(ApplicationList::Windows::all, hub.window.get());
        chooser.setApplications({}, {{.windowClass = u"Game.exe"_s}});
        chooser.open();
        QVERIFY(QTest::qWaitForWindowExposed(&chooser));
        cut += cutTexts(&chooser);
        cut.removeDuplicates();
        QVERIFY2(cut.isEmpty(), qPrintable(cut.join(u'\n')));
    }

    void theStatusLineShowsTheMissingPackage_data() { addLanguageRows(); }

    void theStatusLineShowsTheMissingPackage()
    {
        QFETCH(QString, language);
        installTexts(textsFolder(), {language});
        const Hub hub;
        hub.window->resize(1180, 700); // as on a screen that is large enough
        QVERIFY(QTest::qWaitForWindowExposed(hub.window.get()));
        QCoreApplication::processEvents();
        auto *line = hub.find<StatusLine>("mStatusLine");
        const QString package = FrontApplicationKeys::shellExtensionPackage;
        const auto shows = [&](const QString &text) {
            line->setText(text);
            return line->shownText().contains(package);
        };
        QVERIFY2(
            shows(StatusWords::ofReport({.event = StatusReport::Event::shellExtensionMissing, .subject = package})),
            qPrintable(line->shownText()));
        const KeyboardsInUse keyboards{.state = DeviceKeys::stateInUse, .names = {u"Maker Mechanical Keyboard"_s}};
        QVERIFY2(shows(StatusWords::ofState({.service = StatusState::Service::running,
                                             .isAttached = true,
                                             .keyboards = keyboards,
                                             .profile = StatusState::ActiveProfile{.name = u"Default Profile"_s},
                                             .needsShellExtension = true})),
                 qPrintable(line->shownText()));
    }

    void aCutTextIsFound()
    {
        QWidget page;
        auto *label = new QLabel(u"A text that is wider than its label"_s, &page);
        label->resize(20, 20);
        page.resize(300, 100);
        QCOMPARE(cutTexts(&page).size(), 1);
    }

private:
    HubResources mResources;
};

QTEST_MAIN(TextsFitTest)
#include "textsfittest.moc"

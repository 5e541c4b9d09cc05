// SPDX-License-Identifier: MIT
// The checks after every combination.
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "platform/popupbutton.h"
#include "platform/tableview.h"
#include "tests/app/secondhand/combinationtest.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSlider>
#include <QTest>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr uint keyG = 10; // has its default assignment in every profile
constexpr int keyH = 11;
constexpr int keyZ = 29;
constexpr int disabledAssignment = 20;
constexpr int disablePosition = 5;

QStringList names(const QVariantList &records, QLatin1StringView key)
{
    QStringList found;
    for (const QVariant &record : records)
        found += record.toMap().value(key).toString();
    return found;
}

QStringList shownInColumn(TableView *table, int column)
{
    QStringList shown;
    for (int row = 0; row < table->numberOfRows(); ++row)
        shown += table->model()->index(row, column).data().toString();
    return shown;
}

/// The position of an assignment in the pop-up.
int positionOf(int command)
{
    static const QMap<int, int> positions{{10, 2}, {16, 1}, {17, 3}, {20, 5}, {46, 4}};
    return positions.value(command, 0);
}

} // namespace

void CombinationTest::checkSettings(const char *when)
{
    const QVariantMap kept = mScene->kept();
    mScene->ledger.adoptRecordedDelays(kept);
    report(when, differences(kept, mScene->ledger.document()));
}

void CombinationTest::checkWithoutKeyboard()
{
    const WindowPicture picture = windowPicture(mScene->hub().window.get());
    for (const QString &control : picture.controlsThatAreOn) {
        if (!mPictureWithoutKeyboard.controlsThatAreOn.contains(control))
            report(u"without a keyboard: %1 is on"_s.arg(control));
    }
    if (mScene->find<QPushButton>("mRecordMacroDetails")->text().remove(u'&') != localizedText("lkeyRecord"))
        report(u"keys are recorded without a keyboard"_s);
    checkNothingIsOpen("without a keyboard");
}

void CombinationTest::checkNothingIsOpen(const char *when)
{
    for (const QString &dialog : Person::openDialogs())
        report(u"%1: \"%2\" is up"_s.arg(QLatin1StringView(when), dialog));
    if (QApplication::activePopupWidget())
        report(QLatin1StringView(when) + u": a menu is open"_s);
    for (const char *table : {"mProfilesTableView", "mMacroTableView"}) {
        if (Person::nameEditor(*mScene, table) || mScene->find<TableView>(table)->editedRow() >= 0)
            report(QLatin1StringView(when) + u": a name is being edited"_s);
    }
}

void CombinationTest::checkNothingIsStuck()
{
    checkNothingIsOpen("afterwards");
    if (Person::dialog("mCommunicationAlertWindow"))
        report(u"the sheet of the missing keyboard is up"_s);
    const auto *record = mScene->find<QPushButton>("mRecordMacroDetails");
    if (record->text().remove(u'&') != localizedText("lkeyRecord") || record->isChecked())
        report(u"the record button does not read Record"_s);
    if (!mScene->typeKey(keyG))
        report(u"the keyboard's keys do not come out"_s);
}

/// Compares with the settings themselves, since a new window may be wrong in the same way.
void CombinationTest::checkShown()
{
    const auto compare = [this](const char *what, const auto &shown, const auto &expected) {
        if (shown != expected)
            report(QLatin1StringView(what) + u" is not shown as it is"_s);
    };
    const Ledger &ledger = mScene->ledger;
    const QVariantMap profile = ledger.profiles().value(ledger.activeProfile()).toMap();
    auto *profiles = mScene->find<TableView>("mProfilesTableView");
    compare("the list of profiles", shownInColumn(profiles, 1), names(ledger.profiles(), SettingsKeys::profileName));
    compare("the active profile", profiles->selectedRow(), ledger.activeProfile());
    compare("the on-screen display", mScene->find<QCheckBox>("mEnableOnScreenDisplay")->isChecked(),
            ledger.document().value(SettingsKeys::deviceSettings).toMap().value(SettingsKeys::profileOsdOn).toBool());
    for (const QLabel *label : mScene->hub().window->findChildren<QLabel *>(u"mProfileNameLabel"_s))
        compare("the profile's name", label->text(), profile.value(SettingsKeys::profileName).toString());
    compare("the brightness", mScene->find<QSlider>("mBrightnessValue")->value(),
            profile.value(SettingsKeys::brightnessKbNormal).toInt());
    const QVariantMap entry = profile.value(SettingsKeys::keys).toMap().value(QString::number(keyZ)).toMap();
    compare("the selected key", mScene->find<PopUpButton>("mAssignFunction")->indexOfSelectedItem(),
            positionOf(entry.value(SettingsKeys::command).toInt()));

    auto *macros = mScene->find<TableView>("mMacroTableView");
    compare("the list of macros", shownInColumn(macros, 0), names(ledger.macros(), SettingsKeys::macroName));
    if (ledger.macro() >= 0)
        compare("the selected macro", macros->selectedRow(), ledger.macro());
    if (macros->selectedRow() < 0)
        return;
    QStringList lines;
    const QVariantMap answer =
        mScene->request(Command::readMacroLines, {{DaemonProtocol::indexOfMacroSequence, macros->selectedRow()}});
    for (const QVariant &line : answer.value(DaemonProtocol::macroSequences).toList())
        lines += line.toString().trimmed();
    compare("the macro's events", shownInColumn(mScene->find<TableView>("mMacroDetailsTableView"), 0), lines);
}

void CombinationTest::checkWindow()
{
    const WindowPicture picture = windowPicture(mScene->hub().window.get());
    const View view = mScene->view();
    const QVariantMap kept = mScene->kept();
    checkOrdinaryChange();
    checkSettings("at last");

    const QByteArray situation = PropertyList::writeBinary(kept).value_or(QByteArray()) + char(view.tab)
                                 + char(view.macroRow) + char(view.eventRow);
    if (!mFreshPictures.contains(situation)) {
        mScene->request(Command::replaceAllProfiles,
                        {{DaemonProtocol::allProfiles, kept.value(SettingsKeys::profiles)}});
        mScene->settle();
        const QString problem = mScene->openWindow(view);
        if (!problem.isEmpty())
            report(problem);
        mFreshPictures.insert(situation, windowPicture(mScene->hub().window.get()));
    }
    const WindowPicture &fresh = mFreshPictures[situation];
    report("shown", contentDifferences(picture, fresh));
    report("enabled", enabledDifferences(picture, fresh));
}

void CombinationTest::checkOrdinaryChange()
{
    Ledger &ledger = mScene->ledger;
    ledger.setProfile(ledger.activeProfile());
    mScene->hub().controller->selectTabAtIndex(keysTab);
    QTest::mouseClick(mScene->find<QWidget>("mH"), Qt::LeftButton);
    auto *assignments = mScene->find<PopUpButton>("mAssignFunction");
    if (!assignments->isEnabled())
        report(u"no key can be assigned"_s);
    assignments->itemAtIndex(disablePosition)->trigger();
    mScene->settle();
    ledger.assignKey(keyH, disabledAssignment, 0, 0);
}

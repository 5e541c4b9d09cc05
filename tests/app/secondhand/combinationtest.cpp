// SPDX-License-Identifier: MIT
#include "tests/app/secondhand/combinationtest.h"

#include "base/settingskeys.h"
#include "daemonlink/daemontransport.h"
#include "daemonlink/latestreplyslot.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

Q_DECLARE_METATYPE(ObstructedCommand)

namespace {

constexpr std::pair<Obstruction, const char *> obstructions[] = {
    {Obstruction::refused, "refused"},
    {Obstruction::refusedWithDocument, "refused with the document"},
    {Obstruction::unanswered, "unanswered"},
};

/// Whether the reply of the command contains the document even when the daemon refuses it.
bool returnsDocument(Command command)
{
    return command == Command::addProfile || command == Command::updateProfile || command == Command::replaceAllProfiles
           || command == Command::switchProfile;
}

} // namespace

// Rows

void CombinationTest::initTestCase()
{
    qputenv("HOME", QFile::encodeName(mHome.path()));
    Scene scene;
    const QString problem = scene.begin(StartSettings::document(), keysTab, false);
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    scene.unplug();
    QVERIFY(scene.openWindow({}).isEmpty());
    mPictureWithoutKeyboard = windowPicture(scene.hub().window.get());
}

void CombinationTest::cleanupTestCase()
{
    qInfo("%d combinations ran", mCount);
}

void CombinationTest::anotherHand_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<int>("end");
    QTest::addColumn<int>("event");
    for (size_t operation = 0; operation < mOperations.size(); ++operation) {
        const Operation &begun = mOperations[operation];
        for (size_t event = 0; event < outsideEvents().size(); ++event) {
            for (size_t end = 0; end < begun.ends.size(); ++end)
                QTest::addRow("%s / %s / %s", begun.name, outsideEvents()[event].name, begun.ends[end].name)
                    << int(operation) << int(end) << int(event);
        }
    }
}

void CombinationTest::anotherHand()
{
    QFETCH(int, operation);
    QFETCH(int, end);
    QFETCH(int, event);
    const Operation &begun = mOperations[size_t(operation)];
    run(begun, begun.ends[size_t(end)], {outsideEvents()[size_t(event)], {}});
}

void CombinationTest::aDaemonThatObstructs_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<int>("end");
    QTest::addColumn<ObstructedCommand>("obstructed");
    for (size_t operation = 0; operation < mOperations.size(); ++operation) {
        const Operation &begun = mOperations[operation];
        for (size_t end = 0; end < begun.ends.size(); ++end) {
            QList<Command> commands = begun.beginCommands;
            for (const Command command : begun.ends[end].commands) {
                if (!commands.contains(command))
                    commands += command;
            }
            for (const Command command : commands) {
                for (const auto &[obstruction, name] : obstructions) {
                    if (obstruction != Obstruction::refusedWithDocument || returnsDocument(command))
                        QTest::addRow("%s / command %d %s / %s", begun.name, int(command), name, begun.ends[end].name)
                            << int(operation) << int(end) << ObstructedCommand{command, obstruction};
                }
            }
        }
    }
}

void CombinationTest::aDaemonThatObstructs()
{
    QFETCH(int, operation);
    QFETCH(int, end);
    QFETCH(ObstructedCommand, obstructed);
    const Operation &begun = mOperations[size_t(operation)];
    run(begun, begun.ends[size_t(end)], {outsideEvents().front(), obstructed});
}

// One combination

void CombinationTest::run(const Operation &operation, const End &end, const Middle &middle)
{
    ++mCount;
    mProblems.clear();
    mIsQuestionLeft = false;
    LatestReplySlot::shared().clear();
    setReplyPollInterval(replyPollInterval);
    mScene = std::make_unique<Scene>();
    if (begin(operation, middle)) {
        play(operation, end, middle);
        recover(middle);
        checkNothingIsStuck();
        checkShown();
        checkWindow();
        report("the test itself", mScene->ledger.problems());
    }
    mScene.reset();
    QVERIFY2(mProblems.isEmpty(), qPrintable(u"\n  "_s + mProblems.join(u"\n  "_s)));
}

void CombinationTest::report(const char *what, const QStringList &problems)
{
    for (const QString &problem : problems)
        mProblems += QLatin1StringView(what) + u": "_s + problem;
}

bool CombinationTest::begin(const Operation &operation, const Middle &middle)
{
    QVariantMap document = StartSettings::document();
    if (operation.prepare)
        operation.prepare(document);
    const QString problem = mScene->begin(document, operation.tab, middle.obstructed.has_value());
    if (!problem.isEmpty()) {
        report(problem);
        return false;
    }
    mScene->obstruct(middle.obstructed);
    operation.begin(*mScene);
    mScene->settle();
    mHasBegunUndisturbed = !middle.obstructed || !operation.beginCommands.contains(middle.obstructed->command);
    if (mHasBegunUndisturbed && !operation.isOpen(*mScene))
        report(u"it has not begun"_s);
    return true;
}

void CombinationTest::play(const Operation &operation, const End &end, const Middle &middle)
{
    const Disturbance disturbance = middle.event.disturbance;
    const Ledger before = mScene->ledger;
    middle.event.happen(*mScene);
    if (disturbance == Disturbance::fileOpened)
        checkQuestionWaits(operation);
    if (disturbance == Disturbance::unplugged && !Person::dialog("mCommunicationAlertWindow"))
        report(u"the missing keyboard is not reported"_s);
    const Survival expected = survival(operation, middle.event, before);
    const bool isOpen = operation.isOpen(*mScene);
    if (isOpen && expected == Survival::ends)
        report(u"it goes on"_s);
    if (!isOpen && expected == Survival::survives)
        report(u"it was ended"_s);
    // Unplugging stops a recording; the keys recorded until then are saved.
    const bool isKept = operation.kind == OperationKind::recording
                        && (disturbance == Disturbance::unplugged || disturbance == Disturbance::unpluggedBriefly);
    const bool isCarriedOut = isOpen && expected != Survival::ends;

    end.act(*mScene);
    mScene->settle();
    if (operation.kind == OperationKind::question && !isOpen)
        mIsQuestionLeft = true;
    if (end.change && (isKept || (isCarriedOut && disturbance != Disturbance::daemonEnded)))
        end.change(*mScene);
    if (!isCarriedOut && operation.whenEnded && mHasBegunUndisturbed && mScene->ledger.macro() >= 0)
        operation.whenEnded(*mScene);
    if (operation.subject == Subject::newMacro)
        mScene->ledger.setMacro(-1); // it is not selected on its tab
    if (middle.obstructed && mHasBegunUndisturbed && end.change && !mScene->hasObstructed())
        report(u"the command did not come"_s);
    mScene->obstruct({});
    if (operation.outcome) {
        const QString problem = operation.outcome(*mScene, isCarriedOut && &end == &operation.ends.front());
        if (!problem.isEmpty())
            report(problem);
    }
}

/// A file has been opened in the middle of the operation. Only beside a button can its question come at once.
void CombinationTest::checkQuestionWaits(const Operation &operation)
{
    mIsQuestionLeft = true;
    if (operation.kind == OperationKind::question || !Person::dialog(Person::fileQuestion))
        return;
    if (operation.kind != OperationKind::click)
        report(u"the question about a file interrupts it"_s);
    mIsQuestionLeft = !mScene->cancelFileQuestion();
}

CombinationTest::Survival CombinationTest::survival(const Operation &operation, const OutsideEvent &event,
                                                    const Ledger &before) const
{
    const Ledger &after = mScene->ledger;
    if (!mHasBegunUndisturbed) // a name that was not added cannot be edited
        return operation.kind == OperationKind::nameEdit ? Survival::ends : Survival::either;
    switch (event.disturbance) {
    case Disturbance::none:
    case Disturbance::fileOpened:
    case Disturbance::daemonEnded: return Survival::survives; // the window is not notified
    case Disturbance::unplugged: return Survival::ends;
    case Disturbance::unpluggedBriefly: // a keyboard that is back has its buttons again
        return operation.kind == OperationKind::click || operation.kind == OperationKind::question ? Survival::either
                                                                                                   : Survival::ends;
    case Disturbance::restarted:
        if (operation.kind == OperationKind::drag || operation.kind == OperationKind::click)
            return Survival::either;
        return operation.kind == OperationKind::sheet || operation.kind == OperationKind::question ? Survival::survives
                                                                                                   : Survival::ends;
    case Disturbance::settings: break;
    }
    if (operation.kind == OperationKind::click)
        return Survival::either; // as long as the button is offered
    if (after.document() == before.document())
        return Survival::survives; // a request that changes nothing is not announced
    switch (operation.kind) {
    case OperationKind::nameEdit:
    case OperationKind::popUp: return Survival::ends;
    case OperationKind::recording: return after.macro() < 0 ? Survival::either : Survival::survives;
    case OperationKind::sheet:
    case OperationKind::question:
    case OperationKind::click:
    case OperationKind::drag: break;
    }
    return subjectSurvival(operation.subject, before, after);
}

CombinationTest::Survival CombinationTest::subjectSurvival(Subject subject, const Ledger &before, const Ledger &after)
{
    const auto differs = [](const QVariantMap &one, const QVariantMap &other, QLatin1StringView key) {
        return one.value(key) != other.value(key);
    };
    const QVariantMap macro = after.macroRecord();
    const QVariantMap profile = after.profileRecord();
    switch (subject) {
    case Subject::none: return Survival::survives;
    case Subject::newMacro:
        if (after.macro() < 0)
            return Survival::ends;
        [[fallthrough]];
    case Subject::profile:
    case Subject::profilesKey:
    case Subject::profilesLight:
        if (after.profile() < 0 || after.profile() != after.activeProfile())
            return Survival::ends;
        if (profile == before.profileRecord())
            return Survival::survives;
        // The name is part of the question; other changes of the profile are not.
        return subject == Subject::profile && differs(profile, before.profileRecord(), SettingsKeys::profileName)
                   ? Survival::ends
                   : Survival::either;
    case Subject::macro:
        if (after.macro() < 0 || differs(macro, before.macroRecord(), SettingsKeys::macroName))
            return Survival::ends;
        return macro == before.macroRecord() ? Survival::survives : Survival::either;
    case Subject::events:
        if (after.macro() < 0 || differs(macro, before.macroRecord(), SettingsKeys::sequence))
            return Survival::ends;
        return macro == before.macroRecord() ? Survival::survives : Survival::either;
    }
    return Survival::either;
}

void CombinationTest::recover(const Middle &middle)
{
    Scene &scene = *mScene;
    if (scene.isDaemonRunning())
        checkSettings("after its end");
    if (middle.event.disturbance == Disturbance::unplugged) {
        checkWithoutKeyboard();
        scene.plugIn();
    } else if (middle.event.disturbance == Disturbance::daemonEnded) {
        scene.startDaemon();
    }
    if (mIsQuestionLeft && !scene.cancelFileQuestion())
        report(u"the question about the file does not come"_s);
    if (!middle.obstructed || !scene.hasObstructed())
        return;
    switch (middle.obstructed->command) {
    case Command::deleteProfile: recoverFromUnansweredDeletion(); break;
    case Command::switchProfile:
        // Without the reply the window cannot know which profile is active after the deletion.
        scene.ask(Command::updateProfile,
                  {{DaemonProtocol::profileId, 0},
                   {DaemonProtocol::deviceSettingsDictionary, QVariantMap{{u"Further key"_s, 1}}}});
        break;
    case Command::stopSingleKeyRecording:
    case Command::stopMacroRecording:
        // The window has no other request to end its capture. A capture of another client takes its place.
        scene.request(Command::startSingleKeyRecording);
        scene.request(Command::stopSingleKeyRecording);
        break;
    default: break;
    }
}

/// Deliberate: the tab stays disabled and busy until the next switch or until a keyboard is attached, and a reply
/// without a document stays in the latest-reply slot.
void CombinationTest::recoverFromUnansweredDeletion()
{
    const WindowPicture picture = windowPicture(mScene->hub().window.get());
    // The add button follows the number of profiles alone.
    for (const char *name : {"mProfilesTableView", "mDeleteProfile", "mSettingsProfile", "mEnableOnScreenDisplay"}) {
        if (picture.enabled.value(QLatin1StringView(name)))
            report(u"the tab is not busy: %1"_s.arg(QLatin1StringView(name)));
    }
    if (picture.contents.value(u"mBusyIndicator"_s) != "spinning"_L1)
        report(u"the busy indicator does not spin"_s);
    LatestReplySlot::shared().clear();
    mScene->unplug();
    mScene->plugIn();
}

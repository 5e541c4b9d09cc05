// SPDX-License-Identifier: MIT
// Runs every combination of an operation, an event in the middle of it, and a way in which the user ends it. Afterwards
// only the intended record has changed, the window looks like a newly opened one with the same settings, and nothing of
// the operation is left. Runs on the test's thread; needs a private session bus.
#pragma once

#include "tests/app/secondhand/operation.h"
#include "tests/app/secondhand/outsideevents.h"
#include "tests/app/secondhand/windowpicture.h"

#include <QHash>
#include <QObject>

class CombinationTest : public QObject
{
    Q_OBJECT

public:
    /// Calls `operations` once, after the texts are loaded.
    explicit CombinationTest(std::vector<Operation> (*operations)()) : mOperations(operations()) {}

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void anotherHand_data();
    void anotherHand();
    void aDaemonThatObstructs_data();
    void aDaemonThatObstructs();

private:
    /// Either an event in the middle of the operation, or one command that is obstructed from its beginning.
    struct Middle
    {
        const OutsideEvent &event;
        std::optional<ObstructedCommand> obstructed;
    };
    enum class Survival { survives, ends, either };

    void run(const Operation &operation, const End &end, const Middle &middle);
    [[nodiscard]] bool begin(const Operation &operation, const Middle &middle);
    /// Plays the event, and the user's end of the operation.
    void play(const Operation &operation, const End &end, const Middle &middle);
    void checkQuestionWaits(const Operation &operation);
    /// Plugs in a missing keyboard, starts an ended daemon, and completes what an obstructed command left undone.
    void recover(const Middle &middle);
    void recoverFromUnansweredDeletion();
    /// Whether the operation continues after the event. `before`: the settings before the event.
    [[nodiscard]] Survival survival(const Operation &operation, const OutsideEvent &event, const Ledger &before) const;
    [[nodiscard]] static Survival subjectSurvival(Subject subject, const Ledger &before, const Ledger &after);

    void checkSettings(const char *when);
    void checkWithoutKeyboard();
    void checkNothingIsOpen(const char *when);
    void checkNothingIsStuck();
    void checkShown();
    /// Compares the window with a new one, and makes an ordinary change in it.
    void checkWindow();
    void checkOrdinaryChange();
    void report(const QString &problem) { mProblems += problem; }
    void report(const char *what, const QStringList &problems);

    QTemporaryDir mHome;     // start folder of file panels
    HubResources mResources; // before mOperations, which contains texts
    std::vector<Operation> mOperations;
    std::unique_ptr<Scene> mScene;
    QStringList mProblems;
    QHash<QByteArray, WindowPicture> mFreshPictures; ///< by settings and view
    WindowPicture mPictureWithoutKeyboard;
    bool mIsQuestionLeft = false;     ///< a file has been opened, and its question not answered
    bool mHasBegunUndisturbed = true; ///< true while no command of the beginning is obstructed
    int mCount = 0;
};

// SPDX-License-Identifier: MIT
// Runs every combination of an operation, an event in the middle of it, and a way in which the person ends it.
// Afterwards only the intended record has changed, the window looks like a newly opened one with the same settings, and
// nothing of the operation is left. The test's thread; needs a session bus of the test's own.
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
    /// `operations` is called once, after the texts were loaded.
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
    /// The event, and the person's end of the operation.
    void play(const Operation &operation, const End &end, const Middle &middle);
    /// Plugs in a missing keyboard, starts an ended daemon, and brings what an obstructed command left undone to an
    /// end.
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

    QTemporaryDir mHome;     // where panels begin
    HubResources mResources; // before mOperations, which contains texts
    std::vector<Operation> mOperations;
    std::unique_ptr<Scene> mScene;
    QStringList mProblems;
    QHash<QByteArray, WindowPicture> mFreshPictures; ///< by settings and view
    WindowPicture mPictureWithoutKeyboard;
    bool mHasBegunUndisturbed = true; ///< no command of the beginning was obstructed
    int mCount = 0;
};

// SPDX-License-Identifier: MIT
// Every combination of an operation, what happens in the middle of it, and how the person ends it. Afterwards no record
// but the intended one has changed, the window shows the daemon's settings as one that was only just opened would, and
// nothing is left of the operation. The test's thread; needs a session bus of the test's own.
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
    /// `operations` is called once, when the texts are there.
    explicit CombinationTest(std::vector<Operation> (*operations)()) : mOperations(operations()) {}

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void anotherHand_data();
    void anotherHand();
    void aDaemonThatObstructs_data();
    void aDaemonThatObstructs();

private:
    /// What happens in the middle: an event, or the obstruction of one command from the beginning on.
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
    /// Brings back what is still missing: the keyboard, the daemon, an answer.
    void recover(const Middle &middle);
    void recoverFromUnansweredDeletion();
    /// Whether the operation goes on after the event; `before`: what was before it.
    [[nodiscard]] Survival survival(const Operation &operation, const OutsideEvent &event, const Ledger &before) const;
    [[nodiscard]] static Survival subjectSurvival(Subject subject, const Ledger &before, const Ledger &after);

    void checkSettings(const char *when);
    void checkWithoutKeyboard();
    void checkNothingIsOpen(const char *when);
    void checkNothingIsStuck();
    void checkShown();
    /// Compares with a new window, and makes an ordinary change in this one.
    void checkWindow();
    void checkOrdinaryChange();
    void report(const QString &problem) { mProblems += problem; }
    void report(const char *what, const QStringList &problems);

    HubResources mResources; // before what the constructor makes of the texts
    std::vector<Operation> mOperations;
    std::unique_ptr<Scene> mScene;
    QStringList mProblems;
    QHash<QByteArray, WindowPicture> mFreshPictures; ///< by the settings and the view
    WindowPicture mPictureWithoutKeyboard;
    bool mHasBegunUndisturbed = true; ///< no command of its beginning was obstructed
    int mCount = 0;
};

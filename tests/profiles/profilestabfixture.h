// SPDX-License-Identifier: MIT
// The profiles tab in its own window, with a main controller that only records calls, for the tests of the tab.
#pragma once

#include "tests/profiles/profiletester.h"

#include "platform/sheet.h"

#include <QTest>

#include <memory>

class QLineEdit;

/// Base of a test of the tab. Its init() calls openTab(), its cleanup() closeTab().
class ProfilesTabFixture : public QObject
{
protected:
    void openTab();
    void closeTab();

    /// Hands over a document, as the program does when it has opened the device.
    void fillWith(const QVariantList &profiles, int active = 0);
    void fill(const QStringList &names, int active = 0);
    void fillCount(int count);

    /// The open editor of a cell; null when there is none.
    [[nodiscard]] QLineEdit *editor() const;
    /// The open alert; null when there is none.
    [[nodiscard]] Sheet *alert() const;
    void press(QLatin1StringView alertButton);
    /// Chooses a command of the gear menu.
    void choose(int tag);

    template <typename T> T *outlet(const char *name) const { return mWindow->findChild<T *>(QLatin1StringView(name)); }
    [[nodiscard]] TableView *table() const { return mController->profilesTableView(); }

    std::unique_ptr<QWidget> mWindow;
    std::unique_ptr<KeyboardProfilesController> mController;
    std::unique_ptr<RecordingProfileDelegate> mDelegate;
};

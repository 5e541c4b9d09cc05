// SPDX-License-Identifier: MIT
#include "tests/profiles/profilestabfixture.h"

#include "platform/pulldownbutton.h"
#include "tests/support/texts.h"

#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

template <typename T> T *visibleChild(const QWidget *parent, const QString &name)
{
    const QList<T *> children = parent->findChildren<T *>(name);
    for (T *child : children) {
        if (child->isVisible())
            return child;
    }
    return nullptr;
}

} // namespace

void ProfilesTabFixture::openTab()
{
    static const bool hasTexts = installEnglishTexts();
    QVERIFY(hasTexts);
    mWindow = std::make_unique<QWidget>();
    mController = std::make_unique<KeyboardProfilesController>();
    mDelegate = std::make_unique<RecordingProfileDelegate>(mController.get());
    auto *layout = new QVBoxLayout(mWindow.get());
    layout->addWidget(mController->view());
    mController->awakeFromNib();
    mController->setMProfileDelegate(mDelegate.get());
    mController->setMProfilesWindow(mWindow.get());
    mController->setMDefaultProfileDict(profileNamed(u"Default"_s));
    mWindow->resize(700, 450);
    mWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
}

void ProfilesTabFixture::closeTab()
{
    mController.reset();
    mWindow.reset();
    mDelegate.reset();
}

void ProfilesTabFixture::fillWith(const QVariantList &profiles, int active)
{
    mDelegate->profiles = profiles;
    mDelegate->active = active;
    mDelegate->refresh();
    mController->setControlsState(true);
    QVERIFY(mDelegate->calls.isEmpty());
}

void ProfilesTabFixture::fill(const QStringList &names, int active)
{
    QVariantList profiles;
    for (const QString &name : names)
        profiles.append(profileNamed(name));
    fillWith(profiles, active);
}

void ProfilesTabFixture::fillCount(int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names.append(u"P%1"_s.arg(i));
    fill(names);
}

QLineEdit *ProfilesTabFixture::editor() const
{
    return visibleChild<QLineEdit>(table(), u"cellEditor"_s);
}

Sheet *ProfilesTabFixture::alert() const
{
    return visibleChild<Sheet>(mWindow.get(), u"alert"_s);
}

void ProfilesTabFixture::press(QLatin1StringView alertButton)
{
    QVERIFY(alert());
    auto *button = alert()->findChild<QPushButton *>(alertButton);
    QVERIFY(button);
    button->click();
}

void ProfilesTabFixture::choose(int tag)
{
    QAction *item = outlet<PulldownButton>("mSettingsProfile")->itemWithTag(tag);
    QVERIFY(item);
    item->trigger();
}

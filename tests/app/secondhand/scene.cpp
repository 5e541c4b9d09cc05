// SPDX-License-Identifier: MIT
#include "tests/app/secondhand/scene.h"

#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "daemonlink/daemontransport.h"
#include "daemonlink/latestreplyslot.h"
#include "platform/tableview.h"
#include "tests/support/fulldocument.h"

#include <QDBusArgument>
#include <QDir>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr int waitMs = 20'000;
constexpr uint keyboardPage = 7;

QVariantMap entry(int command, int param1, int param2 = 0)
{
    return {{SettingsKeys::command, command}, {SettingsKeys::param1, param1}, {SettingsKeys::param2, param2}};
}

/// Without the pauses of QTest::qWaitFor(), which would take most of the time of a combination.
bool waitFor(const std::function<bool()> &condition)
{
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(waitMs);
    while (!condition() && limit.isActive())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return condition();
}

} // namespace

// The initial settings

QVariantMap StartSettings::profileNamed(const QString &name, int brightness)
{
    QVariantMap profile = fullProfile(name);
    profile.insert(SettingsKeys::brightnessKbNormal, brightness);
    // A disabled key, a key that switches to the profile of the operations, and a key that plays their macro.
    profile.insert(SettingsKeys::keys, QVariantMap{{u"4"_s, entry(20, 0)},
                                                   {u"6"_s, entry(17, StartSettings::profile)},
                                                   {u"29"_s, entry(10, StartSettings::macro, 255)}});
    return profile;
}

QVariantMap StartSettings::macroNamed(const QString &name)
{
    constexpr int eventCount = 4;
    QVariantMap macro = fullMacro(name, 0, eventCount);
    macro.remove(SettingsKeys::macroId);
    return macro;
}

QVariantMap StartSettings::document()
{
    return {{SettingsKeys::profiles,
             QVariantList{profileNamed(u"Desktop"_s, 0), profileNamed(u"Raid night"_s, 1), profileNamed(u"Work"_s, 3)}},
            {SettingsKeys::macros, QVariantList{macroNamed(u"Burst"_s), macroNamed(u"Heal"_s), macroNamed(u"Mount"_s)}},
            {SettingsKeys::deviceSettings, QVariantMap{{SettingsKeys::activeProfile, profile}}}};
}

// The window

Scene::~Scene()
{
    mOpener.reset();
    mHub.reset();
    setReplyPollInterval(replyPollInterval);
}

QString Scene::begin(const QVariantMap &document, Tab tab, bool isObstructable)
{
    if (isObstructable) {
        mObstructable = std::make_unique<ObstructedDaemon>(document);
    } else {
        const QString path = mClient.settingsFolder() + u"/settings.plist"_s;
        const std::optional<QByteArray> data = PropertyList::writeBinary(document);
        if (!QDir().mkpath(mClient.settingsFolder()) || !data || !PropertyList::writeFileAtomically(path, *data)
            || !mClient.start())
            return u"the daemon does not start"_s;
    }
    ledger = Ledger(kept(), StartSettings::profile, StartSettings::macro);
    return openWindow({.tab = tab, .macroRow = StartSettings::macro, .eventRow = -1});
}

QString Scene::openWindow(const View &view)
{
    mOpener.reset();
    mHub.reset();
    mHub = std::make_unique<Hub>();
    mOpener = std::make_unique<FileOpener>(*mHub->controller, *mHub->window);
    mHub->controller->initializeDevice();
    mHub->controller->selectTabAtIndex(view.tab);
    mHub->window->activateWindow();
    if (!waitFor([this] { return mHub->window->isActiveWindow(); }))
        return u"the window does not become active"_s;
    if (auto *macros = find<TableView>("mMacroTableView"); macros->isEnabled()) {
        macros->selectRow(view.macroRow);
        find<TableView>("mMacroDetailsTableView")->selectRow(view.eventRow);
        QTest::mouseClick(find<QWidget>("mZ"), Qt::LeftButton);
    }
    settle();
    return {};
}

View Scene::view() const
{
    return {.tab = find<QTabWidget>("mKeyboardTabView")->currentIndex(),
            .macroRow = find<TableView>("mMacroTableView")->selectedRow(),
            .eventRow = find<TableView>("mMacroDetailsTableView")->selectedRow()};
}

bool Scene::cancelFileQuestion()
{
    const bool hasCome = waitFor([] { return Person::dialog(Person::fileQuestion) != nullptr; });
    Person::cancel(Person::fileQuestion);
    settle();
    return hasCome;
}

// The daemon and the other client

QVariantMap Scene::request(Command command, const QVariantMap &request)
{
    if (!isDaemonRunning())
        return {};
    mClient.replies().clear();
    mClient.send(command, request);
    const bool isAnswered = waitFor([this] { return !mClient.replies().isEmpty(); });
    return isAnswered ? mClient.replies().takeFirst().values : QVariantMap();
}

QVariantMap Scene::kept()
{
    // The daemon posts the notifications of a change before it answers the next request, and both arrive over one
    // connection.
    const QVariantMap document = request(Command::readSettings).value(DaemonProtocol::allDevSettings).toMap();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return document;
}

void Scene::ask(Command command, const QVariantMap &request)
{
    this->request(command, request);
    ledger.follow(command, request);
    settle();
}

void Scene::obstruct(const std::optional<ObstructedCommand> &command)
{
    ledger.setObstructed(command);
    if (mObstructable)
        mObstructable->setObstructed(command);
}

void Scene::unplug()
{
    mClient.callKeyboard(u"Remove"_s);
    settle();
}

void Scene::plugIn()
{
    mClient.callKeyboard(u"Attach"_s);
    settle();
}

void Scene::pressBrightnessUp()
{
    const int row = ledger.activeProfile();
    const int level = ledger.profiles().at(row).toMap().value(SettingsKeys::brightnessKbNormal).toInt();
    mClient.callKeyboard(u"PressBrightnessUp"_s);
    ledger.follow(Command::updateProfile, {{DaemonProtocol::profileId, row},
                                           {DaemonProtocol::deviceSettingsDictionary,
                                            QVariantMap{{SettingsKeys::brightnessKbNormal, std::min(level + 1, 4)}}}});
    settle();
}

bool Scene::typeKey(uint usage)
{
    mClient.callKeyboard(u"Press"_s, {keyboardPage, usage});
    const bool hasComeOut =
        qdbus_cast<QList<uint>>(mClient.keyboardProperty(u"SentKeys"_s)).contains(keyboardPage << 16 | usage);
    mClient.callKeyboard(u"Release"_s, {keyboardPage, usage});
    settle();
    return hasComeOut;
}

void Scene::endDaemon()
{
    mClient.terminate();
    setReplyPollInterval(std::chrono::microseconds(0));
}

void Scene::startDaemon()
{
    setReplyPollInterval(replyPollInterval);
    mHasRestarted = true;
    if (!mClient.start())
        qFatal("the daemon does not start again");
    settle();
}

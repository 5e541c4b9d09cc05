// SPDX-License-Identifier: MIT
#include "tests/app/secondhand/outsideevents.h"

#include "base/propertylist.h"
#include "base/settingskeys.h"

using namespace Qt::StringLiterals;
using DaemonProtocol::Command;

namespace {

constexpr int otherProfile = 2;
constexpr int otherMacro = 2;

void switchProfile(Scene &scene)
{
    scene.ask(Command::switchProfile, {{DaemonProtocol::profileId, otherProfile}});
}

void renameProfile(Scene &scene, int row, const QVariant &name)
{
    scene.ask(Command::updateProfile,
              {{DaemonProtocol::profileId, row},
               {DaemonProtocol::deviceSettingsDictionary, QVariantMap{{SettingsKeys::profileName, name}}}});
}

void renameMacro(Scene &scene, int row, const QVariant &name)
{
    scene.ask(Command::renameMacro, {{DaemonProtocol::macroContents,
                                      QVariantMap{{SettingsKeys::macroName, name}, {SettingsKeys::macroId, row}}}});
}

void deleteProfile(Scene &scene, int row)
{
    scene.ask(Command::deleteProfile, {{DaemonProtocol::profileId, row}});
}

void deleteMacro(Scene &scene, int row)
{
    scene.ask(Command::deleteMacro, {{DaemonProtocol::macroId, row}});
}

/// Later requests of the window must also contain this assignment.
void assignAnotherKey(Scene &scene)
{
    QVariantMap keys = scene.ledger.profileRecord().value(SettingsKeys::keys).toMap();
    keys.insert(u"5"_s, QVariantMap{{SettingsKeys::command, 20}, {SettingsKeys::param1, 0}, {SettingsKeys::param2, 0}});
    scene.ask(Command::updateProfile,
              {{DaemonProtocol::profileId, scene.ledger.profile()},
               {DaemonProtocol::deviceSettingsDictionary, QVariantMap{{SettingsKeys::keys, keys}}}});
}

/// A name alone must not identify a record.
void switchToProfileOfTheSameName(Scene &scene)
{
    renameProfile(scene, otherProfile, scene.ledger.profileRecord().value(SettingsKeys::profileName));
    switchProfile(scene);
}

void replaceMacroByOneOfTheSameName(Scene &scene)
{
    renameMacro(scene, otherMacro, scene.ledger.macroRecord().value(SettingsKeys::macroName));
    deleteMacro(scene, scene.ledger.macro());
}

void changeEvents(Scene &scene)
{
    scene.ask(Command::setAllDelays,
              {{DaemonProtocol::macroId, scene.ledger.macro()}, {DaemonProtocol::hasNoDelay, true}});
}

void addProfile(Scene &scene)
{
    scene.ask(Command::addProfile,
              {{DaemonProtocol::deviceSettingsDictionary, StartSettings::profileNamed(u"Elsewhere"_s, 0)}});
}

void addMacro(Scene &scene)
{
    scene.ask(Command::addMacro, {{DaemonProtocol::macroContents, StartSettings::macroNamed(u"Elsewhere"_s)}});
}

void unplugBriefly(Scene &scene)
{
    scene.unplug();
    scene.plugIn();
}

void changeWhileUnplugged(Scene &scene)
{
    scene.unplug();
    renameProfile(scene, otherProfile, u"Elsewhere"_s);
    renameMacro(scene, otherMacro, u"Elsewhere"_s);
    scene.plugIn();
}

void openFile(Scene &scene)
{
    const QString path = scene.file(u"Arrived.KestraMacro"_s);
    if (!PropertyList::writePropertyListFile(path, StartSettings::macroNamed(u"Arrived"_s)))
        qFatal("the test cannot write its file");
    scene.openFile(path);
}

void restart(Scene &scene)
{
    scene.endDaemon();
    scene.startDaemon();
}

} // namespace

const std::vector<OutsideEvent> &outsideEvents()
{
    using D = Disturbance;
    static const std::vector<OutsideEvent> events{
        {"nothing", D::none, [](Scene &) {}},
        {"another profile active", D::settings, switchProfile},
        {"another profile of its name active", D::settings, switchToProfileOfTheSameName},
        {"profile added", D::settings, addProfile},
        {"macro added", D::settings, addMacro},
        {"profile above deleted", D::settings, [](Scene &scene) { deleteProfile(scene, 0); }},
        {"macro above deleted", D::settings, [](Scene &scene) { deleteMacro(scene, 0); }},
        {"its profile deleted", D::settings, [](Scene &scene) { deleteProfile(scene, scene.ledger.profile()); }},
        {"its macro deleted", D::settings, [](Scene &scene) { deleteMacro(scene, scene.ledger.macro()); }},
        {"its macro replaced by one of its name", D::settings, replaceMacroByOneOfTheSameName},
        {"its profile renamed", D::settings,
         [](Scene &scene) { renameProfile(scene, scene.ledger.profile(), u"Renamed"_s); }},
        {"another key of its profile assigned", D::settings, assignAnotherKey},
        {"its macro renamed", D::settings,
         [](Scene &scene) { renameMacro(scene, scene.ledger.macro(), u"Renamed"_s); }},
        {"its macro's events changed", D::settings, changeEvents},
        {"brightness changed on the keyboard", D::settings, [](Scene &scene) { scene.pressBrightnessUp(); }},
        {"unplugged", D::unplugged, [](Scene &scene) { scene.unplug(); }},
        {"unplugged and plugged in", D::unpluggedBriefly, unplugBriefly},
        {"changed while unplugged", D::unpluggedBriefly, changeWhileUnplugged},
        {"daemon restarted", D::restarted, restart},
        {"file opened", D::fileOpened, openFile},
        {"daemon ended", D::daemonEnded, [](Scene &scene) { scene.endDaemon(); }},
    };
    return events;
}

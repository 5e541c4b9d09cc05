// SPDX-License-Identifier: MIT
// The configurator's window as a separate process: a test can stop it, or end its bus. It reads commands from its
// standard input, one a line, and answers each with a line:
//   choose KEY POSITION   chooses an assignment of a key, as a user does: "done" when the window can be used again
//   patience MS           sets how long the window waits for a reply: "done"
//   show                  reports the state of the window as JSON: profiles, macros, whether the controls are enabled,
//                         the texts of the alerts, the number of notifications of changes that it has handled
// It ends when its input ends.
#include "base/qlcoreutility.h"
#include "daemonlink/daemontransport.h"
#include "platform/popupbutton.h"
#include "platform/sheet.h"
#include "tests/app/hubfixture.h"

#include <QAction>
#include <QApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QSocketNotifier>
#include <QTest>

#include <cstdio>
#include <iostream>
#include <string>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

int updates = 0; // notifications of changes that the window has handled

QByteArray shown(const Hub &hub)
{
    QStringList alerts;
    for (const Sheet *sheet : hub.window->findChildren<Sheet *>()) {
        for (const QLabel *label : sheet->findChildren<QLabel *>()) {
            if (label->isVisible() && !label->text().isEmpty())
                alerts += label->text();
        }
    }
    const QVariantMap state{{u"profiles"_s, hub.controller->profilesArray()},
                            {u"macros"_s, hub.controller->macrosArray()},
                            {u"isEnabled"_s, hub.find<QWidget>("mA")->isEnabled()},
                            {u"alerts"_s, alerts},
                            {u"updates"_s, updates}};
    return QJsonDocument(QJsonObject::fromVariantMap(state)).toJson(QJsonDocument::Compact);
}

QByteArray obey(const Hub &hub, const QStringList &words)
{
    if (words.value(0) == "show"_L1)
        return shown(hub);
    if (words.value(0) == "patience"_L1) {
        setReplyPollInterval(std::chrono::microseconds(words.value(1).toInt() * 1000 / replyPollCount));
        return "done";
    }
    QWidget *key = words.value(0) == "choose"_L1 ? hub.window->findChild<QWidget *>(u'm' + words.value(1)) : nullptr;
    if (!key)
        return "unknown";
    QTest::mouseClick(key, Qt::LeftButton);
    hub.find<PopUpButton>("mAssignFunction")->itemAtIndex(words.value(2).toInt())->trigger();
    return "done";
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const HubResources resources;
    setReplyPollInterval(replyPollInterval);
    const Hub hub;
    hub.controller->initializeDevice();
    DistributedNotificationCenter::defaultCenter().addObserver(&application, DaemonProtocol::profileUpdated,
                                                               [](const DistributedNotification &) { ++updates; });
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        std::string line; // the test sends one at a time
        if (!std::getline(std::cin, line))
            return QCoreApplication::quit();
        std::puts(obey(hub, QString::fromStdString(line).split(u' ')).constData());
        std::fflush(stdout);
    });
    return QApplication::exec();
}

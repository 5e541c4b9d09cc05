// SPDX-License-Identifier: MIT
// Locates a control of another program on the screen: kestra-find-control PID [NAME]
// Prints "x y width height states description" of the first control with the name that is not a label (x, y: its
// centre). A combo box has its value in place of a description. Without a name it lists every control.
// kestra-find-control --serve asks programs that start later to describe their controls, until it is ended.
#include "tools/tour/accessibilitybus.h"
#include "tools/tour/accessibletree.h"

#include <QCoreApplication>
#include <QTextStream>

using namespace Qt::StringLiterals;

namespace {

int serve()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    QObject object;
    new AccessibilityBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), &object);
    new AccessibilityStatus(&object);
    if (!bus.registerObject(u"/org/a11y/bus"_s, &object) || !bus.registerService(u"org.a11y.Bus"_s))
        return 1;
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QTextStream out(stdout);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--serve"_L1)
        return serve();
    if (arguments.size() != 2 && arguments.size() != 3) {
        out << "Usage: kestra-find-control PID [NAME] | --serve\n";
        return 2;
    }
    const AccessibleTree tree(QDBusConnection::sessionBus(), arguments.at(1).toUInt());
    const QString name = arguments.value(2);
    bool found = false;
    const QList<AccessibleControl> controls = tree.showingControls();
    for (const AccessibleControl &control : controls) {
        const QPoint centre = control.screenRect.center();
        const QString where = u"%1 %2 %3 %4 %5"_s.arg(centre.x())
                                  .arg(centre.y())
                                  .arg(control.screenRect.width())
                                  .arg(control.screenRect.height())
                                  .arg(control.states.join(u','));
        const QString &shown = control.value.isEmpty() ? control.description : control.value;
        if (arguments.size() == 2) {
            out << where << " | " << control.role << " | " << control.name << " | " << shown << '\n';
            found = true;
        } else if (control.name == name && control.role != "label"_L1) {
            out << where << ' ' << shown << '\n';
            return 0;
        }
    }
    return found ? 0 : 1;
}

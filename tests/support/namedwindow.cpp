// SPDX-License-Identifier: MIT
// A window of an application with a given name: "namedwindow NAME". NAME becomes the class of the window on X11 and the
// application id on Wayland. The program ends when its standard input is closed: no window outlives the test that
// opened it.
#include <QGuiApplication>
#include <QRasterWindow>
#include <QSocketNotifier>

#include <unistd.h>

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 1;
    QCoreApplication::setApplicationName(QString::fromLocal8Bit(argv[1]));
    QGuiApplication::setDesktopFileName(QString::fromLocal8Bit(argv[1]));
    const QGuiApplication application(argc, argv);
    QRasterWindow window;
    window.resize(200, 100);
    window.show();
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [] {
        char byte = 0;
        if (::read(STDIN_FILENO, &byte, 1) <= 0)
            QCoreApplication::quit();
    });
    return QGuiApplication::exec();
}

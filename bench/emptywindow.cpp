// SPDX-License-Identifier: MIT
// The lower bound of the start-up measurement: a window with only as many buttons as the keyboard has keys. Prints
// "ready" when the display has its first picture, as the configurator does for startup.py.
#include <QApplication>
#include <QGridLayout>
#include <QPushButton>
#include <QTimer>

#include <cstdio>

namespace {

constexpr int buttonCount = 124;
constexpr int columns = 22;

class EmptyWindow : public QWidget
{
public:
    EmptyWindow()
    {
        auto *layout = new QGridLayout(this);
        for (int index = 0; index < buttonCount; ++index)
            layout->addWidget(new QPushButton(QString::number(index)), index / columns, index % columns);
        resize(1200, 500);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        if (mSaidReady)
            return;
        mSaidReady = true;
        // Children are painted after their parent. The line therefore waits for this paint to end, and then for the
        // display to receive it.
        QTimer::singleShot(0, this, [] {
            QGuiApplication::sync();
            std::fputs("ready\n", stdout);
            std::fflush(stdout);
        });
    }

private:
    bool mSaidReady = false;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    EmptyWindow window;
    window.show();
    return QApplication::exec();
}

// SPDX-License-Identifier: MIT
// The floor of the start-up measurement: a window with as many buttons as the keyboard has keys, and nothing else.
// Says "ready" on its standard output when the display has its first picture, as the configurator does for startup.py.
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
        // The children are painted after their parent, so the line waits for this paint to end, and then for the
        // display to have got it.
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

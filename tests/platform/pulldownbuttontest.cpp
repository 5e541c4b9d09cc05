// SPDX-License-Identifier: MIT
#include "platform/pulldownbutton.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QDir>
#include <QImage>
#include <QMenu>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class PulldownButtonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void itemsHaveTheirTagsInOrder();
    void choosingAnItemCallsTheHandlerOnce();
    void openingValidatesTheItems();
    void settingCommandsReplacesTheMenu();
    void picturesAreVisibleOnADarkButton();

private:
    QTemporaryDir mResources;
    QList<MenuCommand> mCommands{{1, "lkeyFirst"}, {2, "lkeySecond"}, {3, "lkeyThird"}};
};

void PulldownButtonTest::initTestCase()
{
    qputenv("QUILL_KESTRA_RESOURCES", QFile::encodeName(mResources.path()));
    QVERIFY(QDir(mResources.path()).mkpath(u"images"_s));
    QImage image(16, 16, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    for (int y = 4; y < 12; ++y) {
        for (int x = 4; x < 12; ++x)
            image.setPixelColor(x, y, Qt::black);
    }
    QVERIFY(image.save(mResources.filePath(u"images/GearOn.png"_s)));
    QVERIFY(image.save(mResources.filePath(u"images/GearOff.png"_s)));
}

void PulldownButtonTest::itemsHaveTheirTagsInOrder()
{
    PulldownButton button;
    button.setCommands(mCommands, [](const QAction *) {}, {});
    QList<int> tags;
    for (const QAction *item : button.menu()->actions())
        tags.append(item->data().toInt());
    QCOMPARE(tags, (QList<int>{1, 2, 3}));
    QCOMPARE(button.itemWithTag(2)->objectName(), u"lkeySecond"_s);
    QVERIFY(!button.itemWithTag(4));
    QCOMPARE(button.text(), QString()); // the picture alone
}

void PulldownButtonTest::choosingAnItemCallsTheHandlerOnce()
{
    QList<int> chosen;
    PulldownButton button;
    button.setCommands(mCommands, [&](const QAction *item) { chosen.append(item->data().toInt()); }, {});
    button.itemWithTag(3)->trigger();
    QCOMPARE(chosen, QList<int>{3});
}

void PulldownButtonTest::openingValidatesTheItems()
{
    int enabledTag = 1;
    PulldownButton button;
    button.setCommands(
        mCommands, [](const QAction *) {}, [&](const QAction *item) { return item->data().toInt() == enabledTag; });
    for (const int tag : {1, 2}) {
        enabledTag = tag;
        button.menu()->popup({});
        QCOMPARE(button.itemWithTag(1)->isEnabled(), tag == 1);
        QCOMPARE(button.itemWithTag(2)->isEnabled(), tag == 2);
        button.menu()->close();
    }
}

void PulldownButtonTest::settingCommandsReplacesTheMenu()
{
    PulldownButton button;
    button.setCommands(mCommands, [](const QAction *) {}, {});
    button.setCommands({{7, "lkeyFirst"}}, [](const QAction *) {}, {});
    QCOMPARE(button.menu()->actions().size(), 1);
    QVERIFY(button.itemWithTag(7));
}

void PulldownButtonTest::picturesAreVisibleOnADarkButton()
{
    PulldownButton button;
    button.setImages(u"GearOn.png"_s, u"GearOff.png"_s);
    button.show();
    const auto middle = [&](QIcon::Mode mode) { return button.icon().pixmap(16, 16, mode).toImage().pixelColor(8, 8); };
    QCOMPARE(middle(QIcon::Normal), QColor(Qt::black));
    QPalette dark = button.palette();
    dark.setColor(QPalette::Button, Qt::black);
    dark.setColor(QPalette::ButtonText, Qt::white);
    dark.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::gray);
    button.setPalette(dark);
    QCOMPARE(middle(QIcon::Normal), QColor(Qt::white));
    QCOMPARE(middle(QIcon::Disabled), QColor(Qt::gray));
}

QTEST_MAIN(PulldownButtonTest)
#include "pulldownbuttontest.moc"

// SPDX-License-Identifier: MIT
// The program's warning alerts: their content, and that dismissing them changes nothing.
#include "app/qlcerrorhandler.h"
#include "platform/sheet.h"
#include "tests/support/testmain.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QStyle>
#include <QTest>

using namespace Qt::StringLiterals;

class QLCErrorHandlerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void showsTheTextsAndBothButtons();
    void hasOneButtonWithoutAnAlternativeLabel();
    void closesByEitherButton_data();
    void closesByEitherButton();
    void escapePressesTheLastButton_data();
    void escapePressesTheLastButton();
    void showsTextsUnchanged();

private:
    [[nodiscard]] Sheet *show(const QString &alternative) const;
    [[nodiscard]] static QStringList buttons(const Sheet *alert);

    std::unique_ptr<QWidget> mWindow;
};

void QLCErrorHandlerTest::init()
{
    mWindow = std::make_unique<QWidget>();
    mWindow->show();
    QVERIFY(QTest::qWaitForWindowActive(mWindow.get()));
}

Sheet *QLCErrorHandlerTest::show(const QString &alternative) const
{
    QLCErrorHandler::showErrorWithTitleErrorDescriptionDefaultButtonLabelAlternativeButtonLabelToWindow(
        u"Title"_s, u"Description"_s, u"Default"_s, alternative, mWindow.get());
    return mWindow->findChild<Sheet *>(u"alert"_s);
}

QStringList QLCErrorHandlerTest::buttons(const Sheet *alert)
{
    QStringList texts;
    for (const auto *button : alert->findChildren<QPushButton *>())
        texts += button->text().remove(u'&');
    texts.sort();
    return texts;
}

void QLCErrorHandlerTest::showsTheTextsAndBothButtons()
{
    const Sheet *alert = show(u"Alternative"_s);
    QVERIFY(alert && alert->isVisible());
    QCOMPARE(alert->parentWidget(), mWindow.get());
    QCOMPARE(alert->windowModality(), Qt::WindowModal);
    QCOMPARE(alert->findChild<QLabel *>(u"alertTitle"_s)->text(), u"Title"_s);
    QCOMPARE(alert->findChild<QLabel *>(u"alertDescription"_s)->text(), u"Description"_s);
    QCOMPARE(buttons(alert), (QStringList{u"Alternative"_s, u"Default"_s}));
    const auto *button = alert->findChild<QPushButton *>(u"alertDefaultButton"_s);
    QCOMPARE(button->text().remove(u'&'), u"Default"_s);
    QVERIFY(button->isDefault());
    // The default button is at the end, where the desktop expects it.
    QVERIFY(button->x() > alert->findChild<QPushButton *>(u"alertAlternativeButton"_s)->x());
    const int size = alert->style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, alert);
    const QImage warning =
        alert->style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, alert).pixmap(size).toImage();
    int warnings = 0;
    for (const auto *label : alert->findChildren<QLabel *>())
        warnings += label->pixmap(Qt::ReturnByValue).toImage() == warning;
    QCOMPARE(warnings, 1);
}

void QLCErrorHandlerTest::hasOneButtonWithoutAnAlternativeLabel()
{
    const Sheet *alert = show({});
    QCOMPARE(buttons(alert), QStringList{u"Default"_s});
}

void QLCErrorHandlerTest::closesByEitherButton_data()
{
    QTest::addColumn<QString>("button");
    QTest::newRow("default") << u"alertDefaultButton"_s;
    QTest::newRow("alternative") << u"alertAlternativeButton"_s;
}

void QLCErrorHandlerTest::closesByEitherButton()
{
    QFETCH(QString, button);
    const QPointer<Sheet> alert = show(u"Alternative"_s);
    QTest::mouseClick(alert->findChild<QPushButton *>(button), Qt::LeftButton);
    QTRY_VERIFY(!alert);
    QVERIFY(mWindow->isVisible() && mWindow->isEnabled());
}

void QLCErrorHandlerTest::escapePressesTheLastButton_data()
{
    QTest::addColumn<QString>("alternative");
    QTest::addColumn<QString>("pressed");
    QTest::newRow("two buttons") << u"Alternative"_s << u"Alternative"_s;
    QTest::newRow("one button") << QString() << u"Default"_s;
}

void QLCErrorHandlerTest::escapePressesTheLastButton()
{
    QFETCH(QString, alternative);
    QFETCH(QString, pressed);
    const QPointer<Sheet> alert = show(alternative);
    QStringList clicked;
    for (const auto *button : alert->findChildren<QPushButton *>())
        connect(button, &QPushButton::clicked, this,
                [&clicked, text = button->text().remove(u'&')] { clicked += text; });
    QTest::keyClick(alert, Qt::Key_Escape);
    QCOMPARE(clicked, QStringList{pressed});
    QTRY_VERIFY(!alert);
}

void QLCErrorHandlerTest::showsTextsUnchanged()
{
    QLCErrorHandler::showErrorWithTitleErrorDescriptionDefaultButtonLabelAlternativeButtonLabelToWindow(
        u"<b>Title</b>"_s, u"a <i>b</i> &amp; c"_s, u"OK"_s, {}, mWindow.get());
    for (const char *name : {"alertTitle", "alertDescription"})
        QCOMPARE(mWindow->findChild<QLabel *>(QLatin1StringView(name))->textFormat(), Qt::PlainText);
}

QTEST_MAIN(QLCErrorHandlerTest)
#include "qlcerrorhandlertest.moc"

// SPDX-License-Identifier: MIT
#include "platform/statusline.h"
#include "tests/support/testmain.h"

#include <QAccessible>
#include <QApplication>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

QImage drawn(QWidget &widget)
{
    QImage picture(widget.size(), QImage::Format_RGB32);
    widget.render(&picture);
    return picture;
}

const QString longText = u"A text that is much longer than the line, "_s.repeated(20);

} // namespace

class StatusLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void longTextDoesNotWidenTheWindow();
    void longTextIsElided();
    void toolTipHasTheWholeElidedText();
    void screenReadersGetAStatus();
};

void StatusLineTest::longTextDoesNotWidenTheWindow()
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *line = new StatusLine;
    layout->addWidget(line);
    window.resize(300, 100);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QSize least = window.minimumSizeHint();
    line->setText(longText);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(window.size(), QSize(300, 100));
    QCOMPARE(window.minimumSizeHint(), least);
    QVERIFY(line->height() >= line->fontMetrics().height());
}

void StatusLineTest::longTextIsElided()
{
    StatusLine line;
    line.resize(200, 20);
    line.setText(longText);
    const QImage elided = drawn(line);
    line.setText(line.fontMetrics().elidedText(longText, Qt::ElideRight, 200));
    QCOMPARE(elided, drawn(line));
    line.setText(QString());
    QVERIFY(drawn(line) != elided);
}

void StatusLineTest::toolTipHasTheWholeElidedText()
{
    StatusLine line;
    line.resize(300, 20);
    line.show();
    QVERIFY(QTest::qWaitForWindowExposed(&line));
    const auto askForToolTip = [&line] {
        QHelpEvent help(QEvent::ToolTip, QPoint(5, 5), line.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&line, &help);
    };
    line.setText(u"<b>short</b>"_s);
    askForToolTip();
    QVERIFY(QToolTip::text().isEmpty());
    line.setText(u"<b>A name</b> "_s + longText);
    askForToolTip();
    QVERIFY(QToolTip::text().contains(longText.trimmed()));
    QVERIFY(QToolTip::text().contains(u"&lt;b&gt;"_s));
    QToolTip::hideText();
}

void StatusLineTest::screenReadersGetAStatus()
{
    StatusLine line;
    line.setText(u"All is well."_s);
    const QAccessibleInterface *status = QAccessible::queryAccessibleInterface(&line);
    QVERIFY(status);
    QCOMPARE(status->role(), QAccessible::StatusBar);
    QCOMPARE(status->text(QAccessible::Name), u"All is well."_s);
    QCOMPARE(line.focusPolicy(), Qt::NoFocus);
}

QTEST_MAIN(StatusLineTest)
#include "statuslinetest.moc"

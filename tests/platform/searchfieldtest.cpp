// SPDX-License-Identifier: MIT
#include "platform/searchfield.h"

#include "tests/support/darkpalette.h"
#include "tests/support/testmain.h"

#include <QApplication>
#include <QTest>

namespace {

constexpr int readable = 90; // distance of the grey values on the screen

int distanceOfPlaceholder(const QWidget &field)
{
    const QColor base = field.palette().color(QPalette::Base);
    const QColor text = field.palette().color(QPalette::PlaceholderText);
    return qAbs(qGray(text.rgb()) - qGray(base.rgb())) * text.alpha() / 255;
}

} // namespace

class SearchFieldTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QApplication::setPalette(QPalette()); }

    void placeholderIsReadableOnADarkDesktopWithoutAColourForIt()
    {
        QPalette incomplete = darkPalette();
        incomplete.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
        SearchField early;
        QApplication::setPalette(incomplete);
        QCoreApplication::processEvents(); // a changed palette reaches the widgets by events
        const SearchField late;
        QVERIFY(distanceOfPlaceholder(early) >= readable);
        QVERIFY(distanceOfPlaceholder(late) >= readable);
        // It follows the desktop back.
        QPalette bright;
        bright.setColor(QPalette::Base, Qt::white);
        bright.setColor(QPalette::Text, Qt::black);
        QApplication::setPalette(bright);
        QCoreApplication::processEvents();
        QVERIFY(distanceOfPlaceholder(early) >= readable);
        QCOMPARE(early.palette().color(QPalette::Text), QColor(Qt::black));
    }

    void theDesktopsColourStays()
    {
        QApplication::setPalette(darkPalette());
        const SearchField field;
        QCOMPARE(field.palette().color(QPalette::PlaceholderText), darkPalette().color(QPalette::PlaceholderText));
    }
};

QTEST_MAIN(SearchFieldTest)
#include "searchfieldtest.moc"

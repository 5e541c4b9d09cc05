// SPDX-License-Identifier: MIT
#include "daemon/capture/escapehold.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

Q_DECLARE_METATYPE(std::optional<EscapeHold::Time>)

class EscapeHoldTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsASecondAfterEscapeWasPressedAlone_data();
    void endsASecondAfterEscapeWasPressedAlone();
};

void EscapeHoldTest::endsASecondAfterEscapeWasPressedAlone_data()
{
    // "+" is a press, "-" a release; each is 100 ms after the one before, the first at 0.
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<std::optional<EscapeHold::Time>>("end");
    const std::optional<EscapeHold::Time> none;
    QTest::newRow("no key") << QStringList() << none;
    QTest::newRow("pressed") << QStringList{u"+41"_s} << std::optional<EscapeHold::Time>(1s);
    QTest::newRow("released") << QStringList{u"+41"_s, u"-41"_s} << none;
    QTest::newRow("pressed again") << QStringList{u"+41"_s, u"-41"_s, u"+41"_s}
                                   << std::optional<EscapeHold::Time>(1200ms);
    QTest::newRow("told twice") << QStringList{u"+41"_s, u"+41"_s} << std::optional<EscapeHold::Time>(1s);
    QTest::newRow("another key") << QStringList{u"+4"_s} << none;
    QTest::newRow("after another key") << QStringList{u"+4"_s, u"-4"_s, u"+41"_s}
                                       << std::optional<EscapeHold::Time>(1200ms);
    QTest::newRow("with another key down") << QStringList{u"+4"_s, u"+41"_s} << none;
    QTest::newRow("another key released meanwhile") << QStringList{u"+4"_s, u"+41"_s, u"-4"_s} << none;
    QTest::newRow("another key pressed meanwhile") << QStringList{u"+41"_s, u"+4"_s} << none;
    QTest::newRow("another key typed meanwhile") << QStringList{u"+41"_s, u"+4"_s, u"-4"_s} << none;
    QTest::newRow("another key from before released meanwhile") << QStringList{u"+41"_s, u"-4"_s} << none;
    QTest::newRow("released from before") << QStringList{u"-41"_s} << none;
}

void EscapeHoldTest::endsASecondAfterEscapeWasPressedAlone()
{
    QFETCH(QStringList, changes);
    QFETCH(std::optional<EscapeHold::Time>, end);
    EscapeHold hold;
    EscapeHold::Time time{};
    for (const QString &change : changes) {
        const HidUsage key{.page = HidUsage::keyboardPage, .usage = change.mid(1).toUShort()};
        hold.keyChanged(key, change.startsWith(u'+'), time);
        time += 100ms;
    }
    QCOMPARE(hold.end(), end);
}

QTEST_GUILESS_MAIN(EscapeHoldTest)
#include "escapeholdtest.moc"

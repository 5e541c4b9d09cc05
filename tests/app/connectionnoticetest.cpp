// SPDX-License-Identifier: MIT
// The header's notice without a keyboard and without its service.
#include "app/connectionnotice.h"

#include "app/statusreporter.h"
#include "base/text.h"
#include "tests/support/testmain.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using Service = StatusState::Service;

class ConnectionNoticeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installTexts(qEnvironmentVariable("KESTRA_BIN_DIR") + u"/resources/texts"_s, {u"en"_s}); }

    void offersWhatHelps_data()
    {
        QTest::addColumn<int>("service");
        QTest::addColumn<bool>("isAttached");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("button");
        const QString noService = u"The keyboard service does not respond."_s;
        QTest::newRow("not opened yet") << int(Service::awaited) << false << QString() << QString();
        QTest::newRow("all is well") << int(Service::running) << true << QString() << QString();
        QTest::newRow("no keyboard") << int(Service::running) << false
                                     << u"No keyboard. Connect it, or choose another one."_s << u"Keyboard…"_s;
        QTest::newRow("silent") << int(Service::silent) << true << noService << u"Troubleshooting"_s;
        QTest::newRow("absent") << int(Service::absent) << false << noService << u"Troubleshooting"_s;
    }

    void offersWhatHelps()
    {
        QFETCH(int, service);
        QFETCH(bool, isAttached);
        QFETCH(QString, text);
        ConnectionNotice notice;
        StatusReporter reporter(StatusTimes{});
        reporter.setNotice(&notice);
        reporter.setState({.service = static_cast<Service>(service), .isAttached = isAttached});
        QCOMPARE(notice.isHidden(), text.isEmpty());
        if (!text.isEmpty())
            QCOMPARE(notice.findChild<QLabel *>(u"mConnectionNoticeText"_s)->text(), text);
        QStringList offered;
        for (const QPushButton *button : notice.findChildren<QPushButton *>()) {
            if (!notice.isHidden() && !button->isHidden())
                offered += button->text();
        }
        QTEST(offered.join(u','), "button");
        // It ends with its reason.
        reporter.setState({.service = Service::running, .isAttached = true});
        QVERIFY(notice.isHidden());
    }

    void buttonsOpenTheChooserAndTheHelp()
    {
        ConnectionNotice notice;
        QSignalSpy keyboards(&notice, &ConnectionNotice::keyboardsRequested);
        QSignalSpy help(&notice, &ConnectionNotice::helpRequested);
        notice.findChild<QPushButton *>(u"mConnectionNoticeKeyboards"_s)->click();
        QCOMPARE(keyboards.size(), 1);
        QCOMPARE(help.size(), 0);
        notice.findChild<QPushButton *>(u"mConnectionNoticeHelp"_s)->click();
        QCOMPARE(help.size(), 1);
    }
};

QTEST_MAIN(ConnectionNoticeTest)
#include "connectionnoticetest.moc"

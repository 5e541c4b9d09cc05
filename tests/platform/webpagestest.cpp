// SPDX-License-Identifier: MIT
#include "platform/webpages.h"
#include "platform/addresses.h"
#include "tests/support/testmain.h"

#include <QDesktopServices>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

class WebPagesTest : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void openAddress(const QUrl &address) { mOpened.append(address); }

private Q_SLOTS:
    void init();
    void cleanup();
    void handsTheAddressToTheDesktop();
    void noticesThatNoProgramOpensIt();
    void doesNotOpenPlaceholders_data();
    void doesNotOpenPlaceholders();

private:
    QList<QUrl> mOpened;
};

void WebPagesTest::init()
{
    mOpened.clear();
    QDesktopServices::setUrlHandler(u"https"_s, this, "openAddress");
}

void WebPagesTest::cleanup()
{
    QDesktopServices::unsetUrlHandler(u"https"_s);
}

void WebPagesTest::handsTheAddressToTheDesktop()
{
    const QUrl address(u"https://quill-keyboards.invalid/drivers"_s);
    QCOMPARE(WebPages::open(address), WebPages::Outcome::opened);
    QCOMPARE(mOpened, QList<QUrl>{address});
}

void WebPagesTest::noticesThatNoProgramOpensIt()
{
    QDesktopServices::unsetUrlHandler(u"https"_s);
    // The offscreen platform of the tests has no browser, and Qt warns about that.
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"does not support"_s));
    QCOMPARE(WebPages::open(QUrl(u"https://quill-keyboards.invalid/"_s)), WebPages::Outcome::noBrowser);
}

void WebPagesTest::doesNotOpenPlaceholders_data()
{
    QTest::addColumn<QString>("address");
    for (const QLatin1StringView address : {Addresses::driverDownloads, Addresses::support, Addresses::community,
                                            Addresses::firstSocialNetwork, Addresses::secondSocialNetwork})
        QTest::newRow(address.data()) << QString(address);
}

void WebPagesTest::doesNotOpenPlaceholders()
{
    QFETCH(QString, address);
    QCOMPARE(WebPages::open(QUrl(address)), WebPages::Outcome::placeholder);
    QCOMPARE(mOpened, QList<QUrl>());
}

QTEST_MAIN(WebPagesTest)
#include "webpagestest.moc"

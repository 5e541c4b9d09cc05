// SPDX-License-Identifier: MIT
#include "profiles/profilefile.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

class ProfileFileTest : public QObject
{
    Q_OBJECT

private slots:
    void importedNamesAreUnique_data()
    {
        QTest::addColumn<QVariant>("name");
        QTest::addColumn<QString>("imported");
        QTest::newRow("free") << QVariant(u"Play"_s) << u"Play"_s;
        QTest::newRow("taken") << QVariant(u"Work"_s) << u"Work(2)"_s;
        QTest::newRow("missing") << QVariant() << u"Untitled Profile(2)"_s;
        QTest::newRow("empty") << QVariant(u""_s) << u"Untitled Profile(2)"_s;
        QTest::newRow("no text") << QVariant(7) << u"Untitled Profile(2)"_s;
    }

    void importedNamesAreUnique()
    {
        QFETCH(QVariant, name);
        const QVariantList profiles{QVariantMap{{u"ProfileName"_s, u"Work"_s}},
                                    QVariantMap{{u"ProfileName"_s, u"Untitled Profile"_s}}};
        QVariantMap record{{u"Keys"_s, 12}, {u"Unknown"_s, QVariantList{1, u"two"_s}}};
        if (name.isValid())
            record.insert(u"ProfileName"_s, name);
        QVariantMap imported = ProfileFile::importedRecord(record, profiles);
        QTEST(imported.take(u"ProfileName"_s).toString(), "imported");
        record.remove(u"ProfileName"_s);
        QCOMPARE(imported, record); // everything else is unchanged
    }
};

QTEST_GUILESS_MAIN(ProfileFileTest)
#include "profilefiletest.moc"

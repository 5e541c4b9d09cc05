// SPDX-License-Identifier: MIT
#include "daemon/settings/settingsdocument.h"
#include "base/document.h"
#include "base/qlcoreutility.h"
#include "base/settingskeys.h"
#include "macros/macrorecord.h"
#include "tests/support/reason.h"
#include "tests/support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace SettingsDocument;

namespace {

QVariantMap profile(const QString &name)
{
    return {{u"ProfileName"_s, name}, {u"Keys"_s, QVariantMap()}};
}

QVariantMap macro(const QString &name, int id = 0)
{
    QVariantMap record{{u"MacroName"_s, name}, {u"sequence"_s, QVariantMap()}};
    if (id != 0)
        record.insert(u"macroID"_s, id);
    return record;
}

QVariantMap document(const QVariantList &profileList, const QVariantList &macroList = {}, int active = 0)
{
    return {{u"Profiles"_s, profileList},
            {u"Macros"_s, macroList},
            {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, active}}}};
}

QList<int> macroIds(const QVariantMap &settings)
{
    QList<int> ids;
    for (const QVariant &record : Document(settings).macros())
        ids += record.toMap().value(u"macroID"_s).toInt();
    return ids;
}

QVariant nested(int depth)
{
    QVariant value = 1;
    for (int level = 0; level < depth; ++level)
        value = QVariantList{value};
    return value;
}

} // namespace

class SettingsDocumentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void minimalDocumentIsValid();
    void recognisesValidDocuments_data();
    void recognisesValidDocuments();
    void largestDocumentCanBeWrittenInsideAReply();
    void completingIsIdempotent();
    void givesEveryMacroAUniqueNumber();
    void neverReusesANumber();
    void onScreenDisplayFollowsTheActiveProfile();
    void gameModeIsABoolean();
};

void SettingsDocumentTest::minimalDocumentIsValid()
{
    QCOMPARE(reasonOf(validate(minimal())), QString());
    QCOMPARE(Document(minimal()).profiles().size(), 1);
    QCOMPARE(completed(minimal()), minimal());
}

void SettingsDocumentTest::recognisesValidDocuments_data()
{
    QTest::addColumn<QVariantMap>("settings");
    QTest::addColumn<bool>("isValid");
    const QVariantMap good = document({profile(u"A"_s), profile(u"B"_s)}, {macro(u"M"_s)}, 1);
    const auto without = [&](const QString &key) {
        QVariantMap changed = good;
        changed.remove(key);
        return changed;
    };
    const auto with = [&](const QString &key, const QVariant &value) {
        QVariantMap changed = good;
        changed.insert(key, value);
        return changed;
    };
    const auto active = [&](const QVariant &value) {
        return with(u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, value}});
    };
    const auto oneProfile = [&](const QString &key, const QVariant &value) {
        QVariantMap record = profile(u"A"_s);
        record.insert(key, value);
        return document({record});
    };
    const QVariantMap event{{u"command"_s, 1}, {u"delay"_s, 0}, {u"page"_s, 7}, {u"argument"_s, 4}};
    const QVariantMap fullMacro =
        MacroRecord::withEvents(macro(u"M"_s), QVariantList(MacroRecord::maximumEvents, event));

    QTest::newRow("good") << good << true;
    QTest::newRow("further keys") << with(u"Other"_s, QVariantList{1}) << true;
    QTest::newRow("no profiles key") << without(u"Profiles"_s) << false;
    QTest::newRow("no macros key") << without(u"Macros"_s) << false;
    QTest::newRow("no device settings") << without(u"DeviceSettings"_s) << false;
    QTest::newRow("profiles are a dictionary") << with(u"Profiles"_s, QVariantMap()) << false;
    QTest::newRow("no profile") << document({}) << false;
    QTest::newRow("20 profiles") << document(QVariantList(20, profile(u"A"_s))) << true;
    QTest::newRow("21 profiles") << document(QVariantList(21, profile(u"A"_s))) << false;
    QTest::newRow("a profile is text") << document({u"x"_s}) << false;
    QTest::newRow("a profile's name is a number") << oneProfile(u"ProfileName"_s, 3) << false;
    QTest::newRow("a profile's keys are an array") << oneProfile(u"Keys"_s, QVariantList()) << false;
    QTest::newRow("a key's entry is a number") << oneProfile(u"Keys"_s, QVariantMap{{u"4"_s, 20}}) << false;
    QTest::newRow("colours are text") << oneProfile(u"LEDKBColors"_s, u"red"_s) << false;
    QTest::newRow("active -1") << active(-1) << false;
    QTest::newRow("active 2 of 2") << active(2) << false;
    QTest::newRow("active is text") << active(u"0"_s) << false;
    QTest::newRow("active is huge") << active(qlonglong(1) << 32) << false;
    QTest::newRow("active is 64 bits wide") << active(qlonglong(1)) << true;
    QTest::newRow("as many macros as fit")
        << document({profile(u"A"_s)}, QVariantList(MacroRecord::maximumMacros, macro(u"M"_s))) << true;
    QTest::newRow("one macro too many") << document({profile(u"A"_s)},
                                                    QVariantList(MacroRecord::maximumMacros + 1, macro(u"M"_s)))
                                        << false;
    QTest::newRow("a macro without a name") << document({profile(u"A"_s)}, {QVariantMap()}) << false;
    QTest::newRow("as many events as fit") << document({profile(u"A"_s)}, QVariantList(5, fullMacro)) << true;
    QTest::newRow("too many events in all") << document(
        {profile(u"A"_s)}, QVariantList(5, fullMacro) + QVariantList{MacroRecord::withEvents(macro(u"N"_s), {event})})
                                            << false;
    QTest::newRow("deep") << with(u"Other"_s, nested(maximumDepth - 2)) << true;
    QTest::newRow("too deep") << with(u"Other"_s, nested(maximumDepth)) << false;
    QTest::newRow("too many values") << with(u"Other"_s, QVariantList(maximumNodes, 1)) << false;
    QTest::newRow("too much text") << with(u"Other"_s, QString(maximumContentBytes / 2, u'x')) << false;
    QTest::newRow("too much data") << with(u"Other"_s, QByteArray(maximumContentBytes + 1, 'x')) << false;
}

void SettingsDocumentTest::recognisesValidDocuments()
{
    QFETCH(QVariantMap, settings);
    QFETCH(bool, isValid);
    const QString problem = reasonOf(validate(settings));
    QVERIFY2(problem.isEmpty() == isValid, qPrintable(problem));
}

void SettingsDocumentTest::largestDocumentCanBeWrittenInsideAReply()
{
    QVariantMap settings = completed(document({profile(u"A"_s)}));
    settings.insert(u"Deep"_s, nested(maximumDepth - 2));
    settings.insert(u"Text"_s, QString(maximumContentBytes / 2 - 3000, u'x'));
    QVariantList values;
    for (int value = 0; value < maximumNodes - 2000; ++value)
        values += value * 1.1;
    settings.insert(u"Values"_s, values);
    QCOMPARE(reasonOf(validate(settings)), QString());
    const auto data =
        QlCoreUtility::convertDictionaryToData(QVariantMap{{u"ReturnStatus"_s, 0}, {u"ReturnDictionary"_s, settings}});
    QVERIFY(data);
    const auto back = QlCoreUtility::convertDataToDictionary(data);
    QVERIFY(back);
    QCOMPARE(back->value(u"ReturnDictionary"_s).toMap().value(u"Values"_s).toList().size(), values.size());
}

void SettingsDocumentTest::completingIsIdempotent()
{
    const QVariantMap once =
        completed(document({profile(u"A"_s)}, {macro(u"M"_s, 7), macro(u"N"_s, 7), macro(u"O"_s)}));
    QCOMPARE(completed(once), once);
    QCOMPARE(reasonOf(validate(once)), QString());
}

void SettingsDocumentTest::givesEveryMacroAUniqueNumber()
{
    const QVariantMap settings =
        completed(document({profile(u"A"_s)}, {macro(u"M"_s), macro(u"N"_s, 7), macro(u"O"_s, 7), macro(u"P"_s, -3),
                                               macro(u"Q"_s, 2'147'483'647)}));
    QCOMPARE(macroIds(settings), QList<int>({8, 7, 9, 10, 11}));
}

void SettingsDocumentTest::neverReusesANumber()
{
    QVariantMap settings = completed(document({profile(u"A"_s)}, {macro(u"M"_s), macro(u"N"_s)}));
    QCOMPARE(macroIds(settings), QList<int>({1, 2}));
    settings = completed(withMacros(settings, {Document(settings).macros().first()})); // N no longer exists
    settings = completed(withMacros(settings, Document(settings).macros() << macro(u"O"_s)));
    QCOMPARE(macroIds(settings), QList<int>({1, 3}));
}

void SettingsDocumentTest::onScreenDisplayFollowsTheActiveProfile()
{
    QVariantMap off = profile(u"Off"_s);
    off.insert(u"ProfileOSDOn"_s, 0);
    QVariantMap on = profile(u"On"_s);
    on.insert(u"ProfileOSDOn"_s, true);
    const auto osd = [](const QVariantMap &settings) {
        return completed(settings).value(u"DeviceSettings"_s).toMap().value(u"ProfileOSDOn"_s);
    };
    QCOMPARE(osd(document({off, on}, {}, 0)), QVariant(0));
    QCOMPARE(osd(document({off, on}, {}, 1)), QVariant(1));
    QCOMPARE(osd(document({profile(u"None"_s)})), QVariant(0));
    QCOMPARE(osd(withDeviceSetting(document({profile(u"None"_s)}), "ProfileOSDOn"_L1, 1)),
             QVariant(1)); // keeps its value
}

void SettingsDocumentTest::gameModeIsABoolean()
{
    for (const QVariant &value : {QVariant(), QVariant(0), QVariant(u"x"_s)})
        QCOMPARE(completed(withDeviceSetting(document({profile(u"A"_s)}), "GameMode"_L1, value))
                     .value(u"DeviceSettings"_s)
                     .toMap()
                     .value(u"GameMode"_s)
                     .typeId(),
                 int(QMetaType::Bool));
    QVERIFY(Document(completed(withDeviceSetting(document({profile(u"A"_s)}), "GameMode"_L1, 1)))
                .deviceSettings()
                .isGameModeOn());
}

QTEST_APPLESS_MAIN(SettingsDocumentTest)
#include "settingsdocumenttest.moc"

// SPDX-License-Identifier: MIT
#include "platform/applicationinformation.h"
#include "tests/support/testmain.h"

#include "base/propertylist.h"
#include "tests/support/writtenfile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class ApplicationInformationTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        mFolder = std::make_unique<QTemporaryDir>();
        QVERIFY(mFolder->isValid());
        QVERIFY(QDir(path(u""_s)).mkpath(u"share/applications/games"_s));
        qputenv("XDG_DATA_HOME", QFile::encodeName(path(u"share"_s)));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(path(u"nothing"_s)));
        qputenv("LC_ALL", "de_DE.UTF-8");
    }

    void anEntryGivesAllFiveTexts()
    {
        const QString file = writeEntry(u"share/applications/games/racer.desktop"_s,
                                        "Name=Racer\nName[de]=Rennen\n"
                                        "Exec=/opt/racer/bin/racer --full %U\nStartupWMClass=Racer.x86_64\n");
        const std::optional<QVariantMap> information = ApplicationInformation::read(file);
        QVERIFY(information);
        const QVariantMap expected{{u"NSBundleResolvedPath"_s, file},
                                   {u"CFBundleName"_s, u"Rennen"_s},
                                   {u"CFBundleExecutable"_s, u"racer"_s},
                                   {u"CFBundleIdentifier"_s, u"games-racer.desktop"_s},
                                   {u"CFBundleSignature"_s, u"Racer.x86_64"_s}};
        QCOMPARE(*information, expected);
    }

    void theResolvedPathFollowsLinksAndTheIdentifierDoesNot()
    {
        const QString file = writeEntry(u"real.desktop"_s, "Name=A\nExec=a\n");
        const QString link = path(u"share/applications/org.example.A.desktop"_s);
        QVERIFY(QFile::link(file, link));
        const QVariantMap information = ApplicationInformation::read(link).value_or(QVariantMap());
        QCOMPARE(information.value(ApplicationInformation::resolvedPathKey), QVariant(file));
        QCOMPARE(information.value(ApplicationInformation::identifierKey), QVariant(u"org.example.A.desktop"_s));
        QCOMPARE(information.value(ApplicationInformation::signatureKey), QVariant(QString()));
    }

    void outsideOfTheDataFoldersTheFileNameIsTheIdentifier()
    {
        const QString file = writeEntry(u"here.desktop"_s, "Name=A\nExec=a\n");
        QCOMPARE(ApplicationInformation::read(file)->value(ApplicationInformation::identifierKey),
                 QVariant(u"here.desktop"_s));
    }

    void theExecutableIsTheProgramThatRuns_data()
    {
        QTest::addColumn<QByteArray>("exec");
        QTest::addColumn<QVariant>("executable");
        QTest::newRow("a name") << QByteArray("racer") << QVariant(u"racer"_s);
        QTest::newRow("a quoted path") << QByteArray("\"/opt/my racer/racer\" -x") << QVariant(u"racer"_s);
        QTest::newRow("variables before it") << QByteArray("env A=1 B=2 racer") << QVariant(u"racer"_s);
        QTest::newRow("env by its path") << QByteArray("/usr/bin/env A=1 /opt/racer") << QVariant(u"racer"_s);
        QTest::newRow("a quote left open") << QByteArray("\"racer") << QVariant();
        QTest::newRow("nothing but variables") << QByteArray("env A=1") << QVariant();
    }

    void theExecutableIsTheProgramThatRuns()
    {
        QFETCH(QByteArray, exec);
        const QString file = writeEntry(u"a.desktop"_s, "Exec=" + exec + "\n");
        QTEST(ApplicationInformation::read(file)->value(ApplicationInformation::executableKey), "executable");
    }

    void aBundleGivesItsOwnInformation()
    {
        const QVariantMap content{{u"CFBundleExecutable"_s, u"racer"_s}, {u"CFBundleVersion"_s, 7}};
        write(u"Racer.app/Contents/Info.plist"_s, *PropertyList::writeBinary(content));
        QVariantMap expected = content;
        expected.insert(u"NSBundleResolvedPath"_s, path(u"Racer.app"_s));
        QCOMPARE(ApplicationInformation::read(path(u"Racer.app"_s)).value_or(QVariantMap()), expected);
        // A path in the form that a panel may return.
        QCOMPARE(ApplicationInformation::read(path(u"Racer.app/"_s)).value_or(QVariantMap()), expected);
    }

    void whatIsNoApplicationGivesNothing_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("no path") << QString() << QByteArray();
        QTest::newRow("missing") << u"missing.desktop"_s << QByteArray();
        QTest::newRow("another kind of file") << u"a.txt"_s << QByteArray("[Desktop Entry]\nType=Application\n");
        QTest::newRow("a link to a page") << u"a.desktop"_s << QByteArray("[Desktop Entry]\nType=Link\nURL=x\n");
        QTest::newRow("not an entry") << u"a.desktop"_s << QByteArray("\0\1\2", 3);
        QTest::newRow("too large") << u"a.desktop"_s << QByteArray(2 * 1024 * 1024, 'x');
        QTest::newRow("a damaged bundle") << u"B.app/Contents/Info.plist"_s << QByteArray("bplist00");
    }

    void whatIsNoApplicationGivesNothing()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        if (!content.isEmpty())
            write(name, content);
        const QString application = name.section(u'/', 0, 0);
        QVERIFY(!ApplicationInformation::read(application.isEmpty() ? QString() : path(application)));
    }

    void aPipeGivesNothingAndIsNotWaitedFor_data()
    {
        QTest::addColumn<QString>("pipe");
        QTest::addColumn<QString>("application");
        QTest::newRow("as an entry") << u"pipe.desktop"_s << u"pipe.desktop"_s;
        QTest::newRow("in a bundle") << u"Pipe.app/Contents/Info.plist"_s << u"Pipe.app"_s;
    }

    void aPipeGivesNothingAndIsNotWaitedFor()
    {
        QFETCH(QString, pipe);
        QFETCH(QString, application);
        QVERIFY(QDir(path(u""_s)).mkpath(u"Pipe.app/Contents"_s));
        QCOMPARE(::mkfifo(QFile::encodeName(path(pipe)).constData(), 0600), 0);
        QVERIFY(!ApplicationInformation::read(path(application)));
    }

    void aFolderWithoutInformationGivesNothing() { QVERIFY(!ApplicationInformation::read(path(u"share"_s))); }

    void choosingStartsWhereThereAreEntries()
    {
        if (QFileInfo::exists(u"/Applications/"_s)) {
            QCOMPARE(ApplicationInformation::startFolder(), u"/Applications/"_s);
            return;
        }
        QVERIFY(QDir(path(u""_s)).mkpath(u"system/applications"_s));
        write(u"system/applications/a.desktop"_s, "[Desktop Entry]\n");
        qputenv("XDG_DATA_DIRS", QFile::encodeName(path(u"system"_s)));
        // The user's own folder exists, but has no entries.
        QCOMPARE(ApplicationInformation::startFolder(), path(u"system/applications"_s));
        write(u"share/applications/b.desktop"_s, "[Desktop Entry]\n");
        QCOMPARE(ApplicationInformation::startFolder(), path(u"share/applications"_s));
    }

private:
    [[nodiscard]] QString path(const QString &name) const
    {
        const QString folder = QFileInfo(mFolder->path()).canonicalFilePath();
        return name.isEmpty() ? folder : folder + u'/' + name;
    }

    QString write(const QString &name, const QByteArray &content) { return writeFile(path(name), content); }
    QString writeEntry(const QString &name, const QByteArray &lines) { return writeDesktopEntry(path(name), lines); }

    std::unique_ptr<QTemporaryDir> mFolder;
};

QTEST_GUILESS_MAIN(ApplicationInformationTest)
#include "applicationinformationtest.moc"

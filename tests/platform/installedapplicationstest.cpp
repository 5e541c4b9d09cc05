// SPDX-License-Identifier: MIT
#include "platform/installedapplications.h"
#include "tests/support/testmain.h"

#include "tests/support/writtenfile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

class InstalledApplicationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        mFolder = std::make_unique<QTemporaryDir>();
        QVERIFY(mFolder->isValid());
        qputenv("LC_ALL", "de_DE.UTF-8");
        qunsetenv("XDG_CURRENT_DESKTOP");
    }

    void readsTheTextsInTheUsersLanguage();
    void everyFolderOfEntriesIsRead();
    void theFirstFolderWithAnIdWins();
    void anEntryOfTheUserHidesTheOneOfTheSystem_data();
    void anEntryOfTheUserHidesTheOneOfTheSystem();
    void hiddenAndBrokenEntriesAreLeftOut_data();
    void hiddenAndBrokenEntriesAreLeftOut();
    void theDesktopDecidesWhatIsShown_data();
    void theDesktopDecidesWhatIsShown();
    void theOrderIsThatOfTheNames();
    void fiveHundredEntriesAreRead();

private:
    [[nodiscard]] QString path(const QString &name) const { return mFolder->filePath(name); }
    QString write(const QString &name, const QByteArray &lines) const { return writeDesktopEntry(path(name), lines); }
    [[nodiscard]] QStringList names(const QStringList &folders = {u"own"_s, u"system"_s}) const
    {
        QStringList paths;
        for (const QString &folder : folders)
            paths += path(folder);
        QStringList found;
        for (const InstalledApplication &application : InstalledApplications::read(paths))
            found += application.name;
        return found;
    }

    std::unique_ptr<QTemporaryDir> mFolder;
};

void InstalledApplicationsTest::readsTheTextsInTheUsersLanguage()
{
    const QString file =
        write(u"own/games/racer.desktop"_s, "Name=Racer\nName[de]=Rennen\nName[fr]=Course\nGenericName[de]=Rennspiel\n"
                                            "Keywords=car;fast;\nKeywords[de]=Auto;schnell;\nIcon=racer\n"
                                            "Exec=env A=1 /opt/racer/bin/racer-bin %U\nStartupWMClass=Racer.x86_64\n");
    const QList<InstalledApplication> applications = InstalledApplications::read({path(u"own"_s)});
    QCOMPARE(applications.size(), 1);
    const InstalledApplication &racer = applications.first();
    QCOMPARE(racer.path, file);
    QCOMPARE(racer.identifier, u"games-racer.desktop"_s);
    QCOMPARE(racer.name, u"Rennen"_s);
    QCOMPARE(racer.icon, u"racer"_s);
    QCOMPARE(racer.executable, u"racer-bin"_s);
    QCOMPARE(racer.windowClass, u"Racer.x86_64"_s);
    QCOMPARE(racer.searchTexts, (QStringList{u"Racer"_s, u"Rennspiel"_s, u"Auto"_s, u"schnell"_s}));
}

void InstalledApplicationsTest::everyFolderOfEntriesIsRead()
{
    qputenv("HOME", QFile::encodeName(path(u"home"_s)));
    qputenv("XDG_DATA_HOME", QFile::encodeName(path(u"data"_s)));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(path(u"one"_s) + u':' + path(u"two"_s)));
    const QStringList folders = ApplicationInformation::entryFolders();
    const QStringList expected{path(u"data/applications"_s),
                               path(u"one/applications"_s),
                               path(u"two/applications"_s),
                               path(u"home/.local/share/applications"_s),
                               path(u"home/.local/share/flatpak/exports/share/applications"_s),
                               u"/var/lib/flatpak/exports/share/applications"_s,
                               u"/var/lib/snapd/desktop/applications"_s};
    QCOMPARE(folders, expected);
    // A session that names them has them once, at the rank that it gives them.
    qunsetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_DIRS", "/var/lib/snapd/desktop:/var/lib/flatpak/exports/share");
    const QStringList named = ApplicationInformation::entryFolders();
    QCOMPARE(named.indexOf(u"/var/lib/snapd/desktop/applications"_s), 1);
    QCOMPARE(named.count(u"/var/lib/snapd/desktop/applications"_s), 1);
    QCOMPARE(named.count(path(u"home/.local/share/applications"_s)), 1);

    write(u"home/.local/share/flatpak/exports/share/applications/org.example.Racer.desktop"_s, "Name=Racer\nExec=a\n");
    const QList<InstalledApplication> applications = InstalledApplications::read();
    QVERIFY(std::ranges::any_of(applications, [](const InstalledApplication &application) {
        return application.identifier == "org.example.Racer.desktop"_L1;
    }));
}

void InstalledApplicationsTest::theFirstFolderWithAnIdWins()
{
    write(u"own/games-racer.desktop"_s, "Name=Mine\nExec=a\n");
    write(u"system/games/racer.desktop"_s, "Name=Theirs\nExec=a\n");
    write(u"system/racer.desktop"_s, "Name=Another\nExec=a\n");
    QCOMPARE(names(), (QStringList{u"Another"_s, u"Mine"_s}));
    QCOMPARE(names({u"system"_s, u"own"_s}), (QStringList{u"Another"_s, u"Theirs"_s}));
}

void InstalledApplicationsTest::anEntryOfTheUserHidesTheOneOfTheSystem_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"Hidden", "NoDisplay", "empty", "link to a device", "link to nothing"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void InstalledApplicationsTest::anEntryOfTheUserHidesTheOneOfTheSystem()
{
    QFETCH(QString, kind);
    write(u"system/racer.desktop"_s, "Name=Racer\nExec=a\n");
    write(u"own/editor.desktop"_s, "Name=Editor\nExec=a\n");
    QCOMPARE(names(), (QStringList{u"Editor"_s, u"Racer"_s}));
    const QString own = path(u"own/racer.desktop"_s);
    if (kind == "empty"_L1)
        writeFile(own);
    else if (kind == "link to a device"_L1)
        QVERIFY(QFile::link(u"/dev/null"_s, own));
    else if (kind == "link to nothing"_L1)
        QVERIFY(QFile::link(path(u"nothing"_s), own));
    else
        write(u"own/racer.desktop"_s, "Name=Racer\nExec=a\n" + kind.toLatin1() + "=true\n");
    QCOMPARE(names(), QStringList{u"Editor"_s});
}

void InstalledApplicationsTest::hiddenAndBrokenEntriesAreLeftOut_data()
{
    QTest::addColumn<QByteArray>("content");
    const QByteArray start = "[Desktop Entry]\nType=Application\n";
    QTest::newRow("Hidden") << start + "Name=A\nExec=a\nHidden=true\n";
    QTest::newRow("NoDisplay") << start + "Name=A\nExec=a\nNoDisplay=true\n";
    QTest::newRow("in a terminal") << start + "Name=A\nExec=a\nTerminal=true\n";
    QTest::newRow("without a name") << start + "Exec=a\n";
    QTest::newRow("without a command line") << start + "Name=A\n";
    QTest::newRow("with a quote left open") << start + "Name=A\nExec=\"a\n";
    QTest::newRow("not installed") << start + "Name=A\nExec=a\nTryExec=/nowhere/a\n";
    QTest::newRow("a link to a page") << QByteArray("[Desktop Entry]\nType=Link\nName=A\nExec=a\nURL=x\n");
    QTest::newRow("without its group") << QByteArray("Type=Application\nName=A\nExec=a\n");
    QTest::newRow("not text") << QByteArray("\0\1\2\xff", 4);
    QTest::newRow("too large") << start + "Name=A\nExec=a\n" + QByteArray(2 * 1024 * 1024, '#');
}

void InstalledApplicationsTest::hiddenAndBrokenEntriesAreLeftOut()
{
    QFETCH(QByteArray, content);
    writeFile(path(u"own/a.desktop"_s), content);
    writeFile(path(u"own/no-entry.txt"_s), "[Desktop Entry]\nType=Application\nName=Text\nExec=a\n");
    write(u"own/b.desktop"_s, "Name=B\nExec=b\nTryExec=sh\n");
    QCOMPARE(::mkfifo(QFile::encodeName(path(u"own/pipe.desktop"_s)).constData(), 0600), 0);
    QCOMPARE(names(), QStringList{u"B"_s});
}

void InstalledApplicationsTest::theDesktopDecidesWhatIsShown_data()
{
    QTest::addColumn<QByteArray>("desktop");
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<bool>("isShown");
    QTest::newRow("only in this one") << QByteArray("GNOME") << QByteArray("OnlyShowIn=KDE;GNOME;") << true;
    QTest::newRow("only in another") << QByteArray("GNOME") << QByteArray("OnlyShowIn=KDE;") << false;
    QTest::newRow("not in this one") << QByteArray("GNOME") << QByteArray("NotShowIn=GNOME;") << false;
    QTest::newRow("not in another") << QByteArray("GNOME") << QByteArray("NotShowIn=KDE;") << true;
    QTest::newRow("one of several names") << QByteArray("ubuntu:GNOME") << QByteArray("OnlyShowIn=GNOME") << true;
    QTest::newRow("the first name decides")
        << QByteArray("ubuntu:GNOME") << QByteArray("NotShowIn=ubuntu;\nOnlyShowIn=GNOME;") << false;
    QTest::newRow("only in one, on an unknown desktop") << QByteArray() << QByteArray("OnlyShowIn=KDE;") << false;
    QTest::newRow("not in one, on an unknown desktop") << QByteArray() << QByteArray("NotShowIn=KDE;") << true;
}

void InstalledApplicationsTest::theDesktopDecidesWhatIsShown()
{
    QFETCH(QByteArray, desktop);
    QFETCH(QByteArray, lines);
    QFETCH(bool, isShown);
    qputenv("XDG_CURRENT_DESKTOP", desktop);
    write(u"own/a.desktop"_s, "Name=A\nExec=a\n" + lines + "\n");
    QCOMPARE(names(), isShown ? QStringList{u"A"_s} : QStringList());
}

void InstalledApplicationsTest::theOrderIsThatOfTheNames()
{
    for (const char *name : {"zoo", "Äpfel", "Birnen", "apfelmus", "Zebra"})
        write(u"own/%1.desktop"_s.arg(QString::fromUtf8(name)), "Name="_ba + name + "\nExec=a\n");
    const QStringList found = names();
    QCOMPARE(found.size(), 5);
    QCOMPARE(found.mid(2), (QStringList{u"Birnen"_s, u"Zebra"_s, u"zoo"_s}));
}

void InstalledApplicationsTest::fiveHundredEntriesAreRead()
{
    constexpr int count = 500;
    for (int number = 0; number < count; ++number) {
        QByteArray lines = "Name=Application\nExec=a\n";
        for (int language = 0; language < 100; ++language)
            lines += "Name[x" + QByteArray::number(language) + "]=Application " + QByteArray::number(number) + "\n";
        write(u"system/%1.desktop"_s.arg(number), lines);
    }
    QSet<QString> identifiers;
    for (const InstalledApplication &application : InstalledApplications::read({path(u"system"_s)}))
        identifiers += application.identifier;
    QCOMPARE(identifiers.size(), count);
}

QTEST_GUILESS_MAIN(InstalledApplicationsTest)
#include "installedapplicationstest.moc"

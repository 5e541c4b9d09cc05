// SPDX-License-Identifier: MIT
#include "platform/applicationlist.h"
#include "tests/support/testmain.h"

#include "tests/support/texts.h"

#include <QListView>
#include <QPixmap>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

InstalledApplication application(const QString &name, const QString &identifier, const QString &windowClass = {})
{
    return {.path = u"/applications/"_s + identifier,
            .identifier = identifier,
            .name = name,
            .icon = {},
            .executable = identifier.section(u'.', 0, 0),
            .windowClass = windowClass,
            .searchTexts = {}};
}

QStringList names(const ApplicationList &list)
{
    QStringList found;
    for (int row = 0; row < list.rowCount(); ++row)
        found += list.index(row).data().toString();
    return found;
}

/// Remembers for which rows a view asks for the icon.
class ListWithObservedIcons : public ApplicationList
{
public:
    using ApplicationList::ApplicationList;

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role == Qt::DecorationRole)
            mRows += index.row();
        return ApplicationList::data(index, role);
    }

    mutable QSet<int> mRows;
};

} // namespace

class ApplicationListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(installEnglishTexts()); }
    void runningApplicationsComeFirst();
    void aWindowWithoutAnEntryIsARowOnlyWhereItIsOffered();
    void theBestMatchIsTheOneThatRuns();
    void searchFindsEachWordInAnyName_data();
    void searchFindsEachWordInAnyName();
    void namesThatBeginWithTheQueryComeFirst();
    void namesOfStrangersAreShownOnOneLine();
    void onlyShownRowsLoadTheirIcon();
    void anIconThatIsAPipeIsNotWaitedFor();
};

void ApplicationListTest::runningApplicationsComeFirst()
{
    ApplicationList list;
    list.setApplications({application(u"Archive"_s, u"archive.desktop"_s), application(u"Browser"_s, u"b.desktop"_s),
                          application(u"Racer"_s, u"racer.desktop"_s, u"RacerWindow"_s),
                          application(u"Writer"_s, u"org.example.Writer.desktop"_s)},
                         {{.windowClass = u"racerwindow"_s},
                          {.windowClass = u"other"_s, .desktopEntry = u"org.example.Writer"_s},
                          {.windowClass = u"unknown"_s}},
                         ApplicationList::Windows::ofEntries);
    QCOMPARE(names(list), (QStringList{u"Racer"_s, u"Writer"_s, u"Archive"_s, u"Browser"_s}));
    const QString note = list.index(0).data(ApplicationList::noteRole).toString();
    QCOMPARE(note, u"Running"_s);
    QCOMPARE(list.index(1).data(ApplicationList::noteRole).toString(), note);
    QCOMPARE(list.index(2).data(ApplicationList::noteRole).toString(), QString());
    // A screen reader reads the same.
    QCOMPARE(list.index(0).data(Qt::AccessibleTextRole).toString(), u"Racer, "_s + note);
    QCOMPARE(list.index(2).data(Qt::AccessibleTextRole).toString(), u"Archive"_s);
}

void ApplicationListTest::aWindowWithoutAnEntryIsARowOnlyWhereItIsOffered()
{
    const QList<InstalledApplication> installed{application(u"Archive"_s, u"archive.desktop"_s)};
    const QList<FrontApplication> windows{{.windowClass = u"Racer.exe"_s, .windowInstance = u"one"_s},
                                          {.windowClass = u"Racer.exe"_s, .windowInstance = u"two"_s},
                                          {.windowClass = u"Archive"_s},
                                          {.desktopEntry = u"nothing.else"_s}};
    ApplicationList list;
    list.setApplications(installed, windows, ApplicationList::Windows::all);
    QCOMPARE(names(list), (QStringList{u"Archive"_s, u"Racer.exe"_s}));
    QCOMPARE(list.pathOf(list.index(0)), u"/applications/archive.desktop"_s);
    QCOMPARE(list.windowClassOf(list.index(0)), QString());
    QCOMPARE(list.pathOf(list.index(1)), QString());
    QCOMPARE(list.windowClassOf(list.index(1)), u"Racer.exe"_s);
    list.setApplications(installed, windows, ApplicationList::Windows::ofEntries);
    QCOMPARE(names(list), QStringList{u"Archive"_s});
}

void ApplicationListTest::theBestMatchIsTheOneThatRuns()
{
    ApplicationList list;
    list.setApplications(
        {application(u"By program"_s, u"game.desktop"_s), application(u"By class"_s, u"launcher.desktop"_s, u"Game"_s)},
        {{.windowClass = u"Game"_s}}, ApplicationList::Windows::all);
    QCOMPARE(names(list), (QStringList{u"By class"_s, u"By program"_s}));
    QVERIFY(list.index(1).data(ApplicationList::noteRole).toString().isEmpty());
}

void ApplicationListTest::searchFindsEachWordInAnyName_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("expected");
    const QStringList all{u"Dateien"_s, u"Straßenrennen"_s};
    QTest::newRow("nothing") << QString() << all;
    QTest::newRow("blanks") << u"  "_s << all;
    QTest::newRow("another letter case") << u"STRAßEN"_s << QStringList{u"Straßenrennen"_s};
    QTest::newRow("middle of the name") << u"rennen"_s << QStringList{u"Straßenrennen"_s};
    QTest::newRow("untranslated name") << u"files"_s << QStringList{u"Dateien"_s};
    QTest::newRow("identifier") << u"org.example"_s << QStringList{u"Dateien"_s};
    QTest::newRow("two words of different texts") << u" files  datei "_s << QStringList{u"Dateien"_s};
    QTest::newRow("two words, one of them elsewhere") << u"files rennen"_s << QStringList();
    QTest::newRow("suffix of every identifier") << u"desktop"_s << QStringList();
    QTest::newRow("no such name") << u"xyz"_s << QStringList();
}

void ApplicationListTest::searchFindsEachWordInAnyName()
{
    QFETCH(QString, query);
    InstalledApplication files = application(u"Dateien"_s, u"org.example.Files.desktop"_s);
    files.searchTexts = {u"Files"_s};
    ApplicationList list;
    list.setApplications({files, application(u"Straßenrennen"_s, u"racer.desktop"_s)}, {},
                         ApplicationList::Windows::all);
    list.setQuery(query);
    QTEST(names(list), "expected");
}

void ApplicationListTest::namesThatBeginWithTheQueryComeFirst()
{
    ApplicationList list;
    list.setApplications({application(u"A profiler"_s, u"a.desktop"_s), application(u"Notes"_s, u"n.desktop"_s),
                          application(u"Profiles"_s, u"p.desktop"_s)},
                         {{.windowClass = u"a"_s}}, ApplicationList::Windows::all);
    list.setQuery(u"prof"_s);
    QCOMPARE(names(list), (QStringList{u"Profiles"_s, u"A profiler"_s}));
}

void ApplicationListTest::namesOfStrangersAreShownOnOneLine()
{
    ApplicationList list;
    list.setApplications({application(u"<b>A\nB\u202e</b>"_s, u"a.desktop"_s)}, {}, ApplicationList::Windows::all);
    QCOMPARE(list.index(0).data().toString(), u"<b>A B </b>"_s);
    QVERIFY(!list.index(0).data(Qt::ToolTipRole).toString().contains("<b>"_L1));
}

void ApplicationListTest::onlyShownRowsLoadTheirIcon()
{
    constexpr int count = 500;
    QList<InstalledApplication> installed;
    for (int number = 0; number < count; ++number)
        installed += application(u"Application %1"_s.arg(number), u"%1.desktop"_s.arg(number));
    ListWithObservedIcons list;
    list.setApplications(installed, {}, ApplicationList::Windows::all);
    QListView view;
    view.setUniformItemSizes(true);
    view.setModel(&list);
    view.resize(300, 200);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QTRY_VERIFY(list.mRows.contains(1));
    QVERIFY2(list.mRows.size() < 50, qPrintable(QString::number(list.mRows.size())));
    QVERIFY(!list.mRows.contains(count / 2));
    view.scrollToBottom();
    QTRY_VERIFY(list.mRows.contains(count - 2));
    QVERIFY(!list.mRows.contains(count / 2));
    QVERIFY(list.mRows.size() < 100);
}

void ApplicationListTest::anIconThatIsAPipeIsNotWaitedFor()
{
    const QTemporaryDir folder;
    const QString pipe = folder.filePath(u"pipe.png"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QPixmap red(16, 16);
    red.fill(Qt::red);
    QVERIFY(red.save(folder.filePath(u"red.png"_s)));
    InstalledApplication withPipe = application(u"A"_s, u"a.desktop"_s);
    withPipe.icon = pipe;
    InstalledApplication withPicture = application(u"B"_s, u"b.desktop"_s);
    withPicture.icon = folder.filePath(u"red.png"_s);
    ApplicationList list;
    list.setApplications({withPipe, withPicture}, {}, ApplicationList::Windows::all);
    const auto picture = [&list](int row) {
        return list.index(row).data(Qt::DecorationRole).value<QIcon>().pixmap(16).toImage();
    };
    QVERIFY(!picture(0).isNull()); // the one for an application without an icon
    QCOMPARE(picture(1).pixelColor(8, 8), QColor(Qt::red));
}

QTEST_MAIN(ApplicationListTest)
#include "applicationlisttest.moc"

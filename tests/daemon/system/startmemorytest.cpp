// SPDX-License-Identifier: MIT
#include "daemon/system/startmemory.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// The memory of this process's mappings of files, in kB: those that it may write, or the others.
qint64 residentOfFiles(bool isWritable)
{
    static const QRegularExpression mapping(u"^[0-9a-f]+-[0-9a-f]+ r(.).p [0-9a-f]+ \\S+ [1-9]"_s);
    static const QRegularExpression resident(u"^Rss: +(\\d+) kB"_s);
    QFile file(u"/proc/self/smaps"_s);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    qint64 sum = 0;
    bool isCounted = false;
    for (const QByteArray &bytes : file.readAll().split('\n')) {
        const QString line = QString::fromLatin1(bytes);
        if (const auto size = resident.match(line); size.hasMatch())
            sum += isCounted ? size.captured(1).toLongLong() : 0;
        else if (line.contains(u'-') && !line.startsWith(u"VmFlags"_s))
            isCounted = mapping.match(line).captured(1) == QLatin1StringView(isWritable ? "w" : "-");
    }
    return sum;
}

struct Base
{
    virtual ~Base() = default;
    [[nodiscard]] virtual QString name() const { return u"base"_s; }
};

struct Derived : Base
{
    [[nodiscard]] QString name() const override { return u"derived"_s; }
};

QStringList changed{u"first"_s};

} // namespace

class StartMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void releasesCodeAndConstants();
    void leavesWhatTheProcessHasWritten();
};

void StartMemoryTest::releasesCodeAndConstants()
{
    (void)residentOfFiles(false); // needs code of its own
    const qint64 before = residentOfFiles(false);
    QVERIFY(before > 0);
    StartMemory::release();
    const qint64 after = residentOfFiles(false);
    QVERIFY2(after > 0 && after < before * 3 / 4, qPrintable(u"%1 kB, then %2 kB"_s.arg(before).arg(after)));
}

void StartMemoryTest::leavesWhatTheProcessHasWritten()
{
    changed += u"second"_s;
    const std::unique_ptr<Base> object = std::make_unique<Derived>();
    (void)residentOfFiles(true);
    const qint64 before = residentOfFiles(true);
    StartMemory::release();
    QVERIFY(residentOfFiles(true) >= before);
    QCOMPARE(changed, (QStringList{u"first"_s, u"second"_s}));
    QCOMPARE(object->name(), u"derived"_s); // the loader has written its table of functions
}

QTEST_GUILESS_MAIN(StartMemoryTest)
#include "startmemorytest.moc"

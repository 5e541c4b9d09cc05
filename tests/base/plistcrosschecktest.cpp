// SPDX-License-Identifier: MIT
// Compares the codec with two independent ones, Python's plistlib and libplist, in both directions: on random trees, a
// full settings document and the factory settings.
#include "base/propertylist.h"
#include "tests/base/plistsamples.h"
#include "tests/support/fulldocument.h"
#include "tests/support/testmain.h"

#include <plist/plist.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <bit>

using namespace Qt::StringLiterals;

namespace {

constexpr int rounds = 120;

const QDateTime epoch(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);

QJsonArray tagged(QLatin1StringView type, const QJsonValue &content)
{
    return {QString(type), content};
}

/// Describes a tree in the same way as plistlib_peer.py.
QJsonValue described(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap: {
        QJsonObject entries;
        const QVariantMap dictionary = value.toMap();
        for (auto entry = dictionary.cbegin(); entry != dictionary.cend(); ++entry)
            entries.insert(entry.key(), described(entry.value()));
        return tagged("dictionary"_L1, entries);
    }
    case QMetaType::QVariantList: {
        QJsonArray elements;
        for (const QVariant &element : value.toList())
            elements.append(described(element));
        return tagged("array"_L1, elements);
    }
    case QMetaType::Bool: return tagged("boolean"_L1, value.toBool());
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::ULongLong: return tagged("integer"_L1, value.toString());
    case QMetaType::Double: {
        const quint64 bits = qToBigEndian(std::bit_cast<quint64>(value.toDouble()));
        const QByteArray hex = QByteArray(reinterpret_cast<const char *>(&bits), 8).toHex();
        return tagged("real"_L1, QString::fromLatin1(hex));
    }
    case QMetaType::QByteArray: return tagged("data"_L1, QString::fromLatin1(value.toByteArray().toHex()));
    case QMetaType::QDateTime: return tagged("date"_L1, QString::number(epoch.secsTo(value.toDateTime())));
    case QMetaType::QString: return tagged("string"_L1, value.toString());
    default: return {};
    }
}

QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Runs the peer and returns its output; null when it failed.
QByteArray peer(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(u"python3"_s,
                  QStringList{QStringLiteral(KESTRA_SOURCE_DIR "/tests/base/plistlib_peer.py")} + arguments);
    if (!process.waitForFinished(60'000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return {};
    return "" + process.readAllStandardOutput();
}

/// The tree that libplist holds, as QVariants. Dates have whole seconds.
QVariant fromLibplist(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_DICT: {
        QVariantMap dictionary;
        plist_dict_iter iterator = nullptr;
        plist_dict_new_iter(node, &iterator);
        for (;;) {
            char *key = nullptr;
            plist_t value = nullptr;
            plist_dict_next_item(node, iterator, &key, &value);
            if (!value)
                break;
            dictionary.insert(QString::fromUtf8(key), fromLibplist(value));
            free(key);
        }
        free(iterator);
        return dictionary;
    }
    case PLIST_ARRAY: {
        QVariantList array;
        for (uint32_t i = 0; i < plist_array_get_size(node); ++i)
            array.append(fromLibplist(plist_array_get_item(node, i)));
        return array;
    }
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return value != 0;
    }
    case PLIST_UINT: {
        uint64_t value = 0;
        plist_get_uint_val(node, &value);
        return qulonglong(value); // the sign is lost
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return value;
    }
    case PLIST_STRING: {
        uint64_t length = 0;
        const char *text = plist_get_string_ptr(node, &length);
        return QString::fromUtf8(text, qsizetype(length));
    }
    case PLIST_DATA: {
        uint64_t length = 0;
        const char *bytes = plist_get_data_ptr(node, &length);
        return QByteArray(length ? bytes : "", qsizetype(length));
    }
    case PLIST_DATE: {
        int32_t seconds = 0;
        int32_t microseconds = 0;
        plist_get_date_val(node, &seconds, &microseconds);
        return epoch.addSecs(seconds);
    }
    default: return {};
    }
}

/// `tree` with every integer as its 64 bits, as libplist's interface returns them.
QVariant withUnsignedIntegers(const QVariant &tree)
{
    if (tree.typeId() == QMetaType::QVariantMap) {
        QVariantMap dictionary = tree.toMap();
        for (QVariant &value : dictionary)
            value = withUnsignedIntegers(value);
        return dictionary;
    }
    if (tree.typeId() == QMetaType::QVariantList) {
        QVariantList array = tree.toList();
        for (QVariant &value : array)
            value = withUnsignedIntegers(value);
        return array;
    }
    if (tree.typeId() == QMetaType::Int || tree.typeId() == QMetaType::LongLong)
        return qulonglong(tree.toLongLong());
    return tree;
}

/// The property list `source` as plistlib writes it, binary and XML, and as libplist writes each of the two again in
/// both forms: six in all. A failing writer leaves fewer or empty ones.
QList<QByteArray> writtenByOthers(const QByteArray &source, const QString &folder)
{
    const QString path = folder + u"/source"_s;
    if (!PropertyList::writeFileAtomically(path, source) || peer({u"rewrite"_s, path, path}).isNull())
        return {{}};
    const QByteArray binary = fileContent(path + u".bin.plist"_s);
    const QByteArray xml = fileContent(path + u".xml.plist"_s);
    QList<QByteArray> written{binary, xml};
    for (const QByteArray &input : {binary, xml}) {
        plist_t root = nullptr;
        if (input == xml)
            plist_from_xml(input.constData(), uint32_t(input.size()), &root);
        else
            plist_from_bin(input.constData(), uint32_t(input.size()), &root);
        // libplist writes nothing to a pointer that is already set, so each form has its own.
        char *binaryBytes = nullptr;
        char *xmlBytes = nullptr;
        uint32_t binarySize = 0;
        uint32_t xmlSize = 0;
        plist_to_bin(root, &binaryBytes, &binarySize);
        plist_to_xml(root, &xmlBytes, &xmlSize);
        written << QByteArray(binaryBytes, binarySize) << QByteArray(xmlBytes, xmlSize);
        plist_to_bin_free(binaryBytes);
        plist_to_xml_free(xmlBytes);
        plist_free(root);
    }
    return written;
}

} // namespace

class PlistCrossCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void readsTheOutputOfPlistlib();
    void plistlibReadsOurOutput();
    void readsTheOutputOfLibplist();
    void libplistReadsOurOutput();
    void bothReadTheDocument_data() { addDocuments(); }
    void bothReadTheDocument();
    void readsTheDocumentOfBoth_data() { addDocuments(); }
    void readsTheDocumentOfBoth();
    void rewritingKeepsEveryByte_data() { addDocuments(); }
    void rewritingKeepsEveryByte();

private:
    static void addDocuments();
};

void PlistCrossCheckTest::readsTheOutputOfPlistlib()
{
    const QTemporaryDir folder;
    QVERIFY(!peer({u"make"_s, folder.path(), QString::number(rounds), u"271"_s}).isNull());
    for (int round = 0; round < rounds; ++round) {
        const QString name = folder.filePath(QString::number(round));
        const QJsonArray expected = QJsonDocument::fromJson(fileContent(name + u".json"_s)).array();
        QVERIFY(!expected.isEmpty());
        for (const QString &form : {u".bin.plist"_s, u".xml.plist"_s}) {
            const auto tree = PropertyList::read(fileContent(name + form));
            QVERIFY2(tree, qPrintable(name + form));
            QCOMPARE(described(*tree), QJsonValue(expected));
        }
    }
}

void PlistCrossCheckTest::plistlibReadsOurOutput()
{
    const QTemporaryDir folder;
    std::mt19937 random(20110517);
    QStringList arguments{u"describe"_s};
    QList<QVariant> trees;
    for (int round = 0; round < rounds; ++round) {
        trees.append(randomTree(random, 5, true));
        arguments.append(folder.filePath(QString::number(round)));
        QVERIFY(PropertyList::writeFileAtomically(arguments.last(), PropertyList::writeBinary(trees.last()).value()));
    }
    const QList<QByteArray> lines = peer(arguments).trimmed().split('\n');
    QCOMPARE(lines.size(), rounds);
    for (int round = 0; round < rounds; ++round)
        QCOMPARE(QJsonValue(QJsonDocument::fromJson(lines[round]).array()), described(trees[round]));
}

void PlistCrossCheckTest::readsTheOutputOfLibplist()
{
    const QTemporaryDir folder;
    QVERIFY(!peer({u"make"_s, folder.path(), QString::number(rounds), u"4"_s}).isNull());
    for (int round = 0; round < rounds; ++round) {
        const QByteArray source = fileContent(folder.filePath(u"%1.bin.plist"_s.arg(round)));
        const QVariant expected = PropertyList::read(source).value();
        plist_t root = nullptr;
        plist_from_bin(source.constData(), uint32_t(source.size()), &root);
        QVERIFY(root);
        char *bytes = nullptr;
        uint32_t size = 0;
        plist_to_bin(root, &bytes, &size);
        const auto binary = PropertyList::read(QByteArrayView(bytes, size));
        plist_to_bin_free(bytes);
        plist_free(root);
        QVERIFY(binary);
        QCOMPARE(described(*binary), described(expected));
    }
}

void PlistCrossCheckTest::libplistReadsOurOutput()
{
    std::mt19937 random(2011);
    for (int round = 0; round < rounds; ++round) {
        const QVariant tree = randomTree(random, 5, true);
        const QByteArray written = PropertyList::writeBinary(tree).value();
        plist_t root = nullptr;
        plist_from_bin(written.constData(), uint32_t(written.size()), &root);
        QVERIFY(root);
        const QVariant theirs = fromLibplist(root);
        plist_free(root);
        QCOMPARE(described(theirs), described(withUnsignedIntegers(tree)));
    }
}

void PlistCrossCheckTest::addDocuments()
{
    QTest::addColumn<QVariantMap>("document");
    QTest::addColumn<QByteArray>("source"); // as a file that others can read
    const QVariantMap full = fullDocument();
    QTest::newRow("full document") << full << PropertyList::writeBinary(full).value();
    const QString factory = QStringLiteral(KESTRA_SOURCE_DIR "/resources/Kestra.plist");
    QTest::newRow("factory settings") << PropertyList::readPropertyListFile(factory).valueOr({})
                                      << fileContent(factory);
}

void PlistCrossCheckTest::bothReadTheDocument()
{
    QFETCH(QVariantMap, document);
    QVERIFY(!document.isEmpty());
    const QByteArray written = PropertyList::writeBinary(document).value();
    plist_t root = nullptr;
    plist_from_bin(written.constData(), uint32_t(written.size()), &root);
    QVERIFY(root);
    QCOMPARE(described(fromLibplist(root)), described(withUnsignedIntegers(document)));
    plist_free(root);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"document"_s);
    QVERIFY(PropertyList::writeFileAtomically(path, written));
    QCOMPARE(QJsonValue(QJsonDocument::fromJson(peer({u"describe"_s, path})).array()), described(document));
}

void PlistCrossCheckTest::readsTheDocumentOfBoth()
{
    QFETCH(QVariantMap, document);
    QFETCH(QByteArray, source);
    const QTemporaryDir folder;
    const QList<QByteArray> others = writtenByOthers(source, folder.path());
    QCOMPARE(others.size(), 6);
    for (const QByteArray &theirs : others) {
        const auto tree = PropertyList::read(theirs);
        QVERIFY(tree);
        QCOMPARE(described(*tree), described(document));
    }
}

// Equal trees give equal bytes, regardless of the writer and the form of the document.
void PlistCrossCheckTest::rewritingKeepsEveryByte()
{
    QFETCH(QVariantMap, document);
    QFETCH(QByteArray, source);
    const QByteArray ours = PropertyList::writeBinary(document).value();
    const QTemporaryDir folder;
    const QList<QByteArray> others = writtenByOthers(source, folder.path());
    QCOMPARE(others.size(), 6);
    for (const QByteArray &input : QList<QByteArray>{ours, source} + others) {
        const auto tree = PropertyList::read(input);
        QVERIFY(tree);
        QCOMPARE(PropertyList::writeBinary(*tree), ours);
    }
}

QTEST_GUILESS_MAIN(PlistCrossCheckTest)
#include "plistcrosschecktest.moc"

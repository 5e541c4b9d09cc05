// SPDX-License-Identifier: MIT
// The file with the history. Whatever it contains, its entries can be listed and shown, and each leads to a valid
// document or nowhere. A change after it is recorded, is there after the next start, and can be undone.
#include "base/document.h"
#include "base/historykeys.h"
#include "base/propertylist.h"
#include "base/settingskeys.h"
#include "daemon/settings/contentdigest.h"
#include "daemon/settings/history.h"
#include "daemon/settings/settingsdocument.h"
#include "fuzz/target.h"

#include <QtEndian>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView fileHeader("QKhist1\n");
constexpr qsizetype frameHeaderBytes = 12;
constexpr quint32 closingId = 0x7fff'ff00;

QByteArray bytesOf(const QVariantMap &document)
{
    return PropertyList::writeBinary(document).value_or(QByteArray());
}

/// A document with the types of one that was read.
QVariantMap asRead(const QVariantMap &document)
{
    return PropertyList::read(bytesOf(SettingsDocument::completed(document))).value_or(QVariant()).toMap();
}

/// The document to which the differences in fuzz/corpus lead.
QVariantMap presentDocument()
{
    const QVariantMap disabled{{u"command"_s, 20}, {u"param1"_s, 0}, {u"param2"_s, 0}};
    const QVariantMap event{{u"command"_s, 1}, {u"delay"_s, 10}, {u"page"_s, 7}, {u"argument"_s, 4}};
    return asRead(
        {{u"Profiles"_s, QVariantList{QVariantMap{{u"ProfileName"_s, u"A"_s},
                                                  {u"Keys"_s, QVariantMap{{u"4"_s, disabled}}},
                                                  {u"BrightnessKBNormal"_s, 2}},
                                      QVariantMap{{u"ProfileName"_s, u"B"_s}, {u"Keys"_s, QVariantMap()}}}},
         {u"Macros"_s, QVariantList{QVariantMap{{u"MacroName"_s, u"M"_s},
                                                {u"macroID"_s, 1},
                                                {u"sequence"_s, QVariantMap{{u"Events"_s, QVariantList{event}}}}}}},
         {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, 0}, {u"LastMacroID"_s, 3}}}});
}

QByteArray framed(QByteArrayView frame)
{
    QByteArray header(frameHeaderBytes, Qt::Uninitialized);
    qToLittleEndian(quint32(frame.size()), header.data());
    qToLittleEndian(contentDigest(frame), header.data() + sizeof(quint32));
    return header + frame.toByteArray();
}

/// The file in `input` with the right digest for each of its frames, followed by `closing`. No mutation finds these
/// digests.
QByteArray sealed(QByteArrayView input, const QByteArray &closing)
{
    if (!input.startsWith(fileHeader))
        return input.toByteArray();
    QByteArray file = fileHeader.toByteArray();
    QByteArrayView rest = input.sliced(fileHeader.size());
    while (rest.size() >= frameHeaderBytes) {
        const auto length = qsizetype(qFromLittleEndian<quint32>(rest.data()));
        if (length > rest.size() - frameHeaderBytes)
            break;
        file += framed(rest.sliced(frameHeaderBytes, length));
        rest = rest.sliced(frameHeaderBytes + length);
    }
    return file + closing + rest.toByteArray();
}

void requireValid(const History::Found<History::Target> &target)
{
    require(!target || SettingsDocument::validate(target->document), "an entry leads to a valid document or nowhere");
}

void requireUsable(const History &history, const QVariantMap &document)
{
    quint32 previous = 0;
    for (const QVariantMap &entry : history.entries()) {
        requireWritable(entry);
        const quint32 id = entry.value(HistoryKeys::id).toUInt();
        require(id > previous, "the ids ascend");
        previous = id;
        requireValid(history.undoTarget(document, id));
        requireValid(history.redoTarget(document, id));
        requireValid(history.restoreTarget(document, id));
        const auto parts = history.partsOf(document, id);
        if (!parts)
            continue;
        require(parts->list.size() <= ChangeParts::maximumListed && parts->count >= parts->list.size(),
                "the number of parts is bounded");
        for (const QVariantMap &part : parts->list)
            requireWritable(part);
    }
    require(history.nextEntries().size() <= 2, "one entry is next to undo, and one to redo");
}

void useFile(QByteArrayView content, const QVariantMap &document)
{
    QDir folder(workFolder().filePath(u"history"_s));
    folder.removeRecursively();
    folder.mkpath(u"."_s);
    writeWorkFile(folder.filePath(u"history"_s), content);
    const auto copies = [] { return QList<QByteArray>{bytesOf(SettingsDocument::minimal())}; };

    QVariantMap after = document;
    {
        History history(folder.path());
        history.open(document, copies);
        requireUsable(history, document);
        if (history.lastId() >= HistoryEntry::maximumId)
            return;
        QVariantList profiles = Document(document).profiles();
        profiles += SettingsDocument::emptyProfile(u"C"_s);
        after = SettingsDocument::withProfiles(document, profiles);
        history.record(document, {{.document = after, .cause = {.author = HistoryKeys::authorClient}}},
                       contentDigest(bytesOf(after)));
        requireUsable(history, after);
    }
    History again(folder.path());
    again.open(after, copies);
    requireUsable(again, after);
    const auto undone = again.undoTarget(after, again.lastId());
    require(undone && bytesOf(undone->document) == bytesOf(document), "a new change is kept and can be undone");
}

void history(QByteArrayView input)
{
    static const QVariantMap document = presentDocument();
    useFile(input, document);
    useFile(sealed(input, {}), document);
    const HistoryEntry closing{
        .id = closingId, .kind = HistoryEntry::Kind::nothing, .digest = contentDigest(bytesOf(document))};
    useFile(sealed(input, framed(closing.toFrame())), document);
}

} // namespace

KESTRA_FUZZ_TARGET(history)

// SPDX-License-Identifier: MIT
// Chosen keyboards, and the data that keyboards report of themselves. Whatever devices.plist contains, the daemon reads
// a whole choice or none, keeps the file that it found, and can save a choice. Whatever the serial number, port and
// name of a keyboard are, its udev rule has the lines of a rule and no others, because root's udev obeys them.
#include "base/devicerule.h"
#include "base/propertylist.h"
#include "daemon/keyboards/devicechoice.h"
#include "fuzz/target.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

void readChoice(QByteArrayView input)
{
    QDir folder(workFolder().filePath(u"devices"_s));
    folder.removeRecursively();
    folder.mkpath(u"."_s);
    writeWorkFile(folder.filePath(u"devices.plist"_s), input);

    DeviceChoice choice(folder.path());
    const QList<ChosenDevice> chosen = choice.load();
    require(chosen.isEmpty() || chosen.size() == dictionaryOf(input).value(u"Devices"_s).toList().size(),
            "a choice is the whole of the file or nothing");
    const QStringList files = folder.entryList(QDir::Files | QDir::Hidden);
    require(files.size() == 1 && PropertyList::readFileBytes(folder.filePath(files.constFirst())).valueOr({}) == input,
            "the file that was found is still there");
    const QList<ChosenDevice> more =
        chosen + QList{ChosenDevice{.vendor = 1, .product = 2, .serial = u"A"_s, .path = {}}};
    require(choice.save(more), "a choice can be kept");
    require(DeviceChoice(folder.path()).load() == more, "what was kept is read again");
}

/// `text` between the quotes behind `field`; empty when there is no such field.
QString valueOf(const QString &line, const QString &field)
{
    const qsizetype at = line.indexOf(field + u"==\""_s);
    return at < 0 ? QString() : line.sliced(at + field.size() + 3).section(u'"', 0, 0);
}

void requireOwnLines(const QString &rule)
{
    const QStringList lines = rule.split(u'\n');
    const auto count = [&lines](const QString &start) {
        return std::ranges::count_if(lines, [&](const QString &line) { return line.startsWith(start); });
    };
    require(lines.size() == 9 && count(u"#"_s) == 5 && count(u"ACTION!=\"remove\", SUBSYSTEM==\""_s) == 3,
            "a rule has its own lines");
    require(rule.count(u"RUN"_s) == 1 && rule.count(u"TAG+="_s) == 2, "a rule has its own assignments");
    require(std::ranges::all_of(rule, [](QChar c) { return c == u'\n' || (c >= u' ' && c <= u'~'); }),
            "a rule is plain text");
    const QString serial = valueOf(rule, u"ATTRS{uniq}"_s);
    require(std::ranges::none_of(serial, [](QChar c) { return u"*?[]|\\$%"_s.contains(c); }),
            "a serial number stands for itself");
}

void devices(QByteArrayView input)
{
    readChoice(input);
    if (const auto rule = deviceRule(dictionaryOf(input), 1000))
        requireOwnLines(*rule);
}

} // namespace

KESTRA_FUZZ_TARGET(devices)

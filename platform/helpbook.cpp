// SPDX-License-Identifier: MIT
#include "platform/helpbook.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype excerptBefore = 40; // letters around a word that was found
constexpr qsizetype excerptAfter = 80;

/// Reads one page into `document`; false when it cannot be read.
bool readPage(const QString &path, QTextDocument &document)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    document.setHtml(QString::fromUtf8(file.readAll()));
    return true;
}

/// The files that the links of `document` lead to, in order.
QStringList linkedFiles(const QTextDocument &document)
{
    QStringList files;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto at = block.begin(); !at.atEnd(); ++at) {
            const QUrl link(at.fragment().charFormat().anchorHref());
            if (link.isRelative() && !link.path().isEmpty())
                files += link.path();
        }
    }
    return files;
}

/// Where in `text` a word begins with `beginning`, from `from` on; -1 when nowhere.
qsizetype findWord(const QString &text, const QString &beginning, qsizetype from = 0)
{
    for (qsizetype at = text.indexOf(beginning, from, Qt::CaseInsensitive); at >= 0;
         at = text.indexOf(beginning, at + 1, Qt::CaseInsensitive)) {
        if (at == 0 || !text.at(at - 1).isLetterOrNumber())
            return at;
    }
    return -1;
}

int countWord(const QString &text, const QString &beginning)
{
    int count = 0;
    for (qsizetype at = findWord(text, beginning); at >= 0; at = findWord(text, beginning, at + 1))
        ++count;
    return count;
}

QString excerptAround(const QString &text, qsizetype position)
{
    qsizetype begin = std::max<qsizetype>(0, position - excerptBefore);
    qsizetype end = std::min(text.size(), position + excerptAfter);
    // At whole words.
    if (begin > 0)
        begin = std::min(position, text.indexOf(u' ', begin) + 1);
    if (end < text.size())
        end = std::max(position, text.lastIndexOf(u' ', end));
    QString excerpt = text.sliced(begin, end - begin);
    if (begin > 0)
        excerpt.prepend(u"… "_s);
    if (end < text.size())
        excerpt += u" …"_s;
    return excerpt;
}

} // namespace

HelpBook::HelpBook(const QString &folder)
{
    const QDir directory(folder);
    QStringList order{firstPage};
    QTextDocument document;
    if (readPage(directory.filePath(firstPage), document))
        order += linkedFiles(document);
    order += directory.entryList({u"*.html"_s}, QDir::Files, QDir::Name);
    order.removeDuplicates();
    for (const QString &fileName : std::as_const(order)) {
        if (!readPage(directory.filePath(fileName), document))
            continue;
        const QString title = document.metaInformation(QTextDocument::DocumentTitle);
        mPages += {fileName, title.isEmpty() ? fileName : title, document.toPlainText().simplified()};
    }
}

qsizetype HelpBook::indexOf(const QString &fileName) const
{
    const auto found = std::ranges::find(mPages, fileName, &Page::fileName);
    return found == mPages.end() ? -1 : found - mPages.begin();
}

QStringList HelpBook::words(const QString &text)
{
    static const QRegularExpression between(u"[^\\p{L}\\p{N}]+"_s);
    return text.split(between, Qt::SkipEmptyParts);
}

QList<HelpBook::Hit> HelpBook::search(const QString &query) const
{
    const QStringList wanted = words(query);
    if (wanted.isEmpty())
        return {};
    struct Found
    {
        Hit hit;
        bool isInTitle;
        int count;
    };
    QList<Found> found;
    for (qsizetype index = 0; index < mPages.size(); ++index) {
        const Page &page = mPages.at(index);
        const auto stands = [&page](const QString &word) {
            return findWord(page.title, word) >= 0 || findWord(page.text, word) >= 0;
        };
        if (!std::ranges::all_of(wanted, stands))
            continue;
        int count = 0;
        for (const QString &word : wanted)
            count += countWord(page.text, word);
        const bool isInTitle =
            std::ranges::all_of(wanted, [&page](const QString &word) { return findWord(page.title, word) >= 0; });
        // What follows the heading, which says no more than the title does.
        const QString body =
            page.text.startsWith(page.title) ? page.text.sliced(page.title.size()).trimmed() : page.text;
        const qsizetype position = std::max<qsizetype>(0, findWord(body, wanted.first()));
        found += {{index, excerptAround(body, position)}, isInTitle, count};
    }
    // Stable: pages that fit equally well stay in the order of the book.
    std::ranges::stable_sort(found, [](const Found &a, const Found &b) {
        return a.isInTitle != b.isInTitle ? a.isInTitle : a.count > b.count;
    });
    QList<Hit> hits;
    for (const Found &one : std::as_const(found))
        hits += one.hit;
    return hits;
}

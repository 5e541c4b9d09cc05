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

constexpr qsizetype excerptBefore = 40; // characters around a match
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

/// The files to which `document` links, in order.
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

QString excerptAround(const QString &text, qsizetype position)
{
    qsizetype begin = std::max<qsizetype>(0, position - excerptBefore);
    qsizetype end = std::min(text.size(), position + excerptAfter);
    // Cuts at whole words where spaces separate words.
    const qsizetype spaceBefore = text.indexOf(u' ', begin);
    if (begin > 0 && spaceBefore >= 0 && spaceBefore < position)
        begin = spaceBefore + 1;
    const qsizetype spaceAfter = text.lastIndexOf(u' ', end);
    if (end < text.size() && spaceAfter > position)
        end = spaceAfter;
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

QRegularExpression HelpBook::beginningOf(const QString &word)
{
    // Chinese and Japanese are written without spaces: a word may begin at and after each character.
    const QString unspaced = u"[\\p{Han}\\p{Hiragana}\\p{Katakana}ー]"_s;
    return QRegularExpression(
        u"(?:(?<![\\p{L}\\p{N}])|(?<=%1)|(?=%1))"_s.arg(unspaced) + QRegularExpression::escape(word),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
}

QList<HelpBook::Hit> HelpBook::search(const QString &query) const
{
    QList<QRegularExpression> wanted;
    for (const QString &word : words(query))
        wanted += beginningOf(word);
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
        const auto stands = [&page](const QRegularExpression &word) {
            return page.title.contains(word) || page.text.contains(word);
        };
        if (!std::ranges::all_of(wanted, stands))
            continue;
        int count = 0;
        for (const QRegularExpression &word : std::as_const(wanted))
            count += int(page.text.count(word));
        const bool isInTitle =
            std::ranges::all_of(wanted, [&page](const QRegularExpression &word) { return page.title.contains(word); });
        // Skips the heading, which only repeats the title.
        const QString body =
            page.text.startsWith(page.title) ? page.text.sliced(page.title.size()).trimmed() : page.text;
        const qsizetype position = std::max<qsizetype>(0, body.indexOf(wanted.first()));
        found += {{index, excerptAround(body, position)}, isInTitle, count};
    }
    // Stable: pages that match equally well keep the order of the book.
    std::ranges::stable_sort(found, [](const Found &a, const Found &b) {
        return a.isInTitle != b.isInTitle ? a.isInTitle : a.count > b.count;
    });
    QList<Hit> hits;
    for (const Found &one : std::as_const(found))
        hits += one.hit;
    return hits;
}

// SPDX-License-Identifier: MIT
// The pages of a help book: their titles, their order and a search for words in them. A value; main thread only.
#pragma once

#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

class HelpBook
{
public:
    struct Page
    {
        QString fileName; ///< in the book's folder
        QString title;    ///< of the page; its file name if it has no title
        QString text;     ///< plain text of the page, with its white space reduced to single spaces
    };

    struct Hit
    {
        qsizetype page = 0; ///< position in pages()
        QString excerpt;    ///< the text around the first word of the query
    };

    /// The page at which a book opens. Its links determine the order of the others.
    static constexpr QLatin1StringView firstPage{"index.html"};

    HelpBook() = default;
    /// Reads the .html files in `folder`: the first page, the pages to which it links in that order, then the rest.
    explicit HelpBook(const QString &folder);

    [[nodiscard]] const QList<Page> &pages() const { return mPages; }
    /// Position of the page in `fileName`; -1 when there is none.
    [[nodiscard]] qsizetype indexOf(const QString &fileName) const;

    /// The pages that contain, for each word of `query`, a word that begins with it; case is ignored. Pages whose title
    /// contains them all come first; otherwise pages with more matches come first. Empty for a query without words.
    [[nodiscard]] QList<Hit> search(const QString &query) const;

    /// Matches `word` at the beginning of a word, ignoring case.
    [[nodiscard]] static QRegularExpression beginningOf(const QString &word);

    /// The words of `text`: runs of letters and digits.
    [[nodiscard]] static QStringList words(const QString &text);

private:
    QList<Page> mPages;
};

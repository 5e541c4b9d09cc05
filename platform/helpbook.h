// SPDX-License-Identifier: MIT
// The pages of a help book: their titles, their order and where words stand in them. A value; main thread only.
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
        QString title;    ///< of the page; its file name where it has none
        QString text;     ///< what there is to read, without marks, its white space reduced to single spaces
    };

    struct Hit
    {
        qsizetype page = 0; ///< position in pages()
        QString excerpt;    ///< the text around the first of the words
    };

    /// The page that a book opens at, and whose links tell the order of the others.
    static constexpr QLatin1StringView firstPage{"index.html"};

    HelpBook() = default;
    /// Reads the .html files of `folder`: the first page, those that it links to in their order, then the rest.
    explicit HelpBook(const QString &folder);

    [[nodiscard]] const QList<Page> &pages() const { return mPages; }
    /// Position of the page in `fileName`; -1 when there is none.
    [[nodiscard]] qsizetype indexOf(const QString &fileName) const;

    /// The pages in which a word begins with each word of `query`, whatever the case of the letters: first those with
    /// all of them in the title, then by how often they stand there. None for a query without words.
    [[nodiscard]] QList<Hit> search(const QString &query) const;

    /// Matches `word` where a word begins so, whatever the case of the letters.
    [[nodiscard]] static QRegularExpression beginningOf(const QString &word);

    /// The words of `text`: runs of letters and digits.
    [[nodiscard]] static QStringList words(const QString &text);

private:
    QList<Page> mPages;
};

// SPDX-License-Identifier: MIT
#include "platform/mnemonics.h"

#include "platform/popupbutton.h"

#include <QAbstractButton>
#include <QKeySequence>
#include <QLabel>
#include <QList>
#include <QRegularExpression>
#include <QStringList>
#include <QTabBar>
#include <QTabWidget>

#include <algorithm>
#include <functional>
#include <numeric>
#include <set>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr char excludedProperty[] = "hasNoMnemonic";

/// A text that can have a mnemonic.
struct Text
{
    QString name; ///< of its widget: the source of letters for a text without Latin letters
    QString text;
    std::function<void(const QString &text)> set;
    int page = outside; ///< the page of the tabs that has it

    static constexpr int outside = -1;
};

/// The letters that were considered for a text, in one search.
using Tried = std::set<std::pair<qsizetype, QChar>>;

bool isLetter(QChar letter)
{
    return (letter >= u'A' && letter <= u'Z') || (letter >= u'0' && letter <= u'9');
}

/// The place of the ampersand before the mnemonic; -1 without one.
qsizetype markOf(const QString &text)
{
    for (qsizetype at = 0; at + 1 < text.size(); ++at) {
        if (text[at] != u'&')
            continue;
        if (text[at + 1] != u'&')
            return at;
        ++at;
    }
    return -1;
}

QChar letterOf(const QString &text)
{
    const qsizetype mark = markOf(text);
    return mark < 0 ? QChar() : text[mark + 1].toUpper();
}

/// Whether the mnemonic is in parentheses beside the actual text.
bool isBesideText(const QString &text)
{
    const qsizetype mark = markOf(text);
    return mark > 0 && text[mark - 1] == u'(' && text.mid(mark + 2, 1) == u")";
}

/// The letters that the text offers, the best first: initials of words, then all others. The line is hard to see under
/// a letter that reaches below the text.
QString lettersIn(const QString &text)
{
    constexpr QStringView lowLetters = u"gjpqy";
    QString initials, others, low;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar letter = text[at].toUpper();
        if (!isLetter(letter))
            continue;
        const bool isInitial = at == 0 || !text[at - 1].isLetterOrNumber();
        (lowLetters.contains(text[at]) ? low : isInitial ? initials : others) += letter;
    }
    return initials + others + low;
}

/// The letters in parentheses for a text without Latin letters: the initials of the widget's name, then any.
QString lettersBesideText(const QString &name)
{
    QString letters;
    for (const QChar letter : name) {
        if (isLetter(letter))
            letters += letter;
    }
    for (char16_t letter = u'A'; letter <= u'Z'; ++letter)
        letters += QChar(letter);
    return letters;
}

QString withMark(const QString &text, QChar letter)
{
    for (const bool isAtWord : {true, false}) {
        for (qsizetype at = 0; at < text.size(); ++at) {
            const bool isInitial = at == 0 || !text[at - 1].isLetterOrNumber();
            if (text[at].toUpper() == letter && (isInitial || !isAtWord))
                return QString(text).insert(at, u'&');
        }
    }
    static const QRegularExpression ending(u"(…|\\s*[:：])$"_s);
    const auto match = ending.match(text);
    return QString(text).insert(match.hasMatch() ? match.capturedStart() : text.size(), u"(&%1)"_s.arg(letter));
}

/// The distribution of letters to texts.
class Distribution
{
public:
    explicit Distribution(const QList<Text> &texts) : mTexts(texts), mGiven(texts.size())
    {
        for (const Text &text : texts) {
            const QString letters = lettersIn(Mnemonics::plainText(text.text));
            mOffers += letters.isEmpty() ? lettersBesideText(text.name) : letters;
        }
    }

    /// Keeps the letters that the texts have.
    void keepLetters()
    {
        for (qsizetype index = 0; index < mTexts.size(); ++index)
            mGiven[index] = letterOf(mTexts[index].text);
        mKept = mGiven;
    }

    /// Returns whether each text has a letter now.
    bool distribute()
    {
        std::vector<qsizetype> order(static_cast<std::size_t>(mTexts.size()));
        std::iota(order.begin(), order.end(), 0);
        // The hardest first: texts that are visible together with all others, then texts with few letters.
        std::ranges::stable_sort(order, {}, [this](qsizetype index) {
            return std::pair(mTexts[index].page != Text::outside, mOffers[index].size());
        });
        bool isComplete = true;
        for (const qsizetype index : order) {
            Tried tried;
            isComplete = (!mGiven[index].isNull() || find(index, tried)) && isComplete;
        }
        return isComplete;
    }

    [[nodiscard]] QChar letter(qsizetype index) const { return mGiven[index]; }

private:
    /// The texts that have `letter` and can be visible together with `index`.
    [[nodiscard]] QList<qsizetype> rivals(qsizetype index, QChar letter) const
    {
        QList<qsizetype> result;
        const int page = mTexts[index].page;
        for (qsizetype other = 0; other < mTexts.size(); ++other) {
            const int otherPage = mTexts[other].page;
            const bool areTogether = page == otherPage || page == Text::outside || otherPage == Text::outside;
            if (other != index && mGiven[other] == letter && areTogether)
                result += other;
        }
        return result;
    }

    /// Finds a letter. Without a free one, takes one whose owners have alternatives.
    bool find(qsizetype index, Tried &tried)
    {
        for (const QChar letter : mOffers[index]) {
            if (rivals(index, letter).isEmpty()) {
                mGiven[index] = letter;
                return true;
            }
        }
        for (const QChar letter : mOffers[index]) {
            if (tried.insert({index, letter}).second && take(letter, index, tried))
                return true;
        }
        return false;
    }

    bool take(QChar letter, qsizetype index, Tried &tried)
    {
        const QList<qsizetype> owners = rivals(index, letter);
        const QList<QChar> before = mGiven;
        mGiven[index] = letter;
        for (const qsizetype owner : owners) {
            if (mGiven[owner] != letter)
                continue; // has moved for another one
            mGiven[owner] = QChar();
            const bool isKept = !mKept.isEmpty() && !mKept[owner].isNull();
            if (isKept || !find(owner, tried)) {
                mGiven = before;
                return false;
            }
        }
        return true;
    }

    QList<Text> mTexts;
    QStringList mOffers;
    QList<QChar> mGiven;
    QList<QChar> mKept; ///< letters that do not change; empty for none
};

/// The texts of `widget` itself.
QList<Text> textsOf(QWidget *widget)
{
    if (auto *tabs = qobject_cast<QTabWidget *>(widget)) {
        QList<Text> texts;
        for (int index = 0; index < tabs->count(); ++index) {
            const auto set = [tabs, index](const QString &text) {
                tabs->setTabText(index, text);
                tabs->tabBar()->setAccessibleTabName(index, Mnemonics::plainText(text));
            };
            texts.append(Text{tabs->widget(index)->objectName(), tabs->tabText(index), set});
        }
        return texts;
    }
    if (auto *button = qobject_cast<QAbstractButton *>(widget)) {
        // A pop-up button shows its value, which its label explains.
        const bool isExcluded = button->property(excludedProperty).toBool();
        if (button->text().isEmpty() || isExcluded || qobject_cast<PopUpButton *>(button))
            return {};
        const auto set = [button](const QString &text) {
            button->setText(text);
            // A screen reader would read the letter beside the text.
            if (isBesideText(text) && button->accessibleName().isEmpty())
                button->setAccessibleName(Mnemonics::plainText(text));
        };
        return {Text{button->objectName(), button->text(), set}};
    }
    auto *label = qobject_cast<QLabel *>(widget);
    if (!label || !label->buddy())
        return {};
    return {Text{label->objectName(), label->text(), [label](const QString &text) { label->setText(text); }}};
}

void collect(QWidget *parent, int page, QList<Text> &texts)
{
    for (QObject *child : parent->children()) {
        auto *widget = qobject_cast<QWidget *>(child);
        if (!widget || widget->isWindow())
            continue;
        for (Text &text : textsOf(widget)) {
            text.page = page;
            texts += text;
        }
        if (auto *tabs = qobject_cast<QTabWidget *>(widget)) {
            for (int index = 0; index < tabs->count(); ++index)
                collect(tabs->widget(index), index, texts);
        } else {
            collect(widget, page, texts);
        }
    }
}

} // namespace

void Mnemonics::assign(QWidget *window)
{
    QList<Text> texts;
    collect(window, Text::outside, texts);
    Distribution letters(texts);
    letters.keepLetters();
    if (!letters.distribute()) {
        Distribution anew(texts);
        anew.distribute();
        letters = anew;
    }
    for (qsizetype index = 0; index < texts.size(); ++index) {
        const QChar letter = letters.letter(index);
        if (!letter.isNull() && letter != letterOf(texts[index].text))
            texts[index].set(withMark(plainText(texts[index].text), letter));
    }
}

void Mnemonics::exclude(QAbstractButton *button)
{
    button->setProperty(excludedProperty, true);
}

void Mnemonics::setText(QAbstractButton *button, const QString &text)
{
    const QString before = plainText(button->text());
    if (before == text)
        return;
    const bool hadLetter = !letterOf(button->text()).isNull();
    if (hadLetter && button->accessibleName() == before)
        button->setAccessibleName({}); // given by assign()
    button->setText(text);
    if (hadLetter)
        assign(button->window());
}

QString Mnemonics::escaped(QString text)
{
    return text.replace(u'&', "&&"_L1);
}

QString Mnemonics::plainText(const QString &text)
{
    const qsizetype mark = markOf(text);
    if (mark < 0)
        return text;
    return isBesideText(text) ? QString(text).remove(mark - 1, 4) : QString(text).remove(mark, 1);
}

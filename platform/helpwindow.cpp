// SPDX-License-Identifier: MIT
#include "platform/helpwindow.h"

#include "base/text.h"
#include "platform/screenroom.h"
#include "platform/searchfield.h"

#include <QCoreApplication>
#include <QDir>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTextBrowser>
#include <QToolButton>
#include <QUrl>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize initialSize(900, 660);
constexpr int listWidth = 240;
constexpr int pageMargin = 18;
constexpr int fileRole = Qt::UserRole; // of a list item: file name of the page; unset for "nothing found"

// Pages use the desktop's colours, light or dark; styleFor() adds only that of links.
const QString pageStyle = u"h1 { margin-top: 0px; margin-bottom: 10px; } h2 { margin-top: 18px; margin-bottom: 6px; } "
                          "p { margin-bottom: 8px; } li { margin-bottom: 5px; } td, th { padding: 3px 12px 3px 0px; } "
                          "th { text-align: left; }"_s;

/// The desktop's colour of links, made lighter or darker if it hardly contrasts with the page. A dark desktop may leave
/// links dark blue.
QColor linkColor(const QPalette &palette)
{
    constexpr int leastDifference = 100; // between grey values from 0 to 255
    constexpr int lightOnDark = 200;
    constexpr int darkOnLight = 80;
    const QColor link = palette.color(QPalette::Active, QPalette::Link);
    const int page = qGray(palette.color(QPalette::Active, QPalette::Base).rgb());
    if (std::abs(qGray(link.rgb()) - page) >= leastDifference)
        return link;
    return QColor::fromHsl(link.hslHue(), link.hslSaturation(), page < 128 ? lightOnDark : darkOnLight);
}

QString styleFor(const QPalette &palette)
{
    return pageStyle + u" a { color: %1; }"_s.arg(linkColor(palette).name());
}

} // namespace

HelpWindow::HelpWindow(const QString &title, const QString &folder, QWidget *parent)
    : QWidget(parent, Qt::Window), mFolder(folder), mBook(folder)
{
    setObjectName("helpViewer"_L1);
    setWindowTitle(title);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(buildBar());
    column->addWidget(buildBody(), 1);
    auto *find = new QShortcut(QKeySequence(QKeySequence::Find), this);
    connect(find, &QShortcut::activated, this, &HelpWindow::beginSearch);
    auto *leave = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(leave, &QShortcut::activated, this, &HelpWindow::escape);
    auto *close = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), this);
    connect(close, &QShortcut::activated, this, &QWidget::close);
    auto *quit = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q), this);
    connect(quit, &QShortcut::activated, QCoreApplication::instance(), &QCoreApplication::quit);
    list({});
    resize(initialSize.boundedTo(roomOnScreen(this)));
}

QToolButton *HelpWindow::addButton(const char *name, const char *textKey, const QKeySequence &key,
                                   void (HelpWindow::*action)())
{
    auto *button = new QToolButton;
    button->setObjectName(QLatin1StringView(name));
    button->setText(localizedText(textKey));
    button->setToolTip(u"%1 (%2)"_s.arg(localizedText(textKey), key.toString(QKeySequence::NativeText)));
    button->setShortcut(key);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    connect(button, &QToolButton::clicked, this, action);
    return button;
}

QWidget *HelpWindow::buildBar()
{
    auto *bar = new QWidget;
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(8, 6, 8, 6);
    mBack = addButton("helpBack", "lkeyHelpBack", QKeySequence(Qt::ALT | Qt::Key_Left), &HelpWindow::goBack);
    mForward =
        addButton("helpForward", "lkeyHelpForward", QKeySequence(Qt::ALT | Qt::Key_Right), &HelpWindow::goForward);
    mHome = addButton("helpContents", "lkeyHelpContents", QKeySequence(Qt::ALT | Qt::Key_Home), &HelpWindow::goHome);
    mSearch = new SearchField;
    mSearch->setObjectName("helpSearch"_L1);
    mSearch->setPlaceholderText(localizedText("lkeyHelpSearch"));
    mSearch->setAccessibleName(localizedText("lkeyHelpSearch"));
    mSearch->setClearButtonEnabled(true);
    mSearch->installEventFilter(this);
    connect(mSearch, &QLineEdit::textChanged, this, &HelpWindow::list);
    row->addWidget(mBack);
    row->addWidget(mForward);
    row->addWidget(mHome);
    row->addSpacing(12);
    row->addWidget(mSearch, 1);
    return bar;
}

QWidget *HelpWindow::buildBody()
{
    mList = new QListWidget;
    mList->setObjectName("helpList"_L1);
    mList->setWordWrap(true);
    mList->setFrameShape(QFrame::NoFrame);
    mList->setSpacing(2);
    // Moving through the list with the arrow keys shows each page at once.
    connect(mList, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem *item) { openItem(item); });
    connect(mList, &QListWidget::itemActivated, this, [this](const QListWidgetItem *item) {
        openItem(item);
        mBrowser->setFocus();
    });
    mBrowser = new QTextBrowser;
    mBrowser->setObjectName("helpBrowser"_L1);
    mBrowser->setFrameShape(QFrame::NoFrame);
    mBrowser->setOpenExternalLinks(true);
    mBrowser->document()->setDefaultStyleSheet(styleFor(palette()));
    mBrowser->document()->setDocumentMargin(pageMargin);
    // During sourceChanged() the browser still reports the previous page.
    connect(mBrowser, &QTextBrowser::historyChanged, this, &HelpWindow::pageShown);
    connect(mBrowser, &QTextBrowser::backwardAvailable, mBack, &QWidget::setEnabled);
    connect(mBrowser, &QTextBrowser::forwardAvailable, mForward, &QWidget::setEnabled);
    mBack->setEnabled(false);
    mForward->setEnabled(false);
    auto *body = new QSplitter;
    body->addWidget(mList);
    body->addWidget(mBrowser);
    body->setStretchFactor(1, 1);
    body->setSizes({listWidth, initialSize.width() - listWidth});
    body->setChildrenCollapsible(false);
    return body;
}

void HelpWindow::gotoPage(const QString &fileName)
{
    const QString known = mBook.indexOf(fileName) >= 0 ? fileName : QString(HelpBook::firstPage);
    if (shownFile() != known)
        mBrowser->setSource(QUrl::fromLocalFile(QDir(mFolder).filePath(known)));
}

void HelpWindow::goBack()
{
    mBrowser->backward();
}

void HelpWindow::goForward()
{
    mBrowser->forward();
}

void HelpWindow::goHome()
{
    mSearch->clear();
    gotoPage(HelpBook::firstPage);
}

void HelpWindow::beginSearch()
{
    mSearch->setFocus(Qt::ShortcutFocusReason);
    mSearch->selectAll();
}

void HelpWindow::escape()
{
    if (mSearch->text().isEmpty())
        close();
    else
        mSearch->clear();
}

/// Lists the results of `query`, or all pages if it is empty.
void HelpWindow::list(const QString &query)
{
    const QSignalBlocker quiet(mList); // a result opens when the user moves to it
    mList->clear();
    const bool isSearch = !query.trimmed().isEmpty();
    mList->setAccessibleName(localizedText(isSearch ? "lkeyHelpResults" : "lkeyHelpContents"));
    if (isSearch) {
        for (const HelpBook::Hit &hit : mBook.search(query))
            addToList(hit.page, hit.excerpt);
        if (mList->count() == 0)
            (new QListWidgetItem(localizedText("lkeyHelpNothingFound"), mList))->setFlags(Qt::NoItemFlags);
    } else {
        for (qsizetype page = 0; page < mBook.pages().size(); ++page)
            addToList(page, {});
    }
    pageShown();
}

void HelpWindow::addToList(qsizetype page, const QString &excerpt)
{
    const HelpBook::Page &entry = mBook.pages().at(page);
    auto *item = new QListWidgetItem(excerpt.isEmpty() ? entry.title : entry.title + u'\n' + excerpt, mList);
    item->setData(fileRole, entry.fileName);
    item->setToolTip(excerpt);
}

void HelpWindow::openItem(const QListWidgetItem *item)
{
    const QString file = item ? item->data(fileRole).toString() : QString();
    if (!file.isEmpty())
        gotoPage(file);
}

QString HelpWindow::shownFile() const
{
    return mBrowser->source().fileName();
}

void HelpWindow::pageShown()
{
    const QSignalBlocker quiet(mList);
    mList->setCurrentRow(-1);
    for (int row = 0; row < mList->count(); ++row) {
        if (mList->item(row)->data(fileRole).toString() == shownFile())
            mList->setCurrentRow(row);
    }
    markWords();
}

/// Highlights the words of the search in the page.
void HelpWindow::markWords()
{
    QList<QTextEdit::ExtraSelection> marks;
    QTextCharFormat format;
    format.setBackground(palette().color(QPalette::Highlight));
    format.setForeground(palette().color(QPalette::HighlightedText));
    for (const QString &word : HelpBook::words(mSearch->text())) {
        const QRegularExpression beginning = HelpBook::beginningOf(word);
        for (QTextCursor at = mBrowser->document()->find(beginning); !at.isNull();
             at = mBrowser->document()->find(beginning, at))
            marks += {at, format};
    }
    mBrowser->setExtraSelections(marks);
}

void HelpWindow::changeEvent(QEvent *event)
{
    // Link colours take effect when a page is loaded.
    if (event->type() == QEvent::PaletteChange && mBrowser)
        mBrowser->document()->setDefaultStyleSheet(styleFor(palette()));
    if (event->type() == QEvent::PaletteChange && mBrowser && !mBrowser->source().isEmpty()) {
        const int position = mBrowser->verticalScrollBar()->value();
        mBrowser->reload();
        mBrowser->verticalScrollBar()->setValue(position);
        markWords();
    }
    QWidget::changeEvent(event);
}

bool HelpWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == mSearch && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        const bool goesToResults = key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter;
        if (goesToResults && mList->count() > 0) {
            // A row is already current if the list contains the page shown. The first result is the best match.
            const bool opensTheBest = key != Qt::Key_Down && !mSearch->text().trimmed().isEmpty();
            if (opensTheBest || mList->currentRow() < 0)
                mList->setCurrentRow(0);
            mList->setFocus();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

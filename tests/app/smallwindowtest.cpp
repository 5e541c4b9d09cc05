// SPDX-License-Identifier: MIT
// The window on a small screen: 683 by 384 logical pixels are 1366 by 768 at twice the size. On every tab and sheet,
// the focus brings each control into view, and no text is cut off.
#include "base/text.h"
#include "daemonlink/daemontransport.h"
#include "platform/applicationchooser.h"
#include "platform/helpwindow.h"
#include "platform/scrolledpage.h"
#include "platform/sheet.h"
#include "tests/app/hubfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/drawncontrols.h"
#include "tests/support/languages.h"
#include "tests/support/picturefolder.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QApplication>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <QTabWidget>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize smallScreen(683, 384);
constexpr int mostSteps = 400; // more than there are controls

QString described(const QWidget *widget)
{
    return u"%1 %2 %3"_s.arg(QLatin1StringView(widget->metaObject()->className()), widget->objectName(),
                             widget->property("text").toString());
}

/// Whether `widget` lies completely within each of its parents up to `root`.
bool isWholeIn(const QWidget *widget, const QWidget *root)
{
    for (const QWidget *parent = widget->parentWidget(); parent; parent = parent->parentWidget()) {
        if (!parent->rect().contains(QRect(widget->mapTo(parent, QPoint()), widget->size())))
            return false;
        if (parent == root)
            break;
    }
    return true;
}

/// The content that can be scrolled and has `widget`; the window if there is none.
const QWidget *scrolledContentAround(const QWidget *widget)
{
    for (const QWidget *parent = widget->parentWidget(); parent; parent = parent->parentWidget()) {
        const auto *page = qobject_cast<const ScrolledPage *>(parent);
        if (page && page->widget()->isAncestorOf(widget))
            return page->widget();
    }
    return widget->window();
}

/// Whether `page` has a scroll bar for each direction in which its content is larger, and no other.
bool hasNeededBars(const ScrolledPage &page)
{
    const QSize hidden = page.widget()->size() - page.viewport()->size();
    return page.horizontalScrollBar()->isVisible() == (hidden.width() > 0)
           && page.verticalScrollBar()->isVisible() == (hidden.height() > 0);
}

bool isControl(const QWidget *widget)
{
    return qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QLabel *>(widget)
           || qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QAbstractSlider *>(widget)
           || qobject_cast<const QAbstractItemView *>(widget) || qobject_cast<const QGroupBox *>(widget);
}

/// The controls of `window` of which no scrolling shows every part, one line each.
QStringList clipped(const QWidget *window)
{
    QStringList faults;
    for (const QWidget *widget : window->findChildren<QWidget *>()) {
        const bool isPartOfView =
            qobject_cast<const QAbstractItemView *>(widget->parentWidget()) || qobject_cast<const QScrollBar *>(widget);
        if (widget->window() == window && widget->isVisible() && isControl(widget) && !isPartOfView
            && !isWholeIn(widget, scrolledContentAround(widget)))
            faults += u"clipped: "_s + described(widget);
        const auto *page = qobject_cast<const ScrolledPage *>(widget);
        if (page && page->isVisible() && !hasNeededBars(*page))
            faults += u"no scroll bar: "_s + described(page->widget());
    }
    return faults;
}

/// Gives the focus to each control of `window`, and returns those that are not completely visible then.
QStringList hiddenWithFocus(QWidget *window)
{
    QStringList faults;
    const auto check = [&](const QWidget *focus) {
        if (!isWholeIn(focus, window))
            faults += u"not in view: "_s + described(focus);
    };
    const QWidget *first = QApplication::focusWidget();
    for (int step = 0; step < mostSteps && QApplication::focusWidget(); ++step) {
        check(QApplication::focusWidget());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        if (QApplication::focusWidget() == first)
            break;
    }
    // Arrow keys, shortcuts and programs also move the focus.
    for (QWidget *widget : window->findChildren<QWidget *>()) {
        if (widget->window() != window || !widget->isVisible() || !widget->isEnabled() || widget->focusProxy()
            || !(widget->focusPolicy() & Qt::ClickFocus) || !isControl(widget))
            continue;
        widget->setFocus(Qt::OtherFocusReason);
        if (widget->hasFocus())
            check(widget);
    }
    faults.removeDuplicates();
    return faults;
}

} // namespace

class SmallWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void everyControlOfATabComesIntoView_data();
    void everyControlOfATabComesIntoView();
    void everySheetFits_data();
    void everySheetFits();
    void helpFits();
    void pagesDoNotScrollWithoutNeed();

private:
    void openWindow(const QString &language, QSize size);

    HubResources mResources;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
    std::unique_ptr<Hub> mHub;
};

void SmallWindowTest::initTestCase()
{
    QCOMPARE(QGuiApplication::primaryScreen()->size(), smallScreen);
}

void SmallWindowTest::init()
{
    setReplyPollInterval(replyPollInterval);
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->start());
}

void SmallWindowTest::cleanup()
{
    mHub.reset();
    mDaemon.reset();
}

void SmallWindowTest::openWindow(const QString &language, QSize size)
{
    installTexts(textsFolder(), {language});
    mHub = std::make_unique<Hub>();
    mHub->window->resize(size);
    QVERIFY(mHub->openInFront());
    QCOMPARE(mHub->window->size(), size);
}

void SmallWindowTest::everyControlOfATabComesIntoView_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QSize>("size");
    for (const QString &language : languages()) {
        for (const QSize size : {QSize(800, 480), smallScreen})
            QTest::addRow("%s-%dx%d", qPrintable(language), size.width(), size.height()) << language << size;
    }
}

void SmallWindowTest::everyControlOfATabComesIntoView()
{
    QFETCH(QString, language);
    QFETCH(QSize, size);
    openWindow(language, size);
    // As during a recording.
    mHub->find<QLabel>("mRecordingHint")->show();
    auto *tabs = mHub->find<QTabWidget>("mKeyboardTabView");
    QStringList faults;
    for (int index = 0; index < tabs->count(); ++index) {
        tabs->setCurrentIndex(index);
        tabs->setFocus();
        // New texts of the daemon change the layout.
        const auto misplaced = [window = mHub->window.get()] { return clipped(window) + cutTexts(window); };
        QTRY_VERIFY2(misplaced().isEmpty(), qPrintable(misplaced().join(u'\n')));
        QVERIFY(savePicture(drawn(mHub->window.get()), u"small-%1"_s.arg(index)));
        faults += hiddenWithFocus(mHub->window.get());
    }
    faults.removeDuplicates();
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
}

void SmallWindowTest::everySheetFits_data()
{
    addLanguageRows();
}

void SmallWindowTest::everySheetFits()
{
    QFETCH(QString, language);
    openWindow(language, smallScreen);
    mHub->find<QAbstractButton>("mKeyboardButton")->click(); // makes the sheet
    const auto *chooserOfKeyboards = mHub->find<Sheet>("mKeyboardChooser");
    QVERIFY(chooserOfKeyboards);
    mHub->find<QAbstractButton>("mChooserClose")->click();
    ApplicationChooser applications(ApplicationList::Windows::all, mHub->window.get());
    applications.setApplications({}, {{.windowClass = u"Game.exe"_s}});
    QList<QDialog *> dialogs{&applications};
    for (QWidget *widget : QApplication::allWidgets()) { // some have no parent before they are first shown
        if (auto *sheet = qobject_cast<Sheet *>(widget))
            dialogs += sheet;
    }
    QStringList faults;
    for (QDialog *dialog : std::as_const(dialogs)) {
        auto *sheet = qobject_cast<Sheet *>(dialog);
        if (sheet)
            sheet->beginSheet(mHub->window.get());
        else
            dialog->open();
        QTRY_VERIFY(dialog->isVisible());
        QWidget *window = dialog->window();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        QTRY_VERIFY(QApplication::focusWidget());
        const auto faultsOfDialog = [&] {
            QStringList found;
            const QSize room = dialog->isWindow() ? smallScreen : mHub->window->size();
            if (dialog->width() > room.width() || dialog->height() > room.height())
                found += u"too large: %1 %2x%3"_s.arg(described(dialog)).arg(dialog->width()).arg(dialog->height());
            if (dialog->isWindow())
                found += clipped(window) + cutTexts(window) + hiddenWithFocus(window);
            else if (!isWholeIn(dialog, window))
                found += u"clipped: "_s + described(dialog);
            return found;
        };
        // Texts of the daemon may still come, and the layout follows them.
        (void)QTest::qWaitFor([&] { return faultsOfDialog().isEmpty(); });
        faults += faultsOfDialog();
        if (language == "de"_L1)
            QVERIFY(savePicture(drawn(dialog), u"small-sheet-"_s + dialog->objectName()));
        if (sheet)
            sheet->endSheet();
        else
            dialog->reject();
    }
    QVERIFY(dialogs.size() >= 7);
    faults.removeDuplicates();
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
}

void SmallWindowTest::helpFits()
{
    HelpWindow help(u"Help"_s, qEnvironmentVariable("KESTRA_BIN_DIR") + u"/resources/help/en"_s);
    help.show();
    QVERIFY(QTest::qWaitForWindowExposed(&help));
    QVERIFY2(help.width() <= smallScreen.width() && help.height() < smallScreen.height(),
             qPrintable(u"%1x%2"_s.arg(help.width()).arg(help.height())));
}

void SmallWindowTest::pagesDoNotScrollWithoutNeed()
{
    openWindow(u"en"_s, {1180, 700});
    auto *tabs = mHub->find<QTabWidget>("mKeyboardTabView");
    for (int index = 0; index < tabs->count(); ++index) {
        tabs->setCurrentIndex(index);
        QCoreApplication::processEvents();
        const auto *page = qobject_cast<ScrolledPage *>(tabs->currentWidget());
        QVERIFY(page);
        QVERIFY2(page->widget()->size() == page->viewport()->size() && page->viewport()->size() == page->size(),
                 qPrintable(tabs->tabText(index)));
    }
}

/// Like QTEST_MAIN, on a screen of the size that the test is about.
int main(int argc, char *argv[])
{
    const QTemporaryDir folder;
    QFile screens(folder.filePath(u"screens.json"_s));
    if (!screens.open(QIODevice::WriteOnly))
        return 1;
    screens.write(R"({"screens": [{"name": "small", "x": 0, "y": 0, "width": 683, "height": 384, "logicalDpi": 96,
                                   "logicalBaseDpi": 96, "dpr": 1}]})");
    screens.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(screens.fileName()));
    QApplication application(argc, argv);
    SmallWindowTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "smallwindowtest.moc"

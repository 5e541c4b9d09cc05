// SPDX-License-Identifier: MIT
// The window as screen readers and users without a mouse meet it, on every tab and sheet, with the real daemon. Each
// control is named after the text that it shows, and the Tab key reaches each.
#include "base/text.h"
#include "daemonlink/daemontransport.h"
#include "platform/applicationchooser.h"
#include "platform/mnemonics.h"
#include "platform/popupbutton.h"
#include "platform/sheet.h"
#include "tests/app/hubfixture.h"
#include "tests/support/daemonprocessfixture.h"
#include "tests/support/languages.h"
#include "tests/support/testmain.h"
#include "tests/support/texts.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QSet>
#include <QTabWidget>
#include <QTest>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostSteps = 400; // more than there are controls

constexpr std::array interactiveRoles{QAccessible::Button,       QAccessible::CheckBox,  QAccessible::RadioButton,
                                      QAccessible::ComboBox,     QAccessible::Slider,    QAccessible::SpinBox,
                                      QAccessible::EditableText, QAccessible::Table,     QAccessible::List,
                                      QAccessible::PageTab,      QAccessible::ButtonMenu};

QString described(const QAccessibleInterface *control)
{
    const QObject *object = control->object();
    return u"%1 (role %2)"_s.arg(object ? object->objectName() : QString()).arg(int(control->role()));
}

/// The visible controls below `root` that a user can operate, without the parts of compound controls.
void collectControls(QAccessibleInterface *root, QList<QAccessibleInterface *> &controls)
{
    for (int index = 0; index < root->childCount(); ++index) {
        QAccessibleInterface *child = root->child(index);
        if (!child || child->state().invisible)
            continue;
        const bool isInteractive = std::ranges::find(interactiveRoles, child->role()) != interactiveRoles.end();
        if (isInteractive)
            controls += child;
        else
            collectControls(child, controls);
    }
}

/// The mistakes in the names of the controls below `root`, one line each.
QStringList faultsOfNames(QWidget *root)
{
    QList<QAccessibleInterface *> controls;
    collectControls(QAccessible::queryAccessibleInterface(root), controls);
    QStringList faults;
    if (controls.isEmpty())
        faults += u"no controls"_s;
    for (const QAccessibleInterface *control : controls) {
        const QString name = control->text(QAccessible::Name);
        if (name.trimmed().isEmpty() || name == "No Translation"_L1)
            faults += u"no name: "_s + described(control);
        // A pop-up button shows its value; its name is its caption.
        const auto *button = qobject_cast<PopUpButton *>(control->object())
                                 ? nullptr
                                 : qobject_cast<QAbstractButton *>(control->object());
        const QString shown = button ? Mnemonics::plainText(button->text()) : QString();
        if (!shown.isEmpty() && !name.contains(shown, Qt::CaseInsensitive))
            faults += u"shows \"%1\", is called \"%2\": "_s.arg(shown, name) + described(control);
    }
    return faults;
}

bool isTabStop(const QWidget *widget, const QWidget *root)
{
    return widget->isVisibleTo(root) && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus)
           && !widget->focusProxy();
}

/// Whether the Tab key reached `widget`, a part of it, or another choice of its group.
bool isReached(const QWidget *widget, const QSet<QWidget *> &reached)
{
    return std::ranges::any_of(reached, [widget](const QWidget *one) {
        const auto *button = qobject_cast<const QAbstractButton *>(widget);
        const bool isOfOneGroup = button && button->autoExclusive() && one->parent() == widget->parent();
        return one == widget || widget->isAncestorOf(one) || isOfOneGroup;
    });
}

/// The controls of `root` that the Tab key does not reach in one round from the focused control.
QStringList unreached(QWidget *root)
{
    QSet<QWidget *> reached;
    QWidget *first = QApplication::focusWidget();
    for (int step = 0; step < mostSteps && QApplication::focusWidget(); ++step) {
        reached.insert(QApplication::focusWidget());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        if (QApplication::focusWidget() == first)
            break;
    }
    QStringList faults;
    if (QApplication::focusWidget() != first)
        faults += u"Tab does not come around"_s;
    for (const QWidget *widget : root->findChildren<QWidget *>()) {
        if (widget->window() == root && isTabStop(widget, root) && !isReached(widget, reached))
            faults += u"Tab does not lead to "_s + QLatin1StringView(widget->metaObject()->className()) + u' '
                      + widget->objectName();
    }
    return faults;
}

} // namespace

class AccessibilityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { mDaemon.reset(); }
    void everyControlHasAName_data();
    void everyControlHasAName();
    void tabKeyReachesEveryControlOfATab();
    void tabKeyReachesEveryControlOfASheet();
    void tabKeyReachesEveryControlOfTheApplicationChooser();
    void findsAControlWithoutName();

private:
    HubResources mResources;
    std::unique_ptr<DaemonProcessFixture> mDaemon;
};

void AccessibilityTest::init()
{
    setReplyPollInterval(replyPollInterval);
    mDaemon = std::make_unique<DaemonProcessFixture>();
    QVERIFY(mDaemon->start());
}

void AccessibilityTest::everyControlHasAName_data()
{
    addLanguageRows();
}

void AccessibilityTest::everyControlHasAName()
{
    QFETCH(QString, language);
    installTexts(textsFolder(), {language});
    const Hub hub;
    hub.controller->initializeDevice();
    auto *tabs = hub.find<QTabWidget>("mKeyboardTabView");
    QStringList faults;
    for (int index = 0; index < tabs->count(); ++index) {
        tabs->setCurrentIndex(index);
        QCoreApplication::processEvents();
        faults += faultsOfNames(hub.window.get());
    }
    for (Sheet *sheet : hub.window->findChildren<Sheet *>()) {
        sheet->beginSheet(hub.window.get());
        QVERIFY(QTest::qWaitForWindowExposed(sheet));
        faults += faultsOfNames(sheet);
        sheet->endSheet();
    }
    ApplicationChooser chooser(ApplicationList::Windows::all, hub.window.get());
    chooser.open();
    QVERIFY(QTest::qWaitForWindowExposed(&chooser));
    faults += faultsOfNames(&chooser);
    faults.removeDuplicates();
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
}

void AccessibilityTest::tabKeyReachesEveryControlOfATab()
{
    const Hub hub;
    hub.controller->initializeDevice();
    hub.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(hub.window.get()));
    auto *tabs = hub.find<QTabWidget>("mKeyboardTabView");
    QStringList faults;
    for (int index = 0; index < tabs->count(); ++index) {
        tabs->setCurrentIndex(index);
        tabs->setFocus();
        for (const QString &fault : unreached(hub.window.get()))
            faults += tabs->tabText(index) + u": "_s + fault;
    }
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
}

void AccessibilityTest::tabKeyReachesEveryControlOfASheet()
{
    const Hub hub;
    hub.controller->initializeDevice();
    QStringList faults;
    int count = 0;
    for (Sheet *sheet : hub.window->findChildren<Sheet *>()) {
        sheet->beginSheet(hub.window.get());
        sheet->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(sheet));
        const auto hasFocus = [sheet] {
            const QWidget *focus = QApplication::focusWidget();
            return focus == sheet || (focus && sheet->isAncestorOf(focus));
        };
        QTRY_VERIFY(hasFocus());
        for (const QString &fault : unreached(sheet))
            faults += sheet->objectName() + u": "_s + fault;
        sheet->endSheet();
        ++count;
    }
    QVERIFY(count >= 2);
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(u'\n')));
}

void AccessibilityTest::tabKeyReachesEveryControlOfTheApplicationChooser()
{
    const Hub hub;
    ApplicationChooser chooser(ApplicationList::Windows::all, hub.window.get());
    chooser.setApplications({}, {{.windowClass = u"Game.exe"_s}});
    chooser.open();
    chooser.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&chooser));
    QTRY_VERIFY(chooser.isAncestorOf(QApplication::focusWidget()));
    QTest::keyClicks(QApplication::focusWidget(), u"game"_s); // "Choose" is disabled before
    QCOMPARE(unreached(&chooser), QStringList());
}

void AccessibilityTest::findsAControlWithoutName()
{
    const Hub hub;
    auto *help = hub.find<QAbstractButton>("mHelpButton");
    QVERIFY(faultsOfNames(hub.window.get()).isEmpty());
    help->setAccessibleName(u"?"_s);
    QCOMPARE(faultsOfNames(hub.window.get()).size(), 1);
    help->setAccessibleName({});
    help->setText({});
    QCOMPARE(faultsOfNames(hub.window.get()).size(), 1);
}

QTEST_MAIN(AccessibilityTest)
#include "accessibilitytest.moc"

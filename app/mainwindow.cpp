// SPDX-License-Identifier: MIT
#include "app/mainwindow.h"

#include "app/attachedkeyboards.h"
#include "app/connectionnotice.h"
#include "app/keyboardchooser.h"
#include "app/keyboardmaincontroller.h"
#include "app/keyboardmaintenancecontroller.h"
#include "app/productlogo.h"
#include "app/ruleprocess.h"
#include "app/servicestart.h"
#include "base/text.h"
#include "keys/keyboardkeyscontroller.h"
#include "keys/lightpreview.h"
#include "lighting/keyboardlightingcontroller.h"
#include "macros/keyboardmacroscontroller.h"
#include "platform/helpviewer.h"
#include "platform/mnemonics.h"
#include "platform/screenroom.h"
#include "platform/scrolledpage.h"
#include "platform/sessionbus.h"
#include "platform/sheet.h"
#include "platform/spacing.h"
#include "platform/spinner.h"
#include "platform/statusline.h"
#include "platform/symbol.h"
#include "platform/tabview.h"
#include "profiles/keyboardprofilescontroller.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr char helpPageProperty[] = "helpPage"; ///< of a tab's page: the page of the help book that explains it
constexpr int logoSize = 40;
constexpr QSize initialSize(1180, 700);
constexpr QSize smallestSize(683, 300); // fits a screen of 1366 by 768 at twice the size, beside a task bar

QLabel *wrappedLabel(const QString &text, QLatin1StringView objectName)
{
    auto *label = new QLabel(text);
    label->setObjectName(objectName);
    label->setWordWrap(true);
    return label;
}

void makeBold(QLabel *label, qreal scale = 1)
{
    QFont font = label->font();
    font.setBold(true);
    font.setPixelSize(qRound(QFontInfo(font).pixelSize() * scale)); // whole, as in the picture: one font to load
    label->setFont(font);
}

} // namespace

MainWindow::MainWindow()
{
    setObjectName("mMainWindow"_L1);
    setWindowTitle(localizedText("lkeyProductName"));
    resize(initialSize.boundedTo(roomOnScreen(this)));
    setMinimumSize(smallestSize);
}

void MainWindow::assemble(KeyboardMainController *controller)
{
    mController = controller;
    mOutlets.mMainWindow = this;

    auto *central = new QWidget;
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(Spacing::separate, Spacing::normal, Spacing::separate, Spacing::tight);
    layout->setSpacing(0);
    layout->addWidget(createHeader());
    layout->addSpacing(Spacing::normal);
    layout->addWidget(createTabs(), 1);
    layout->addSpacing(Spacing::tight);
    layout->addLayout(createStatusRow());
    setCentralWidget(central);
    createShortcuts();
    createDeviceNotFoundSheet();
    createRestoringStateSheet();

    mController->setOutlets(mOutlets);
    mController->keysController()->awakeFromNib();
    mController->profilesController()->awakeFromNib();
    mController->macrosController()->awakeFromNib();
    mController->lightingController()->awakeFromNib();
    mController->awakeFromNib();
    Mnemonics::assign(this);
    // The other controls are disabled until the keyboard is opened.
    mOutlets.mKeyboardTabView->setFocus();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->accept();
    QCoreApplication::quit();
}

QWidget *MainWindow::createHeader()
{
    auto *header = new QWidget;
    auto *layout = new QHBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Spacing::normal);

    mOutlets.mProductLogo = new QLabel;
    mOutlets.mProductLogo->setObjectName("mProductLogo"_L1);
    mOutlets.mProductLogo->setPixmap(productLogo(logoSize, devicePixelRatioF()));
    mOutlets.mProductLogo->setAccessibleName(localizedText("lkeyProductName"));
    mTitles = new QWidget;
    auto *titles = new QVBoxLayout(mTitles);
    titles->setContentsMargins(0, 0, 0, 0);
    titles->setSpacing(0);
    auto *title = new QLabel(localizedText("lkeyProductFamily"));
    makeBold(title, 1.25);
    titles->addWidget(title);
    titles->addWidget(new QLabel(localizedText("lkeyProductModel")));
    mOutlets.mBusyIndicator = new Spinner;
    mOutlets.mBusyIndicator->setObjectName("mBusyIndicator"_L1);
    mOutlets.mBusyIndicator->setAccessibleName(localizedText("lkeyBusy"));

    layout->addWidget(mOutlets.mProductLogo);
    layout->addWidget(mTitles);
    layout->addWidget(mOutlets.mBusyIndicator);
    layout->addWidget(createNotice());
    layout->addStretch(1);
    addHeaderButton(layout, "mFBButton", "lkeySocialNetworkPage", Symbol::page,
                    [this](QObject *sender) { mController->clickFBButton(sender); });
    addHeaderButton(layout, "mTwitterButton", "lkeyCommunityFeed", Symbol::feed,
                    [this](QObject *sender) { mController->clickTwitterButton(sender); });
    addHeaderButton(layout, "mQuillClubButton", "lkeyCommunityPage", Symbol::club,
                    [this](QObject *sender) { mController->clickQuillClubButton(sender); });
    mOutlets.mHelpButton = new QPushButton(localizedText("lkeyHelp"));
    mOutlets.mHelpButton->setObjectName("mHelpButton"_L1);
    mOutlets.mHelpButton->setIcon(Symbols::icon(Symbol::help));
    connect(mOutlets.mHelpButton, &QPushButton::clicked, mController,
            [this] { mController->clickHelpButton(mOutlets.mHelpButton); });
    layout->addWidget(mOutlets.mHelpButton);
    return header;
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    fitHeader();
}

/// A small window has no room for the names of the product beside the notice.
void MainWindow::fitHeader()
{
    constexpr int roomForBoth = 880;
    if (mTitles)
        mTitles->setVisible(width() >= roomForBoth || mOutlets.mConnectionNotice->isHidden());
}

QWidget *MainWindow::createNotice()
{
    mOutlets.mConnectionNotice = new ConnectionNotice;
    connect(mOutlets.mConnectionNotice, &ConnectionNotice::shown, this, &MainWindow::fitHeader);
    connect(mOutlets.mConnectionNotice, &ConnectionNotice::keyboardsRequested, this, &MainWindow::openKeyboardChooser);
    connect(mOutlets.mConnectionNotice, &ConnectionNotice::helpRequested, this,
            [] { HelpViewer::gotoPage(u"problems.html"_s); });
    auto *start = new ServiceStart(sharedSessionBus(), mOutlets.mConnectionNotice);
    connect(mOutlets.mConnectionNotice, &ConnectionNotice::serviceMissed, start, &ServiceStart::look);
    connect(mOutlets.mConnectionNotice, &ConnectionNotice::startRequested, start, &ServiceStart::start);
    connect(start, &ServiceStart::found, mOutlets.mConnectionNotice, &ConnectionNotice::setCanStartService);
    connect(start, &ServiceStart::failed, mOutlets.mConnectionNotice, &ConnectionNotice::showStartFailure);
    return mOutlets.mConnectionNotice;
}

void MainWindow::addHeaderButton(QHBoxLayout *layout, const char *objectName, const char *textKey, Symbol symbol,
                                 const std::function<void(QObject *sender)> &action)
{
    auto *button = new QToolButton;
    button->setObjectName(QLatin1StringView(objectName));
    // The symbol alone: the links must not compete with the tabs. The text is the name and the tool tip.
    button->setIcon(Symbols::icon(symbol));
    button->setAccessibleName(localizedText(textKey));
    button->setToolTip(localizedText(textKey));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    connect(button, &QToolButton::clicked, mController, [button, action] { action(button); });
    layout->addWidget(button);
}

QWidget *MainWindow::createTabs()
{
    // The controllers identify a tab by its label, which is never translated. The user reads the title.
    struct Tab
    {
        QLatin1StringView label;
        const char *titleKey;
        Symbol symbol;
        QWidget *page;
        QLatin1StringView helpPage;
    };
    const Tab tabs[] = {
        {"Keys"_L1, "lkeyKeysTab", Symbol::keyboard, mController->keysController()->view(), "keys.html"_L1},
        {"Profiles"_L1, "lkeyProfilesTab", Symbol::profiles, mController->profilesController()->view(),
         "profiles.html"_L1},
        {"Macros"_L1, "lkeyMacrosTab", Symbol::macro, mController->macrosController()->view(), "macros.html"_L1},
        {"Lighting"_L1, "lkeyLightingTab", Symbol::light, mController->lightingController()->view(),
         "lighting.html"_L1},
        {"Maintenance"_L1, "lkeyMaintenanceTab", Symbol::tick, mController->maintenanceController()->view(),
         "maintenance.html"_L1},
    };
    auto *preview = new LightPreview;
    mController->lightingController()->setPreview(
        preview, [preview](const Backlight::Settings &settings) { preview->light().show(settings); });
    auto *tabView = new TabView;
    mOutlets.mKeyboardTabView = tabView;
    tabView->setObjectName("mKeyboardTabView"_L1);
    tabView->tabBar()->setAccessibleName(localizedText("lkeyProductName"));
    for (const Tab &tab : tabs) {
        auto *page = new ScrolledPage(tab.page);
        page->setProperty(tabLabelProperty, QString(tab.label));
        page->setProperty(helpPageProperty, QString(tab.helpPage));
        tabView->addTab(page, Symbols::icon(tab.symbol), localizedText(tab.titleKey));
    }
    connect(tabView, &QTabWidget::currentChanged, mController, [this, tabView](int index) {
        if (const QWidget *page = tabView->widget(index))
            mController->tabViewDidSelectTabViewItem(tabView, page);
    });
    auto *help = new QShortcut(QKeySequence(QKeySequence::HelpContents), this);
    connect(help, &QShortcut::activated, tabView,
            [tabView] { HelpViewer::gotoPage(tabView->currentWidget()->property(helpPageProperty).toString()); });
    return tabView;
}

/// The parent of the shortcuts is the window: they come before the tables, which take all other combinations.
void MainWindow::createShortcuts()
{
    const auto add = [this](QKeyCombination key, auto action) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, action);
    };
    add(Qt::CTRL | Qt::Key_Q, [] { QCoreApplication::quit(); });
    add(Qt::CTRL | Qt::Key_W, [this] { close(); });
    add(Qt::CTRL | Qt::Key_N, [this] {
        if (mController->profilesController()->view()->isVisible())
            mController->profilesController()->addButton()->click();
        else if (mController->macrosController()->view()->isVisible())
            mController->macrosController()->addButton()->click();
    });
}

QLayout *MainWindow::createStatusRow()
{
    auto *row = new QHBoxLayout;
    mOutlets.mStatusLine = new StatusLine;
    mOutlets.mStatusLine->setObjectName("mStatusLine"_L1);
    mOutlets.mUndoButton = statusRowButton("mUndoButton", "lkeyHistoryUndo", Symbol::undo);
    mOutlets.mHistoryButton = statusRowButton("mHistoryButton", "lkeyHistoryOpen", Symbol::history);
    auto *keyboard = statusRowButton("mKeyboardButton", "lkeyChooserOpen", Symbol::keyboard);
    connect(keyboard, &QToolButton::clicked, this, &MainWindow::openKeyboardChooser);
    row->addWidget(mOutlets.mStatusLine, 1);
    row->addWidget(mOutlets.mUndoButton);
    row->addWidget(mOutlets.mHistoryButton);
    row->addWidget(keyboard);
    return row;
}

QToolButton *MainWindow::statusRowButton(const char *objectName, const char *textKey, Symbol symbol)
{
    auto *button = new QToolButton;
    button->setObjectName(QLatin1StringView(objectName));
    button->setText(localizedText(textKey));
    button->setIcon(Symbols::icon(symbol));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

void MainWindow::openKeyboardChooser()
{
    if (!mKeyboardChooser) {
        mAttachedKeyboards = new AttachedKeyboards(mController->serviceStatus(), this);
        mRuleProcess = new RuleProcess(RuleProcess::installedPrograms(), this);
        mKeyboardChooser = new KeyboardChooser(*mAttachedKeyboards, *mRuleProcess, this);
        mAttachedKeyboards->start();
    }
    mKeyboardChooser->show(this);
}

void MainWindow::createDeviceNotFoundSheet()
{
    auto *sheet = new Sheet(this);
    sheet->setObjectName("mCommunicationAlertWindow"_L1);
    sheet->setWindowTitle(localizedText("lkeyDeviceNotFoundTitle"));
    auto *title = wrappedLabel(localizedText("lkeyDeviceNotFoundTitle"), "mCommunicationAlertTitle"_L1);
    makeBold(title);
    auto *description = wrappedLabel(localizedText("lkeyDeviceNotFoundDesc"), "mCommunicationAlertDesc"_L1);
    auto *button = new QPushButton(localizedText("lkeyOK"));
    button->setObjectName("mCommunicationOKButton"_L1);
    button->setDefault(true);
    connect(button, &QPushButton::clicked, mController,
            [this, button] { mController->clickCommAlertOKButton(button); });
    auto *layout = new QVBoxLayout(sheet);
    layout->setContentsMargins(Spacing::separate, Spacing::separate, Spacing::separate, Spacing::separate);
    layout->setSpacing(Spacing::normal);
    layout->addWidget(title);
    layout->addWidget(description);
    layout->addWidget(button, 0, Qt::AlignRight);
    sheet->setMinimumWidth(420);
    sheet->setCancelButton(button);
    mOutlets.mCommunicationAlertWindow = sheet;
    mOutlets.mCommunicationAlertTitle = title;
    mOutlets.mCommunicationAlertDesc = description;
    mOutlets.mCommunicationOKButton = button;
}

void MainWindow::createRestoringStateSheet()
{
    // The sheet may be up for a moment only. A separate window would flash, with its frame and its animations.
    auto *sheet = new Sheet(this, Sheet::Place::insideWindow);
    sheet->setObjectName("mRestoringStateWindow"_L1);
    sheet->setAccessibleName(localizedText("lkeyRestoringStateTitle"));
    auto *title = wrappedLabel(localizedText("lkeyRestoringStateTitle"), "restoringStateTitle"_L1);
    makeBold(title);
    auto *progress = new QProgressBar;
    progress->setObjectName("mRestoringStateProgress"_L1);
    progress->setTextVisible(false);
    progress->setAccessibleName(localizedText("lkeyRestoringStateTitle"));
    // The sheet may stay for as long as there is no daemon.
    auto *quit = new QPushButton(localizedText("lkeyQuit"));
    quit->setObjectName("restoringStateQuitButton"_L1);
    // The sheet may appear while the user is typing, so no key presses the button by accident.
    quit->setAutoDefault(false);
    quit->setFocusPolicy(Qt::TabFocus);
    connect(quit, &QPushButton::clicked, QCoreApplication::instance(), &QCoreApplication::quit);
    auto *layout = new QVBoxLayout(sheet);
    layout->setContentsMargins(Spacing::separate, Spacing::separate, Spacing::separate, Spacing::separate);
    layout->setSpacing(Spacing::normal);
    layout->addWidget(title);
    layout->addWidget(wrappedLabel(localizedText("lkeyRestoringStateDesc"), "restoringStateDesc"_L1));
    layout->addWidget(progress);
    layout->addWidget(quit, 0, Qt::AlignRight);
    sheet->setMinimumWidth(420);
    sheet->setFocusPolicy(Qt::StrongFocus);
    mOutlets.mRestoringStateWindow = sheet;
    mOutlets.mRestoringStateProgress = progress;
}

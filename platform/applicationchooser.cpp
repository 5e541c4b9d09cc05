// SPDX-License-Identifier: MIT
#include "platform/applicationchooser.h"

#include "base/text.h"
#include "platform/applicationwindows.h"
#include "platform/mnemonics.h"
#include "platform/rowsview.h"
#include "platform/screenroom.h"
#include "platform/searchfield.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// Draws the note at the trailing end of the row. A long name ends before it.
class ApplicationDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &given, const QModelIndex &index) const override
    {
        QStyleOptionViewItem option = given;
        initStyleOption(&option, index);
        const QWidget *view = option.widget;
        const QStyle *style = view->style();
        const QString note = index.data(ApplicationList::noteRole).toString();
        const int margin = 2 * style->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, view) + 4;
        const int noteWidth = note.isEmpty() ? 0 : option.fontMetrics.horizontalAdvance(note) + margin;
        const QRect textRect = style->subElementRect(QStyle::SE_ItemViewItemText, &option, view);
        option.text = option.fontMetrics.elidedText(option.text, Qt::ElideRight, textRect.width() - noteWidth - margin);
        style->drawControl(QStyle::CE_ItemViewItem, &option, painter, view);
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        style->drawItemText(painter, option.rect.adjusted(margin, 0, -margin, 0),
                            int(QStyle::visualAlignment(option.direction, Qt::AlignRight) | Qt::AlignVCenter),
                            option.palette, true, note, isSelected ? QPalette::HighlightedText : QPalette::Text);
    }
};

QList<FrontApplication> openWindows()
{
    // A Wayland compositor reports no windows to an ordinary program.
    return QGuiApplication::platformName() == "xcb"_L1 ? ApplicationWindows::read(qgetenv("DISPLAY"))
                                                       : QList<FrontApplication>();
}

} // namespace

ApplicationChooser::ApplicationChooser(ApplicationList::Windows offered, QWidget *window)
    : QDialog(window, Qt::Sheet), mOffered(offered), mApplications(new ApplicationList(this)), mField(new SearchField),
      mList(new RowsView<QListView>), mResult(new QLabel), mChoose(new QPushButton(localizedText("lkeyChoose")))
{
    setWindowModality(Qt::WindowModal);
    setWindowTitle(localizedText("lkeyChooseApplication"));
    buildContent();
    connect(mField, &QLineEdit::textChanged, this, &ApplicationChooser::search);
    connect(mList->selectionModel(), &QItemSelectionModel::currentChanged, mChoose,
            [this](const QModelIndex &current) { mChoose->setEnabled(current.isValid()); });
    connect(mList, &QListView::doubleClicked, this, &ApplicationChooser::accept);
    setApplications(InstalledApplications::read(), openWindows());
}

void ApplicationChooser::buildContent()
{
    mField->setObjectName("mApplicationSearchField"_L1);
    mField->setAccessibleName(localizedText("lkeyApplicationSearch"));
    mField->setPlaceholderText(localizedText("lkeyApplicationSearch"));
    mField->setClearButtonEnabled(true);
    mField->installEventFilter(this);
    mList->setObjectName("mApplicationList"_L1);
    mList->setAccessibleName(localizedText("lkeyApplicationList"));
    mList->setModel(mApplications);
    mList->setItemDelegate(new ApplicationDelegate(mList));
    mList->setUniformItemSizes(true); // otherwise the list would measure every row, and load its icon for that
    mList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    mList->setEditTriggers(QAbstractItemView::NoEditTriggers);
    const int iconSize = style()->pixelMetric(QStyle::PM_ListViewIconSize, nullptr, this);
    mList->setIconSize({iconSize, iconSize});
    mList->installEventFilter(this);
    mResult->setObjectName("mApplicationSearchResult"_L1);

    auto *other = new QPushButton(localizedText("lkeyApplicationOther"));
    auto *cancel = new QPushButton(localizedText("lkeyCancel"));
    other->setObjectName("mOtherApplication"_L1);
    cancel->setObjectName("mCancelApplication"_L1);
    mChoose->setObjectName("mChooseApplication"_L1);
    mChoose->setDefault(true);
    connect(other, &QPushButton::clicked, this, [this] { done(otherReturn); });
    connect(cancel, &QPushButton::clicked, this, &ApplicationChooser::reject);
    connect(mChoose, &QPushButton::clicked, this, &ApplicationChooser::accept);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(other);
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(mChoose);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(mField);
    layout->addWidget(mList);
    layout->addWidget(mResult);
    layout->addLayout(buttons);
    constexpr QSize size(480, 460);
    resize(size.boundedTo(roomOnScreen(this)));
    mField->setFocus();
    Mnemonics::assign(this);
}

void ApplicationChooser::setApplications(const QList<InstalledApplication> &installed,
                                         const QList<FrontApplication> &windows)
{
    mApplications->setApplications(installed, windows, mOffered);
    search();
}

void ApplicationChooser::search()
{
    mApplications->setQuery(mField->text());
    const bool isSearching = !mField->text().trimmed().isEmpty();
    mList->setCurrentIndex(isSearching ? mApplications->index(0) : QModelIndex());
    mChoose->setEnabled(mList->currentIndex().isValid());
    showResult();
}

void ApplicationChooser::showResult()
{
    const int count = mApplications->rowCount();
    const QString text = count == 0 ? localizedText("lkeyApplicationsNone")
                                    : localizedFormat("lkeyApplicationsFound", {QString::number(count)});
    mResult->setText(text);
    // Screen readers read the description of the field, where the focus is.
    mField->setAccessibleDescription(text);
}

std::optional<QVariantMap> ApplicationChooser::chosenInformation() const
{
    const QModelIndex current = mList->currentIndex();
    const QString windowClass = mApplications->windowClassOf(current);
    if (!windowClass.isEmpty())
        return QVariantMap{{ApplicationInformation::nameKey, windowClass},
                           {ApplicationInformation::signatureKey, windowClass}};
    return ApplicationInformation::read(mApplications->pathOf(current));
}

QString ApplicationChooser::chosenTitle() const
{
    return mList->currentIndex().data().toString();
}

void ApplicationChooser::accept()
{
    if (mList->currentIndex().isValid())
        QDialog::accept();
}

bool ApplicationChooser::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress
        && ((watched == mField && takeFieldKey(event)) || (watched == mList && takeListKey(event))))
        return true;
    return QDialog::eventFilter(watched, event);
}

/// Keys that move in the list also do so from the field. The focus follows, because screen readers read the row that
/// has it.
bool ApplicationChooser::takeFieldKey(QEvent *event)
{
    switch (static_cast<QKeyEvent *>(event)->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown: break;
    default: return false;
    }
    mList->setFocus();
    QCoreApplication::sendEvent(mList, event);
    return true;
}

/// Text typed in the list goes to the field.
bool ApplicationChooser::takeListKey(QEvent *event)
{
    const auto *key = static_cast<QKeyEvent *>(event);
    const bool isCommand = key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    const bool isText = !isCommand && !key->text().isEmpty() && key->text().front().isPrint();
    if (!isText && key->key() != Qt::Key_Backspace)
        return false;
    mField->setFocus();
    mField->end(false); // setFocus() may select the text, which typing would replace
    QCoreApplication::sendEvent(mField, event);
    return true;
}

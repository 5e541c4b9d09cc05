// SPDX-License-Identifier: MIT
#include "app/keyboardchooser.h"

#include "app/attachedkeyboards.h"
#include "base/devicekeys.h"
#include "base/devicerule.h"
#include "base/text.h"
#include "base/visibletext.h"
#include "platform/rowsview.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

enum Column { nameColumn, connectionColumn, stateColumn };

constexpr QChar replacement(0xFFFD);
constexpr int idRole = Qt::UserRole;

QString textOf(const QVariantMap &keyboard, DeviceKeys::Key key)
{
    return visibleText(keyboard.value(key).toString(), replacement);
}

/// How the keyboard is connected, by its port and its serial number; Bluetooth has no port, and an address as number.
QString connectionOf(const QVariantMap &keyboard)
{
    static const QRegularExpression address(u"\\A(?:[0-9a-f]{2}:){5}[0-9a-f]{2}\\z"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    const QString port = keyboard.value(DeviceKeys::path).toString();
    if (port.contains("usb"_L1))
        return localizedText("lkeyChooserUsb");
    if (port.contains("serio"_L1) || port.contains("platform"_L1))
        return localizedText("lkeyChooserBuiltIn");
    if (address.match(keyboard.value(DeviceKeys::serial).toString()).hasMatch())
        return localizedText("lkeyChooserBluetooth");
    return localizedText("lkeyChooserOtherConnection");
}

/// An obstacle to the use of a keyboard.
struct Obstacle
{
    QLatin1StringView name; ///< in DeviceKeys::obstacle; empty for none
    const char *stateKey;
    const char *remedyKey; ///< null: no text of the window helps
    bool canBeUsed;        ///< using the keyboard may succeed
};

constexpr Obstacle obstacles[] = {
    {{}, "lkeyChooserReady", nullptr, true},
    {DeviceKeys::obstacleNoRight, "lkeyChooserNoRight", nullptr, false},
    // The program that has grabbed the keyboard may have ended; using it again tries.
    {DeviceKeys::obstacleTaken, "lkeyChooserTaken", "lkeyChooserTakenRemedy", true},
    {DeviceKeys::obstaclePointer, "lkeyChooserPointer", "lkeyChooserPointerRemedy", false},
    {DeviceKeys::obstacleElsewhere, "lkeyChooserElsewhere", "lkeyChooserElsewhereRemedy", false},
};
constexpr Obstacle otherObstacle{DeviceKeys::obstacleOther, "lkeyChooserUnusable", nullptr, false};

const Obstacle &obstacleOf(const QVariantMap &keyboard)
{
    const QString name = keyboard.value(DeviceKeys::obstacle).toString();
    const auto *found =
        std::ranges::find_if(obstacles, [&name](const Obstacle &obstacle) { return obstacle.name == name; });
    return found == std::end(obstacles) ? otherObstacle : *found;
}

bool needsRight(const QVariantMap &keyboard)
{
    return obstacleOf(keyboard).name == DeviceKeys::obstacleNoRight;
}

bool isInUse(const QVariantMap &keyboard)
{
    return keyboard.value(DeviceKeys::isInUse).toBool();
}

bool isChosen(const QVariantMap &keyboard)
{
    const QString state = keyboard.value(DeviceKeys::state).toString();
    return isInUse(keyboard) || (!state.isEmpty() && state != DeviceKeys::stateReleased);
}

QString stateOf(const QVariantMap &keyboard)
{
    const Obstacle &obstacle = obstacleOf(keyboard);
    const QString state = keyboard.value(DeviceKeys::state).toString();
    if (isInUse(keyboard))
        return localizedText("lkeyChooserInUse");
    if (obstacle.name.isEmpty() && state == DeviceKeys::stateWaiting)
        return localizedText("lkeyChooserWaiting");
    if (obstacle.name.isEmpty() && state == DeviceKeys::stateSuspended)
        return localizedText("lkeyChooserSuspended");
    return localizedText(obstacle.stateKey);
}

/// The remedy, or else the daemon's own words: the reason of other obstacles is rare. Empty without an obstacle.
QString remedyOf(const QVariantMap &keyboard)
{
    const Obstacle &obstacle = obstacleOf(keyboard);
    if (obstacle.remedyKey)
        return localizedText(obstacle.remedyKey);
    return obstacle.name.isEmpty() ? QString() : textOf(keyboard, DeviceKeys::problem);
}

QString wordsOf(RuleProcess::Failure failure, const QString &problem)
{
    switch (failure) {
    case RuleProcess::Failure::dismissed: return localizedText("lkeyChooserDismissed");
    case RuleProcess::Failure::impossible: return localizedText("lkeyChooserImpossible");
    case RuleProcess::Failure::refused: break;
    }
    return localizedFormat("lkeyChooserFailed", {visibleText(problem, replacement)});
}

QLabel *wrappedLabel(const char *objectName)
{
    auto *label = new QLabel;
    label->setObjectName(QLatin1StringView(objectName));
    label->setTextFormat(Qt::PlainText); // the names of keyboards are in it
    label->setWordWrap(true);
    return label;
}

} // namespace

KeyboardChooser::KeyboardChooser(AttachedKeyboards &keyboards, RuleProcess &rules, QWidget *parent)
    : Sheet(parent), mKeyboards(keyboards), mRules(rules), mList(new RowsView<QTreeWidget>),
      mState(wrappedLabel("mChooserState")), mRemedy(wrappedLabel("mChooserRemedy")), mRemedyText(new QPlainTextEdit),
      mUseAlso(new QCheckBox(localizedText("lkeyChooserUseAlso"))),
      mRemoveRule(new QCheckBox(localizedText("lkeyChooserRemoveRule"))),
      mRelease(new QPushButton(localizedText("lkeyChooserRelease"))),
      mUse(new QPushButton(localizedText("lkeyChooserUse")))
{
    setObjectName("mKeyboardChooser"_L1);
    setWindowTitle(localizedText("lkeyChooserTitle"));
    mList->setObjectName("mChooserList"_L1);
    mList->setAccessibleName(localizedText("lkeyChooserTitle"));
    mList->setRootIsDecorated(false);
    mList->setAllColumnsShowFocus(true);
    mList->setHeaderLabels(
        {localizedText("lkeyChooserName"), localizedText("lkeyChooserConnection"), localizedText("lkeyChooserState")});
    mList->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    mList->header()->setSectionResizeMode(nameColumn, QHeaderView::Stretch);
    mList->header()->setStretchLastSection(false);
    mRemedyText->setObjectName("mChooserRemedyText"_L1);
    mRemedyText->setReadOnly(true);
    mRemedyText->setTabChangesFocus(true);
    mRemedyText->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // the lines wrap
    mRemedyText->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    mRemedyText->setFixedHeight(mRemedyText->fontMetrics().lineSpacing() * 5);
    mUseAlso->setObjectName("mChooserUseAlso"_L1);
    mRemoveRule->setObjectName("mChooserRemoveRule"_L1);
    mRelease->setObjectName("mChooserRelease"_L1);
    mUse->setObjectName("mChooserUse"_L1);
    auto *wayOut = wrappedLabel("mChooserWayOut");
    wayOut->setText(localizedText("lkeyChooserWayOut"));
    auto *close = new QPushButton(localizedText("lkeyClose"));
    close->setObjectName("mChooserClose"_L1);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(mRelease);
    buttons->addStretch();
    buttons->addWidget(close);
    buttons->addWidget(mUse);
    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(10);
    layout->addWidget(mList, 1);
    layout->addWidget(mState);
    layout->addWidget(mRemedy);
    layout->addWidget(mRemedyText);
    layout->addWidget(wayOut);
    layout->addWidget(mUseAlso);
    layout->addWidget(mRemoveRule);
    layout->addLayout(buttons);
    constexpr QSize initialSize(620, 380);
    resize(initialSize);
    setMinimumWidth(initialSize.width());
    setCancelButton(close);

    connect(&mKeyboards, &AttachedKeyboards::changed, this, &KeyboardChooser::readList);
    connect(&mRules, &RuleProcess::finished, this, &KeyboardChooser::ruleFinished);
    connect(mList, &QTreeWidget::currentItemChanged, this, &KeyboardChooser::showSelected);
    connect(mList, &QTreeWidget::itemActivated, mUse, &QPushButton::click);
    connect(mUse, &QPushButton::clicked, this, &KeyboardChooser::use);
    connect(mRelease, &QPushButton::clicked, this, &KeyboardChooser::release);
    connect(close, &QPushButton::clicked, this, [this] { endSheet(); });
    readList();
}

void KeyboardChooser::show(QWidget *window)
{
    beginSheet(window);
    mList->setFocus();
}

QVariantMap KeyboardChooser::selected() const
{
    const QTreeWidgetItem *item = mList->currentItem();
    if (!item || !mKeyboards.list())
        return {};
    const QString id = item->data(nameColumn, idRole).toString();
    const auto keyboard = std::ranges::find_if(*mKeyboards.list(), [&id](const QVariantMap &candidate) {
        return candidate.value(DeviceKeys::id).toString() == id;
    });
    return keyboard == mKeyboards.list()->end() ? QVariantMap() : *keyboard;
}

QList<QVariantMap> KeyboardChooser::chosen() const
{
    QList<QVariantMap> keyboards = mKeyboards.list().value_or(QList<QVariantMap>());
    keyboards.removeIf([](const QVariantMap &keyboard) { return !isChosen(keyboard); });
    return keyboards;
}

QVariantMap KeyboardChooser::toRelease() const
{
    const QList<QVariantMap> keyboards = chosen();
    if (keyboards.size() == 1)
        return keyboards.constFirst(); // whichever is selected
    return isChosen(selected()) ? selected() : QVariantMap();
}

void KeyboardChooser::readList()
{
    const QString current = selected().value(DeviceKeys::id).toString();
    {
        const QSignalBlocker blocker(mList);
        mList->clear();
        for (const QVariantMap &keyboard : mKeyboards.list().value_or(QList<QVariantMap>())) {
            auto *item = new QTreeWidgetItem(
                mList, {textOf(keyboard, DeviceKeys::name), connectionOf(keyboard), stateOf(keyboard)});
            item->setData(nameColumn, idRole, keyboard.value(DeviceKeys::id));
            item->setToolTip(nameColumn, textOf(keyboard, DeviceKeys::name));
            const bool isCurrent =
                current.isEmpty() ? isInUse(keyboard) : keyboard.value(DeviceKeys::id).toString() == current;
            if (isCurrent)
                mList->setCurrentItem(item);
        }
        if (!mList->currentItem() && mList->topLevelItemCount() > 0)
            mList->setCurrentItem(mList->topLevelItem(0));
    }
    showSelected();
}

void KeyboardChooser::showSelected()
{
    const QVariantMap keyboard = selected();
    if (mRules.isRunning())
        mState->setText(localizedText("lkeyChooserAsking"));
    else if (!mKeyboards.list())
        mState->setText(localizedText("lkeyChooserNoService"));
    else if (keyboard.isEmpty())
        mState->setText(localizedText("lkeyChooserNone"));
    else
        mState->setText(
            localizedFormat("lkeyChooserSelected", {textOf(keyboard, DeviceKeys::name), stateOf(keyboard)}));
    const bool isOtherChosen = chosen().size() > (isChosen(keyboard) ? 1 : 0);
    const bool canInstall = needsRight(keyboard) && mRules.isAvailable() && eventDeviceRule(keyboard).has_value();
    mUse->setEnabled(!mRules.isRunning() && !keyboard.isEmpty() && !isInUse(keyboard)
                     && (obstacleOf(keyboard).canBeUsed || canInstall));
    mUse->setDefault(mUse->isEnabled());
    mUseAlso->setVisible(isOtherChosen);
    mUseAlso->setEnabled(mUse->isEnabled());
    mRelease->setEnabled(!mRules.isRunning() && !toRelease().isEmpty());
    mRemoveRule->setVisible(mRules.isAvailable());
    mRemoveRule->setEnabled(mRelease->isEnabled());
    showRemedy(keyboard);
}

void KeyboardChooser::showRemedy(const QVariantMap &keyboard)
{
    const std::optional<QString> rule = eventDeviceRule(keyboard);
    const std::optional<QStringList> commands =
        deviceRuleCommands(keyboard, QCoreApplication::applicationDirPath() + "/kestractl"_L1);
    const bool isRight = needsRight(keyboard) && rule && commands;
    if (isRight && mRules.isAvailable()) {
        mRemedy->setText(localizedText("lkeyChooserRule"));
        mRemedyText->setPlainText(*rule);
    } else if (isRight) {
        mRemedy->setText(localizedText("lkeyChooserCommands"));
        mRemedyText->setPlainText(commands->join(u'\n'));
    } else {
        mRemedy->setText(remedyOf(keyboard));
    }
    mRemedy->setVisible(!mRemedy->text().isEmpty());
    mRemedyText->setVisible(isRight);
    mRemedyText->setAccessibleName(mRemedy->text());
}

void KeyboardChooser::say(const QString &text)
{
    mState->setText(text);
}

void KeyboardChooser::use()
{
    const QVariantMap keyboard = selected();
    if (!mUse->isEnabled() || keyboard.isEmpty())
        return;
    if (obstacleOf(keyboard).canBeUsed)
        return useSelected();
    mKeyboardOfRule = keyboard.value(DeviceKeys::id).toString();
    mIsRemoval = false;
    mRules.install(keyboard.value(DeviceKeys::nodes).toStringList().value(0));
    showSelected();
}

void KeyboardChooser::useSelected()
{
    const QString id = selected().value(DeviceKeys::id).toString();
    const auto then = [this](const Result<void> &used) {
        if (!used)
            say(visibleText(used.error().message, replacement));
    };
    if (!mUseAlso->isHidden() && mUseAlso->isChecked())
        mKeyboards.useAlso(id, then);
    else
        mKeyboards.use(id, then);
}

void KeyboardChooser::release()
{
    const bool isRuleRemoved = mRemoveRule->isChecked() && mRules.isAvailable();
    const QVariantMap keyboard = toRelease();
    const auto then = [this, isRuleRemoved, keyboard](const Result<void> &released) {
        if (!released)
            return say(visibleText(released.error().message, replacement));
        if (!isRuleRemoved)
            return;
        mKeyboardOfRule = keyboard.value(DeviceKeys::id).toString();
        mIsRemoval = true;
        mRules.remove(keyboard.value(DeviceKeys::nodes).toStringList().value(0));
        showSelected();
    };
    if (chosen().size() > 1)
        mKeyboards.releaseOne(keyboard.value(DeviceKeys::id).toString(), then);
    else
        mKeyboards.release(then);
}

void KeyboardChooser::ruleFinished(const RuleProcess::Outcome &outcome)
{
    showSelected();
    if (!outcome)
        return say(wordsOf(outcome.error(), mRules.problem()));
    // The daemon may learn of the right a moment later; it refuses with its reason until then.
    if (!mIsRemoval && selected().value(DeviceKeys::id).toString() == mKeyboardOfRule)
        useSelected();
}

// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/linuxdevices.h"

#include "daemon/system/logging.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

int fileAccess(const QString &path)
{
    return ::access(path.toLocal8Bit().constData(), R_OK | W_OK) == 0 ? 0 : errno;
}

/// The reason why a node cannot be used, by errno, with the remedy.
QString nodeProblem(const QString &node, const QString &deviceId, int error)
{
    switch (error) {
    case EACCES:
    case EPERM: return u"No right to open %1. %2"_s.arg(node, deviceRightsRemedy(deviceId));
    case EBUSY:
        return u"Another program has grabbed %1. End it (\"sudo fuser -v %1\" lists the programs that have it open). "
               u"Within %2 seconds after that, the daemon uses the keyboard."_s.arg(node)
                   .arg(LinuxDevices::longestRetryPause.count());
    case ENOENT:
    case ENODEV: return u"%1 is gone. Plug the keyboard in again."_s.arg(node);
    default:
        return u"%1 cannot be used: %2. Plug the keyboard out and in again; \"sudo dmesg\" may show why."_s.arg(
            node, QString::fromLocal8Bit(strerror(error)));
    }
}

DeviceObstacle obstacleOf(int error)
{
    switch (error) {
    case 0: return DeviceObstacle::none;
    case EACCES:
    case EPERM: return DeviceObstacle::noRight;
    case EBUSY: return DeviceObstacle::taken;
    default: return DeviceObstacle::other;
    }
}

QString seatProblem(const QString &seat)
{
    return u"No session of yours is active at the seat of this keyboard (%1). While one is, the daemon can use the "
           "keyboard."_s.arg(seat);
}

QList<InputDevice> devicesOf(const QList<KeyboardInfo> &keyboards)
{
    QList<InputDevice> devices;
    for (const KeyboardInfo &keyboard : keyboards)
        devices += keyboard.device;
    return devices;
}

/// The index of the device that `id` means.
Result<qsizetype, UseError> indexOf(const QList<InputDevice> &keyboards, const QString &id)
{
    QList<qsizetype> found;
    for (qsizetype index = 0; index < keyboards.size(); ++index) {
        const InputDevice &device = keyboards.at(index);
        if (device.id == id || device.nodes.contains(id))
            return index;
        if (device.id.startsWith(id + u':'))
            found += index;
    }
    if (found.isEmpty())
        return UseError{{u"There is no keyboard \"%1\". \"kestractl device list\" lists the keyboards."_s.arg(id)},
                        UseError::Cause::unknown};
    if (found.size() > 1)
        return UseError{{u"\"%1\" means several keyboards. Give an ID from \"kestractl device list\"."_s.arg(id)},
                        UseError::Cause::unknown};
    return found.constFirst();
}

const char *stateName(EventDevice::State state)
{
    switch (state) {
    case EventDevice::State::waiting: return "waiting for its keys to come up";
    case EventDevice::State::grabbed: return "grabbed";
    case EventDevice::State::refused: return "refused";
    case EventDevice::State::gone: return "gone";
    case EventDevice::State::ungrabbed: return "released";
    }
    return "?";
}

} // namespace

LinuxDevices::LinuxDevices(EventDeviceSource &nodes, LinuxKeyboard &keyboard, SeatWatch &seats, QObject *parent)
    : LinuxDevices(nodes, keyboard,
                   {.openNode = EvdevFile::open,
                    .makeOutput = OutputDevice::create,
                    .access = fileAccess,
                    .presence = [&seats](const QString &seat) { return seats.at(seat); }},
                   parent)
{
    connect(&seats, &SeatWatch::changed, this, &LinuxDevices::lookAgain);
}

LinuxDevices::LinuxDevices(EventDeviceSource &nodes, LinuxKeyboard &keyboard, Services services, QObject *parent)
    : DeviceSource(parent), mSource(nodes), mKeyboard(keyboard), mServices(std::move(services)),
      mNextRetryPause(mServices.firstRetryPause)
{
    connect(&mSource, &EventDeviceSource::changed, this, &LinuxDevices::lookAgain);
    mMove.setSingleShot(true);
    mMove.setInterval(mServices.settlingTime);
    mMove.callOnTimeout(this, &LinuxDevices::followMovedKeyboards);
    mRetry.setSingleShot(true);
    mRetry.callOnTimeout(this, [this] {
        mNextRetryPause = std::min<std::chrono::milliseconds>(mNextRetryPause * 2, longestRetryPause);
        synchronize();
    });
    connect(&mKeyboard, &LinuxKeyboard::nodeChanged, this, &LinuxDevices::nodeChanged);
    connect(&mKeyboard, &LinuxKeyboard::releaseChordPressed, this, &LinuxDevices::ungrabEveryKeyboard);
    connect(&mKeyboard, &LinuxKeyboard::realTimeChanged, this, &LinuxDevices::changed);
}

QList<InputDevice> LinuxDevices::devices() const
{
    QList<InputDevice> devices;
    const QList<KeyboardInfo> present = keyboards();
    const QList<qsizetype> chosen = chosenAmong(devicesOf(present), mChoices);
    for (qsizetype index = 0; index < present.size(); ++index) {
        const KeyboardInfo &keyboard = present.at(index);
        InputDevice device = keyboard.device;
        device.state = chosen.contains(index) ? stateOfChosen(keyboard) : DeviceState::released;
        device.isInUse = device.state == DeviceState::inUse;
        Problem problem = device.isInUse ? Problem() : problemOf(keyboard);
        if (!device.isInUse && problem.obstacle == DeviceObstacle::none)
            problem = problemOfUse(device.id);
        device.obstacle = problem.obstacle;
        device.problem = problem.text;
        devices += device;
    }
    return devices;
}

QList<ChosenDevice> LinuxDevices::choices() const
{
    QList<ChosenDevice> choices = mChoices;
    for (const StandIn &standIn : mStandIns)
        std::ranges::replace(choices, standIn.used, standIn.chosen);
    return choices;
}

DeviceStatus LinuxDevices::status() const
{
    DeviceStatus status;
    bool isWaiting = false;
    for (const Node &node : mNodes) {
        isWaiting = isWaiting || node.state == EventDevice::State::waiting;
        if (node.state == EventDevice::State::grabbed) {
            status.grabs += node.info.node;
            if (!status.names.contains(node.deviceName))
                status.names += node.deviceName;
        } else if (const QString problem = problemOf(node); !problem.isEmpty() && status.problem.isEmpty()) {
            status.problem = problem;
        }
    }
    if (status.problem.isEmpty() && !mChoices.isEmpty())
        status.problem = mOutputProblem;
    for (const ChosenDevice &choice : absentChoices(keyboards()))
        status.absent += idOf(choice);
    for (const KeyboardInfo &keyboard : chosenKeyboards()) {
        const SeatWatch::Presence presence = mServices.presence(keyboard.seat);
        isWaiting = isWaiting || presence == SeatWatch::Presence::unknown;
        if (presence == SeatWatch::Presence::elsewhere)
            status.problem = seatProblem(keyboard.seat);
        else if (status.problem.isEmpty())
            status.problem = keyboard.device.problem;
    }
    status.state = stateOf(status, isWaiting);
    if (const KeyThread *thread = mKeyboard.keyThread()) {
        status.isRealTime = thread->isRealTime();
        status.lostEvents = thread->channel().lostEvents();
        status.latency = thread->channel().latency();
    }
    return status;
}

DeviceState LinuxDevices::stateOf(const DeviceStatus &status, bool isWaiting) const
{
    if (mChoices.isEmpty())
        return DeviceState::released;
    if (!status.grabs.isEmpty())
        return DeviceState::inUse;
    if (isWaiting)
        return DeviceState::waiting;
    if (isAway())
        return DeviceState::inactive;
    if (!status.problem.isEmpty())
        return DeviceState::failed;
    return chosenNodes().isEmpty() ? DeviceState::absent : DeviceState::suspended;
}

DeviceState LinuxDevices::stateOfChosen(const KeyboardInfo &keyboard) const
{
    const auto hasNode = [&](EventDevice::State state) {
        return std::ranges::any_of(
            mNodes, [&](const Node &node) { return node.deviceId == keyboard.device.id && node.state == state; });
    };
    const SeatWatch::Presence presence = mServices.presence(keyboard.seat);
    if (hasNode(EventDevice::State::grabbed))
        return DeviceState::inUse;
    if (presence == SeatWatch::Presence::elsewhere)
        return DeviceState::inactive;
    if (presence == SeatWatch::Presence::unknown || hasNode(EventDevice::State::waiting))
        return DeviceState::waiting;
    const bool isSuspended = std::ranges::any_of(
        keyboard.nodes, [this](const EventDeviceInfo &node) { return mSuspended.contains(node.systemPath); });
    return isSuspended ? DeviceState::suspended : DeviceState::failed;
}

Result<QList<KeyboardInfo>, UseError> LinuxDevices::usableKeyboards(const QStringList &ids)
{
    const QList<KeyboardInfo> present = keyboards();
    QList<qsizetype> indexes;
    for (const QString &id : ids) {
        const Result<qsizetype, UseError> index = indexOf(devicesOf(present), id);
        if (!index)
            return index.error();
        if (const QString problem = problemOf(present.at(*index)).text; !problem.isEmpty())
            return UseError{{problem}, UseError::Cause::refused};
        if (!indexes.contains(*index))
            indexes += *index;
    }
    if (!hasOutput())
        return UseError{{mOutputProblem}, UseError::Cause::refused};
    QList<KeyboardInfo> usable;
    for (const qsizetype index : indexes)
        usable += present.at(index);
    return usable;
}

Result<void, UseError> LinuxDevices::use(const QStringList &ids)
{
    const Result<QList<KeyboardInfo>, UseError> usable = usableKeyboards(ids);
    if (!usable)
        return usable.error();
    QList<ChosenDevice> choices;
    for (const KeyboardInfo &keyboard : *usable)
        choices += choiceOf(keyboard.device);
    choose(choices);
    return {};
}

Result<void, UseError> LinuxDevices::useAlso(const QStringList &ids)
{
    const Result<QList<KeyboardInfo>, UseError> usable = usableKeyboards(ids);
    if (!usable)
        return usable.error();
    const QList<KeyboardInfo> chosen = chosenKeyboards();
    for (const KeyboardInfo &keyboard : *usable) {
        for (const EventDeviceInfo &node : keyboard.nodes)
            mSuspended.remove(node.systemPath);
        const bool isChosen = std::ranges::any_of(
            chosen, [&](const KeyboardInfo &other) { return other.device.id == keyboard.device.id; });
        // The user means this one, and has not released the other one.
        const ChosenDevice choice = choiceOf(keyboard.device);
        const auto standIn = std::ranges::find(mStandIns, choice, &StandIn::used);
        if (standIn != mStandIns.end()) {
            mChoices += standIn->chosen;
            mStandIns.erase(standIn);
        }
        if (isChosen)
            continue;
        mChoices += choice;
        mOthers.removeAll(choice);
    }
    lookAgain();
    return {};
}

void LinuxDevices::useWhenPresent(const QList<ChosenDevice> &choices)
{
    choose(choices);
}

void LinuxDevices::choose(const QList<ChosenDevice> &choices)
{
    mChoices = choices;
    mStandIns.clear();
    mSeen.clear();
    mOthers.clear();
    mSuspended.clear();
    lookAgain();
}

void LinuxDevices::release()
{
    useWhenPresent({});
}

Result<void, UseError> LinuxDevices::releaseThese(const QStringList &ids)
{
    QList<InputDevice> chosen;
    QList<qsizetype> choiceOfEach; // the index in mChoices
    const QList<InputDevice> present = devicesOf(keyboards());
    const QList<std::optional<qsizetype>> found = choicesOf(present, mChoices);
    for (qsizetype index = 0; index < present.size(); ++index) {
        if (found.at(index)) {
            chosen += present.at(index);
            choiceOfEach += *found.at(index);
        }
    }
    for (qsizetype index = 0; index < mChoices.size(); ++index) {
        if (!found.contains(index)) {
            InputDevice absent;
            absent.id = idOf(mChoices.at(index));
            chosen += absent;
            choiceOfEach += index;
        }
    }
    QSet<qsizetype> released;
    for (const QString &id : ids) {
        const Result<qsizetype, UseError> index = indexOf(chosen, id);
        if (!index)
            return UseError{{u"The daemon does not use one keyboard \"%1\". \"kestractl device list\" shows which "
                             "keyboards it uses."_s.arg(id)},
                            UseError::Cause::unknown};
        released += choiceOfEach.at(*index);
    }
    QList<ChosenDevice> left;
    for (qsizetype index = 0; index < mChoices.size(); ++index) {
        if (!released.contains(index))
            left += mChoices.at(index);
    }
    mChoices = left;
    mStandIns.removeIf([&left](const StandIn &standIn) { return !left.contains(standIn.used); });
    if (left.isEmpty())
        mSuspended.clear();
    lookAgain();
    return {};
}

QList<ChosenDevice> LinuxDevices::absentChoices(const QList<KeyboardInfo> &present) const
{
    const QList<std::optional<qsizetype>> found = choicesOf(devicesOf(present), mChoices);
    QList<ChosenDevice> absent;
    for (qsizetype index = 0; index < mChoices.size(); ++index) {
        if (!found.contains(index))
            absent += mChoices.at(index);
    }
    return absent;
}

void LinuxDevices::lookAgain()
{
    mNextRetryPause = mServices.firstRetryPause; // something has changed
    mRetry.stop();
    synchronize();
    Q_EMIT changed();
}

QList<KeyboardInfo> LinuxDevices::keyboards() const
{
    return keyboardsOf(mSource.nodes());
}

QList<KeyboardInfo> LinuxDevices::chosenKeyboards() const
{
    const QList<KeyboardInfo> present = mChoices.isEmpty() ? QList<KeyboardInfo>() : keyboards();
    QList<KeyboardInfo> chosen;
    for (const qsizetype index : chosenAmong(devicesOf(present), mChoices))
        chosen += present.at(index);
    return chosen;
}

bool LinuxDevices::isAway() const
{
    const QList<KeyboardInfo> chosen = chosenKeyboards();
    return !chosen.isEmpty() && std::ranges::none_of(chosen, [this](const KeyboardInfo &keyboard) {
        return mServices.presence(keyboard.seat) == SeatWatch::Presence::here;
    });
}

QList<LinuxDevices::Node> LinuxDevices::chosenNodes() const
{
    QList<Node> nodes;
    for (const KeyboardInfo &keyboard : chosenKeyboards()) {
        for (const EventDeviceInfo &info : keyboard.nodes)
            nodes += {.info = info,
                      .deviceId = keyboard.device.id,
                      .deviceName = keyboard.device.name,
                      .seat = keyboard.seat};
    }
    return nodes;
}

QList<LinuxDevices::Node> LinuxDevices::nodesToGrab() const
{
    QList<Node> nodes = chosenNodes();
    nodes.removeIf([this](const Node &node) {
        return mSuspended.contains(node.info.systemPath) || mServices.presence(node.seat) != SeatWatch::Presence::here;
    });
    return nodes;
}

LinuxDevices::Problem LinuxDevices::problemOf(const KeyboardInfo &keyboard) const
{
    // First, because another user at the seat is also the reason for missing rights.
    if (mServices.presence(keyboard.seat) == SeatWatch::Presence::elsewhere)
        return {DeviceObstacle::elsewhere, seatProblem(keyboard.seat)};
    for (const EventDeviceInfo &node : keyboard.nodes) {
        if (const int error = mServices.access(node.node))
            return {obstacleOf(error), nodeProblem(node.node, keyboard.device.id, error)};
    }
    return {keyboard.device.obstacle, keyboard.device.problem};
}

LinuxDevices::Problem LinuxDevices::problemOfUse(const QString &deviceId) const
{
    const auto node = std::ranges::find_if(
        mNodes, [&deviceId](const Node &each) { return each.deviceId == deviceId && each.error != 0; });
    return node == mNodes.end() ? Problem() : Problem{obstacleOf(node->error), problemOf(*node)};
}

QString LinuxDevices::problemOf(const Node &node) const
{
    return node.error == 0 ? QString() : nodeProblem(node.info.node, node.deviceId, node.error);
}

bool LinuxDevices::hasOutput()
{
    if (mKeyboard.keyThread())
        return true;
    Result<std::unique_ptr<OutputDevice>> output = mServices.makeOutput();
    if (!output) {
        const QString problem = output.error().message;
        if (std::exchange(mOutputProblem, problem) != problem)
            qCWarning(lcKeyboard, "desktop: %s", qUtf8Printable(problem));
        return false;
    }
    mOutputProblem.clear();
    mKeyboard.start(output.take());
    return true;
}

/// Of two keyboards that only their ports distinguish, the daemon must never use the one that was not chosen.
void LinuxDevices::watchForMoves()
{
    const QList<InputDevice> present = mChoices.isEmpty() ? QList<InputDevice>() : devicesOf(keyboards());
    endStandIns(present);
    for (const InputDevice &device : present) {
        const ChosenDevice choice = choiceOf(device);
        if (mChoices.contains(choice) && !mSeen.contains(choice))
            mSeen += choice;
    }
    for (const ChosenDevice &other : othersBesideChosen(present, mChoices)) {
        if (!mOthers.contains(other))
            mOthers += other;
    }
    if (movedChoices(present, mChoices, mOthers) == mChoices)
        mMove.stop();
    else
        mMove.start();
}

void LinuxDevices::endStandIns(const QList<InputDevice> &present)
{
    mStandIns.removeIf([&](const StandIn &standIn) {
        const bool isBack =
            std::ranges::any_of(present, [&](const InputDevice &device) { return choiceOf(device) == standIn.chosen; });
        if (!isBack)
            return false;
        std::ranges::replace(mChoices, standIn.used, standIn.chosen);
        return true;
    });
}

void LinuxDevices::followMovedKeyboards()
{
    const QList<ChosenDevice> moved = movedChoices(devicesOf(keyboards()), mChoices, mOthers);
    if (moved == mChoices)
        return;
    const QList<ChosenDevice> before = choices();
    for (qsizetype index = 0; index < moved.size(); ++index) {
        const ChosenDevice &choice = mChoices.at(index);
        if (choice == moved.at(index))
            continue;
        const auto standIn = std::ranges::find(mStandIns, choice, &StandIn::used);
        if (standIn != mStandIns.end())
            standIn->used = moved.at(index);
        else if (!mSeen.contains(choice))
            mStandIns += {.chosen = choice, .used = moved.at(index)};
    }
    mChoices = moved;
    qCInfo(lcKeyboard, "keyboard: a chosen keyboard was found at another port");
    lookAgain();
    if (choices() != before)
        Q_EMIT choiceMoved();
}

/// Removes unwanted nodes, and adds wanted ones that were absent or failed.
void LinuxDevices::synchronize()
{
    watchForMoves();
    // Away from the seat, the daemon has no right to the output device.
    const bool isPossible = !mChoices.isEmpty() && !isAway() && hasOutput();
    if (isPossible)
        setWanted(true);
    const QList<Node> nodes = isPossible ? nodesToGrab() : QList<Node>();
    const auto isToGrab = [&nodes](const QString &systemPath) {
        return std::ranges::any_of(nodes, [&](const Node &node) { return node.info.systemPath == systemPath; });
    };
    mLoggedProblems.removeIf([&](const auto &logged) { return !isToGrab(logged.key()); });
    mNodes.removeIf([&](const Node &node) {
        if (isToGrab(node.info.systemPath) && node.error == 0)
            return false;
        mKeyboard.removeNode(node.id);
        return true;
    });
    for (const Node &node : nodes) {
        const bool isThere = std::ranges::any_of(
            mNodes, [&](const Node &other) { return other.info.systemPath == node.info.systemPath; });
        if (!isThere)
            add(node);
    }
    updateAttachment();
    if (mChoices.isEmpty())
        setWanted(false);
    mSource.watchRights(areRightsMissing());
    watchForTaken();
}

void LinuxDevices::watchForTaken()
{
    const bool isTaken =
        std::ranges::any_of(mNodes, [](const Node &node) { return obstacleOf(node.error) == DeviceObstacle::taken; });
    if (!isTaken)
        mRetry.stop();
    else if (!mRetry.isActive())
        mRetry.start(mNextRetryPause);
}

bool LinuxDevices::areRightsMissing() const
{
    const bool isOutputMissing = !mChoices.isEmpty() && !mOutputProblem.isEmpty();
    return isOutputMissing || std::ranges::any_of(mNodes, [](const Node &node) {
               return obstacleOf(node.error) == DeviceObstacle::noRight;
           });
}

void LinuxDevices::add(Node node)
{
    node.id = ++mLastNodeId;
    Result<std::unique_ptr<EventFile>, int> file = mServices.openNode(node.info.node);
    if (file) {
        const bool isRetry = mLoggedProblems.contains(node.info.systemPath);
        if (!isRetry)
            qCInfo(lcKeyboard, "keyboard: %s (%s) chosen, opened", qUtf8Printable(node.info.node),
                   qUtf8Printable(node.deviceName));
        mKeyboard.addNode(file.take(), node.id, node.info.isHid);
    } else {
        node.state = EventDevice::State::refused;
        node.error = file.error();
        logProblem(node);
    }
    mNodes += node;
}

void LinuxDevices::nodeChanged(int id, EventDevice::State state, int error)
{
    const auto node = std::ranges::find(mNodes, id, &Node::id);
    if (node == mNodes.end())
        return; // was released meanwhile
    const EventDevice::State before = std::exchange(node->state, state);
    node->error = error;
    if (error == 0)
        mLoggedProblems.remove(node->info.systemPath);
    if (error == 0 || logProblem(*node))
        qCInfo(lcKeyboard, "keyboard: %s %s, %s", qUtf8Printable(node->info.node), stateName(before), stateName(state));
    if (state == EventDevice::State::gone || state == EventDevice::State::ungrabbed) {
        mKeyboard.removeNode(id);
        mNodes.erase(node);
    } else if (state == EventDevice::State::grabbed) {
        mNextRetryPause = mServices.firstRetryPause;
    }
    watchForTaken();
    updateAttachment();
    Q_EMIT changed();
}

bool LinuxDevices::logProblem(const Node &node)
{
    const QString problem = problemOf(node);
    if (std::exchange(mLoggedProblems[node.info.systemPath], problem) == problem)
        return false;
    qCWarning(lcKeyboard, "desktop: %s", qUtf8Printable(problem));
    return true;
}

void LinuxDevices::ungrabEveryKeyboard()
{
    qCWarning(lcKeyboard, "keyboard: Backspace, Escape and Return held together: every keyboard was released; "
                          "\"kestractl device use\", or plugging it in again, grabs it again");
    for (const Node &node : chosenNodes())
        mSuspended += node.info.systemPath;
    for (const Node &node : std::as_const(mNodes))
        mKeyboard.removeNode(node.id);
    mNodes.clear();
    watchForTaken();
    updateAttachment();
    Q_EMIT releaseChordPressed();
    Q_EMIT changed();
}

void LinuxDevices::setWanted(bool isWanted)
{
    if (std::exchange(mIsWanted, isWanted) != isWanted)
        Q_EMIT wanted(isWanted);
}

void LinuxDevices::updateAttachment()
{
    QStringList nodes;
    quint16 version = 0;
    for (const Node &node : std::as_const(mNodes)) {
        if (node.state != EventDevice::State::grabbed)
            continue;
        if (nodes.isEmpty())
            version = node.info.version;
        nodes += node.info.node;
    }
    mKeyboard.setNodes(nodes, version);
}

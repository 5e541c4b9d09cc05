// SPDX-License-Identifier: MIT
#include "daemon/keyboards/linux/rightswatch.h"

#include "daemon/system/logging.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t bufferSize = 4096;
constexpr const char *outputName = "uinput";
constexpr const char *inputFolderName = "input";
constexpr const char *eventPrefix = "event";

} // namespace

RightsWatch::RightsWatch(const QString &folder, QObject *parent)
    : QObject(parent), mFolder(folder), mDescriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    if (mDescriptor < 0
        || ::inotify_add_watch(mDescriptor, mFolder.toLocal8Bit().constData(), IN_ATTRIB | IN_CREATE | IN_MOVED_TO)
               < 0) {
        qCWarning(lcKeyboard, "desktop: cannot watch %s (%s), so a right that is granted later is not noticed",
                  qUtf8Printable(mFolder), strerror(errno));
        return;
    }
    watchInputFolder();
    mNotifier = std::make_unique<QSocketNotifier>(mDescriptor, QSocketNotifier::Read);
    connect(mNotifier.get(), &QSocketNotifier::activated, this, &RightsWatch::read);
}

RightsWatch::~RightsWatch()
{
    mNotifier.reset();
    if (mDescriptor >= 0)
        ::close(mDescriptor);
}

void RightsWatch::watchInputFolder()
{
    const QByteArray path = (mFolder + u'/' + QLatin1StringView(inputFolderName)).toLocal8Bit();
    mInputWatch = ::inotify_add_watch(mDescriptor, path.constData(), IN_ATTRIB);
}

void RightsWatch::read()
{
    alignas(inotify_event) std::array<char, bufferSize> buffer;
    bool isChanged = false;
    for (;;) {
        const ssize_t size = ::read(mDescriptor, buffer.data(), buffer.size());
        if (size <= 0)
            break;
        for (const char *place = buffer.data(); place < buffer.data() + size;) {
            const auto *event = reinterpret_cast<const inotify_event *>(place);
            const QByteArray name = event->len > 0 ? QByteArray(event->name) : QByteArray();
            isChanged = take(event->wd, event->mask, name) || isChanged;
            place += sizeof(inotify_event) + event->len;
        }
    }
    if (isChanged)
        Q_EMIT changed();
}

bool RightsWatch::take(int watch, quint32 mask, const QByteArray &name)
{
    if (mask & IN_Q_OVERFLOW)
        return true;
    if (watch == mInputWatch) {
        if (mask & IN_IGNORED)
            mInputWatch = -1; // the folder was removed
        return name.startsWith(eventPrefix);
    }
    if (name == inputFolderName && (mask & (IN_CREATE | IN_MOVED_TO))) {
        watchInputFolder();
        return true; // for nodes from before the watch
    }
    return name == outputName;
}

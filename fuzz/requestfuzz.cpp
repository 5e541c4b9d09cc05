// SPDX-License-Identifier: MIT
// The whole daemon except the bus: requests of two senders, keys and time in any order. After each request the document
// is valid, and messages of the daemon can be written. A capture ends with its client, with its keyboard, with command
// 38 and when Escape is held, whatever came before. At the end the disk holds the document, keys reach the computer,
// and no key is down.
//
// An input is a sequence of steps, each of which begins with a byte. A byte below `commandLimit` is the number of a
// request. The size of a property list (two bytes, high byte first) and the list itself follow. Any other byte is an
// action, and one byte for its key, duration or other value follows.
#include "base/daemonprotocol.h"
#include "base/document.h"
#include "base/frontapplication.h"
#include "base/propertylist.h"
#include "base/qlcoreutility.h"
#include "daemon/capture/escapehold.h"
#include "daemon/devicedaemon.h"
#include "daemon/keyboards/virtual/virtualkeyboard.h"
#include "daemon/requestqueue.h"
#include "daemon/settings/settingsdocument.h"
#include "daemon/settings/settingsstore.h"
#include "daemon/system/bootclock.h"
#include "fuzz/target.h"
#include "macros/macrorecord.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

// fuzz/make_corpus.py writes actions as bytes from here on.
constexpr qint32 firstActionOfCorpus = 50;
static_assert(DaemonProtocol::commandLimit <= firstActionOfCorpus, "no action of the corpus is a command");
constexpr int maximumSteps = 64;

/// Two profiles with a macro, a profile switch and a program on the keys F1 to F3; also two macros.
QVariantMap startDocument()
{
    const auto entry = [](int command, const QVariant &param1, int param2) {
        return QVariantMap{{u"command"_s, command}, {u"param1"_s, param1}, {u"param2"_s, param2}};
    };
    const auto profile = [&](const QString &name) {
        const QVariantMap keys{{u"58"_s, entry(10, 0, 254)},
                               {u"59"_s, entry(17, 1, 0)},
                               {u"60"_s, entry(46, u"/program"_s, 0)},
                               {u"4"_s, entry(16, 5, 2)}};
        return QVariantMap{{u"ProfileName"_s, name}, {u"Keys"_s, keys}, {u"BrightnessKBNormal"_s, 3}};
    };
    const auto macro = [](const QString &name) {
        return MacroRecord::withEvents({{u"MacroName"_s, name}},
                                       {MacroRecord::eventRecord({.command = 1, .delayMs = 10, .argument = 4}),
                                        MacroRecord::eventRecord({.command = 0, .delayMs = 10, .argument = 4})});
    };
    return SettingsDocument::completed({{u"Profiles"_s, QVariantList{profile(u"A"_s), profile(u"B"_s)}},
                                        {u"Macros"_s, QVariantList{macro(u"M"_s), macro(u"N"_s)}},
                                        {u"DeviceSettings"_s, QVariantMap{{u"ActiveProfile"_s, 0}}}});
}

SettingsStore &openStore()
{
    static SettingsStore store(workFolder().filePath(u"daemon"_s));
    static const bool isOpen = bool(store.open());
    require(isOpen, "the folder of the settings can be used");
    // The history of the inputs before would be read for each input.
    QFile::remove(workFolder().filePath(u"daemon/history"_s));
    return store;
}

/// The daemon on its virtual keyboard, with simulated time.
class Daemon
{
public:
    explicit Daemon(SettingsStore &store)
        : mKeyboard(KeyClock{.now = [this] { return mNow; },
                             .wakeAt = [this](std::optional<KeyPath::Time> time) { mKeyTime = time; }}),
          mDaemon(store, mKeyboard, services(), startDocument())
    {
    }

    [[nodiscard]] const QVariantMap &document() const { return mDaemon.document(); }

    /// Of two senders. Some requests wait for the next one, with which they can share a write; some come too late for a
    /// reply. The size of the data decides.
    void send(qint32 number, const QByteArray &data)
    {
        const std::optional<std::chrono::microseconds> readAt =
            data.size() % 16 == 15 ? std::nullopt : std::optional(timeSinceBoot());
        const Status status =
            mQueue.add(number % 2 == 0 ? u":1.1"_s : u":1.2"_s, {.number = number, .data = data, .readAt = readAt});
        require(status == Status::ok || status == Status::busy, "a request is accepted or refused as one too many");
        if (data.size() % 8 == 7)
            return;
        handleAll();
        const Result<void> valid = SettingsDocument::validate(mDaemon.document());
        require(bool(valid), valid ? "" : qPrintable(u"the document is valid: "_s + valid.error().message));
        if (number == qint32(DaemonProtocol::Command::releaseDevice) && QlCoreUtility::convertDataToDictionary(data))
            require(mCapturingClient.isEmpty(), "a capture ends when a client releases the device");
    }

    void act(quint8 action, quint8 value)
    {
        switch (action % 10) {
        case 0: (void)mKeyboard.press(7, value); break;
        case 1: (void)mKeyboard.release(7, value); break;
        case 2: remove(); break;
        case 3: mKeyboard.attach(); break;
        case 4: passTime(mNow + std::chrono::milliseconds(value * 8)); break;
        case 5: (void)mKeyboard.pressGameMode(); break;
        case 6: (void)mKeyboard.pressMacroKey(); break;
        case 7: vanish(u"Client%1"_s.arg(value % 2)); break;
        case 8: mDaemon.setFrontApplication(frontApplication(value)); break;
        default: (void)mKeyboard.setBrightness(value); break;
        }
    }

    void end()
    {
        handleAll();
        holdEscape();
        remove();
        mKeyboard.attach();
        typeOneKey();
        mDaemon.shutDown();
        remove();
    }

private:
    void handleAll()
    {
        while (mDaemon.handleNextRequest(mQueue)) {
        }
    }

    DaemonServices services()
    {
        return {.sendReply = [](const QString &, qint32, const QVariantMap &reply) { requireWritable(reply); },
                .postNotification = [](const QString &, const QVariantMap &values) { requireWritable(values); },
                .watchClient = [this](const QString &portName) { mCapturingClient = portName; },
                .launchProgram = [](const QString &) {},
                .now = [this] { return mNow; },
                .wakeAt = [this](std::optional<DaemonServices::Time> time) { mDaemonTime = time; }};
    }

    static FrontApplication frontApplication(quint8 value)
    {
        const std::array names{u"other"_s, u"game"_s, QString()}; // without a name: none is in front
        return FrontApplication::named(names[value % names.size()]);
    }

    void vanish(const QString &client)
    {
        mDaemon.clientVanished(client);
        require(mCapturingClient != client, "a capture ends with its client");
    }

    void remove()
    {
        mKeyboard.remove();
        require(mCapturingClient.isEmpty(), "a capture ends with its keyboard");
        require(mKeyboard.sentKeys().isEmpty(), "no key is down without a keyboard");
    }

    void holdEscape()
    {
        for (uint key = 0; key < 256; ++key)
            (void)mKeyboard.release(7, key);
        (void)mKeyboard.press(7, EscapeHold::escape.usage);
        passTime(mNow + EscapeHold::duration);
        if (mDaemonTime && *mDaemonTime <= mNow)
            mDaemon.wake(); // macros without pauses took all calls
        require(mCapturingClient.isEmpty(), "a capture ends when Escape is held");
    }

    /// With a profile that changes no key.
    void typeOneKey()
    {
        const QVariantMap profile{{u"ProfileName"_s, u"A"_s}};
        const auto data = PropertyList::writeBinary(QVariantMap{{u"AllProfiles"_s, QVariantList{profile}}});
        send(qint32(DaemonProtocol::Command::replaceAllProfiles), data.value());
        (void)mKeyboard.press(7, 4);
        require(mKeyboard.sentKeys() == QList<HidUsage>{{.page = HidUsage::keyboardPage, .usage = 4}},
                "a key reaches the computer");
        (void)mKeyboard.release(7, 4);
        require(mKeyboard.sentKeys().isEmpty(), "a key that was released is up");
    }

    /// Limits the number of calls, because macros without pauses ask for the same time again and again.
    void passTime(std::chrono::microseconds end)
    {
        for (int calls = 0; calls < 200; ++calls) {
            auto &next = mKeyTime && (!mDaemonTime || *mKeyTime <= *mDaemonTime) ? mKeyTime : mDaemonTime;
            if (!next || *next > end)
                break;
            const bool isKeys = &next == &mKeyTime;
            mNow = std::max(mNow, *std::exchange(next, std::nullopt));
            if (isKeys)
                mKeyboard.keys().wake();
            else
                mDaemon.wake();
        }
        mNow = std::max(mNow, end);
    }

    std::chrono::microseconds mNow{};
    std::optional<std::chrono::microseconds> mKeyTime;
    std::optional<std::chrono::microseconds> mDaemonTime;
    QString mCapturingClient; // the one that the daemon watches; empty while no client captures
    VirtualKeyboard mKeyboard;
    RequestQueue mQueue;
    DeviceDaemon mDaemon;
};

/// The active profile on the disk may differ, because the daemon does not store switches due to the application in
/// front.
void requireStored(const QVariantMap &document)
{
    const QVariantMap stored =
        PropertyList::readPropertyListFile(workFolder().filePath(u"daemon/settings.plist"_s)).valueOr({});
    require(bool(SettingsDocument::validate(stored)), "the document on the disk is valid");
    // Compares bytes, because in trees a real that is not a number differs from itself.
    require(PropertyList::writeBinary(Document(stored).profiles())
                    == PropertyList::writeBinary(Document(document).profiles())
                && PropertyList::writeBinary(Document(stored).macros())
                       == PropertyList::writeBinary(Document(document).macros()),
            "the disk holds the profiles and macros");
}

void request(QByteArrayView input)
{
    SettingsStore &store = openStore();
    require(store.save(startDocument()), "the first document can be saved");
    Daemon daemon(store);
    const auto take = [&input](qsizetype size) {
        const QByteArrayView taken = input.first(std::min(size, input.size()));
        input = input.sliced(taken.size());
        return taken;
    };
    for (int step = 0; step < maximumSteps && input.size() >= 2; ++step) {
        const auto kind = quint8(take(1)[0]);
        if (kind >= DaemonProtocol::commandLimit) {
            daemon.act(kind, quint8(take(1)[0]));
            continue;
        }
        const QByteArrayView size = take(2);
        if (size.size() == 2)
            daemon.send(kind, take(quint8(size[0]) << 8 | quint8(size[1])).toByteArray());
    }
    requireStored(daemon.document());
    daemon.end();
}

} // namespace

KESTRA_FUZZ_TARGET(request)

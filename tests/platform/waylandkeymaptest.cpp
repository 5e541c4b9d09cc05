// SPDX-License-Identifier: MIT
// The layout of a compositor with a keyboard, which the test plays with libwayland's server library.
#include "platform/waylandkeymap.h"
#include "tests/support/testmain.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cstdlib>
#include <memory>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-server.h>
#include <xkbcommon/xkbcommon.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray keymapText(const char *layout)
{
    xkb_context *context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    const xkb_rule_names names{.rules = "evdev", .model = "pc105", .layout = layout, .variant = "", .options = ""};
    xkb_keymap *map = xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
    char *text = map ? xkb_keymap_get_as_string(map, XKB_KEYMAP_FORMAT_TEXT_V1) : nullptr;
    const QByteArray result(text);
    std::free(text);
    xkb_keymap_unref(map);
    xkb_context_unref(context);
    return result;
}

/// A compositor with one seat. It works while the test calls pump().
class Compositor
{
public:
    Compositor()
    {
        mDisplay = wl_display_create();
        mSocket = wl_display_add_socket_auto(mDisplay);
        wl_global_create(mDisplay, &wl_seat_interface, 1, this, bindSeat);
    }

    ~Compositor()
    {
        wl_display_destroy_clients(mDisplay);
        wl_display_destroy(mDisplay);
    }
    Q_DISABLE_COPY_MOVE(Compositor)

    [[nodiscard]] QByteArray socket() const { return mSocket; }

    void pump()
    {
        wl_event_loop_dispatch(wl_display_get_event_loop(mDisplay), 0);
        wl_display_flush_clients(mDisplay);
    }

    /// Sends it to the client, now or when it has a keyboard.
    void setKeymap(const QByteArray &text)
    {
        mKeymap = text;
        if (mKeyboard)
            sendKeymap(WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1);
    }

    void sendKeymap(uint32_t format)
    {
        const int file = ::memfd_create("keymap", MFD_CLOEXEC);
        if (::write(file, mKeymap.constData(), std::size_t(mKeymap.size()) + 1) < 0)
            qFatal("the keymap cannot be written");
        wl_keyboard_send_keymap(mKeyboard, format, file, uint32_t(mKeymap.size()) + 1);
        ::close(file);
    }

    [[nodiscard]] bool hasKeyboard() const { return mKeyboard; }

private:
    static Compositor *self(wl_resource *resource)
    {
        return static_cast<Compositor *>(wl_resource_get_user_data(resource));
    }

    static void bindSeat(wl_client *client, void *data, uint32_t version, uint32_t id)
    {
        static const struct wl_seat_interface requests = {
            .get_pointer = [](wl_client *, wl_resource *, uint32_t) {},
            .get_keyboard = [](wl_client *ofClient, wl_resource *seat,
                               uint32_t keyboard) { self(seat)->addKeyboard(ofClient, keyboard); },
            .get_touch = [](wl_client *, wl_resource *, uint32_t) {},
            .release = [](wl_client *, wl_resource *seat) { wl_resource_destroy(seat); },
        };
        wl_resource *seat = wl_resource_create(client, &wl_seat_interface, int(version), id);
        wl_resource_set_implementation(seat, &requests, data, nullptr);
        wl_seat_send_capabilities(seat, WL_SEAT_CAPABILITY_KEYBOARD | WL_SEAT_CAPABILITY_POINTER);
    }

    void addKeyboard(wl_client *client, uint32_t id)
    {
        static const struct wl_keyboard_interface requests = {
            .release = [](wl_client *, wl_resource *keyboard) { wl_resource_destroy(keyboard); },
        };
        mKeyboard = wl_resource_create(client, &wl_keyboard_interface, 1, id);
        wl_resource_set_implementation(mKeyboard, &requests, this, nullptr);
        if (!mKeymap.isEmpty())
            sendKeymap(WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1);
    }

    wl_display *mDisplay = nullptr;
    wl_resource *mKeyboard = nullptr;
    QByteArray mSocket;
    QByteArray mKeymap;
};

} // namespace

class WaylandKeymapTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void followsTheLayoutOfTheCompositor();
    void keymapThatIsNotOneIsNull();
    void otherFormatsChangeNothing();
    void endOfTheCompositorKeepsTheLayout();
    void withoutACompositorThereIsNoLayout();

private:
    [[nodiscard]] QString character(const WaylandKeymap &keymap, const char *key)
    {
        mCompositor->pump();
        return keymap.keymap().charactersOf(key).plain;
    }

    QTemporaryDir mRuntimeFolder;
    std::unique_ptr<Compositor> mCompositor;
};

void WaylandKeymapTest::initTestCase()
{
    qputenv("XDG_RUNTIME_DIR", mRuntimeFolder.path().toLocal8Bit());
    qunsetenv("WAYLAND_DISPLAY");
}

void WaylandKeymapTest::init()
{
    mCompositor = std::make_unique<Compositor>();
    QVERIFY(!mCompositor->socket().isEmpty());
}

void WaylandKeymapTest::cleanup()
{
    mCompositor.reset();
}

void WaylandKeymapTest::followsTheLayoutOfTheCompositor()
{
    mCompositor->setKeymap(keymapText("de"));
    const WaylandKeymap keymap(mCompositor->socket());
    QVERIFY(keymap.keymap().isNull());
    QSignalSpy changed(&keymap, &WaylandKeymap::changed);
    QTRY_COMPARE(character(keymap, "AD06"), u"z"_s);
    QCOMPARE(changed.count(), 1);
    mCompositor->setKeymap(keymapText("fr"));
    QTRY_COMPARE(character(keymap, "AD01"), u"a"_s);
    QCOMPARE(changed.count(), 2);
}

void WaylandKeymapTest::keymapThatIsNotOneIsNull()
{
    mCompositor->setKeymap("no keymap");
    const WaylandKeymap keymap(mCompositor->socket());
    QSignalSpy changed(&keymap, &WaylandKeymap::changed);
    QTRY_COMPARE((mCompositor->pump(), changed.count()), 1);
    QVERIFY(keymap.keymap().isNull());
}

void WaylandKeymapTest::otherFormatsChangeNothing()
{
    mCompositor->setKeymap(keymapText("de"));
    const WaylandKeymap keymap(mCompositor->socket());
    QTRY_COMPARE(character(keymap, "AD06"), u"z"_s);
    QSignalSpy changed(&keymap, &WaylandKeymap::changed);
    mCompositor->sendKeymap(WL_KEYBOARD_KEYMAP_FORMAT_NO_KEYMAP);
    mCompositor->setKeymap(keymapText("fr")); // arrives after it
    QTRY_COMPARE(character(keymap, "AD01"), u"a"_s);
    QCOMPARE(changed.count(), 1);
}

void WaylandKeymapTest::endOfTheCompositorKeepsTheLayout()
{
    mCompositor->setKeymap(keymapText("de"));
    const WaylandKeymap keymap(mCompositor->socket());
    QTRY_COMPARE(character(keymap, "AD06"), u"z"_s);
    mCompositor.reset();
    QCoreApplication::processEvents();
    QCOMPARE(keymap.keymap().charactersOf("AD06").plain, u"z"_s);
}

void WaylandKeymapTest::withoutACompositorThereIsNoLayout()
{
    QVERIFY(WaylandKeymap("wayland-none").keymap().isNull());
    QVERIFY(WaylandKeymap().keymap().isNull()); // the environment names none
}

QTEST_MAIN(WaylandKeymapTest)
#include "waylandkeymaptest.moc"

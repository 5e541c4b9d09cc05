// SPDX-License-Identifier: MIT
// Shared parts of the tests of the keys tab: a delegate that records its calls, a small settings document, a connected
// tab.
#pragma once

#include "base/settingskeys.h"
#include "keys/keyboardkeyscontroller.h"

#include <QCoreApplication>
#include <QMainWindow>
#include <QTranslator>

#include <memory>

namespace KeysTesting {

using namespace Qt::StringLiterals;

class RecordingKeysDelegate : public KeysDelegate
{
public:
    void updateKeySettings(const QVariantMap &settings) override
    {
        calls << u"updateKeySettings"_s;
        sent << settings;
    }
    void startSingleKeyRecording() override { calls << u"startSingleKeyRecording"_s; }
    void stopSingleKeyRecording() override { calls << u"stopSingleKeyRecording"_s; }
    void selectTabAtIndex(int index) override { calls << u"selectTabAtIndex %1"_s.arg(index); }
    void updateProfileKeyInDictionaryWithDictionary(const QVariantList &profiles) override
    {
        calls << u"updateProfileKeyInDictionaryWithDictionary"_s;
        sentProfiles << profiles;
    }

    /// The entry of `code` in the settings that were sent last.
    [[nodiscard]] QVariantMap sentEntry(const QString &code) const
    {
        return sent.value(sent.size() - 1).value(SettingsKeys::keys).toMap().value(code).toMap();
    }

    QStringList calls;
    QList<QVariantMap> sent;
    QList<QVariantList> sentProfiles;
};

inline QVariantMap entry(const QVariant &command, const QVariant &param1 = 0, const QVariant &param2 = 0)
{
    return {{SettingsKeys::command, command}, {SettingsKeys::param1, param1}, {SettingsKeys::param2, param2}};
}

inline QVariantMap profile(const QString &name, const QVariantMap &keys = {})
{
    return {{SettingsKeys::profileName, name}, {SettingsKeys::keys, keys}};
}

inline QVariantMap macro(const QString &name)
{
    return {{SettingsKeys::macroName, name}};
}

/// Loads the English texts from the build tree. Returns false when they are missing.
inline bool loadTexts()
{
    static QTranslator translator;
    const QString folder = qEnvironmentVariable("KESTRA_BIN_DIR") + u"/resources/texts"_s;
    return translator.load(u"en"_s, folder, QString(), u".qm"_s) && QCoreApplication::installTranslator(&translator);
}

/// A tab in a window that has received a document, as the main controller hands it out.
struct Tab
{
    explicit Tab(const QVariantMap &activeProfile, const QVariantList &otherProfiles = {},
                 const QVariantList &macros = {},
                 const QVariantMap &deviceSettings = {{SettingsKeys::activeProfile, 0}})
    {
        window.setCentralWidget(controller->view());
        controller->awakeFromNib();
        controller->setMKeysCurrentProfileDict(activeProfile);
        controller->setMAllProfilesArray(QVariantList{activeProfile} + otherProfiles);
        controller->setMAllMacrosArray(macros);
        controller->setMDeviceSettingsDict(deviceSettings);
        controller->setMDefaultDict(profile(u"Default"_s, {{u"4"_s, entry(45, 77)}}));
        controller->setMKeysDelegate(&delegate);
        controller->setMKeysWindow(&window);
        controller->populateUIControls();
        controller->updateUISettings();
    }

    /// Does the main controller's work after a change: hands over the changed active profile and redraws.
    void giveBack(const QVariantMap &keys)
    {
        QVariantMap changed = controller->keysCurrentProfileDict();
        changed.insert(SettingsKeys::keys, keys);
        controller->setMKeysCurrentProfileDict(changed);
        controller->updateUISettings();
    }

    template <typename Widget> [[nodiscard]] Widget *find(const char *name) const
    {
        return window.findChild<Widget *>(QString::fromLatin1(name));
    }
    [[nodiscard]] KeyButton *key(const char *outlet) const { return find<KeyButton>(outlet); }

    RecordingKeysDelegate delegate;
    QMainWindow window;
    std::unique_ptr<KeyboardKeysController> controller = std::make_unique<KeyboardKeysController>();
};

} // namespace KeysTesting

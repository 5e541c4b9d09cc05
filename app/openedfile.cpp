// SPDX-License-Identifier: MIT
#include "app/openedfile.h"

#include "base/profilerecord.h"
#include "base/settingskeys.h"
#include "base/visibletext.h"
#include "keys/keymapping.h"
#include "keys/keynames.h"
#include "macros/macrofile.h"
#include "profiles/applicationbinding.h"
#include "profiles/profilefile.h"

#include <QFileInfo>
#include <QMap>
#include <QSet>

#include <array>

using namespace Qt::StringLiterals;

namespace {

/// Only such a character is replaced that has no picture of its own: the user must see the name unchanged.
QString shown(const QString &text)
{
    return visibleText(text, QChar::ReplacementCharacter);
}

QString keyWords(int code)
{
    const QString name = keyName(code);
    return name.isEmpty() ? QString::number(code) : name;
}

/// The texts by which the daemon recognises the application, each once.
QStringList applicationTexts(const QVariantMap &appInfo)
{
    QStringList texts;
    constexpr std::array keys{SettingsKeys::application, SettingsKeys::executable, SettingsKeys::identifier,
                              SettingsKeys::signature};
    for (const SettingsKeys::Key key : keys) {
        const QString text = shown(appInfo.value(key).toString());
        if (!text.isEmpty() && !texts.contains(text))
            texts += text;
    }
    return texts;
}

} // namespace

Result<OpenedFile, PropertyList::ReadError> OpenedFile::read(const QString &path)
{
    const auto record = PropertyList::readPropertyListFile(path);
    if (!record)
        return record.error();
    if (ProfileFile::holdsProfile(*record))
        return OpenedFile{Kind::profile, path, *record};
    if (MacroFile::holdsMacro(*record))
        return OpenedFile{Kind::macro, path, *record};
    return PropertyList::ReadError{{}, PropertyList::ReadError::Cause::noDictionary};
}

QString pathOfArgument(const QString &argument)
{
    if (argument.isEmpty())
        return {};
    const QUrl address(argument);
    if (address.isLocalFile())
        return address.host().isEmpty() ? address.toLocalFile() : QString();
    // A path may contain a colon.
    if (argument.contains("://"_L1) && !QFileInfo::exists(argument))
        return {};
    return QFileInfo(argument).absoluteFilePath();
}

QString addressOfArgument(const QString &argument)
{
    const QString path = pathOfArgument(argument);
    return path.isEmpty() ? argument : QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
}

ProfileContent ProfileContent::of(const QVariantMap &profile)
{
    ProfileContent content;
    QMap<int, QString> programs;
    QStringList programsOfUnknownKeys;
    QSet<qint32> macros;
    const QVariantMap keys = ProfileRecord::keys(profile);
    for (auto key = keys.cbegin(); key != keys.cend(); ++key) {
        const KeyMappings::Entry entry = KeyMappings::readEntry(key.value());
        const int code = key.key().toInt();
        // The daemon ignores other ways to write a code, such as "04".
        const bool isCode = key.key() == QString::number(code);
        if (entry.is(KeyMappings::Assignment::playMacro))
            macros += entry.param1;
        if (!entry.is(KeyMappings::Assignment::launchProgram) || entry.programPath.isEmpty())
            continue;
        if (isCode)
            programs.insert(code, entry.programPath);
        else
            programsOfUnknownKeys += shown(key.key()) + u": "_s + shown(entry.programPath);
    }
    for (auto program = programs.cbegin(); program != programs.cend(); ++program)
        content.programs += keyWords(program.key()) + u": "_s + shown(program.value());
    content.programs += programsOfUnknownKeys;
    content.macros = int(macros.size());
    content.application = applicationTexts(ProfileRecord::appInfo(profile));
    return content;
}

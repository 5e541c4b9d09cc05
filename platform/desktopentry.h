// SPDX-License-Identifier: MIT
// A desktop entry (".desktop" file in freedesktop.org's format, version 1.5): its names and its command line. A value
// read from an untrusted file; any thread.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

/// The "Desktop Entry" group of one file, without the other groups (actions).
class DesktopEntry
{
public:
    static constexpr qint64 maximumFileBytes = 1024 * 1024;

    /// Absent when `path` is not a regular file, cannot be read, is larger than maximumFileBytes, or has no "Desktop
    /// Entry" group.
    [[nodiscard]] static std::optional<DesktopEntry> read(const QString &path);
    /// Like read(), from the content of a file; "%k" expands to `path`.
    [[nodiscard]] static std::optional<DesktopEntry> parse(const QByteArray &content, const QString &path);

    [[nodiscard]] const QString &path() const { return mPath; }

    /// The value of `key` ("Exec", "Icon", ...) with its escapes (\s \n \t \r \\) resolved; empty when the key is
    /// absent.
    [[nodiscard]] QString text(const QString &key) const;
    /// The value of `key` for `locale` ("de_CH.UTF-8@euro"): in the best matching language, otherwise the one without a
    /// language.
    [[nodiscard]] QString localText(const QString &key, const QString &locale = messagesLocale()) const;
    [[nodiscard]] bool flag(const QString &key) const { return text(key) == QLatin1StringView("true"); }

    /// The words of "Exec" for a start without files and addresses. Quotes and escapes are resolved; %i, %c, %k and %%
    /// are replaced; the codes for files and addresses are removed. The first word is the name or the path of a
    /// program. Absent when the line must not be run: it is missing or empty, leaves a quote open, has an unknown code,
    /// or would be longer than maximumFileBytes characters.
    [[nodiscard]] std::optional<QStringList> commandLine() const;

    /// The locale for messages that the environment names; "C" if it names none.
    [[nodiscard]] static QString messagesLocale();

private:
    QString mPath;
    QHash<QString, QString> mValues; // raw, as in the file
};

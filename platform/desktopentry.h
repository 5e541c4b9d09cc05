// SPDX-License-Identifier: MIT
// A desktop entry (".desktop" file, freedesktop.org's format, version 1.5): how it names itself and how it is started.
// A value read from a file that a stranger may have written; any thread.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

/// The "Desktop Entry" group of one file; the other groups (actions) are left out.
class DesktopEntry
{
public:
    static constexpr qint64 maximumFileBytes = 1024 * 1024;

    /// Absent when it is no regular file, cannot be read, is larger than maximumFileBytes, or has no "Desktop Entry"
    /// group.
    [[nodiscard]] static std::optional<DesktopEntry> read(const QString &path);
    /// As read(), from the file's content; `path` is what "%k" stands for.
    [[nodiscard]] static std::optional<DesktopEntry> parse(const QByteArray &content, const QString &path);

    [[nodiscard]] const QString &path() const { return mPath; }

    /// The value of `key` ("Exec", "Icon", ...) with its escapes (\s \n \t \r \\) resolved; empty when it is absent.
    [[nodiscard]] QString text(const QString &key) const;
    /// The value of `key` in the language of `locale` ("de_CH.UTF-8@euro"), else in the next best, else without
    /// language.
    [[nodiscard]] QString localText(const QString &key, const QString &locale = messagesLocale()) const;
    [[nodiscard]] bool flag(const QString &key) const { return text(key) == QLatin1StringView("true"); }

    /// The words of "Exec", for no file and no address: quotes and escapes resolved, %i %c %k and %% replaced, the
    /// codes for files and addresses removed. The first word is a program, by its name or its path. Absent when the
    /// line is missing or empty, leaves a quote open, has an unknown code, or would be longer than maximumFileBytes
    /// characters: such a line must not be run.
    [[nodiscard]] std::optional<QStringList> commandLine() const;

    /// The locale of the messages as the environment names it.
    [[nodiscard]] static QString messagesLocale();

private:
    QString mPath;
    QHash<QString, QString> mValues; // as in the file
};

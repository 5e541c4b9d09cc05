// SPDX-License-Identifier: MIT
#include "platform/applicationlist.h"

#include "base/applicationmatch.h"
#include "base/settingskeys.h"
#include "base/text.h"
#include "base/visibletext.h"
#include "platform/applicationicon.h"

#include <QFileInfo>
#include <QTextDocument>

#include <algorithm>

using namespace Qt::StringLiterals;
using ApplicationMatch::Strength;

namespace {

/// The match of the application's entry with a window. Its name does not count: different applications may share it.
Strength strengthOf(const InstalledApplication &application, const FrontApplication &window)
{
    const QVariantMap appInfo{{SettingsKeys::identifier, application.identifier},
                              {SettingsKeys::signature, application.windowClass},
                              {SettingsKeys::executable, application.executable}};
    return ApplicationMatch::strengthOf(appInfo, window);
}

QString searchedTexts(const InstalledApplication &application)
{
    const QString identifier = QFileInfo(application.identifier).completeBaseName(); // every one ends in ".desktop"
    const QStringList texts = QStringList{application.name, identifier, application.executable, application.windowClass}
                              + application.searchTexts;
    return texts.join(u'\n').toCaseFolded();
}

} // namespace

void ApplicationList::setApplications(const QList<InstalledApplication> &installed,
                                      const QList<FrontApplication> &windows, Windows offered)
{
    beginResetModel();
    mRows.clear();
    for (const InstalledApplication &application : installed)
        mRows += {.application = application, .isRunning = false, .searched = searchedTexts(application)};
    for (const FrontApplication &window : windows)
        addWindow(window, offered);
    std::ranges::stable_partition(mRows, &Row::isRunning);
    mShown.clear();
    for (qsizetype place = 0; place < mRows.size(); ++place)
        mShown += place;
    endResetModel();
}

void ApplicationList::addWindow(const FrontApplication &window, Windows offered)
{
    if (Row *entry = entryOf(window)) {
        entry->isRunning = true;
        return;
    }
    if (offered == Windows::ofEntries || window.windowClass.isEmpty())
        return;
    InstalledApplication application;
    application.name = window.windowClass;
    application.windowClass = window.windowClass;
    const auto isSame = [&](const Row &row) {
        return row.application.path.isEmpty() && row.application.name == application.name;
    };
    if (std::ranges::none_of(mRows, isSame))
        mRows += {.application = application, .isRunning = true, .searched = searchedTexts(application)};
}

/// The row whose entry matches the window best; null if none does.
ApplicationList::Row *ApplicationList::entryOf(const FrontApplication &window)
{
    Row *best = nullptr;
    Strength bestStrength = Strength::none;
    for (Row &row : mRows) {
        const bool isEntry = !row.application.path.isEmpty();
        const Strength strength = isEntry ? strengthOf(row.application, window) : Strength::none;
        if (strength > bestStrength) {
            best = &row;
            bestStrength = strength;
        }
    }
    return best;
}

void ApplicationList::setQuery(const QString &query)
{
    const QString folded = query.simplified().toCaseFolded();
    const QStringList words = folded.split(u' ', Qt::SkipEmptyParts);
    const auto fits = [&words](const Row &row) {
        return std::ranges::all_of(words, [&row](const QString &word) { return row.searched.contains(word); });
    };
    beginResetModel();
    mShown.clear();
    for (qsizetype place = 0; place < mRows.size(); ++place) {
        if (fits(mRows.at(place)))
            mShown += place;
    }
    std::ranges::stable_partition(mShown, [&](qsizetype place) { return mRows.at(place).searched.startsWith(folded); });
    endResetModel();
}

const ApplicationList::Row *ApplicationList::rowAt(const QModelIndex &index) const
{
    return index.isValid() && index.row() < mShown.size() ? &mRows.at(mShown.at(index.row())) : nullptr;
}

QString ApplicationList::pathOf(const QModelIndex &index) const
{
    const Row *row = rowAt(index);
    return row ? row->application.path : QString();
}

QString ApplicationList::windowClassOf(const QModelIndex &index) const
{
    const Row *row = rowAt(index);
    return row && row->application.path.isEmpty() ? row->application.windowClass : QString();
}

int ApplicationList::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(mShown.size());
}

QIcon ApplicationList::iconOf(const Row &row) const
{
    const QString name = row.application.icon;
    if (!mIcons.contains(name)) {
        mIcons.insert(name, ApplicationIcon::named(name));
    }
    return mIcons.value(name);
}

QVariant ApplicationList::data(const QModelIndex &index, int role) const
{
    const Row *row = rowAt(index);
    if (!row)
        return {};
    const QString name = visibleText(row->application.name, u' ');
    QString note;
    if (row->application.path.isEmpty())
        note = localizedText("lkeyApplicationWindow");
    else if (row->isRunning)
        note = localizedText("lkeyApplicationRunning");
    switch (role) {
    case Qt::DisplayRole: return name;
    case noteRole: return note;
    case Qt::AccessibleTextRole: return note.isEmpty() ? name : name + u", "_s + note;
    case Qt::DecorationRole: return iconOf(*row);
    case Qt::ToolTipRole: // as plain text: both come from other people's files
        return Qt::convertFromPlainText(name + u'\n' + visibleText(row->application.path, u' '));
    default: return {};
    }
}

// SPDX-License-Identifier: MIT
// Goes back and forth in the history of the settings. Owned by the DeviceDaemon; main thread only.
#pragma once

#include "daemon/settings/historycalls.h"

class CurrentSettings;
class ProfileSwitch;

/// Each call is one more entry of the history, except join(), which makes fewer. Clients are notified as of a change
/// that the daemon itself has made.
class HistoryCommands : public HistoryCalls
{
public:
    /// All arguments must outlive this.
    HistoryCommands(History &history, CurrentSettings &settings, ProfileSwitch &profiles);

    History::Found<quint32> undo(quint32 id, const QString &author) override;
    History::Found<quint32> redo(quint32 id, const QString &author) override;
    History::Found<quint32> join(quint32 first, const QString &author) override;
    History::Found<History::Target> restore(quint32 id, quint32 newest, const QString &author) override;
    [[nodiscard]] History::Found<History::Target> preview(quint32 id) const override;
    [[nodiscard]] History::Found<ChangeParts> partsOf(quint32 id) const override;
    [[nodiscard]] QByteArray document() const override;
    Result<quint32, RestoreError> restoreDocument(const QByteArray &data, const QString &name,
                                                  const QString &author) override;
    [[nodiscard]] QStringList backupDays() const override;
    Result<quint32, RestoreError> restoreBackup(const QString &day, const QString &author) override;
    [[nodiscard]] bool clear() override;

private:
    History::Found<quint32> store(const History::Found<History::Target> &target, const QString &author);

    History &mHistory;
    CurrentSettings &mSettings;
    ProfileSwitch &mProfiles;
};

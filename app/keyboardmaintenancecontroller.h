// SPDX-License-Identifier: MIT
// The maintenance tab: it has no function beyond being enabled and disabled. Main thread only.
#pragma once

#include <QObject>
#include <QWidget>

class KeyboardMaintenanceController : public QObject
{
    Q_OBJECT

public:
    explicit KeyboardMaintenanceController(QObject *parent = nullptr);
    ~KeyboardMaintenanceController() override;

    /// The tab's page; whoever shows it takes it into a parent.
    [[nodiscard]] QWidget *view() const { return mView; }

    void setControlsState(bool enabled);

private:
    QWidget *mView;
};

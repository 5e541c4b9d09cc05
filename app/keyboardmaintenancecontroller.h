// SPDX-License-Identifier: MIT
// The maintenance tab, which can only be enabled and disabled. Main thread only.
#pragma once

#include <QObject>
#include <QWidget>

class KeyboardMaintenanceController : public QObject
{
    Q_OBJECT

public:
    explicit KeyboardMaintenanceController(QObject *parent = nullptr);
    ~KeyboardMaintenanceController() override;

    /// Returns the tab's page. A caller that shows it gives it a parent.
    [[nodiscard]] QWidget *view() const { return mView; }

    void setControlsState(bool enabled);

private:
    QWidget *mView;
};

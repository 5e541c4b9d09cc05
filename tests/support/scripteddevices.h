// SPDX-License-Identifier: MIT
// Simulated keyboards in the place of the machine's own. Used on the test's thread.
#pragma once

#include "daemon/keyboards/devices.h"

#include <algorithm>
#include <optional>

/// Completes at once what the real source delays until keys come up or devices appear.
class ScriptedDevices : public DeviceSource
{
    Q_OBJECT

public:
    using DeviceSource::DeviceSource;

    /// A keyboard with the number `product`, plugged into the port "port-<product>".
    static InputDevice keyboard(quint16 product, const QString &serial = {})
    {
        return {.id = QStringLiteral("1b2c:%1").arg(uint(product), 4, 16, QLatin1Char('0')),
                .name = QStringLiteral("Keyboard %1").arg(product),
                .vendor = 0x1b2c,
                .product = product,
                .serial = serial,
                .path = QStringLiteral("port-%1").arg(product),
                .nodes = {QStringLiteral("/dev/input/event%1").arg(product)},
                .isInUse = false,
                .state = DeviceState::released,
                .problem = {}};
    }

    void plug(const QList<InputDevice> &devices)
    {
        mDevices = devices;
        refresh();
    }
    /// Reports these states of the keyboards until the next plug() or choice.
    void setStates(const QList<DeviceState> &states)
    {
        for (qsizetype index = 0; index < states.size(); ++index)
            mDevices[index].state = states.at(index);
    }
    /// Reports this status regardless of the choice.
    void setStatus(const DeviceStatus &status) { mStatus = status; }
    /// Adds these counters to the status of the choice.
    void setCounters(const DeviceStatus &status) { mCounters = status; }

    [[nodiscard]] QList<InputDevice> devices() const override { return mDevices; }

    [[nodiscard]] Result<void, UseError> use(const QStringList &ids) override { return chooseBeside({}, ids); }
    [[nodiscard]] Result<void, UseError> useAlso(const QStringList &ids) override
    {
        return chooseBeside(mChoices, ids);
    }
    [[nodiscard]] Result<void, UseError> releaseThese(const QStringList &ids) override
    {
        QList<ChosenDevice> choices = mChoices;
        for (const QString &id : ids) {
            const bool isAbsentMeant =
                choices.removeIf([&](const ChosenDevice &choice) { return idOf(choice) == id; }) > 0;
            const bool isMeant = choices.removeIf([&](const ChosenDevice &choice) {
                return std::ranges::any_of(
                    mDevices, [&](const InputDevice &device) { return device.id == id && choiceOf(device) == choice; });
            }) > 0;
            if (!isMeant && !isAbsentMeant)
                return UseError{{QStringLiteral("The daemon does not use \"%1\".").arg(id)}, UseError::Cause::unknown};
        }
        useWhenPresent(choices);
        return {};
    }

    void useWhenPresent(const QList<ChosenDevice> &choices) override
    {
        mChoices = choices;
        refresh();
    }
    void release() override { useWhenPresent({}); }
    [[nodiscard]] QList<ChosenDevice> choices() const override { return mChoices; }

    [[nodiscard]] DeviceStatus status() const override
    {
        if (mStatus)
            return *mStatus;
        DeviceStatus status = mCounters;
        status.state = mChoices.isEmpty() ? DeviceState::released : DeviceState::absent;
        const QList<std::optional<qsizetype>> found = choicesOf(mDevices, mChoices);
        for (qsizetype index = 0; index < mChoices.size(); ++index) {
            if (!found.contains(index))
                status.absent += idOf(mChoices.at(index));
        }
        for (const InputDevice &device : mDevices) {
            if (!device.isInUse)
                continue;
            status.state = DeviceState::inUse;
            status.names += device.name;
            status.grabs += device.nodes;
        }
        return status;
    }

private:
    Result<void, UseError> chooseBeside(QList<ChosenDevice> choices, const QStringList &ids)
    {
        for (const QString &id : ids) {
            const auto isMeant = [&](const InputDevice &device) { return device.id == id; };
            const auto device = std::find_if(mDevices.cbegin(), mDevices.cend(), isMeant);
            if (device == mDevices.cend())
                return UseError{{QStringLiteral("There is no keyboard \"%1\".").arg(id)}, UseError::Cause::unknown};
            if (!device->problem.isEmpty())
                return UseError{{device->problem}, UseError::Cause::refused};
            if (!choices.contains(choiceOf(*device)))
                choices += choiceOf(*device);
        }
        useWhenPresent(choices);
        return {};
    }

    void refresh()
    {
        const QList<qsizetype> chosen = chosenAmong(mDevices, mChoices);
        for (qsizetype index = 0; index < mDevices.size(); ++index) {
            mDevices[index].isInUse = chosen.contains(index);
            mDevices[index].state = mDevices[index].isInUse ? DeviceState::inUse : DeviceState::released;
        }
        Q_EMIT changed();
    }

    QList<InputDevice> mDevices;
    QList<ChosenDevice> mChoices;
    DeviceStatus mCounters;
    std::optional<DeviceStatus> mStatus;
};

// SPDX-License-Identifier: MIT
// A property list as JSON. No state; any thread.
#pragma once

#include <QJsonValue>
#include <QVariant>

/// Dictionary -> object, array -> array, string -> string, numbers and booleans as themselves, data -> Base64 text,
/// date -> ISO 8601 text in UTC. A value that no property list can hold becomes null.
[[nodiscard]] QJsonValue jsonFromPropertyList(const QVariant &value);

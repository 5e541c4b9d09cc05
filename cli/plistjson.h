// SPDX-License-Identifier: MIT
// A property list as JSON, and back. No state; any thread.
#pragma once

#include <QJsonValue>
#include <QVariant>

/// Dictionary -> object, array -> array, string -> string, numbers and booleans as themselves, data -> Base64 text,
/// date -> ISO 8601 text in UTC. A value that no property list can hold becomes null.
[[nodiscard]] QJsonValue jsonFromPropertyList(const QVariant &value);

/// The reverse. A whole number becomes an integer, except under the keys of a colour, which have reals; data and dates
/// stay text; null becomes an invalid value.
[[nodiscard]] QVariant propertyListFromJson(const QJsonValue &value);

// SPDX-License-Identifier: MIT
#include "cli/plistjson.h"

#include "base/settingskeys.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QVariantMap>

#include <limits>

namespace {

QJsonObject jsonFromDictionary(const QVariantMap &dictionary)
{
    QJsonObject object;
    for (auto it = dictionary.cbegin(); it != dictionary.cend(); ++it)
        object.insert(it.key(), jsonFromPropertyList(it.value()));
    return object;
}

QJsonArray jsonFromArray(const QVariantList &array)
{
    QJsonArray result;
    for (const QVariant &element : array)
        result.append(jsonFromPropertyList(element));
    return result;
}

/// JSON does not distinguish 1.0 from 1, but the document does.
bool isReal(const QString &key)
{
    return key == SettingsKeys::red || key == SettingsKeys::green || key == SettingsKeys::blue;
}

} // namespace

QJsonValue jsonFromPropertyList(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap: return jsonFromDictionary(value.toMap());
    case QMetaType::QVariantList: return jsonFromArray(value.toList());
    case QMetaType::QByteArray: return QString::fromLatin1(value.toByteArray().toBase64());
    case QMetaType::QDateTime: return value.toDateTime().toUTC().toString(Qt::ISODateWithMs);
    case QMetaType::ULongLong:
        // JSON readers keep 53 bits anyway; what fits a signed number stays exact here.
        if (value.toULongLong() > static_cast<qulonglong>(std::numeric_limits<qint64>::max()))
            return static_cast<double>(value.toULongLong());
        return value.toLongLong();
    case QMetaType::QString:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::Float:
    case QMetaType::Double: return QJsonValue::fromVariant(value);
    default: return QJsonValue::Null;
    }
}

QVariant propertyListFromJson(const QJsonValue &value)
{
    if (value.isObject()) {
        QVariantMap dictionary;
        const QJsonObject object = value.toObject();
        for (auto entry = object.constBegin(); entry != object.constEnd(); ++entry)
            dictionary.insert(entry.key(), isReal(entry.key()) && entry.value().isDouble()
                                               ? QVariant(entry.value().toDouble())
                                               : propertyListFromJson(entry.value()));
        return dictionary;
    }
    if (value.isArray()) {
        QVariantList list;
        for (const QJsonValue &element : value.toArray())
            list += propertyListFromJson(element);
        return list;
    }
    if (!value.isDouble())
        return value.toVariant();
    const qint64 whole = value.toInteger(std::numeric_limits<qint64>::min());
    if (whole == std::numeric_limits<qint64>::min())
        return value.toDouble();
    return whole == static_cast<int>(whole) ? QVariant(static_cast<int>(whole)) : QVariant(qlonglong{whole});
}

// SPDX-License-Identifier: MIT
#include "daemon/settings/documentfault.h"

#include "base/document.h"
#include "base/settingskeys.h"
#include "daemon/settings/settingsdocument.h"
#include "macros/macrorecord.h"

#include <QSet>
#include <QStringList>

#include <array>
#include <span>

using namespace Qt::StringLiterals;
using SettingsKeys::Key;

namespace {

/// The types that a value may have.
enum class Type { number, text, dictionary, array };

struct Field
{
    Key key;
    Type type;
};

constexpr std::array profileFields{
    Field{SettingsKeys::profileName, Type::text}, Field{SettingsKeys::keys, Type::dictionary},
    Field{SettingsKeys::appInfo, Type::dictionary}, Field{SettingsKeys::ledKbColors, Type::array}};
constexpr std::array macroFields{Field{SettingsKeys::macroName, Type::text}, Field{SettingsKeys::delay, Type::number},
                                 Field{SettingsKeys::sequence, Type::dictionary}};
constexpr std::array eventFields{Field{SettingsKeys::command, Type::number}, Field{SettingsKeys::delay, Type::number},
                                 Field{SettingsKeys::page, Type::number}, Field{SettingsKeys::argument, Type::number}};
constexpr std::array deviceFields{Field{SettingsKeys::activeProfile, Type::number},
                                  Field{SettingsKeys::gameMode, Type::number},
                                  Field{SettingsKeys::lastMacroId, Type::number}};
constexpr QLatin1StringView events{"Events"};

bool isNumber(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Double: return true;
    default: return false;
    }
}

bool hasType(const QVariant &value, Type type)
{
    switch (type) {
    case Type::number: return isNumber(value);
    case Type::text: return value.typeId() == QMetaType::QString;
    case Type::dictionary: return value.typeId() == QMetaType::QVariantMap;
    case Type::array: return value.typeId() == QMetaType::QVariantList;
    }
    return false;
}

QString wrongType(Type type)
{
    switch (type) {
    case Type::number: return u"not a number"_s;
    case Type::text: return u"not a text"_s;
    case Type::dictionary: return u"not a dictionary"_s;
    case Type::array: return u"not an array"_s;
    }
    return {};
}

/// Walks through a document, and stops at the first fault.
class Check
{
public:
    [[nodiscard]] const QString &fault() const { return mFault; }

    /// `check` looks at the value in the place `step` of the present one.
    template <typename Function> void inside(const QString &step, const Function &check)
    {
        if (!mFault.isEmpty())
            return;
        mPlace += step;
        check();
        mPlace.removeLast();
    }
    /// Requires that the present value has the type.
    bool require(const QVariant &value, Type type)
    {
        if (!hasType(value, type))
            fail(wrongType(type));
        return mFault.isEmpty();
    }
    void fail(const QString &reason)
    {
        if (mFault.isEmpty())
            mFault = (mPlace.isEmpty() ? QString() : mPlace.join(u" > "_s) + u": "_s) + reason;
    }
    /// Requires the types of those fields that the dictionary has.
    void fields(const QVariantMap &dictionary, std::span<const Field> known)
    {
        for (const Field &field : known) {
            const auto value = dictionary.constFind(field.key);
            if (value != dictionary.cend())
                inside(field.key, [&] { require(*value, field.type); });
        }
    }
    /// Requires that each element of the array is a dictionary with these fields; `more` looks at each.
    template <typename Function>
    void elements(const QVariantList &list, std::span<const Field> known, const Function &more)
    {
        for (qsizetype index = 0; index < list.size() && mFault.isEmpty(); ++index) {
            inside(QString::number(index + 1), [&] {
                if (!require(list.at(index), Type::dictionary))
                    return;
                fields(list.at(index).toMap(), known);
                more(list.at(index).toMap());
            });
        }
    }

private:
    QStringList mPlace;
    QString mFault;
};

void checkProfile(Check &check, const QVariantMap &profile)
{
    check.inside(SettingsKeys::keys, [&] {
        const QVariantMap keys = profile.value(SettingsKeys::keys).toMap();
        for (auto entry = keys.cbegin(); entry != keys.cend(); ++entry)
            check.inside(entry.key(), [&] { check.require(entry.value(), Type::dictionary); });
    });
}

void checkMacro(Check &check, const QVariantMap &macro, QSet<int> &numbers)
{
    check.inside(SettingsKeys::macroId, [&] {
        const int number = MacroRecord::macroId(macro);
        if (MacroRecord::identity(macro).isValid() && (number <= 0 || numbers.contains(number)))
            check.fail(number <= 0 ? u"not a positive number"_s : u"another macro has this number"_s);
        numbers.insert(number);
    });
    check.inside(SettingsKeys::sequence, [&] {
        const QVariant list = MacroRecord::sequence(macro).toMap().value(events);
        if (!list.isValid())
            return;
        check.inside(events, [&] {
            if (check.require(list, Type::array))
                check.elements(list.toList(), eventFields, [](const QVariantMap &) {});
        });
    });
}

} // namespace

QString firstFaultOf(const QVariantMap &document)
{
    Check check;
    const auto require = [&](Key key, Type type) {
        check.inside(key, [&] {
            if (document.contains(key))
                check.require(document.value(key), type);
            else
                check.fail(u"missing"_s);
        });
    };
    require(SettingsKeys::profiles, Type::array);
    require(SettingsKeys::macros, Type::array);
    require(SettingsKeys::deviceSettings, Type::dictionary);
    const Document read(document);
    check.inside(SettingsKeys::profiles, [&] {
        check.elements(read.profiles(), profileFields,
                       [&](const QVariantMap &profile) { checkProfile(check, profile); });
    });
    QSet<int> numbers;
    check.inside(SettingsKeys::macros, [&] {
        check.elements(read.macros(), macroFields,
                       [&](const QVariantMap &macro) { checkMacro(check, macro, numbers); });
    });
    check.inside(SettingsKeys::deviceSettings, [&] { check.fields(read.deviceSettings().dictionary(), deviceFields); });
    if (!check.fault().isEmpty())
        return check.fault();
    if (const Result<void> valid = SettingsDocument::validate(document); !valid)
        check.fail(valid.error().message);
    return check.fault();
}

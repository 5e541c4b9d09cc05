// SPDX-License-Identifier: MIT
#include "rulehelper/rulehelper.h"

#include "base/devicerule.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace {

Result<void> writeRule(const QString &path, const QByteArray &rule)
{
    // A save file would write to the target of a link.
    if (QFileInfo(path).isSymLink())
        return Error{u"%1 is a link"_s.arg(path)};
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(rule) != rule.size()
        || !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther)
        || !file.commit())
        return Error{u"%1 cannot be written: %2"_s.arg(path, file.errorString())};
    return {};
}

Result<void> removeRule(const QString &path)
{
    QFile file(path);
    if (!file.remove() && (file.exists() || QFileInfo(path).isSymLink()))
        return Error{u"%1 cannot be removed: %2"_s.arg(path, file.errorString())};
    return {};
}

} // namespace

Result<RuleHelper::Request> RuleHelper::requestOf(const QStringList &arguments)
{
    const bool isRemoval = arguments.value(0) == "--remove"_L1;
    static const QRegularExpression nodePath(u"\\A/dev/input/(event(?:0|[1-9][0-9]{0,4}))\\z"_s);
    const QRegularExpressionMatch match = nodePath.match(arguments.value(isRemoval ? 1 : 0));
    if (arguments.size() != (isRemoval ? 2 : 1) || !match.hasMatch())
        return Error{u"the arguments are [--remove] /dev/input/eventN"_s};
    return Request{.node = match.captured(1).toLatin1(), .isRemoval = isRemoval};
}

Result<void> RuleHelper::carryOut(const Request &request, const Services &services)
{
    const Result<dev_t> number = services.numberOf(request.node);
    if (!number)
        return number.error();
    const Result<Keyboard> keyboard = services.keyboardOf(*number);
    if (!keyboard)
        return keyboard.error();
    const std::optional<QString> fileName = deviceRuleFileName(keyboard->device);
    const std::optional<QString> rule = eventDeviceRule(keyboard->device);
    if (!fileName || !rule)
        return Error{u"the keyboard reports neither vendor nor product, so no rule can name it"_s};
    // Meanwhile another device may have got the name, which the user has not chosen.
    const Result<dev_t> numberNow = services.numberOf(request.node);
    if (!numberNow || *numberNow != *number)
        return Error{u"the device was replaced by another one"_s};
    const QString path = services.rulesFolder + u'/' + *fileName;
    const Result<void> stored = request.isRemoval ? removeRule(path) : writeRule(path, rule->toUtf8());
    if (!stored)
        return stored.error();
    return services.apply(*keyboard, !request.isRemoval);
}

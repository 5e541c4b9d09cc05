// SPDX-License-Identifier: MIT
#include "tests/daemon/keyboards/linux/nodescript.h"

#include "keys/keynames.h"

#include <libevdev/libevdev.h>

using namespace Qt::StringLiterals;

namespace {

QString nameOf(HidUsage usage)
{
    const QString name = keyName(usage.usage).remove(u' ');
    return usage.page == HidUsage::keyboardPage && !name.isEmpty() ? name
                                                                   : u"usage %1:%2"_s.arg(usage.page).arg(usage.usage);
}

QString nameOf(quint16 type, quint16 code)
{
    const char *name = libevdev_event_code_get_name(type, code);
    return name ? QString::fromLatin1(name) : u"code %1"_s.arg(code);
}

/// "KEY_A" or a number, which may be out of range; -1 for other texts.
int codeOf(unsigned int type, const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber, 0);
    return isNumber ? number : libevdev_event_code_from_name(type, text.toLatin1().constData());
}

} // namespace

QString NodeScript::run(const QString &line)
{
    const QStringList words = line.simplified().split(u' ');
    if (words.first() != "node"_L1)
        return runEvent(words.first(), words.mid(1));
    if (words.size() != 3 || (words.at(2) != "hid"_L1 && words.at(2) != "plain"_L1))
        return u"hid or plain?"_s;
    mNodes[words.at(1)] = mTranslator.addNode(words.at(2) == "hid"_L1);
    return {};
}

QString NodeScript::runEvent(const QString &node, const QStringList &words)
{
    if (!mNodes.contains(node))
        return u"no such node"_s;
    const int index = mNodes.value(node);
    const QString what = words.value(0);
    static const QHash<QString, quint16> types{
        {u"key"_s, EV_KEY}, {u"rel"_s, EV_REL}, {u"abs"_s, EV_ABS}, {u"sw"_s, EV_SW}};
    mOutputs.clear();
    if (what == "gone"_L1 && words.size() == 1) {
        remove(index);
    } else if (what == "report"_L1 && words.size() == 1) {
        take(index, {.type = EV_SYN, .code = SYN_REPORT});
        return {};
    } else if (what == "scan"_L1 && words.size() == 2) {
        take(index, {.type = EV_MSC, .code = MSC_SCAN, .value = words.at(1).toInt(nullptr, 0)});
        return {};
    } else if (types.contains(what) && words.size() == 3) {
        const quint16 type = types.value(what);
        const int code = codeOf(type, words.at(1));
        bool isNumber = false;
        const int value = words.at(2).toInt(&isNumber);
        if (code < 0 || !isNumber)
            return u"no such code or value"_s;
        take(index, {.type = type, .code = static_cast<quint16>(code), .value = value});
    } else {
        return u"no such event"_s;
    }
    mOutputLines += mOutputs.isEmpty() ? u"nothing"_s : mOutputs.join(u", "_s);
    return {};
}

void NodeScript::take(int index, const KeyTranslator::Event &event)
{
    show(mTranslator.take(index, event));
}

void NodeScript::remove(int index)
{
    TranslatorOutput output;
    while ((output = mTranslator.removeNode(index)).kind != TranslatorOutput::Kind::none)
        show(output);
}

void NodeScript::show(const TranslatorOutput &output)
{
    switch (output.kind) {
    case TranslatorOutput::Kind::none: break;
    case TranslatorOutput::Kind::key: {
        const HidUsage key{HidUsage::keyboardPage, output.usage};
        const bool isChanged = output.isDown && KeyCodes::linuxCode(key) != output.code;
        showKey(nameOf(key), output.isDown, isChanged ? u" as "_s + nameOf(EV_KEY, output.code) : QString());
        break;
    }
    case TranslatorOutput::Kind::passedKey: showKey(u"pass "_s + nameOf(EV_KEY, output.code), output.isDown); break;
    case TranslatorOutput::Kind::motion:
        mOutputs += u"turn %1 %2"_s.arg(nameOf(EV_REL, output.code)).arg(output.value);
        break;
    case TranslatorOutput::Kind::volume: mOutputs += u"volume %1"_s.arg(output.value); break;
    case TranslatorOutput::Kind::toggle: showKey(nameOf(EV_SW, output.code), output.isDown); break;
    case TranslatorOutput::Kind::releaseChord: mOutputs += u"release chord"_s; break;
    }
}

void NodeScript::showKey(const QString &key, bool isDown, const QString &systemKey)
{
    if (isDown)
        mDown += key;
    else
        mDown -= key;
    mOutputs += key + systemKey + (isDown ? u" down"_s : u" up"_s);
}

// SPDX-License-Identifier: MIT
#include "macros/eventsclip.h"

#include "base/hidusage.h"
#include "base/propertylist.h"
#include "macros/eventparser.h"
#include "macros/macrorecord.h"

#include <QMimeData>

using namespace Qt::StringLiterals;

namespace {

const QString mimeType = u"application/x-quill-kestra-macro-events"_s;
constexpr QLatin1StringView eventsKey{"Events"};
constexpr qsizetype maximumBytes = 4 * 1024 * 1024; // more than the longest macro has
constexpr uint firstKey = 4;
constexpr uint lastButton = 9;

bool isKeyOrButton(const MacroRecord::Event &event)
{
    if (event.page == MacroRecord::keyboardPage)
        return event.argument >= firstKey && event.argument <= HidUsage::lastKey;
    return event.page == MacroRecord::buttonPage && event.argument >= 1 && event.argument <= lastButton;
}

/// The event that `value` describes; absent unless a macro can have it. An event on another page only waits.
std::optional<QVariantMap> eventOf(const QVariant &value)
{
    if (value.typeId() != QMetaType::QVariantMap || !MacroRecord::isWellFormedEvent(value.toMap()))
        return {};
    const MacroRecord::Event event = MacroRecord::eventFields(value.toMap());
    const bool isWait = event.page != MacroRecord::keyboardPage && event.page != MacroRecord::buttonPage;
    const bool isCommand = event.command == MacroRecord::keyDown || event.command == MacroRecord::keyUp;
    if (event.delayMs < 0 || !isCommand || !(isWait || isKeyOrButton(event)))
        return {};
    return MacroRecord::eventRecord(event);
}

} // namespace

QMimeData *EventsClip::toMimeData(const QVariantList &events)
{
    auto *data = new QMimeData;
    QString text;
    for (const QString &line : eventParser::getMessagesArray(events))
        text += line.trimmed() + u'\n';
    data->setText(text);
    if (const std::optional<QByteArray> bytes = PropertyList::writeBinary(QVariantMap{{eventsKey, events}}))
        data->setData(mimeType, *bytes);
    return data;
}

bool EventsClip::offersEvents(const QMimeData *data)
{
    return data && data->hasFormat(mimeType);
}

std::optional<QVariantList> EventsClip::fromMimeData(const QMimeData *data)
{
    if (!offersEvents(data))
        return {};
    const QByteArray bytes = data->data(mimeType);
    const std::optional<QVariant> root = bytes.size() <= maximumBytes ? PropertyList::read(bytes) : std::nullopt;
    const QVariantList values = root ? root->toMap().value(eventsKey).toList() : QVariantList();
    if (values.isEmpty() || values.size() > MacroRecord::maximumEvents)
        return {};
    QVariantList events;
    for (const QVariant &value : values) {
        const std::optional<QVariantMap> event = eventOf(value);
        if (!event)
            return {};
        events.append(*event);
    }
    return events;
}

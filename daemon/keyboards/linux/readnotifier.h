// SPDX-License-Identifier: MIT
// Watches a file like its base, but calls its handler directly. Lives on one thread.
#pragma once

#include <QEvent>
#include <QSocketNotifier>

class ReadHandler
{
public:
    virtual ~ReadHandler() = default;
    virtual void fileReady() = 0; ///< the file can be read, or has ended
};

/// EpollDispatcher calls the handler without an event or a signal, which would take more instructions than the rest of
/// a key. It calls only when something has arrived since the last call: the handler must read until nothing is left, or
/// disable the notifier until it continues. Any other event loop sends its event, as long as something is left.
/// Disabled at first: while its base is made, no event loop can know that it has a handler.
class ReadNotifier : public QSocketNotifier
{
    Q_OBJECT

public:
    ReadNotifier(int descriptor, ReadHandler &handler, QObject *parent)
        : QSocketNotifier(descriptor, Read, parent), mHandler(handler)
    {
        setEnabled(false);
    }

    void callHandler() { mHandler.fileReady(); }

protected:
    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::SockAct)
            return QSocketNotifier::event(event);
        callHandler();
        return true;
    }

private:
    ReadHandler &mHandler;
};

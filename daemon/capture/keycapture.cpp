// SPDX-License-Identifier: MIT
#include "daemon/capture/keycapture.h"

KeyCapture KeyCapture::forOnTheFlyKey()
{
    KeyCapture capture;
    capture.mKind = Kind::onTheFlyKey;
    return capture;
}

KeyCapture KeyCapture::forClient(const QString &client, Kind kind)
{
    Q_ASSERT(kind != Kind::none && kind != Kind::onTheFlyKey);
    KeyCapture capture;
    capture.mKind = kind;
    capture.mClient = client;
    return capture;
}

const char *KeyCapture::name() const
{
    switch (mKind) {
    case Kind::none: return "not capturing";
    case Kind::onTheFlyKey: return "awaiting the key for a macro recorded on the keyboard";
    case Kind::macroRecording: return "recording a macro";
    case Kind::singleKey: return "capturing a single key";
    case Kind::editedEvent: return "capturing a key for an event";
    }
    return "?";
}

// SPDX-License-Identifier: MIT
#include "base/capturesource.h"

#include "base/text.h"

QString captureText(const CaptureSource &source, const CaptureTextKeys &keys)
{
    switch (source.kind) {
    case CaptureSource::Kind::unknown: return localizedText(keys.unknown);
    case CaptureSource::Kind::window: return localizedText(keys.window);
    case CaptureSource::Kind::realKeyboards: return localizedFormat(keys.realKeyboards, {source.names});
    case CaptureSource::Kind::ended: return localizedText("lkeyCaptureEnded");
    }
    return {};
}

QString captureHint(const CaptureSource &source)
{
    return source.kind == CaptureSource::Kind::ended ? QString() : localizedText("lkeyHoldEscape");
}

// SPDX-License-Identifier: MIT
#include "platform/webpages.h"

#include <QDesktopServices>

using namespace Qt::StringLiterals;

WebPages::Outcome WebPages::open(const QUrl &address)
{
    // RFC 2606 reserves this top-level domain, so no page can exist there.
    if (address.host().endsWith(".example"_L1))
        return Outcome::placeholder;
    return QDesktopServices::openUrl(address) ? Outcome::opened : Outcome::noBrowser;
}

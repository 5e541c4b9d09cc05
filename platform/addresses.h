// SPDX-License-Identifier: MIT
// The web addresses that the program opens. Domains under .example are reserved placeholders; a distributor replaces
// them with real addresses.
#pragma once

#include <QLatin1StringView>

namespace Addresses {

inline constexpr QLatin1StringView driverDownloads{"https://support.quill.example/kestra/drivers"};
inline constexpr QLatin1StringView support{"https://support.quill.example/kestra"};
inline constexpr QLatin1StringView community{"https://community.quill.example/"};
inline constexpr QLatin1StringView firstSocialNetwork{"https://social-one.example/quill"};
inline constexpr QLatin1StringView secondSocialNetwork{"https://social-two.example/quill"};

} // namespace Addresses
